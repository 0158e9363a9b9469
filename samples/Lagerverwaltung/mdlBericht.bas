Attribute VB_Name = "mdlBericht"
Option Explicit
Option Compare Text

' ---------------------------------------------------------------------------
' Alle Berichte. Jeder Bericht ist eine öffentliche Routine ohne Parameter, die "Bericht" und dann den Namen
' trägt: die Auswahlliste auf dem Blatt "Übersicht" ruft sie über BerichtStarten nach ihrem Namen auf.
'
' Aufbau eines Berichts:   BerichtBeginnen - SpalteHinzufügen ... - KopfSchreiben
'                          ZeileSchreiben ... (je Datensatz)
'                          SummenSchreiben - BerichtAbschließen
' ---------------------------------------------------------------------------

Private Const cBlattName As String = "Bericht"
Private Const cKopfZeile As Long = 4
Private Const cMaxSpalten As Long = 20
Private Const cHellgrau As Long = 15921906
Private Const cKeineDaten As String = "Für diesen Bericht gibt es keine Daten."

Private mwksBericht As Worksheet
Private mudtSpalte(1 To cMaxSpalten) As tBerichtSpalte
Private mlngSpalten As Long
Private mlngZeile As Long
Private mlngGruppenBeginn As Long
Private mstrTitel As String
Private mlngStart As Long

' ===========================================================================
' Gerüst
' ===========================================================================

Private Sub BerichtBeginnen(ByVal strTitel As String)
    mlngStart = GetTickCount()
    mstrTitel = strTitel
    mlngSpalten = 0
    mlngZeile = cKopfZeile
    mlngGruppenBeginn = cKopfZeile + 1
    Application.ScreenUpdating = False
    Application.Cursor = xlWait
    If BlattVorhanden(cBlattName) Then
        Set mwksBericht = ThisWorkbook.Worksheets(cBlattName)
        mwksBericht.Cells.Clear
        Do While mwksBericht.ChartObjects.Count > 0
            mwksBericht.ChartObjects(1).Delete
        Loop
    Else
        Set mwksBericht = ThisWorkbook.Worksheets.Add(After:=ThisWorkbook.Worksheets(ThisWorkbook.Worksheets.Count))
        mwksBericht.Name = cBlattName
    End If
    With mwksBericht.Range("A1")
        .Value = strTitel
        .Font.Size = 14
        .Font.Bold = True
    End With
    mwksBericht.Range("A2").Value = "Stand: " & Format$(Now, "dd.mm.yyyy hh:nn") & ", " & BenutzerName()
End Sub

Private Sub SpalteHinzufügen(ByVal strTitel As String, ByVal dblBreite As Double, _
                             Optional ByVal strFormat As String = "@", _
                             Optional ByVal blnSumme As Boolean = False)
    If mlngSpalten = cMaxSpalten Then Exit Sub
    mlngSpalten = mlngSpalten + 1
    With mudtSpalte(mlngSpalten)
        .Titel = strTitel
        .Breite = dblBreite
        .Format = strFormat
        .Summe = blnSumme
    End With
End Sub

Private Sub KopfSchreiben()
    Dim i As Long

    For i = 1 To mlngSpalten
        With mwksBericht.Columns(i)
            .ColumnWidth = mudtSpalte(i).Breite
            If mudtSpalte(i).Format <> "@" Then .NumberFormat = mudtSpalte(i).Format
        End With
        With mwksBericht.Cells(cKopfZeile, i)
            .Value = mudtSpalte(i).Titel
            .NumberFormat = "@"
            .Font.Bold = True
            .Interior.Color = cHellgrau
            .Borders(xlEdgeBottom).LineStyle = xlContinuous
            If mudtSpalte(i).Summe Then .HorizontalAlignment = xlRight
        End With
    Next i
End Sub

Private Sub ZeileSchreiben(ParamArray varWerte() As Variant)
    Dim i As Long

    mlngZeile = mlngZeile + 1
    For i = 0 To UBound(varWerte)
        mwksBericht.Cells(mlngZeile, i + 1).Value = varWerte(i)
    Next i
    If mlngZeile Mod 50 = 0 Then Application.StatusBar = mstrTitel & ": " & mlngZeile - cKopfZeile & " Zeilen"
End Sub

' Summe über die Zeilen seit der letzten Zwischensumme
Private Sub ZwischensummeSchreiben(ByVal strText As String)
    Dim i As Long

    If mlngZeile < mlngGruppenBeginn Then Exit Sub
    mlngZeile = mlngZeile + 1
    mwksBericht.Cells(mlngZeile, 1).Value = strText
    For i = 2 To mlngSpalten
        If mudtSpalte(i).Summe Then
            mwksBericht.Cells(mlngZeile, i).FormulaR1C1 = _
                "=SUBTOTAL(9,R" & mlngGruppenBeginn & "C:R" & mlngZeile - 1 & "C)"
        End If
    Next i
    mwksBericht.Rows(mlngZeile).Font.Italic = True
    mlngGruppenBeginn = mlngZeile + 1
End Sub

Private Sub SummenSchreiben()
    Dim i As Long
    Dim lngLetzte As Long

    If mlngZeile = cKopfZeile Then Exit Sub
    lngLetzte = mlngZeile
    mlngZeile = mlngZeile + 1
    mwksBericht.Cells(mlngZeile, 1).Value = "Summe"
    For i = 2 To mlngSpalten
        If mudtSpalte(i).Summe Then
            mwksBericht.Cells(mlngZeile, i).FormulaR1C1 = "=SUBTOTAL(9,R" & cKopfZeile + 1 & "C:R" & lngLetzte & "C)"
        End If
    Next i
    With mwksBericht.Range(mwksBericht.Cells(mlngZeile, 1), mwksBericht.Cells(mlngZeile, mlngSpalten))
        .Font.Bold = True
        .Borders(xlEdgeTop).LineStyle = xlContinuous
        .Borders(xlEdgeBottom).LineStyle = xlDouble
    End With
End Sub

' Absteigend nach einer Spalte, vor den Summen aufrufen
Private Sub ZeilenSortieren(ByVal lngSpalte As Long, Optional ByVal blnAbsteigend As Boolean = True)
    If mlngZeile <= cKopfZeile + 1 Then Exit Sub
    With mwksBericht
        .Range(.Cells(cKopfZeile + 1, 1), .Cells(mlngZeile, mlngSpalten)).Sort _
            Key1:=.Cells(cKopfZeile + 1, lngSpalte), _
            Order1:=IIf(blnAbsteigend, xlDescending, xlAscending), _
            Header:=xlNo
    End With
End Sub

