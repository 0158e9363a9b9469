Attribute VB_Name = "modStart"
Option Explicit

Private Declare Function GetPrivateProfileStringA Lib "kernel32" _
        (ByVal lpApplicationName As String, ByVal lpKeyName As String, _
         ByVal lpDefault As String, ByVal lpReturnedString As String, _
         ByVal nSize As Long, ByVal lpFileName As String) As Long

Public gcolBelege As Collection

Sub Main()
    If App.PrevInstance Then
        MsgBox "Die Kasse l‰uft schon.", vbExclamation, App.Title
        Exit Sub
    End If
    Set gcolBelege = New Collection
    frmKasse.Show
End Sub

' Wert aus der Datei Kasse.ini neben dem Programm
Public Function IniLesen(ByVal strName As String, Optional ByVal strVorgabe As String) As String
    Dim strPuffer As String
    Dim lngL‰nge As Long

    strPuffer = Space$(255)
    lngL‰nge = GetPrivateProfileStringA("Kasse", strName, strVorgabe, strPuffer, 255, App.Path & "\Kasse.ini")
    IniLesen = Left$(strPuffer, lngL‰nge)
End Function

Public Function Steuersatz(ByVal blnErm‰ﬂigt As Boolean) As Double
    Steuersatz = Val(IniLesen(IIf(blnErm‰ﬂigt, "Erm‰ﬂigt", "Voll"), IIf(blnErm‰ﬂigt, "7", "19"))) / 100
End Function
