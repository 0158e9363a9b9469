Attribute VB_Name = "mdlWerkzeug"
Option Explicit

' Kleine Helfer, die überall gebraucht werden

' Zahl aus einem Zellwert; Text, Fehlerwerte und leere Zellen ergeben 0
Public Function ZahlAus(ByVal varWert As Variant) As Double
    If IsError(varWert) Then Exit Function
    If IsNumeric(varWert) Then ZahlAus = CDbl(varWert)
End Function

Public Function TextAus(ByVal varWert As Variant) As String
    If IsError(varWert) Or IsNull(varWert) Then
        TextAus = cLeer
    Else
        TextAus = Trim$(CStr(varWert))
    End If
End Function

' Letzte belegte Zeile in Spalte 1, mindestens die Zeile über den Daten
Public Function LetzteDatenzeile(ByVal wksBlatt As Worksheet) As Long
    Dim lngZeile As Long

    lngZeile = wksBlatt.Cells(wksBlatt.Rows.Count, 1).End(xlUp).Row
    If lngZeile < cErsteZeile - 1 Then lngZeile = cErsteZeile - 1
    LetzteDatenzeile = lngZeile
End Function

' Anführungszeichen verdoppeln und einschließen, für Formeln und CSV
Public Function InAnführung(ByVal strText As String) As String
    InAnführung = """" & Replace(strText, """", """""") & """"
End Function

' In SQL-Texten steht das Hochkomma statt des Anführungszeichens.
Public Function InHochkomma(ByVal strText As String) As String
    InHochkomma = "'" & Replace(strText, "'", "''") & "'"
End Function

Public Function Auffüllen(ByVal strText As String, ByVal intBreite As Integer, _
                          Optional ByVal blnRechts As Boolean = False) As String
    If Len(strText) >= intBreite Then
        Auffüllen = Left$(strText, intBreite)
    ElseIf blnRechts Then
        Auffüllen = Space$(intBreite - Len(strText)) & strText
    Else
        Auffüllen = strText & Space$(intBreite - Len(strText))
    End If
End Function

' Umlaute für Drucker und Dateinamen auflösen
Public Function OhneUmlaute(ByVal strText As String) As String
    Dim varPaare As Variant
    Dim i As Integer

    varPaare = Array("ä", "ae", "ö", "oe", "ü", "ue", "Ä", "Ae", "Ö", "Oe", "Ü", "Ue", "ß", "ss", "é", "e", "Ÿ", "Y")
    For i = LBound(varPaare) To UBound(varPaare) Step 2
        strText = Replace(strText, varPaare(i), varPaare(i + 1))
    Next i
    OhneUmlaute = strText
End Function

Public Function DateiNameAus(ByVal strText As String) As String
    Dim strVerboten As String
    Dim i As Integer

    strVerboten = "\/:*?""<>|"
    DateiNameAus = OhneUmlaute(strText)
    For i = 1 To Len(strVerboten)
        DateiNameAus = Replace(DateiNameAus, Mid$(strVerboten, i, 1), "_")
    Next i
End Function

Public Function DateiVorhanden(ByVal strDatei As String) As Boolean
    On Error Resume Next
    DateiVorhanden = (Len(Dir$(strDatei, vbNormal Or vbHidden)) > 0)
    On Error GoTo 0
End Function

Public Function BlattVorhanden(ByVal strName As String) As Boolean
    Dim wksBlatt As Worksheet

    On Error Resume Next
    Set wksBlatt = ThisWorkbook.Worksheets(strName)
    BlattVorhanden = Not wksBlatt Is Nothing
End Function

' Kalenderwoche nach ISO 8601
Public Function KalenderWoche(ByVal datTag As Date) As Integer
    Dim datDonnerstag As Date

    datDonnerstag = datTag - Weekday(datTag, vbMonday) + 4
    KalenderWoche = (datDonnerstag - DateSerial(Year(datDonnerstag), 1, 1)) \ 7 + 1
End Function

Public Function QuartalAus(ByVal datTag As Date) As Integer
    QuartalAus = (Month(datTag) - 1) \ 3 + 1
End Function

' Sortiert ein Feld von Texten an Ort und Stelle
Public Sub TexteSortieren(ByRef strFeld() As String, ByVal lngVon As Long, ByVal lngBis As Long)
    Dim strMitte As String, strTausch As String
    Dim i As Long, j As Long

    If lngVon >= lngBis Then Exit Sub
    i = lngVon: j = lngBis
    strMitte = strFeld((lngVon + lngBis) \ 2)
    Do
        Do While StrComp(strFeld(i), strMitte, vbTextCompare) < 0: i = i + 1: Loop
        Do While StrComp(strFeld(j), strMitte, vbTextCompare) > 0: j = j - 1: Loop
        If i <= j Then
            strTausch = strFeld(i): strFeld(i) = strFeld(j): strFeld(j) = strTausch
            i = i + 1: j = j - 1
        End If
    Loop Until i > j
    TexteSortieren strFeld, lngVon, j
    TexteSortieren strFeld, i, lngBis
End Sub

' Prüfziffer nach EAN-13; erwartet zwölf Ziffern
Public Function PrüfzifferEan(ByVal strZiffern As String) As String
    Dim intSumme As Integer
    Dim i As Integer

    If Not strZiffern Like "############" Then Exit Function
    For i = 1 To 12
        If i Mod 2 = 0 Then
            intSumme = intSumme + 3 * CInt(Mid$(strZiffern, i, 1))
        Else
            intSumme = intSumme + CInt(Mid$(strZiffern, i, 1))
        End If
    Next i
    PrüfzifferEan = CStr((10 - intSumme Mod 10) Mod 10)
End Function

' Wird nicht mehr gebraucht, seit Excel selbst runden kann.
Public Function KaufmännischRunden(ByVal dblZahl As Double, ByVal intStellen As Integer) As Double
    Dim dblFaktor As Double

    dblFaktor = 10 ^ intStellen
    KaufmännischRunden = Fix(dblZahl * dblFaktor + 0.5 * Sgn(dblZahl)) / dblFaktor
End Function

Private Function RestProbe(ByVal lngZahl As Long) As Boolean
    ' nur zum Testen im Direktbereich:  ? RestProbe(17)
    RestProbe = (lngZahl Mod 2 = 1)
End Function