Private Sub ZeilenBegrenzen(ByVal lngAnzahl As Long)
    Dim lngLetzte As Long

    lngLetzte = cKopfZeile + lngAnzahl
    If mlngZeile <= lngLetzte Then Exit Sub
    mwksBericht.Rows(lngLetzte + 1 & ":" & mlngZeile).Delete
    mlngZeile = lngLetzte
End Sub

Private Sub BerichtAbschließen()
    If mlngZeile = cKopfZeile Then mwksBericht.Cells(cKopfZeile + 1, 1).Value = cKeineDaten
    With mwksBericht.PageSetup
        .PrintTitleRows = "$1:$" & cKopfZeile
        .CenterFooter = "&""Arial""&8" & Replace(mstrTitel, "&", "&&")
        .RightFooter = "&8Seite &P von &N"
        .Zoom = False
        .FitToPagesWide = 1
        .FitToPagesTall = False
        If mlngSpalten > 7 Then .Orientation = xlLandscape Else .Orientation = xlPortrait
    End With
    mwksBericht.Activate
    Application.ScreenUpdating = True
    Application.Cursor = xlDefault
    Application.StatusBar = False
    ProtokollSchreiben psAblauf, "Bericht '" & mstrTitel & "': " & mlngZeile - cKopfZeile & " Zeilen in " & _
                                 GetTickCount() - mlngStart & " ms"
End Sub

Private Sub BerichtAbbrechen(ByVal strOrt As String)
    Application.ScreenUpdating = True
    Application.Cursor = xlDefault
    Application.StatusBar = False
    FehlerMelden "mdlBericht." & strOrt, Err.Number, Err.Description
End Sub

' Öffentlicher Name wie in mdlEtikett: immer mit Modulname aufrufen
Public Sub Drucken()
    If mwksBericht Is Nothing Then
        MsgBox "Bitte erst einen Bericht erstellen.", vbInformation, cProgramm
    Else
        mwksBericht.PrintOut Preview:=True
    End If
End Sub

' Alle Tagesberichte nacheinander, ohne Rückfragen. Wird abends vom Zeitplan gestartet.
Public Sub BerichtTagesende()
    Dim varName As Variant

    gblnStillerModus = True
    For Each varName In Array("Tagesbuchungen", "Korrekturen", "Mindestbestand")
        Application.Run "mdlBericht.Bericht" & varName
        mdlBericht.Drucken
    Next varName
    gblnStillerModus = False
End Sub

' ===========================================================================
' Zugriff auf die Buchungen
' ===========================================================================

Private Function BuchungDatum(ByVal lngZeile As Long) As Date
    If IsDate(Tabelle2.Cells(lngZeile, suDatum).Value) Then BuchungDatum = CDate(Tabelle2.Cells(lngZeile, suDatum).Value)
End Function

Private Function BuchungArt(ByVal lngZeile As Long) As Buchungsart
    BuchungArt = BuchungsartAus(TextAus(Tabelle2.Cells(lngZeile, suArt).Value))
End Function

Private Function BuchungMenge(ByVal lngZeile As Long) As Double
    BuchungMenge = ZahlAus(Tabelle2.Cells(lngZeile, suMenge).Value)
End Function

Private Function BuchungFeld(ByVal lngZeile As Long, ByVal enmSpalte As SpalteBuchung) As String
    BuchungFeld = TextAus(Tabelle2.Cells(lngZeile, enmSpalte).Value)
End Function

Private Function BuchungArtikel(ByVal lngZeile As Long) As clsArtikel
    Set BuchungArtikel = gobjLager.Suchen(BuchungFeld(lngZeile, suArtikel))
End Function

Private Function BuchungWert(ByVal lngZeile As Long) As Currency
    Dim objArtikel As clsArtikel

    Set objArtikel = BuchungArtikel(lngZeile)
    If Not objArtikel Is Nothing Then BuchungWert = BuchungMenge(lngZeile) * objArtikel.Preis
End Function

Private Function BuchungBezeichnung(ByVal lngZeile As Long) As String
    Dim objArtikel As clsArtikel

    Set objArtikel = BuchungArtikel(lngZeile)
    If objArtikel Is Nothing Then
        BuchungBezeichnung = "(Artikel gelöscht)"
    Else
        BuchungBezeichnung = objArtikel.Bezeichnung
    End If
End Function

Private Function VerbrauchSeit(ByVal strNummer As String, ByVal datVon As Date) As Double
    Dim lngZeile As Long

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungFeld(lngZeile, suArtikel) = strNummer Then
            If BuchungDatum(lngZeile) >= datVon And BuchungArt(lngZeile) = baAusgang Then
                VerbrauchSeit = VerbrauchSeit - BuchungMenge(lngZeile)
            End If
        End If
    Next lngZeile
End Function

' Summen je Schlüssel; die Schlüssel stehen in einem Dictionary
Private Sub SummeErhöhen(ByVal objSummen As Object, ByVal strSchlüssel As String, ByVal dblWert As Double)
    If Len(strSchlüssel) = 0 Then strSchlüssel = "(ohne)"
    If objSummen.Exists(strSchlüssel) Then
        objSummen(strSchlüssel) = objSummen(strSchlüssel) + dblWert
    Else
        objSummen.Add strSchlüssel, dblWert
    End If
End Sub

Private Function DatumFragen(ByVal strFrage As String, ByVal datVorgabe As Date) As Date
    Dim strEingabe As String

    DatumFragen = datVorgabe
    If gblnStillerModus Then Exit Function
    Do
        strEingabe = InputBox(strFrage, cProgramm, Format$(datVorgabe, cDatumFormat))
        If Len(strEingabe) = 0 Then Err.Raise cFehlerBasis, "mdlBericht", "Abgebrochen."
        If IsDate(strEingabe) Then Exit Do
        MsgBox "'" & strEingabe & "' ist kein Datum.", vbExclamation, cProgramm
    Loop
    DatumFragen = CDate(strEingabe)
End Function

' Säulen neben die Tabelle stellen; Beschriftung aus Spalte 1
Private Sub DiagrammAnfügen(ByVal lngSpalte As Long)
    Dim objDiagramm As ChartObject

    If mlngZeile <= cKopfZeile + 1 Then Exit Sub
    With mwksBericht
        Set objDiagramm = .ChartObjects.Add( _
            .Columns(mlngSpalten + 2).Left, _
            .Rows(cKopfZeile).Top, _
            420, _
            260)
        objDiagramm.Chart.ChartType = xlColumnClustered
        objDiagramm.Chart.SetSourceData Union( _
            .Range(.Cells(cKopfZeile, 1), .Cells(mlngZeile, 1)), _
            .Range(.Cells(cKopfZeile, lngSpalte), .Cells(mlngZeile, lngSpalte)))
        objDiagramm.Chart.HasLegend = False
    End With
