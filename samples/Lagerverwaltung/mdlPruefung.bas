Attribute VB_Name = "mdlPrüfung"
Option Explicit

' Prüfungen vor dem Monatsabschluss. Die Datei heißt mdlPruefung.bas, das Modul mdlPrüfung.

Private mcolMängel As Collection

Public Sub AllesPrüfen()
    Dim varMangel As Variant
    Dim strText As String

    Set mcolMängel = New Collection
    PrüfeNummern
    PrüfeLieferanten
    PrüfeBuchungen
    PrüfePreise

    If mcolMängel.Count = 0 Then
        MsgBox "Keine Mängel gefunden.", vbInformation, cProgramm
        Exit Sub
    End If
    For Each varMangel In mcolMängel
        strText = strText & "• " & varMangel & vbCrLf
        If Len(strText) > 900 Then strText = strText & "…": Exit For
    Next varMangel
    MsgBox strText, vbExclamation, cProgramm & " – " & mcolMängel.Count & " Mängel"
End Sub

Private Sub Mangel(ByVal strText As String)
    mcolMängel.Add strText
End Sub

Private Sub PrüfeNummern()
    Dim lngZeile As Long
    Dim strNummer As String

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle1)
        strNummer = TextAus(Tabelle1.Cells(lngZeile, sbNummer).Value)
        If Len(strNummer) = 0 Then
            Mangel "Zeile " & lngZeile & ": ohne Artikelnummer"
        ElseIf ArtikelDoppelt(strNummer, lngZeile) Then
            Mangel "Zeile " & lngZeile & ": """ & strNummer & """ doppelt"
        End If
    Next lngZeile
End Sub

Private Sub PrüfeLieferanten()
    Dim objArtikel As clsArtikel
    Dim udtLieferant As tLieferant

    For Each objArtikel In gobjLager
        If Not LieferantLesen(objArtikel.LieferantNr, udtLieferant) Then
            Mangel objArtikel.Nummer & ": Lieferant " & objArtikel.LieferantNr & " fehlt"
        ElseIf udtLieferant.Gesperrt And objArtikel.UnterMindestbestand Then
            Mangel objArtikel.Nummer & ": Lieferant '" & udtLieferant.Name & "' ist gesperrt"
        End If
    Next objArtikel
End Sub

Private Sub PrüfeBuchungen()
    Dim lngZeile As Long
    Dim datVorher As Date

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        With Tabelle2
            If Not gobjLager.Vorhanden(TextAus(.Cells(lngZeile, suArtikel).Value)) Then
                Mangel "Buchung " & .Cells(lngZeile, suNummer).Value & ": Artikel fehlt"
            End If
            If BuchungsartAus(TextAus(.Cells(lngZeile, suArt).Value)) = baUnbekannt Then
                Mangel "Buchung " & .Cells(lngZeile, suNummer).Value & ": Art '" & .Cells(lngZeile, suArt).Value & "'"
            End If
            If IsDate(.Cells(lngZeile, suDatum).Value) Then
                If .Cells(lngZeile, suDatum).Value < datVorher Then
                    Mangel "Buchung " & .Cells(lngZeile, suNummer).Value & ": Datum liegt vor dem der Buchung davor"
                End If
                datVorher = .Cells(lngZeile, suDatum).Value
            Else
                Mangel "Buchung " & .Cells(lngZeile, suNummer).Value & ": ohne Datum"
            End If
        End With
    Next lngZeile
End Sub

Private Sub PrüfePreise()
    Dim objArtikel As clsArtikel

    For Each objArtikel In gobjLager
        Select Case objArtikel.Preis
            Case Is < 0: Mangel objArtikel.Nummer & ": Preis negativ"
            Case 0: If objArtikel.Menge > 0 Then Mangel objArtikel.Nummer & ": Bestand ohne Preis"
            Case Is > 10000: Mangel objArtikel.Nummer & ": Preis über 10.000 € (Komma vergessen ?)"
        End Select
    Next objArtikel
End Sub
