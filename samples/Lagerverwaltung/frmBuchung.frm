VERSION 5.00
Begin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} frmBuchung 
   Caption         =   "Lagerbewegung"
   ClientHeight    =   3480
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   5880
   OleObjectBlob   =   "frmBuchung.frx":0000
   StartUpPosition =   1  'Fenstermitte
   Tag             =   "Lager"
End
Attribute VB_Name = "frmBuchung"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private menmArt As Buchungsart
Private mlngErledigt As Long

Public Sub ÷ffnen(ByVal enmArt As Buchungsart)
    menmArt = enmArt
    mlngErledigt = 0
    Me.Caption = BuchungsartText(enmArt) & " buchen"
    lblStatus.Caption = cLeer
    Me.Show vbModal
End Sub

Private Sub UserForm_Activate()
    FelderLeeren
    txtArtikel.SetFocus
End Sub

Private Sub FelderLeeren()
    txtArtikel.Text = cLeer
    txtMenge.Text = cLeer
    txtText.Text = cLeer
    lblArtikel.Caption = cLeer
    ' der Beleg bleibt stehen: ein Lieferschein hat meist viele Zeilen
End Sub

Private Sub txtArtikel_Exit(ByVal Cancel As MSForms.ReturnBoolean)
    Dim objArtikel As clsArtikel

    If Len(txtArtikel.Text) = 0 Then Exit Sub
    Set objArtikel = gobjLager.Suchen(txtArtikel.Text)
    If objArtikel Is Nothing Then
        lblArtikel.Caption = "(unbekannt)"
        Cancel = True
    Else
        lblArtikel.Caption = objArtikel.Bezeichnung & ", " & objArtikel.Menge & " " & objArtikel.Einheit
    End If
End Sub

Private Sub cmdBuchen_Click()
    If Not IsNumeric(txtMenge.Text) Then
        MsgBox "Die Menge '" & txtMenge.Text & "' ist keine Zahl.", vbExclamation, cProgramm
        txtMenge.SetFocus
        Exit Sub
    End If
    If Buchen(txtArtikel.Text, menmArt, CDbl(txtMenge.Text), txtBeleg.Text, txtText.Text) Then
        mlngErledigt = mlngErledigt + 1
        lblStatus.Caption = mlngErledigt & IIf(mlngErledigt = 1, " Buchung", " Buchungen") & " erledigt"
        TonAbspielen
        FelderLeeren
        txtArtikel.SetFocus
    End If
End Sub

Private Sub cmdSchlieﬂen_Click()
    Me.Hide
End Sub

Private Sub cmdDatei_Click()
    Dim varDatei As Variant

    varDatei = Application.GetOpenFilename("Lieferscheine (*.csv),*.csv,Alle Dateien (*.*),*.*")
    If VarType(varDatei) = vbString Then LieferscheinEinlesen varDatei
End Sub

Private Sub UserForm_KeyDown(ByVal KeyCode As MSForms.ReturnInteger, ByVal Shift As Integer)
    If KeyCode = vbKeyF9 Then cmdBuchen_Click Else If KeyCode = vbKeyEscape Then cmdSchlieﬂen_Click
End Sub