End Sub

' ===========================================================================
' Berichte über den Bestand
' ===========================================================================

' Alle Artikel mit Bestand und Wert
Public Sub BerichtBestandsliste()
    Dim objArtikel As clsArtikel

    On Error GoTo Fehler
    BerichtBeginnen "Bestandsliste"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Gruppe", 14
    SpalteHinzufügen "Ort", 8
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Einheit", 8
    SpalteHinzufügen "Preis", 12, cEuroFormat
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    KopfSchreiben

    For Each objArtikel In gobjLager
        ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, objArtikel.Gruppe, objArtikel.Lagerort, _
                       objArtikel.Menge, objArtikel.Einheit, objArtikel.Preis, objArtikel.Wert
    Next objArtikel
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtBestandsliste"
End Sub

' Was nachbestellt werden muss; die größte Lücke zuerst
Public Sub BerichtMindestbestand()
    Dim objArtikel As clsArtikel

    On Error GoTo Fehler
    BerichtBeginnen "Artikel unter Mindestbestand"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Mindest", 12, cZahlFormat
    SpalteHinzufügen "fehlt", 12, cZahlFormat
    SpalteHinzufügen "Vorschlag", 12, cZahlFormat
    SpalteHinzufügen "Lieferant", 28
    KopfSchreiben

    For Each objArtikel In gobjLager
        If objArtikel.UnterMindestbestand Then
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, objArtikel.Menge, _
                           objArtikel.Mindestbestand, objArtikel.Mindestbestand - objArtikel.Menge, _
                           objArtikel.Bestellvorschlag(), LieferantName(objArtikel.LieferantNr)
        End If
    Next objArtikel
    ZeilenSortieren 5
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtMindestbestand"
End Sub

' Artikel, von denen nichts mehr da ist, obwohl sie einen Mindestbestand haben
Public Sub BerichtNullbestände()
    Dim objArtikel As clsArtikel

    On Error GoTo Fehler
    BerichtBeginnen "Artikel ohne Bestand"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Ort", 8
    SpalteHinzufügen "Mindest", 12, cZahlFormat
    SpalteHinzufügen "letzte Bewegung", 16, cDatumFormat
    KopfSchreiben

    For Each objArtikel In gobjLager
        If objArtikel.Menge = 0 And objArtikel.Mindestbestand > 0 Then
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, objArtikel.Lagerort, _
                           objArtikel.Mindestbestand, objArtikel.LetzteBewegung
        End If
    Next objArtikel
    ZeilenSortieren 5, False
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtNullbestände"
End Sub

' Artikel mit Bestand, die sich seit einem Stichtag nicht bewegt haben
' Vorgabe für den Stichtag: vor einem Jahr
Public Sub BerichtLadenhüter()
    Dim objArtikel As clsArtikel
    Dim datGrenze As Date

    On Error GoTo Fehler
    datGrenze = DatumFragen("Keine Bewegung seit:", DateAdd("yyyy", -1, Date))
    BerichtBeginnen "Ladenhüter seit " & Format$(datGrenze, cDatumFormat)
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "letzte Bewegung", 16, cDatumFormat
    SpalteHinzufügen "Tage", 8, "0"
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    KopfSchreiben

    For Each objArtikel In gobjLager
        If objArtikel.Menge > 0 And objArtikel.LetzteBewegung < datGrenze Then
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, objArtikel.LetzteBewegung, _
                           CLng(Date - objArtikel.LetzteBewegung), objArtikel.Menge, objArtikel.Wert
        End If
    Next objArtikel
    ZeilenSortieren 6
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtLadenhüter"
End Sub

' Rangliste nach Lagerwert
Public Sub BerichtTeuersteArtikel()
    Dim objArtikel As clsArtikel

    On Error GoTo Fehler
    BerichtBeginnen "Die 25 wertvollsten Artikel"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Preis", 12, cEuroFormat
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    KopfSchreiben

    For Each objArtikel In gobjLager
        If objArtikel.Wert > 0 Then
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, objArtikel.Menge, objArtikel.Preis, _
                           objArtikel.Wert
        End If
    Next objArtikel
    ZeilenSortieren 5
    ZeilenBegrenzen 25
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtTeuersteArtikel"
End Sub

' Bestand ohne Preis verfälscht den Lagerwert
Public Sub BerichtOhnePreis()
    Dim objArtikel As clsArtikel

    On Error GoTo Fehler
    BerichtBeginnen "Artikel ohne Preis"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Gruppe", 14
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Lieferant", 28
    KopfSchreiben

    For Each objArtikel In gobjLager
        If objArtikel.Preis = 0 And objArtikel.Menge > 0 Then
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, objArtikel.Gruppe, objArtikel.Menge, _
                           LieferantName(objArtikel.LieferantNr)
        End If
    Next objArtikel
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtOhnePreis"
End Sub

' Diese Artikel findet im Regal niemand.
Public Sub BerichtOhneLagerort()
    Dim objArtikel As clsArtikel

    On Error GoTo Fehler
    BerichtBeginnen "Artikel ohne Lagerort"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Einheit", 8
    KopfSchreiben

    For Each objArtikel In gobjLager
        If Len(objArtikel.Lagerort) = 0 Then
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, objArtikel.Menge, objArtikel.Einheit
        End If
    Next objArtikel
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtOhneLagerort"
End Sub

' Für diese Artikel ist ein anderer Lieferant zu suchen.
Public Sub BerichtGesperrteLieferanten()
    Dim objArtikel As clsArtikel
    Dim udtLieferant As tLieferant

    On Error GoTo Fehler
    BerichtBeginnen "Artikel gesperrter Lieferanten"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Lieferant", 28
    SpalteHinzufügen "Ort", 20
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Mindest", 12, cZahlFormat
    KopfSchreiben

    For Each objArtikel In gobjLager
        If Not LieferantLesen(objArtikel.LieferantNr, udtLieferant) Then udtLieferant.Gesperrt = False
        If udtLieferant.Gesperrt Then
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, udtLieferant.Name, udtLieferant.Ort, _
                           objArtikel.Menge, objArtikel.Mindestbestand
        End If
    Next objArtikel
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtGesperrteLieferanten"
End Sub

