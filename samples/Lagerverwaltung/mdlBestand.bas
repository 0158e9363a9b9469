Attribute VB_Name = "mdlBestand"
Option Explicit

' Auswertungen und Massenänderungen auf dem Blatt "Bestand"

Private Const cBlattVorschlag As String = "Bestellvorschlag"

Public Sub BestandNeuFärben()
    Application.ScreenUpdating = False
    Tabelle1.AlleZeilenFärben
    Application.ScreenUpdating = True
End Sub

' Rechnet alle Bestände aus den Buchungen nach und meldet Abweichungen
Public Sub BestandNachrechnen()
    Dim objArtikel As clsArtikel
    Dim dblSumme As Double
    Dim lngFehler As Long
    Dim strMeldung As String

    On Error GoTo Fehler
    Application.Cursor = xlWait
    For Each objArtikel In gobjLager
        dblSumme = SummeDerBuchungen(objArtikel.Nummer)
        If Abs(dblSumme - objArtikel.Menge) > 0.0001 Then
            lngFehler = lngFehler + 1
            If lngFehler <= 15 Then
                strMeldung = strMeldung & vbCrLf & Auffüllen(objArtikel.Nummer, 10) & _
                             Auffüllen(Format$(objArtikel.Menge, cZahlFormat), 12, True) & " statt " & _
                             Format$(dblSumme, cZahlFormat)
            End If
        End If
    Next objArtikel
    If lngFehler = 0 Then
        MsgBox "Alle Bestände stimmen mit den Buchungen überein.", vbInformation, cProgramm
    Else
        MsgBox lngFehler & " Bestände weichen ab:" & vbCrLf & strMeldung, vbExclamation, cProgramm
    End If

Ende:
    Application.Cursor = xlDefault
    Exit Sub

Fehler:
    FehlerMelden "mdlBestand.BestandNachrechnen", Err.Number, Err.Description
    Resume Ende
End Sub

Private Function SummeDerBuchungen(ByVal strNummer As String) As Double
    SummeDerBuchungen = Application.WorksheetFunction.SumIf( _
                            Tabelle2.Columns(suArtikel), _
                            strNummer, _
                            Tabelle2.Columns(suMenge))
End Function

' Schreibt eine Bestellliste auf ein eigenes Blatt, nach Lieferanten geordnet
Public Sub BestellvorschlagErstellen()
    Dim wksZiel As Worksheet
    Dim objArtikel As clsArtikel
    Dim udtLieferant As tLieferant
    Dim lngZeile As Long
    
    Set wksZiel = VorschlagsBlatt()
    lngZeile = 1
    For Each objArtikel In gobjLager
        If objArtikel.Bestellvorschlag() > 0 Then
            lngZeile = lngZeile + 1
            wksZiel.Cells(lngZeile, 1).Value = objArtikel.Nummer
            wksZiel.Cells(lngZeile, 2).Value = objArtikel.Bezeichnung
            wksZiel.Cells(lngZeile, 3).Value = objArtikel.Menge
            wksZiel.Cells(lngZeile, 4).Value = objArtikel.Bestellvorschlag()
            wksZiel.Cells(lngZeile, 5).Value = objArtikel.Einheit
            If LieferantLesen(objArtikel.LieferantNr, udtLieferant) Then
                wksZiel.Cells(lngZeile, 6).Value = udtLieferant.Name
                wksZiel.Cells(lngZeile, 7).Value = Date + udtLieferant.Lieferzeit
                If udtLieferant.Gesperrt Then wksZiel.Cells(lngZeile, 6).Font.Strikethrough = True
            Else
                wksZiel.Cells(lngZeile, 6).Value = "(kein Lieferant)"
            End If
        End If
    Next objArtikel

    If lngZeile = 1 Then
        MsgBox "Es ist nichts zu bestellen.", vbInformation, cProgramm
    Else
        wksZiel.Range("A1").CurrentRegion.Sort _
            Key1:=wksZiel.Range("F1"), _
            Order1:=xlAscending, _
            Key2:=wksZiel.Range("A1"), _
            Order2:=xlAscending, _
            Header:=xlYes
        wksZiel.Columns("A:G").AutoFit
        wksZiel.Activate
    End If
