Attribute VB_Name = "mdlEtikett"
Option Explicit

' Etiketten für Regal und Karton; der Drucker versteht eine einfache Befehlssprache

Private Const cEsc As Integer = 27
Private Const cBreitePunkte As Long = 640
Private Const cStandardDrucker As String = "LPT1:"

' Sonderzeichen des Druckers: "Zeichen=Code", mit | getrennt
Private Const cZeichenTabelle As String = "ä=84|ö=94|ü=81|Ä=8E|Ö=99|Ü=9A|ß=E1|°=F8|½=AB|Ÿ=98"

Private mudtStapel() As tEtikett
Private mlngAnzahl As Long

' Öffentlicher Name wie in mdlBericht: immer mit Modulname aufrufen
Public Sub Drucken()
    Dim intKanal As Integer
    Dim strBefehle As String
    Dim i As Long

    If mlngAnzahl = 0 Then
        MsgBox "Es sind keine Etiketten vorgemerkt.", vbInformation, cProgramm
        Exit Sub
    End If

    On Error GoTo Fehler
    intKanal = FreeFile
    Open EinstellungLesenText("Etikettendrucker", cStandardDrucker) For Binary Access Write As #intKanal
    For i = 1 To mlngAnzahl
        strBefehle = EtikettBefehle(mudtStapel(i))
        Put #intKanal, , strBefehle
        Application.StatusBar = "Etikett " & i & " von " & mlngAnzahl
    Next i
    Close #intKanal
    StapelLeeren

Ende:
    Application.StatusBar = False
    Exit Sub

Fehler:
    FehlerMelden "mdlEtikett.Drucken", Err.Number, Err.Description
    Close #intKanal
    Resume Ende
End Sub

Public Sub StapelLeeren()
    Erase mudtStapel
    mlngAnzahl = 0
End Sub

Public Sub EtikettVormerken(ByVal objArtikel As clsArtikel, Optional ByVal intAnzahl As Integer = 1)
    If objArtikel Is Nothing Then Exit Sub
    mlngAnzahl = mlngAnzahl + 1
    ReDim Preserve mudtStapel(1 To mlngAnzahl)
    With mudtStapel(mlngAnzahl)
        .Zeilen(1) = objArtikel.Nummer
        .Zeilen(2) = Left$(objArtikel.Bezeichnung, 24)
        .Zeilen(3) = "Ort: " & objArtikel.Lagerort & "   " & objArtikel.Einheit
        .Zeilen(4) = LieferantName(objArtikel.LieferantNr)
        .Strichcode = StrichcodeZu(objArtikel.Nummer)
        .Anzahl = intAnzahl
    End With
End Sub

' Menü: Etiketten für alle markierten Zeilen
Public Sub EtikettenDerMarkierung()
    Dim rngZeile As Range

    If Not ActiveSheet Is Tabelle1 Then Exit Sub
    For Each rngZeile In Selection.Rows
        If rngZeile.Row >= cErsteZeile Then EtikettVormerken ArtikelDerZeile(rngZeile.Row)
    Next rngZeile
    mdlEtikett.Drucken
End Sub

' Regalbeschriftung: je Lagerort ein Etikett mit großem Text
Public Sub EtikettenDerLagerorte()
    Dim colOrte As New Collection
    Dim objArtikel As clsArtikel
    Dim varOrt As Variant

    On Error Resume Next
    For Each objArtikel In gobjLager
        colOrte.Add objArtikel.Lagerort, objArtikel.Lagerort
    Next objArtikel
    On Error GoTo 0
    For Each varOrt In colOrte
        mlngAnzahl = mlngAnzahl + 1
        ReDim Preserve mudtStapel(1 To mlngAnzahl)
        mudtStapel(mlngAnzahl).Zeilen(1) = varOrt
        mudtStapel(mlngAnzahl).Anzahl = 1
    Next varOrt
    mdlEtikett.Drucken
End Sub

' Der Strichcode zählt die Buchstaben als zwei Ziffern: A=01 ... Z=26, Ä=27, Ö=28, Ü=29
Private Function StrichcodeZu(ByVal strNummer As String) As String
    Const cBuchstaben As String = "ABCDEFGHIJKLMNOPQRSTUVWXYZÄÖÜ"
    Dim strZiffern As String
    Dim i As Integer

    For i = 1 To 3
        strZiffern = strZiffern & Format$(InStr(cBuchstaben, Mid$(strNummer, i, 1)), "00")
    Next i
    strZiffern = "20" & strZiffern & Mid$(strNummer, 5, 4)
    StrichcodeZu = strZiffern & PrüfzifferEan(strZiffern)
End Function

Private Function EtikettBefehle(ByRef udtEtikett As tEtikett) As String
    Dim strBefehl As String
    Dim i As Integer

    strBefehl = Chr$(cEsc) & "@" & Chr$(cEsc) & "W" & Format$(cBreitePunkte, "0000") & vbLf
    For i = LBound(udtEtikett.Zeilen) To UBound(udtEtikett.Zeilen)
        If Len(udtEtikett.Zeilen(i)) > 0 Then
            strBefehl = strBefehl & Chr$(cEsc) & "T" & i & """" & DruckerText(udtEtikett.Zeilen(i)) & """" & vbLf
        End If
    Next i
    If Len(udtEtikett.Strichcode) > 0 Then strBefehl = strBefehl & Chr$(cEsc) & "B" & udtEtikett.Strichcode & vbLf
    EtikettBefehle = strBefehl & Chr$(cEsc) & "P" & udtEtikett.Anzahl & vbFormFeed
End Function

' Umlaute in die Zeichen des Druckers übersetzen
Private Function DruckerText(ByVal strText As String) As String
    Dim varPaar As Variant

    For Each varPaar In Split(cZeichenTabelle, "|")
        strText = Replace(strText, Left$(varPaar, 1), Chr$(CLng("&H" & Mid$(varPaar, 3))))
    Next varPaar
    DruckerText = Replace(strText, """", "'")       ' Anführungszeichen kennt der Drucker nicht
End Function

' Probeetikett, wird nur im Direktbereich aufgerufen
Private Sub ProbeEtikett()
    mlngAnzahl = 1
    ReDim mudtStapel(1 To 1)
    mudtStapel(1).Zeilen(1) = "PRO-0001": mudtStapel(1).Zeilen(2) = "Größe ½"" äöüÄÖÜß"
    mudtStapel(1).Strichcode = StrichcodeZu("PRO-0001"): mudtStapel(1).Anzahl = 1
    mdlEtikett.Drucken
End Sub