' Für den Aushang am Tresen: ohne Bestände, nach Bezeichnung
Public Sub BerichtPreisliste()
    Dim objArtikel As clsArtikel

    On Error GoTo Fehler
    BerichtBeginnen "Preisliste " & Year(Date)
    SpalteHinzufügen "Bezeichnung", 40
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Einheit", 8
    SpalteHinzufügen "netto", 12, cEuroFormat
    SpalteHinzufügen "brutto", 12, cEuroFormat
    KopfSchreiben

    For Each objArtikel In gobjLager
        If objArtikel.Preis > 0 Then
            ZeileSchreiben objArtikel.Bezeichnung, objArtikel.Nummer, objArtikel.Einheit, objArtikel.Preis, _
                           CCur(objArtikel.Preis * (1 + EinstellungLesenZahl("Steuersatz", 19) / 100))
        End If
    Next objArtikel
    ZeilenSortieren 1, False
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtPreisliste"
End Sub

' Lagerwert mit Abschlag nach Alter der letzten Bewegung:
' über ein Jahr 25 %, über zwei Jahre 50 %, über drei Jahre 75 %
Public Sub BerichtInventurwerte()
    Dim objArtikel As clsArtikel
    Dim lngJahre As Long
    Dim dblAbschlag As Double

    On Error GoTo Fehler
    BerichtBeginnen "Inventurwerte zum " & Format$(DateSerial(Year(Date), 12, 31), cDatumFormat)
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Alter", 8, "0"
    SpalteHinzufügen "Abschlag", 10, "0%"
    SpalteHinzufügen "angesetzt", 14, cEuroFormat, True
    KopfSchreiben

    For Each objArtikel In gobjLager
        If objArtikel.Menge > 0 Then
            lngJahre = Int((Date - objArtikel.LetzteBewegung) / 365)
            Select Case lngJahre
                Case 0: dblAbschlag = 0
                Case 1: dblAbschlag = 0.25
                Case 2: dblAbschlag = 0.5
                Case Else: dblAbschlag = 0.75
            End Select
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, objArtikel.Wert, lngJahre, dblAbschlag, _
                           CCur(objArtikel.Wert * (1 - dblAbschlag))
        End If
    Next objArtikel
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtInventurwerte"
End Sub

' Bestand geteilt durch den mittleren Verbrauch der letzten 90 Tage
Public Sub BerichtReichweite()
    Dim objArtikel As clsArtikel
    Dim udtLieferant As tLieferant
    Dim dblProTag As Double
    Dim dblTage As Double

    On Error GoTo Fehler
    BerichtBeginnen "Reichweite der Bestände in Tagen"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Verbrauch/Tag", 14, cZahlFormat
    SpalteHinzufügen "Reichweite", 12, "0"
    SpalteHinzufügen "Lieferzeit", 12, "0"
    SpalteHinzufügen "Hinweis", 20
    KopfSchreiben

    For Each objArtikel In gobjLager
        dblProTag = VerbrauchSeit(objArtikel.Nummer, Date - 90) / 90
        If dblProTag > 0 Then
            dblTage = objArtikel.Menge / dblProTag
            If Not LieferantLesen(objArtikel.LieferantNr, udtLieferant) Then udtLieferant.Lieferzeit = MittlereLieferzeit()
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, objArtikel.Menge, dblProTag, dblTage, _
                           udtLieferant.Lieferzeit, _
                           IIf(dblTage < udtLieferant.Lieferzeit, "sofort bestellen", cLeer)
        End If
    Next objArtikel
    ZeilenSortieren 5, False
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtReichweite"
End Sub

' Verbrauch im Verhältnis zum Bestand; unter 1 liegt zu viel im Lager
Public Sub BerichtUmschlag()
    Dim objArtikel As clsArtikel
    Dim dblVerbrauch As Double

    On Error GoTo Fehler
    BerichtBeginnen "Umschlaghäufigkeit im laufenden Jahr"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Verbrauch", 12, cZahlFormat
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Umschlag", 12, "0.0"
    KopfSchreiben

    For Each objArtikel In gobjLager
        If objArtikel.Menge > 0 Then
            dblVerbrauch = VerbrauchSeit(objArtikel.Nummer, DateSerial(Year(Date), 1, 1))
            ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, dblVerbrauch, objArtikel.Menge, _
                           dblVerbrauch / objArtikel.Menge
        End If
    Next objArtikel
    ZeilenSortieren 5, False
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtUmschlag"
End Sub

' ===========================================================================
' Berichte über die Buchungen
' ===========================================================================

' Alles, was heute gebucht wurde
Public Sub BerichtTagesbuchungen()
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Buchungen vom " & Format$(Date, cDatumFormat)
    SpalteHinzufügen "Nr.", 8, "0"
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Art", 12
    SpalteHinzufügen "Menge", 12, cZahlFormat
    SpalteHinzufügen "Beleg", 16
    SpalteHinzufügen "Benutzer", 14
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If Int(BuchungDatum(lngZeile)) = Date Then
            ZeileSchreiben BuchungFeld(lngZeile, suNummer), BuchungDatum(lngZeile), _
                           BuchungFeld(lngZeile, suArtikel), BuchungBezeichnung(lngZeile), _
                           BuchungsartText(BuchungArt(lngZeile)), BuchungMenge(lngZeile), _
                           BuchungFeld(lngZeile, suBeleg), BuchungFeld(lngZeile, suBenutzer)
        End If
    Next lngZeile
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtTagesbuchungen"
End Sub

' Buchungen der laufenden Woche, Montag bis heute
Public Sub BerichtWochenbuchungen()
    Dim lngZeile As Long
    Dim datMontag As Date

    On Error GoTo Fehler
    datMontag = Date - Weekday(Date, vbMonday) + 1
    BerichtBeginnen "Buchungen der KW " & KalenderWoche(datMontag)
    SpalteHinzufügen "Nr.", 8, "0"
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Art", 12
    SpalteHinzufügen "Menge", 12, cZahlFormat
    SpalteHinzufügen "Beleg", 16
    SpalteHinzufügen "Benutzer", 14
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungDatum(lngZeile) >= datMontag Then
            ZeileSchreiben BuchungFeld(lngZeile, suNummer), BuchungDatum(lngZeile), _
                           BuchungFeld(lngZeile, suArtikel), BuchungBezeichnung(lngZeile), _
                           BuchungsartText(BuchungArt(lngZeile)), BuchungMenge(lngZeile), _
                           BuchungFeld(lngZeile, suBeleg), BuchungFeld(lngZeile, suBenutzer)
        End If
    Next lngZeile
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtWochenbuchungen"
End Sub

