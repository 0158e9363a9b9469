Attribute VB_Name = "mdlArtikel"
Option Explicit
Option Compare Text

' Artikel anlegen, ändern, suchen

Public Sub ArtikelNeu()
    Dim objArtikel As New clsArtikel

    On Error GoTo Fehler
    objArtikel.Nummer = NächsteArtikelnummer("NEU")
    If frmArtikel.Bearbeiten(objArtikel) Then
        gobjLager.Hinzufügen objArtikel
        ProtokollSchreiben psHinweis, "Artikel " & objArtikel.Nummer & " angelegt"
    End If
    Exit Sub

Fehler:
    FehlerMelden "mdlArtikel.ArtikelNeu", Err.Number, Err.Description
End Sub

Public Sub ArtikelKopieren()
    Dim objAlt As clsArtikel
    Dim objNeu As clsArtikel

    Set objAlt = ArtikelDerZeile(ActiveCell.Row)
    If objAlt Is Nothing Then Exit Sub
    Set objNeu = objAlt.Kopie()
    objNeu.Nummer = NächsteArtikelnummer(Left$(objAlt.Nummer, 3))
    If frmArtikel.Bearbeiten(objNeu) Then gobjLager.Hinzufügen objNeu
End Sub

Public Sub ArtikelLöschen()
    Dim objArtikel As clsArtikel

    Set objArtikel = ArtikelDerZeile(ActiveCell.Row)
    If objArtikel Is Nothing Then Exit Sub
    If MsgBox("Artikel """ & objArtikel.Bezeichnung & """ wirklich löschen ?", _
              vbQuestion Or vbYesNo Or vbDefaultButton2, cProgramm) <> vbYes Then Exit Sub

    On Error GoTo Fehler
    gobjLager.Entfernen objArtikel.Nummer
    Exit Sub

Fehler:
    FehlerMelden "mdlArtikel.ArtikelLöschen", Err.Number, Err.Description
End Sub

Public Sub ArtikelSuchen()
    Dim strText As String
    Dim lngZeile As Long

    strText = InputBox("Nummer oder Teil der Bezeichnung:", cProgramm)
    If Len(strText) = 0 Then Exit Sub
    lngZeile = ZeileZumText(strText)
    If lngZeile = 0 Then
        MsgBox "Kein Artikel mit '" & strText & "' gefunden.", vbInformation, cProgramm
    Else
        Application.Goto Tabelle1.Cells(lngZeile, sbNummer), True
    End If
End Sub

' Gibt es die Nummer noch in einer anderen Zeile ?
Public Function ArtikelDoppelt(ByVal strNummer As String, ByVal lngZeile As Long) As Boolean
    Dim lngPrüf As Long

    If Len(strNummer) = 0 Then Exit Function
    For lngPrüf = cErsteZeile To LetzteDatenzeile(Tabelle1)
        If lngPrüf <> lngZeile Then
            If TextAus(Tabelle1.Cells(lngPrüf, sbNummer).Value) = strNummer Then
                ArtikelDoppelt = True
                Exit Function
            End If
        End If
    Next lngPrüf
End Function

Public Function ArtikelDerZeile(ByVal lngZeile As Long) As clsArtikel
    If lngZeile < cErsteZeile Then Exit Function
    Set ArtikelDerZeile = gobjLager.Suchen(TextAus(Tabelle1.Cells(lngZeile, sbNummer).Value))
End Function

Public Function NächsteArtikelnummer(ByVal strGruppe As String) As String
    Dim objArtikel As clsArtikel
    Dim lngMax As Long

    For Each objArtikel In gobjLager
        If Left$(objArtikel.Nummer, 3) = strGruppe Then
            If Val(Mid$(objArtikel.Nummer, 5)) > lngMax Then lngMax = Val(Mid$(objArtikel.Nummer, 5))
        End If
    Next objArtikel
    NächsteArtikelnummer = UCase$(strGruppe) & "-" & Format$(lngMax + 1, "0000")
End Function

' Erste Zeile, deren Nummer oder Bezeichnung den Text enthält; ab der aktiven Zelle, dann von vorn
Private Function ZeileZumText(ByVal strText As String) As Long
    Dim lngLetzte As Long, lngStart As Long, lngZeile As Long, i As Long

    lngLetzte = LetzteDatenzeile(Tabelle1)
    If lngLetzte < cErsteZeile Then Exit Function
    lngStart = cErsteZeile
    If ActiveSheet Is Tabelle1 And ActiveCell.Row >= cErsteZeile Then lngStart = ActiveCell.Row + 1
    For i = 0 To lngLetzte - cErsteZeile
        lngZeile = cErsteZeile + (lngStart - cErsteZeile + i) Mod (lngLetzte - cErsteZeile + 1)
        If InStr(1, TextAus(Tabelle1.Cells(lngZeile, sbNummer).Value) & "|" & _
                    TextAus(Tabelle1.Cells(lngZeile, sbBezeichnung).Value), strText) > 0 Then
            ZeileZumText = lngZeile
            Exit For
        End If
    Next i
End Function

' Alle Gruppen, sortiert und ohne Wiederholung
Public Function Artikelgruppen() As Variant
    Dim colGruppen As New Collection
    Dim strFeld() As String
    Dim objArtikel As clsArtikel
    Dim i As Long

    On Error Resume Next                    ' doppelte Schlüssel fallen weg
    For Each objArtikel In gobjLager
        colGruppen.Add objArtikel.Gruppe, objArtikel.Gruppe
    Next objArtikel
    On Error GoTo 0
    If colGruppen.Count = 0 Then
        Artikelgruppen = Array()
        Exit Function
    End If
    ReDim strFeld(0 To colGruppen.Count - 1)
    For i = 1 To colGruppen.Count
        strFeld(i - 1) = colGruppen(i)
    Next i
    TexteSortieren strFeld, 0, UBound(strFeld)
    Artikelgruppen = strFeld
End Function

' Übernahme aus der alten Mappe (bis Version 2). Nur noch zum Nachschlagen.
Public Sub AlteÜbernahme()
    Dim wkbAlt As Workbook
    Dim lngZeile As Long

    Set wkbAlt = Workbooks.Open(ThisWorkbook.Path & "\Lager_alt.xls", ReadOnly:=True)
    With wkbAlt.Worksheets("Bestand")
        For lngZeile = 2 To .Cells(.Rows.Count, 1).End(xlUp).Row
            If Len(.Cells(lngZeile, 1).Value) > 0 Then
                Tabelle1.Rows(LetzteDatenzeile(Tabelle1) + 1).Value = .Rows(lngZeile).Value
            End If
        Next lngZeile
    End With
    wkbAlt.Close SaveChanges:=False
End Sub
