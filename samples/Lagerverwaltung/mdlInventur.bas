Attribute VB_Name = "mdlInventur"
Option Explicit

' Inventur: z‰hlen, vergleichen, Abweichungen buchen

Private mudtZ‰hlung() As tZ‰hlung
Private mlngAnzahl As Long
Private mblnL‰uft As Boolean
Private mdatBeginn As Date

Public Function InventurL‰uft() As Boolean
    InventurL‰uft = mblnL‰uft
End Function

Public Sub InventurBeginnen()
    Dim objArtikel As clsArtikel

    If mblnL‰uft Then
        MsgBox "Es l‰uft schon eine Inventur, begonnen am " & Format$(mdatBeginn, cDatumFormat) & ".", _
               vbExclamation, cProgramm
        Exit Sub
    End If
    If gobjLager.Anzahl = 0 Then Err.Raise cFehlerInventur, "mdlInventur", "Es gibt keine Artikel."
    
    ReDim mudtZ‰hlung(1 To gobjLager.Anzahl)
    mlngAnzahl = 0
    For Each objArtikel In gobjLager
        mlngAnzahl = mlngAnzahl + 1
        mudtZ‰hlung(mlngAnzahl).ArtikelNr = objArtikel.Nummer
        mudtZ‰hlung(mlngAnzahl).Soll = objArtikel.Menge
    Next objArtikel
    mdatBeginn = Now
    mblnL‰uft = True
    ProtokollSchreiben psHinweis, "Inventur begonnen, " & mlngAnzahl & " Artikel"
    frmInventur.Show vbModeless
End Sub

' Tr‰gt eine Z‰hlung ein. False, wenn es den Artikel nicht gibt.
Public Function Z‰hlungEintragen(ByVal strNummer As String, ByVal dblIst As Double, ByVal strZ‰hler As String) As Boolean
    Dim i As Long

    For i = 1 To mlngAnzahl
        With mudtZ‰hlung(i)
            If .ArtikelNr = UCase$(strNummer) Then
                If .Gez‰hlt And .Ist <> dblIst Then
                    If MsgBox("Schon gez‰hlt von " & .Z‰hler & ": " & .Ist & vbCrLf & "‹berschreiben ?", _
                              vbQuestion Or vbYesNo, cProgramm) = vbNo Then Exit Function
                End If
                .Ist = dblIst
                .Gez‰hlt = True
                .Z‰hler = strZ‰hler
                .Zeitpunkt = Now
                Z‰hlungEintragen = True
                Exit For
            End If
        End With
    Next i
End Function

Public Function Z‰hlungOffen() As Long
    Dim i As Long
    
    For i = 1 To mlngAnzahl
        If Not mudtZ‰hlung(i).Gez‰hlt Then Z‰hlungOffen = Z‰hlungOffen + 1
    Next i
End Function

Public Sub InventurAbschlieﬂen()
    Dim i As Long
    Dim lngGebucht As Long
    Dim lngOffen As Long

    If Not mblnL‰uft Then Exit Sub
    lngOffen = Z‰hlungOffen()
    If lngOffen > 0 Then
        If MsgBox(lngOffen & " Artikel sind noch nicht gez‰hlt. Trotzdem abschlieﬂen ?", _
                  vbQuestion Or vbYesNo Or vbDefaultButton2, cProgramm) = vbNo Then Exit Sub
    End If
    
    On Error GoTo Fehler
    For i = 1 To mlngAnzahl
        With mudtZ‰hlung(i)
            If .Gez‰hlt Then
                If .Ist <> .Soll Then
                    If Buchen(.ArtikelNr, baInventur, .Ist - .Soll, "INV" & Format$(mdatBeginn, "yymmdd"), _
                              "gez‰hlt von " & .Z‰hler) Then lngGebucht = lngGebucht + 1
                End If
                Tabelle1.Cells(ZeileDesArtikels(.ArtikelNr), sbGez‰hlt).Value = .Zeitpunkt
            End If
        End With
    Next i
    mblnL‰uft = False
    Unload frmInventur
    MsgBox "Inventur abgeschlossen: " & lngGebucht & " Abweichungen gebucht.", vbInformation, cProgramm
    If lngGebucht > 0 Then mdlBericht.BerichtInventurdifferenzen
    Exit Sub

Fehler:
    FehlerMelden "mdlInventur.InventurAbschlieﬂen", Err.Number, Err.Description
    Resume Next
End Sub

Public Sub InventurAbbrechen()
    mblnL‰uft = False
    mlngAnzahl = 0
    Erase mudtZ‰hlung
    ProtokollSchreiben psWarnung, "Inventur abgebrochen"
End Sub

' Z‰hlliste zum Ausdrucken, ohne Sollbest‰nde
Public Sub Z‰hllisteDrucken()
    Dim wksListe As Worksheet
    Dim lngZeile As Long
    Dim lngQuelle As Long

    Set wksListe = ThisWorkbook.Worksheets.Add
    wksListe.Range("A1:E1").Value = Array("Lagerort", "Artikel", "Bezeichnung", "Einheit", "Gez‰hlt")
    lngZeile = 1
    For lngQuelle = cErsteZeile To LetzteZeile()
        lngZeile = lngZeile + 1
        wksListe.Cells(lngZeile, 1).Value = Tabelle1.Cells(lngQuelle, sbLagerort).Value
        wksListe.Cells(lngZeile, 2).Value = Tabelle1.Cells(lngQuelle, sbNummer).Value
        wksListe.Cells(lngZeile, 3).Value = Tabelle1.Cells(lngQuelle, sbBezeichnung).Value
        wksListe.Cells(lngZeile, 4).Value = Tabelle1.Cells(lngQuelle, sbEinheit).Value
        wksListe.Cells(lngZeile, 5).Borders(xlEdgeBottom).LineStyle = xlContinuous
    Next lngQuelle
    wksListe.Range("A1").CurrentRegion.Sort Key1:=wksListe.Range("A1"), Header:=xlYes
    With wksListe.PageSetup
        .Orientation = xlPortrait
        .CenterHeader = "&""Arial,Fett""Z‰hlliste " & Format$(Date, cDatumFormat)
        .RightFooter = "Seite &P von &N"
        .PrintTitleRows = "$1:$1"
    End With
    wksListe.PrintOut Preview:=True
    Application.DisplayAlerts = False
    wksListe.Delete
    Application.DisplayAlerts = True
End Sub

' Gleicher Name wie in mdlBestand, z‰hlt aber auch Zeilen ohne Nummer
Private Function LetzteZeile() As Long
    LetzteZeile = Application.WorksheetFunction.Max( _
                      Tabelle1.Cells(Tabelle1.Rows.Count, sbNummer).End(xlUp).Row, _
                      Tabelle1.Cells(Tabelle1.Rows.Count, sbBezeichnung).End(xlUp).Row, _
                      cErsteZeile - 1)
End Function

Private Function ZeileDesArtikels(ByVal strNummer As String) As Long
    ZeileDesArtikels = gobjLager.Suchen(strNummer).Zeile
End Function