' Buchungen eines Monats; gefragt wird nach irgendeinem Tag darin
Public Sub BerichtMonatsbuchungen()
    Dim lngZeile As Long
    Dim datVon As Date, datBis As Date

    On Error GoTo Fehler
    datVon = DatumFragen("Ein Tag des Monats:", DateAdd("m", -1, Date))
    datVon = DateSerial(Year(datVon), Month(datVon), 1)
    datBis = DateAdd("m", 1, datVon)
    BerichtBeginnen "Buchungen " & Format$(datVon, "mmmm yyyy")
    SpalteHinzufügen "Nr.", 8, "0"
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Art", 12
    SpalteHinzufügen "Menge", 12, cZahlFormat
    SpalteHinzufügen "Beleg", 16
    SpalteHinzufügen "Benutzer", 14
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungDatum(lngZeile) >= datVon And BuchungDatum(lngZeile) < datBis Then
            ZeileSchreiben BuchungFeld(lngZeile, suNummer), BuchungDatum(lngZeile), _
                           BuchungFeld(lngZeile, suArtikel), BuchungBezeichnung(lngZeile), _
                           BuchungsartText(BuchungArt(lngZeile)), BuchungMenge(lngZeile), _
                           BuchungFeld(lngZeile, suBeleg), BuchungFeld(lngZeile, suBenutzer), _
                           BuchungWert(lngZeile)
        End If
    Next lngZeile
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtMonatsbuchungen"
End Sub

' Korrekturen und Stornos des laufenden Monats, für die Leitung
Public Sub BerichtKorrekturen()
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Korrekturbuchungen"
    SpalteHinzufügen "Nr.", 8, "0"
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Menge", 12, cZahlFormat
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Benutzer", 14
    SpalteHinzufügen "Text", 40
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baKorrektur And Month(BuchungDatum(lngZeile)) = Month(Date) Then
            ZeileSchreiben BuchungFeld(lngZeile, suNummer), BuchungDatum(lngZeile), _
                           BuchungFeld(lngZeile, suArtikel), BuchungMenge(lngZeile), BuchungWert(lngZeile), _
                           BuchungFeld(lngZeile, suBenutzer), BuchungFeld(lngZeile, suText)
        End If
    Next lngZeile
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtKorrekturen"
End Sub

' Buchungen aus Inventuren des laufenden Jahres
Public Sub BerichtInventurdifferenzen()
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Inventurdifferenzen " & Year(Date)
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Differenz", 12, cZahlFormat
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Text", 30
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baInventur And Year(BuchungDatum(lngZeile)) = Year(Date) Then
            ZeileSchreiben BuchungDatum(lngZeile), BuchungFeld(lngZeile, suArtikel), _
                           BuchungBezeichnung(lngZeile), BuchungMenge(lngZeile), BuchungWert(lngZeile), _
                           BuchungFeld(lngZeile, suText)
        End If
    Next lngZeile
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtInventurdifferenzen"
End Sub

' Eingänge mit Lieferant, zum Abgleich mit den Rechnungen
Public Sub BerichtWareneingänge()
    Dim lngZeile As Long
    Dim objArtikel As clsArtikel
    Dim strLieferant As String
    Dim datVon As Date

    On Error GoTo Fehler
    datVon = DatumFragen("Eingänge ab:", DateAdd("d", -30, Date))
    BerichtBeginnen "Wareneingänge seit " & Format$(datVon, cDatumFormat)
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Beleg", 16
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Menge", 12, cZahlFormat
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Lieferant", 28
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baEingang And BuchungDatum(lngZeile) >= datVon Then
            Set objArtikel = BuchungArtikel(lngZeile)
            If objArtikel Is Nothing Then
                strLieferant = "?"
            Else
                strLieferant = LieferantName(objArtikel.LieferantNr)
            End If
            ZeileSchreiben BuchungDatum(lngZeile), BuchungFeld(lngZeile, suBeleg), _
                           BuchungFeld(lngZeile, suArtikel), BuchungBezeichnung(lngZeile), _
                           BuchungMenge(lngZeile), BuchungWert(lngZeile), strLieferant
        End If
    Next lngZeile
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtWareneingänge"
End Sub

' Einzelne Ausgänge, deren Wert eine Grenze übersteigt
Public Sub BerichtGroßeAusgänge()
    Dim lngZeile As Long
    Dim curGrenze As Currency

    On Error GoTo Fehler
    curGrenze = EinstellungLesenZahl("GroßerAusgang", 500)
    BerichtBeginnen "Ausgänge über " & Format$(curGrenze, cEuroFormat)
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Menge", 12, cZahlFormat
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Beleg", 16
    SpalteHinzufügen "Benutzer", 14
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baAusgang And -BuchungWert(lngZeile) > curGrenze Then
            ZeileSchreiben BuchungDatum(lngZeile), BuchungFeld(lngZeile, suArtikel), _
                           BuchungBezeichnung(lngZeile), -BuchungMenge(lngZeile), -BuchungWert(lngZeile), _
                           BuchungFeld(lngZeile, suBeleg), BuchungFeld(lngZeile, suBenutzer)
        End If
    Next lngZeile
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtGroßeAusgänge"
End Sub

' Ohne Beleg ist eine Buchung nicht prüffähig.
Public Sub BerichtOhneBeleg()
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Buchungen ohne Beleg"
    SpalteHinzufügen "Nr.", 8, "0"
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Art", 12
    SpalteHinzufügen "Menge", 12, cZahlFormat
    SpalteHinzufügen "Beleg", 16
    SpalteHinzufügen "Benutzer", 14
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If Len(BuchungFeld(lngZeile, suBeleg)) = 0 And BuchungArt(lngZeile) <> baInventur Then
            ZeileSchreiben BuchungFeld(lngZeile, suNummer), BuchungDatum(lngZeile), _
                           BuchungFeld(lngZeile, suArtikel), BuchungBezeichnung(lngZeile), _
                           BuchungsartText(BuchungArt(lngZeile)), BuchungMenge(lngZeile), _
                           BuchungFeld(lngZeile, suBeleg), BuchungFeld(lngZeile, suBenutzer)
        End If
    Next lngZeile
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtOhneBeleg"
End Sub

' Wer bucht, wenn das Lager geschlossen ist ?
Public Sub BerichtWochenende()
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Buchungen an Wochenenden"
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Tag", 12
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Menge", 12, cZahlFormat
    SpalteHinzufügen "Benutzer", 14
    SpalteHinzufügen "Text", 40
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If Weekday(BuchungDatum(lngZeile), vbMonday) > 5 Then
            ZeileSchreiben BuchungDatum(lngZeile), Format$(BuchungDatum(lngZeile), "dddd"), _
                           BuchungFeld(lngZeile, suArtikel), BuchungMenge(lngZeile), _
                           BuchungFeld(lngZeile, suBenutzer), BuchungFeld(lngZeile, suText)
        End If
    Next lngZeile
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtWochenende"
End Sub