End Sub

Private Function VorschlagsBlatt() As Worksheet
    If BlattVorhanden(cBlattVorschlag) Then
        Set VorschlagsBlatt = ThisWorkbook.Worksheets(cBlattVorschlag)
        VorschlagsBlatt.Cells.Clear
    Else
        Set VorschlagsBlatt = ThisWorkbook.Worksheets.Add(After:=Tabelle3)
        VorschlagsBlatt.Name = cBlattVorschlag
    End If
    VorschlagsBlatt.Range("A1:G1").Value = Array("Artikel", "Bezeichnung", "Bestand", "Bestellen", "Einheit", _
                                                 "Lieferant", "Liefertermin")
    VorschlagsBlatt.Rows(1).Font.Bold = True
End Function

' Alle Preise einer Gruppe um einen Prozentsatz ändern
Public Sub PreiseAnpassen()
    Dim strGruppe As String
    Dim strProzent As String
    Dim dblFaktor As Double
    Dim objArtikel As clsArtikel
    Dim lngAnzahl As Long
    
    strGruppe = InputBox("Welche Artikelgruppe ?" & vbCrLf & "(leer = alle)", cProgramm)
    strProzent = InputBox("Änderung in Prozent, zum Beispiel 2,5 oder -3:", cProgramm)
    If Not IsNumeric(strProzent) Then Exit Sub
    dblFaktor = 1 + CDbl(strProzent) / 100
    If dblFaktor <= 0 Then MsgBox "So geht's nicht: der Preis würde negativ.", vbExclamation, cProgramm: Exit Sub

    For Each objArtikel In gobjLager
        If Len(strGruppe) = 0 Or objArtikel.Gruppe = strGruppe Then
            objArtikel.Preis = Application.WorksheetFunction.Round(objArtikel.Preis * dblFaktor, 2)
            lngAnzahl = lngAnzahl + 1
        End If
    Next objArtikel
    gobjLager.AllesSpeichern
    ProtokollSchreiben psHinweis, "Preise angepasst: " & lngAnzahl & " Artikel, Faktor " & dblFaktor
End Sub

' Bestände als CSV, wie sie die Buchhaltung zum Quartalsende bekommt
Public Sub BestandAusgeben()
    Dim intKanal As Integer
    Dim strDatei As String
    Dim lngZeile As Long
    
    strDatei = ThisWorkbook.Path & "\" & DateiNameAus("Bestand " & Year(Date) & " Q" & QuartalAus(Date)) & ".csv"
    On Error GoTo Fehler
    intKanal = FreeFile
    Open strDatei For Output As #intKanal
    Print #intKanal, """Artikel"";""Bezeichnung"";""Menge"";""Einheit"";""Preis"";""Wert"""
    For lngZeile = cErsteZeile To LetzteZeile()
        With Tabelle1
            Print #intKanal, InAnführung(TextAus(.Cells(lngZeile, sbNummer).Value)) & cTrenner & _
                             InAnführung(TextAus(.Cells(lngZeile, sbBezeichnung).Value)) & cTrenner & _
                             ZahlAus(.Cells(lngZeile, sbMenge).Value) & cTrenner & _
                             InAnführung(TextAus(.Cells(lngZeile, sbEinheit).Value)) & cTrenner & _
                             ZahlAus(.Cells(lngZeile, sbPreis).Value) & cTrenner & _
                             ZahlAus(.Cells(lngZeile, sbMenge).Value) * ZahlAus(.Cells(lngZeile, sbPreis).Value)
        End With
    Next lngZeile
    Close #intKanal
    MsgBox "Geschrieben: " & strDatei, vbInformation, cProgramm
    Exit Sub

Fehler:
    Close #intKanal
    FehlerMelden "mdlBestand.BestandAusgeben", Err.Number, Err.Description
End Sub

Private Function LetzteZeile() As Long
    LetzteZeile = LetzteDatenzeile(Tabelle1)
    Do While LetzteZeile >= cErsteZeile
        If Len(TextAus(Tabelle1.Cells(LetzteZeile, sbNummer).Value)) > 0 Then Exit Do
        LetzteZeile = LetzteZeile - 1
    Loop
End Function
