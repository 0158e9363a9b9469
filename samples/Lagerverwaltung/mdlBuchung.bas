Attribute VB_Name = "mdlBuchung"
Option Explicit

' Buchen, stornieren, anzeigen

Private mlngLetzteNummer As Long

Public Sub BuchungEingang()
    frmBuchung.Öffnen baEingang
End Sub

Public Sub BuchungAusgang()
    frmBuchung.Öffnen baAusgang
End Sub

Public Sub BuchungKorrektur()
    If MsgBox("Korrekturen erscheinen im Monatsbericht. Fortfahren ?", _
              vbQuestion Or vbYesNo, cProgramm) = vbYes Then frmBuchung.Öffnen baKorrektur
End Sub

' Bucht ohne Fenster, für die Inventur und für Importe
Public Function Buchen(ByVal strArtikel As String, ByVal enmArt As Buchungsart, ByVal dblMenge As Double, _
                       Optional ByVal strBeleg As String, Optional ByVal strText As String) As Boolean
    Dim objBuchung As clsBuchung

    On Error GoTo Fehler
    Set objBuchung = New clsBuchung
    With objBuchung
        Set .Artikel = gobjLager.Suchen(strArtikel)
        .Art = enmArt
        .Menge = dblMenge
        .Beleg = strBeleg
        .Text = strText
        .Ausführen
    End With
    Buchen = True
    Exit Function

Fehler:
    FehlerMelden "mdlBuchung.Buchen", Err.Number, Err.Description
End Function

Public Function NächsteBuchungsnummer() As Long
    If mlngLetzteNummer = 0 Then
        mlngLetzteNummer = Application.WorksheetFunction.Max(Tabelle2.Columns(suNummer))
    End If
    mlngLetzteNummer = mlngLetzteNummer + 1
    NächsteBuchungsnummer = mlngLetzteNummer
End Function

Public Function BuchungsartKürzel(ByVal enmArt As Buchungsart) As String
    BuchungsartKürzel = Mid$("?EAKUI", enmArt + 1, 1)
End Function

Public Function BuchungsartAus(ByVal strKürzel As String) As Buchungsart
    Dim intPos As Integer

    intPos = InStr("EAKUI", UCase$(Left$(strKürzel & " ", 1)))
    BuchungsartAus = intPos                 ' 0 = baUnbekannt
End Function

Public Function BuchungsartText(ByVal enmArt As Buchungsart) As String
    Select Case enmArt
        Case baEingang
            BuchungsartText = "Eingang"
        Case baAusgang
            BuchungsartText = "Ausgang"
        Case baKorrektur
            BuchungsartText = "Korrektur"
        Case baUmlagerung
            BuchungsartText = "Umlagerung"
        Case baInventur
            BuchungsartText = "Inventur"
        Case Else
            BuchungsartText = "?"
    End Select
End Function

Public Sub BuchungAnzeigen(ByVal lngNummer As Long)
    Dim lngZeile As Long

    lngZeile = BuchungsZeile(lngNummer)
    If lngZeile = 0 Then
        MsgBox "Buchung " & lngNummer & " gibt es nicht.", vbExclamation, cProgramm
        Exit Sub
    End If
    With Tabelle2
        MsgBox "Buchung " & lngNummer & " vom " & Format$(.Cells(lngZeile, suDatum).Value, cDatumFormat) & vbCrLf & _
               "Artikel:" & vbTab & .Cells(lngZeile, suArtikel).Value & vbCrLf & _
               "Art:" & vbTab & BuchungsartText(BuchungsartAus(.Cells(lngZeile, suArt).Value)) & vbCrLf & _
               "Menge:" & vbTab & .Cells(lngZeile, suMenge).Value & vbCrLf & _
               "Beleg:" & vbTab & .Cells(lngZeile, suBeleg).Value & vbCrLf & _
               "Benutzer:" & vbTab & .Cells(lngZeile, suBenutzer).Value & vbCrLf & vbCrLf & _
               .Cells(lngZeile, suText).Value, vbInformation, cProgramm
    End With
End Sub

' Gegenbuchung zur Zeile, in der die Markierung steht
Public Sub BuchungStornieren()
    Dim lngZeile As Long
    Dim dblMenge As Double

    If Not ActiveSheet Is Tabelle2 Then
        MsgBox "Bitte markieren Sie erst eine Zeile auf dem Blatt 'Buchungen'.", vbInformation, cProgramm
        Exit Sub
    End If
    lngZeile = ActiveCell.Row
    If lngZeile < cErsteZeile Or lngZeile > LetzteDatenzeile(Tabelle2) Then Exit Sub

    dblMenge = ZahlAus(Tabelle2.Cells(lngZeile, suMenge).Value)
    If Buchen(TextAus(Tabelle2.Cells(lngZeile, suArtikel).Value), baKorrektur, -dblMenge, _
              "ST" & Tabelle2.Cells(lngZeile, suNummer).Value, "Storno") Then
        Tabelle2.Rows(lngZeile).Font.Color = RGB(128, 128, 128)
    End If
End Sub

Private Function BuchungsZeile(ByVal lngNummer As Long) As Long
    Dim rngTreffer As Range

    Set rngTreffer = Tabelle2.Columns(suNummer).Find(What:=lngNummer, LookIn:=xlValues, LookAt:=xlWhole)
    If Not rngTreffer Is Nothing Then BuchungsZeile = rngTreffer.Row
End Function

' Liest Lieferscheine ein: eine Zeile je Artikel, Felder durch Semikolon getrennt
Public Sub LieferscheinEinlesen(ByVal strDatei As String)
    Dim intKanal As Integer
    Dim lngZeile As Long
    Dim strZeile As String
    Dim varFelder As Variant

10  On Error GoTo Fehler
20  intKanal = FreeFile
30  Open strDatei For Input As #intKanal
40  Do Until EOF(intKanal)
50      Line Input #intKanal, strZeile
60      lngZeile = lngZeile + 1
70      If Len(strZeile) = 0 Or Left$(strZeile, 1) = "'" Then GoTo Weiter
80      varFelder = Split(strZeile, cTrenner)
90      If UBound(varFelder) < 2 Then
100         ProtokollSchreiben psWarnung, "Lieferschein, Zeile " & lngZeile & ": zu wenig Felder"
110     Else
120         Buchen varFelder(0), baEingang, ZahlAus(varFelder(1)), varFelder(2), "aus " & strDatei
130     End If
Weiter:
140 Loop
150 Close #intKanal
160 Exit Sub

Fehler:
    FehlerMelden "mdlBuchung.LieferscheinEinlesen, Zeile " & Erl, Err.Number, Err.Description
    Close
End Sub