' Umlagerungen ändern keinen Bestand; der Text nennt den neuen Ort.
Public Sub BerichtUmlagerungen()
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Umlagerungen"
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Text", 40
    SpalteHinzufügen "Benutzer", 14
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baUmlagerung Then
            ZeileSchreiben BuchungDatum(lngZeile), BuchungFeld(lngZeile, suArtikel), _
                           BuchungBezeichnung(lngZeile), BuchungFeld(lngZeile, suText), _
                           BuchungFeld(lngZeile, suBenutzer)
        End If
    Next lngZeile
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtUmlagerungen"
End Sub

' Kontoblatt eines Artikels: alle Bewegungen mit laufendem Bestand
Public Sub BerichtEinArtikel()
    Dim lngZeile As Long
    Dim strNummer As String

    On Error GoTo Fehler
    strNummer = UCase$(Trim$(InputBox("Artikelnummer:", cProgramm)))
    If Not gobjLager.Vorhanden(strNummer) Then Err.Raise cFehlerArtikel, , "Den Artikel """ & strNummer & """ gibt es nicht."
    BerichtBeginnen "Bewegungen von " & strNummer
    SpalteHinzufügen "Datum", 12, cDatumFormat
    SpalteHinzufügen "Art", 12
    SpalteHinzufügen "Menge", 12, cZahlFormat, True
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Beleg", 16
    SpalteHinzufügen "Text", 40
    KopfSchreiben

    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungFeld(lngZeile, suArtikel) = strNummer Then
            ZeileSchreiben BuchungDatum(lngZeile), BuchungsartText(BuchungArt(lngZeile)), _
                           BuchungMenge(lngZeile), ZahlAus(Tabelle2.Cells(lngZeile, suBestandDanach).Value), _
                           BuchungFeld(lngZeile, suBeleg), BuchungFeld(lngZeile, suText)
        End If
    Next lngZeile
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtEinArtikel"
End Sub

' ===========================================================================
' Summen und Vergleiche
' ===========================================================================

' Lagerwert je Artikelgruppe mit Anteil
Public Sub BerichtWertJeGruppe()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim objArtikel As clsArtikel
    Dim dblGesamt As Double

    On Error GoTo Fehler
    BerichtBeginnen "Lagerwert je Gruppe"
    SpalteHinzufügen "Gruppe", 24
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Anteil", 10, "0.0%", True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For Each objArtikel In gobjLager
        SummeErhöhen objSummen, objArtikel.Gruppe, objArtikel.Wert
        dblGesamt = dblGesamt + objArtikel.Wert
    Next objArtikel
    For Each varSchlüssel In objSummen.Keys
        If dblGesamt = 0 Then
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), 0
        Else
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), objSummen(varSchlüssel) / dblGesamt
        End If
    Next varSchlüssel
    ZeilenSortieren 2
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtWertJeGruppe"
End Sub

' Das Regal sind die ersten beiden Zeichen des Lagerorts.
Public Sub BerichtWertJeLagerort()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim objArtikel As clsArtikel
    Dim dblGesamt As Double

    On Error GoTo Fehler
    BerichtBeginnen "Lagerwert je Regal"
    SpalteHinzufügen "Regal", 12
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Anteil", 10, "0.0%", True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For Each objArtikel In gobjLager
        SummeErhöhen objSummen, Left$(objArtikel.Lagerort, 2), objArtikel.Wert
        dblGesamt = dblGesamt + objArtikel.Wert
    Next objArtikel
    For Each varSchlüssel In objSummen.Keys
        If dblGesamt = 0 Then
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), 0
        Else
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), objSummen(varSchlüssel) / dblGesamt
        End If
    Next varSchlüssel
    ZeilenSortieren 2
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtWertJeLagerort"
End Sub

' Wie viel Ware von wem im Lager liegt
Public Sub BerichtWertJeLieferant()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim objArtikel As clsArtikel
    Dim dblGesamt As Double

    On Error GoTo Fehler
    BerichtBeginnen "Lagerwert je Lieferant"
    SpalteHinzufügen "Lieferant", 32
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Anteil", 10, "0.0%", True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For Each objArtikel In gobjLager
        SummeErhöhen objSummen, LieferantName(objArtikel.LieferantNr), objArtikel.Wert
        dblGesamt = dblGesamt + objArtikel.Wert
    Next objArtikel
    For Each varSchlüssel In objSummen.Keys
        If dblGesamt = 0 Then
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), 0
        Else
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), objSummen(varSchlüssel) / dblGesamt
        End If
    Next varSchlüssel
    ZeilenSortieren 2
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtWertJeLieferant"
End Sub

' Nur Artikel, die auch am Lager sind
Public Sub BerichtArtikelJeGruppe()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim objArtikel As clsArtikel

    On Error GoTo Fehler
    BerichtBeginnen "Anzahl Artikel je Gruppe"
    SpalteHinzufügen "Gruppe", 24
    SpalteHinzufügen "Artikel", 10, "0", True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For Each objArtikel In gobjLager
        If objArtikel.Menge > 0 Then
            SummeErhöhen objSummen, objArtikel.Gruppe, 1
        End If
    Next objArtikel
    For Each varSchlüssel In objSummen.Keys
        ZeileSchreiben varSchlüssel, objSummen(varSchlüssel)
    Next varSchlüssel
    ZeilenSortieren 2
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtArtikelJeGruppe"
End Sub

' Anzahl der Buchungen je Benutzer im laufenden Jahr
Public Sub BerichtBuchungenJeBenutzer()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim lngZeile As Long
    Dim datVon As Date

    On Error GoTo Fehler
    datVon = DateSerial(Year(Date), 1, 1)
    BerichtBeginnen "Buchungen je Benutzer seit " & Format$(datVon, cDatumFormat)
    SpalteHinzufügen "Benutzer", 24
    SpalteHinzufügen "Buchungen", 12, "0", True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungDatum(lngZeile) >= datVon Then
            SummeErhöhen objSummen, BuchungFeld(lngZeile, suBenutzer), 1
        End If
    Next lngZeile
    For Each varSchlüssel In objSummen.Keys
        ZeileSchreiben varSchlüssel, objSummen(varSchlüssel)
    Next varSchlüssel
    ZeilenSortieren 2
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtBuchungenJeBenutzer"
End Sub

' An welchen Tagen ist am meisten los ? Die Ziffer davor ordnet die Tage.
Public Sub BerichtBuchungenJeTag()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Buchungen je Wochentag"
    SpalteHinzufügen "Tag", 20
    SpalteHinzufügen "Buchungen", 12, "0", True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        SummeErhöhen objSummen, Weekday(BuchungDatum(lngZeile), vbMonday) & " " & Format$(BuchungDatum(lngZeile), "dddd"), 1
    Next lngZeile
    For Each varSchlüssel In objSummen.Keys
        ZeileSchreiben varSchlüssel, objSummen(varSchlüssel)
    Next varSchlüssel
    ZeilenSortieren 1, False
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtBuchungenJeTag"
End Sub

' Verteilung über den Tag, zur Planung der Schichten
Public Sub BerichtBuchungenJeStunde()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Buchungen je Stunde"
    SpalteHinzufügen "Stunde", 12
    SpalteHinzufügen "Buchungen", 12, "0", True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) <> baInventur Then
            SummeErhöhen objSummen, Format$(Hour(BuchungDatum(lngZeile)), "00") & " Uhr", 1
        End If
    Next lngZeile
    For Each varSchlüssel In objSummen.Keys
        ZeileSchreiben varSchlüssel, objSummen(varSchlüssel)
    Next varSchlüssel
    ZeilenSortieren 1, False
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtBuchungenJeStunde"
End Sub

' Wert aller Ausgänge je Monat, die letzten zwölf Monate
Public Sub BerichtVerbrauchJeMonat()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Verbrauch je Monat"
    SpalteHinzufügen "Monat", 12
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baAusgang And BuchungDatum(lngZeile) >= DateAdd("m", -12, Date) Then
            SummeErhöhen objSummen, Format$(BuchungDatum(lngZeile), "yyyy-mm"), -BuchungWert(lngZeile)
        End If
    Next lngZeile
    For Each varSchlüssel In objSummen.Keys
        ZeileSchreiben varSchlüssel, objSummen(varSchlüssel)
    Next varSchlüssel
    ZeilenSortieren 1, False
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtVerbrauchJeMonat"
End Sub

' Wie vor, je Quartal und ohne zeitliche Grenze
Public Sub BerichtVerbrauchJeQuartal()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim lngZeile As Long
    Dim dblGesamt As Double

    On Error GoTo Fehler
    BerichtBeginnen "Verbrauch je Quartal"
    SpalteHinzufügen "Quartal", 12
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Anteil", 10, "0.0%", True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baAusgang Then
            SummeErhöhen objSummen, Year(BuchungDatum(lngZeile)) & "/" & QuartalAus(BuchungDatum(lngZeile)), -BuchungWert(lngZeile)
            dblGesamt = dblGesamt + -BuchungWert(lngZeile)
        End If
    Next lngZeile
    For Each varSchlüssel In objSummen.Keys
        If dblGesamt = 0 Then
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), 0
        Else
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), objSummen(varSchlüssel) / dblGesamt
        End If
    Next varSchlüssel
    ZeilenSortieren 1, False
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtVerbrauchJeQuartal"
End Sub

' Mengen, nicht Werte: nur innerhalb gleicher Einheiten vergleichbar
Public Sub BerichtVerbrauchJeArtikel()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Verbrauch je Artikel"
    SpalteHinzufügen "Artikel", 12
    SpalteHinzufügen "Menge", 14, cZahlFormat, True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baAusgang And Year(BuchungDatum(lngZeile)) = Year(Date) Then
            SummeErhöhen objSummen, BuchungFeld(lngZeile, suArtikel), -BuchungMenge(lngZeile)
        End If
    Next lngZeile
    For Each varSchlüssel In objSummen.Keys
        ZeileSchreiben varSchlüssel, objSummen(varSchlüssel)
    Next varSchlüssel
    ZeilenSortieren 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtVerbrauchJeArtikel"
End Sub

' Wert der Eingänge je Lieferant im laufenden Jahr
Public Sub BerichtEingangJeLieferant()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim lngZeile As Long
    Dim dblGesamt As Double

    On Error GoTo Fehler
    BerichtBeginnen "Einkauf je Lieferant"
    SpalteHinzufügen "Lieferant", 32
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    SpalteHinzufügen "Anteil", 10, "0.0%", True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baEingang And Year(BuchungDatum(lngZeile)) = Year(Date) Then
            SummeErhöhen objSummen, LieferantDerBuchung(lngZeile), BuchungWert(lngZeile)
            dblGesamt = dblGesamt + BuchungWert(lngZeile)
        End If
    Next lngZeile
    For Each varSchlüssel In objSummen.Keys
        If dblGesamt = 0 Then
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), 0
        Else
            ZeileSchreiben varSchlüssel, objSummen(varSchlüssel), objSummen(varSchlüssel) / dblGesamt
        End If
    Next varSchlüssel
    ZeilenSortieren 2
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtEingangJeLieferant"
End Sub

Private Function LieferantDerBuchung(ByVal lngZeile As Long) As String
    Dim objArtikel As clsArtikel

    Set objArtikel = BuchungArtikel(lngZeile)
    If objArtikel Is Nothing Then LieferantDerBuchung = "(Artikel gelöscht)" Else LieferantDerBuchung = LieferantName(objArtikel.LieferantNr)
End Function

' Der Grund ist das erste Wort des Buchungstextes.
Public Sub BerichtKorrekturenJeGrund()
    Dim objSummen As Object
    Dim varSchlüssel As Variant
    Dim lngZeile As Long

    On Error GoTo Fehler
    BerichtBeginnen "Korrekturen nach Grund"
    SpalteHinzufügen "Grund", 24
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    KopfSchreiben

    Set objSummen = CreateObject("Scripting.Dictionary")
    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If BuchungArt(lngZeile) = baKorrektur Then
            SummeErhöhen objSummen, Split(BuchungFeld(lngZeile, suText) & " ", " ")(0), Abs(BuchungWert(lngZeile))
        End If
    Next lngZeile
    For Each varSchlüssel In objSummen.Keys
        ZeileSchreiben varSchlüssel, objSummen(varSchlüssel)
    Next varSchlüssel
    ZeilenSortieren 2
    DiagrammAnfügen 2
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtKorrekturenJeGrund"
End Sub

' ===========================================================================
' Besondere Auswertungen
' ===========================================================================

' ABC-Analyse: A bis 80 %, B bis 95 % des Verbrauchswertes, C der Rest
Public Sub BerichtAbcAnalyse()
    Dim objArtikel As clsArtikel
    Dim lngZeile As Long
    Dim dblGesamt As Double, dblLaufend As Double
    Dim strKlasse As String

    On Error GoTo Fehler
    BerichtBeginnen "ABC-Analyse"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Verbrauchswert", 16, cEuroFormat, True
    SpalteHinzufügen "aufgelaufen", 12, "0.0%"
    SpalteHinzufügen "Klasse", 8
    KopfSchreiben

    For Each objArtikel In gobjLager
        ZeileSchreiben objArtikel.Nummer, objArtikel.Bezeichnung, _
                       VerbrauchSeit(objArtikel.Nummer, DateAdd("yyyy", -1, Date)) * objArtikel.Preis
    Next objArtikel
    ZeilenSortieren 3
    dblGesamt = Application.WorksheetFunction.Sum(mwksBericht.Columns(3))
    If dblGesamt = 0 Then GoTo Ende

    For lngZeile = cKopfZeile + 1 To mlngZeile
        dblLaufend = dblLaufend + ZahlAus(mwksBericht.Cells(lngZeile, 3).Value)
        Select Case dblLaufend / dblGesamt
            Case Is <= 0.8
                strKlasse = "A"
            Case Is <= 0.95
                strKlasse = "B"
            Case Else
                strKlasse = "C"
        End Select
        mwksBericht.Cells(lngZeile, 4).Value = dblLaufend / dblGesamt
        mwksBericht.Cells(lngZeile, 5).Value = strKlasse
    Next lngZeile
    SummenSchreiben

Ende:
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtAbcAnalyse"
End Sub

' Bestandsliste mit Zwischensummen je Gruppe
Public Sub BerichtGruppenliste()
    Dim varGruppe As Variant
    Dim objArtikel As clsArtikel

    On Error GoTo Fehler
    BerichtBeginnen "Bestand nach Gruppen"
    SpalteHinzufügen "Artikel", 11
    SpalteHinzufügen "Bezeichnung", 32
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    SpalteHinzufügen "Einheit", 8
    SpalteHinzufügen "Wert", 14, cEuroFormat, True
    KopfSchreiben

    For Each varGruppe In Artikelgruppen()
        For Each objArtikel In gobjLager
            If objArtikel.Gruppe = varGruppe Then
                With objArtikel
                    ZeileSchreiben .Nummer, .Bezeichnung, .Menge, .Einheit, .Wert
                End With
            End If
        Next objArtikel
        ZwischensummeSchreiben "Gruppe " & varGruppe
    Next varGruppe
    SummenSchreiben
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtGruppenliste"
End Sub

' Bestand je Monatsende, rückwärts aus den Buchungen gerechnet
Public Sub BerichtBestandsverlauf()
    Dim strNummer As String
    Dim objArtikel As clsArtikel
    Dim datMonat As Date
    Dim dblBestand As Double
    Dim lngZeile As Long
    Dim intMonat As Integer

    On Error GoTo Fehler
    strNummer = UCase$(Trim$(InputBox("Artikelnummer:", cProgramm)))
    Set objArtikel = gobjLager.Suchen(strNummer)
    If objArtikel Is Nothing Then Exit Sub

    BerichtBeginnen "Bestandsverlauf " & strNummer
    SpalteHinzufügen "Monatsende", 14
    SpalteHinzufügen "Bestand", 12, cZahlFormat
    KopfSchreiben
    For intMonat = 0 To 11
        datMonat = DateSerial(Year(Date), Month(Date) - intMonat, 1)
        dblBestand = objArtikel.Menge
        For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
            If BuchungFeld(lngZeile, suArtikel) = strNummer Then
                If BuchungDatum(lngZeile) >= datMonat Then dblBestand = dblBestand - BuchungMenge(lngZeile)
            End If
        Next lngZeile
        ZeileSchreiben Format$(datMonat - 1, "yyyy-mm-dd"), dblBestand
    Next intMonat
    ZeilenSortieren 1, False
    DiagrammAnfügen 2
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtBestandsverlauf"
End Sub

' Liste aller Berichte für die Auswahl auf dem Blatt "Übersicht". Eine lange Zeile, weil der Editor nur 24 _
  Fortsetzungen erlaubt und die Liste früher darüber lag.
Public Sub BerichtslisteSchreiben()
    Dim varNamen As Variant
    Dim i As Long

    varNamen = Split("AbcAnalyse;ArtikelJeGruppe;Bestandsliste;Bestandsverlauf;BuchungenJeBenutzer;BuchungenJeStunde;BuchungenJeTag;EinArtikel;EingangJeLieferant;GesperrteLieferanten;GroßeAusgänge;Gruppenliste;Inventurdifferenzen;Inventurwerte;Korrekturen;KorrekturenJeGrund;Ladenhüter;Lieferantenliste;Mindestbestand;Monatsbuchungen", ";")
    With ThisWorkbook.Names("Berichtsauswahl").RefersToRange
        For i = 0 To UBound(varNamen)
            .Offset(i + 2, 0).Value = varNamen(i)
        Next i
    End With
End Sub

' Anschriften aller Lieferanten, auf die Artikel verweisen
Public Sub BerichtLieferantenliste()
    Dim objArtikel As clsArtikel
    Dim objGesehen As Object
    Dim udtLieferant As tLieferant

    On Error GoTo Fehler
    Set objGesehen = CreateObject("Scripting.Dictionary")
    BerichtBeginnen "Lieferanten"
    SpalteHinzufügen "Nr.", 8, "0"
    SpalteHinzufügen "Name", 32
    SpalteHinzufügen "Straße", 28
    SpalteHinzufügen "PLZ", 8
    SpalteHinzufügen "Ort", 20
    SpalteHinzufügen "Telefon", 18
    SpalteHinzufügen "Lieferzeit", 10, "0"
    SpalteHinzufügen "gesperrt", 10
    KopfSchreiben
    For Each objArtikel In gobjLager
        If objGesehen.Exists(objArtikel.LieferantNr) Then GoTo Weiter
        objGesehen.Add objArtikel.LieferantNr, True
        If Not LieferantLesen(objArtikel.LieferantNr, udtLieferant) Then GoTo Weiter
        With udtLieferant
            ZeileSchreiben .Nummer, _
                           .Name, _
                           .Straße, _
                           "'" & .Plz, _
                           .Ort, _
                           "'" & .Telefon, _
                           .Lieferzeit, _
                           IIf(.Gesperrt, "ja", cLeer)
        End With
Weiter:
    Next objArtikel
    ZeilenSortieren 2, False
    BerichtAbschließen
    Exit Sub

Fehler:
    BerichtAbbrechen "BerichtLieferantenliste"
End Sub

' Erster Entwurf des Monatsberichts, ersetzt durch BerichtMonatsbuchungen
Private Sub MonatsberichtAlt(ByVal intMonat As Integer)
    Static intAufrufe As Integer
    Dim lngZeile As Long

    intAufrufe = intAufrufe + 1
    For lngZeile = cErsteZeile To LetzteDatenzeile(Tabelle2)
        If Month(Tabelle2.Cells(lngZeile, suDatum).Value) = intMonat Then Tabelle2.Rows(lngZeile).Copy
    Next lngZeile
    Debug.Print "MonatsberichtAlt: "; intAufrufe; " Aufrufe"
End Sub
