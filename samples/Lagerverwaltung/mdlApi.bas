Attribute VB_Name = "mdlApi"
Option Explicit
Option Private Module

' ---------------------------------------------------------------------------
' Aufrufe des Betriebssystems, für 32 und 64 Bit
' ---------------------------------------------------------------------------

Private Const SW_SHOWNORMAL As Long = 1
Private Const MAX_PFAD As Long = 260

#If VBA7 Then

Private Declare PtrSafe Function FindWindowA Lib "user32" ( _
        ByVal lpClassName As String, _
        ByVal lpWindowName As String) As LongPtr

Private Declare PtrSafe Function ShellExecuteA Lib "shell32.dll" ( _
        ByVal hwnd As LongPtr, _
        ByVal lpOperation As String, _
        ByVal lpFile As String, _
        ByVal lpParameters As String, _
        ByVal lpDirectory As String, _
        ByVal nShowCmd As Long) As LongPtr

Private Declare PtrSafe Function GetTempPathA Lib "kernel32" (ByVal nBufferLength As Long, ByVal lpBuffer As String) As Long
Private Declare PtrSafe Function GetUserNameA Lib "advapi32.dll" (ByVal lpBuffer As String, nSize As Long) As Long
Private Declare PtrSafe Function GetComputerNameA Lib "kernel32" (ByVal lpBuffer As String, nSize As Long) As Long
Private Declare PtrSafe Function PlaySoundA Lib "winmm.dll" _
        (ByVal pszSound As String, _
         ByVal hmod As LongPtr, _
         ByVal fdwSound As Long) As Long
Public Declare PtrSafe Function GetTickCount Lib "kernel32" () As Long
Public Declare PtrSafe Sub Sleep Lib "kernel32" (ByVal dwMilliseconds As Long)
Public Declare PtrSafe Sub OutputDebugStringA Lib "kernel32" (ByVal lpOutputString As String)

#Else

Private Declare Function FindWindowA Lib "user32" ( _
        ByVal lpClassName As String, _
        ByVal lpWindowName As String) As Long

Private Declare Function ShellExecuteA Lib "shell32.dll" ( _
        ByVal hwnd As Long, _
        ByVal lpOperation As String, _
        ByVal lpFile As String, _
        ByVal lpParameters As String, _
        ByVal lpDirectory As String, _
        ByVal nShowCmd As Long) As Long

Private Declare Function GetTempPathA Lib "kernel32" (ByVal nBufferLength As Long, ByVal lpBuffer As String) As Long
Private Declare Function GetUserNameA Lib "advapi32.dll" (ByVal lpBuffer As String, nSize As Long) As Long
Private Declare Function GetComputerNameA Lib "kernel32" (ByVal lpBuffer As String, nSize As Long) As Long
Private Declare Function PlaySoundA Lib "winmm.dll" _
        (ByVal pszSound As String, _
         ByVal hmod As Long, _
         ByVal fdwSound As Long) As Long
Public Declare Function GetTickCount Lib "kernel32" () As Long
Public Declare Sub Sleep Lib "kernel32" (ByVal dwMilliseconds As Long)
Public Declare Sub OutputDebugStringA Lib "kernel32" (ByVal lpOutputString As String)

#End If

Private Const SND_ASYNC As Long = &H1
Private Const SND_FILENAME As Long = &H20000

' Name des angemeldeten Benutzers, "unbekannt" wenn Windows keinen liefert
Public Function BenutzerName() As String
    Dim strPuffer As String
    Dim lngLänge As Long

    lngLänge = 255
    strPuffer = String$(lngLänge, vbNullChar)
    If GetUserNameA(strPuffer, lngLänge) <> 0 And lngLänge > 1 Then
        BenutzerName = Left$(strPuffer, lngLänge - 1)
    Else
        BenutzerName = "unbekannt"
    End If
End Function

Public Function RechnerName() As String
    Dim strPuffer As String
    Dim lngLänge As Long

    lngLänge = 255
    strPuffer = String$(lngLänge, vbNullChar)
    If GetComputerNameA(strPuffer, lngLänge) <> 0 Then RechnerName = Left$(strPuffer, lngLänge)
End Function

Public Function TempOrdner() As String
    Dim strPuffer As String
    Dim lngLänge As Long

    strPuffer = String$(MAX_PFAD, vbNullChar)
    lngLänge = GetTempPathA(MAX_PFAD, strPuffer)
    If lngLänge = 0 Or lngLänge > MAX_PFAD Then
        TempOrdner = ThisWorkbook.Path & "\"
    Else
        TempOrdner = Left$(strPuffer, lngLänge)
    End If
End Function

' Öffnet eine Datei mit dem Programm, das dafür eingetragen ist.
' Liefert False, wenn es nicht geklappt hat (Rückgabe <= 32).
Public Function DateiÖffnen(ByVal strDatei As String) As Boolean
    #If VBA7 Then
        Dim lngErgebnis As LongPtr
    #Else
        Dim lngErgebnis As Long
    #End If

    lngErgebnis = ShellExecuteA(0, "open", strDatei, vbNullString, vbNullString, SW_SHOWNORMAL)
    DateiÖffnen = (lngErgebnis > 32)
    If Not DateiÖffnen Then ProtokollSchreiben psWarnung, "Datei '" & strDatei & "' lässt sich nicht öffnen"
End Function

' Kurzer Ton nach jeder gelungenen Zählung, damit der Zähler nicht auf den Bildschirm sehen muss
Public Sub TonAbspielen(Optional ByVal strDatei As String)
    If Len(strDatei) = 0 Then
        Beep
    Else
        PlaySoundA strDatei, 0, SND_FILENAME Or SND_ASYNC
    End If
End Sub

' Wartet, ohne Excel einzufrieren.
Public Sub Warten(ByVal lngMillisekunden As Long)
    Dim lngEnde As Long

    lngEnde = GetTickCount() + lngMillisekunden
    Do While GetTickCount() < lngEnde
        DoEvents
        Sleep 20
    Loop
End Sub

' Läuft Excel noch mit einem zweiten Fenster dieses Titels ?
Public Function FensterVorhanden(ByVal strTitel As String) As Boolean
    FensterVorhanden = (FindWindowA("XLMAIN", strTitel) <> 0)
End Function
