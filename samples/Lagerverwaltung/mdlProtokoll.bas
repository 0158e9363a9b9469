Attribute VB_Name = "mdlProtokoll"
Option Explicit

' Protokoll in eine Textdatei neben der Mappe, eine Datei je Monat

Private Const cMaxGröße As Long = 1048576        ' danach wird umbenannt

Private mintKanal As Integer
Private mlngZeilen As Long
Private mstrDatei As String

Public Sub ProtokollÖffnen()
    On Error GoTo Fehler

    If mintKanal <> 0 Then Exit Sub
    mstrDatei = ThisWorkbook.Path & "\Lager_" & Format$(Date, "yyyy_mm") & ".log"
    If DateiVorhanden(mstrDatei) Then
        If FileLen(mstrDatei) > cMaxGröße Then
            Name mstrDatei As mstrDatei & "." & Format$(Now, "ddhhnnss")
        End If
    End If
    mintKanal = FreeFile
    Open mstrDatei For Append Shared As #mintKanal
    ProtokollSchreiben psAblauf, "Protokoll geöffnet von " & BenutzerName() & " an " & RechnerName()
    Exit Sub

Fehler:
    ' Ohne Protokoll geht es auch: schreibgeschützter Ordner, Netz weg usw.
    mintKanal = 0
End Sub

Public Sub ProtokollSchließen()
    If mintKanal = 0 Then Exit Sub
    ProtokollSchreiben psAblauf, "Protokoll geschlossen, " & mlngZeilen & " Zeilen"
    Close #mintKanal
    mintKanal = 0
End Sub

Public Sub ProtokollSchreiben(ByVal enmStufe As Protokollstufe, ByVal strText As String)
    If enmStufe > EinstellungLesenZahl("Protokollstufe", psHinweis) Then Exit Sub
    mlngZeilen = mlngZeilen + 1
    If mintKanal <> 0 Then
        Print #mintKanal, Format$(Now, "dd.mm.yyyy hh:nn:ss"); " "; StufenText(enmStufe); " "; strText
    End If
    Debug.Print StufenText(enmStufe); strText
    If Not gobjProtokoll Is Nothing Then gobjProtokoll.Melden enmStufe, strText
End Sub

Private Function StufenText(ByVal enmStufe As Protokollstufe) As String
    Select Case enmStufe
        Case psFehler: StufenText = "FEHLER  "
        Case psWarnung: StufenText = "Warnung "
        Case psHinweis: StufenText = "Hinweis "
        Case Else: StufenText = "        "
    End Select
End Function

' Einheitliche Meldung für alle Fehlerbehandlungen
Public Sub FehlerMelden(ByVal strOrt As String, ByVal lngNummer As Long, ByVal strText As String)
    ProtokollSchreiben psFehler, strOrt & ": " & lngNummer & " " & strText
    If gblnStillerModus Then Exit Sub
    Select Case lngNummer
        Case cFehlerArtikel, cFehlerMenge, cFehlerLieferant, cFehlerInventur
            MsgBox strText, vbExclamation, cProgramm
        Case 1004
            MsgBox "Excel meldet:" & vbCrLf & strText & vbCrLf & vbCrLf & _
                   "Ist das Blatt geschützt oder die Mappe nur zum Lesen geöffnet ?", vbExclamation, cProgramm
        Case Else
            MsgBox "Unerwarteter Fehler " & lngNummer & " in """ & strOrt & """:" & vbCrLf & strText, _
                   vbCritical, cProgramm
    End Select
End Sub

' Letzte Zeilen der Protokolldatei, für das Fenster "Über"
Public Function ProtokollEnde(ByVal lngAnzahl As Long) As String
    Dim intKanal As Integer
    Dim strZeile As String
    Dim strRing() As String
    Dim lngGelesen As Long
    Dim i As Long

    If lngAnzahl < 1 Or Not DateiVorhanden(mstrDatei) Then Exit Function
    ReDim strRing(0 To lngAnzahl - 1)
    intKanal = FreeFile
    Open mstrDatei For Input Shared As #intKanal
    Do Until EOF(intKanal)
        Line Input #intKanal, strZeile
        strRing(lngGelesen Mod lngAnzahl) = strZeile
        lngGelesen = lngGelesen + 1
    Loop
    Close #intKanal
    For i = IIf(lngGelesen > lngAnzahl, lngGelesen - lngAnzahl, 0) To lngGelesen - 1
        ProtokollEnde = ProtokollEnde & strRing(i Mod lngAnzahl) & vbCrLf
    Next i
End Function

Rem Einstellungen liegen bei den Benutzerdaten, nicht in der Mappe:
Rem so behält jeder Arbeitsplatz seinen Drucker.
Public Function EinstellungLesenZahl(ByVal strName As String, ByVal lngVorgabe As Long) As Long
    EinstellungLesenZahl = CLng(Val(GetSetting(cProgramm, cAbschnitt, strName, CStr(lngVorgabe))))
End Function

Public Function EinstellungLesenText(ByVal strName As String, Optional ByVal strVorgabe As String) As String
    EinstellungLesenText = GetSetting(cProgramm, cAbschnitt, strName, strVorgabe)
End Function

Public Sub EinstellungSchreiben(ByVal strName As String, ByVal varWert As Variant)
    SaveSetting cProgramm, cAbschnitt, strName, CStr(varWert)
End Sub
