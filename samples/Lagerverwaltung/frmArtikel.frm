VERSION 5.00
Begin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} frmArtikel 
   Caption         =   "Artikel bearbeiten"
   ClientHeight    =   4215
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   6840
   OleObjectBlob   =   "frmArtikel.frx":0000
   StartUpPosition =   1  'Fenstermitte
   Tag             =   "Lager"
End
Attribute VB_Name = "frmArtikel"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private WithEvents mobjArtikel As clsArtikel
Private mblnGespeichert As Boolean
Private mblnFüllen As Boolean

' Zeigt einen vorhandenen Artikel
Public Sub Zeigen(ByVal strNummer As String)
    Dim objArtikel As clsArtikel

    Set objArtikel = gobjLager.Suchen(strNummer)
    If objArtikel Is Nothing Then
        MsgBox "Artikel '" & strNummer & "' nicht gefunden.", vbExclamation, cProgramm
    ElseIf Bearbeiten(objArtikel) Then
        objArtikel.InZeileSchreiben
    End If
End Sub

' True, wenn der Benutzer mit "Speichern" schließt
Public Function Bearbeiten(ByVal objArtikel As clsArtikel) As Boolean
    Set mobjArtikel = objArtikel
    mblnGespeichert = False
    FelderFüllen
    Me.Show vbModal
    Bearbeiten = mblnGespeichert
    Set mobjArtikel = Nothing
    Unload Me
End Function

Private Sub UserForm_Initialize()
    Dim varGruppe As Variant

    cboGruppe.Clear
    For Each varGruppe In Artikelgruppen()
        cboGruppe.AddItem varGruppe
    Next varGruppe
    cboEinheit.List = Array("Stück", "m", "m²", "kg", "Liter", "Karton", "Rolle")
End Sub

Private Sub UserForm_QueryClose(Cancel As Integer, CloseMode As Integer)
    If CloseMode = vbFormControlMenu Then
        Cancel = True
        cmdAbbrechen_Click
    End If
End Sub

Private Sub FelderFüllen()
    mblnFüllen = True
    txtNummer.Text = mobjArtikel.Nummer
    txtBezeichnung.Text = mobjArtikel.Bezeichnung
    cboGruppe.Text = mobjArtikel.Gruppe
    txtLagerort.Text = mobjArtikel.Lagerort
    txtMindest.Text = CStr(mobjArtikel.Mindestbestand)
    cboEinheit.Text = mobjArtikel.Einheit
    txtPreis.Text = Format$(mobjArtikel.Preis, "0.00")
    txtLieferant.Text = CStr(mobjArtikel.LieferantNr)
    lblBestand.Caption = "Bestand: " & mobjArtikel.Menge & " " & mobjArtikel.Einheit
    lblGeändert.Visible = False
    mblnFüllen = False
End Sub

Private Function EingabenGültig() As Boolean
    Dim strGrund As String

    If Len(Trim$(txtBezeichnung.Text)) = 0 Then
        strGrund = "Die Bezeichnung fehlt."
        txtBezeichnung.SetFocus
    ElseIf Not IsNumeric(txtPreis.Text) Then
        strGrund = "Der Preis ist keine Zahl."
        txtPreis.SetFocus
    ElseIf Not IsNumeric(txtMindest.Text) Then
        strGrund = "Der Mindestbestand ist keine Zahl."
        txtMindest.SetFocus
    ElseIf Len(LieferantName(CLng(Val(txtLieferant.Text)))) = 0 Then
        strGrund = "Den Lieferanten """ & txtLieferant.Text & """ gibt es nicht."
        txtLieferant.SetFocus
    End If
    EingabenGültig = (Len(strGrund) = 0)
    If Not EingabenGültig Then MsgBox strGrund, vbExclamation, cProgramm
End Function

Private Sub cmdSpeichern_Click()
    If Not EingabenGültig() Then Exit Sub
    On Error GoTo Fehler
    mobjArtikel.Nummer = txtNummer.Text
    mobjArtikel.Bezeichnung = txtBezeichnung.Text
    mobjArtikel.Gruppe = cboGruppe.Text
    mobjArtikel.Lagerort = txtLagerort.Text
    mobjArtikel.Mindestbestand = CDbl(txtMindest.Text)
    mobjArtikel.Einheit = cboEinheit.Text
    mobjArtikel.Preis = CCur(txtPreis.Text)
    mobjArtikel.LieferantNr = CLng(Val(txtLieferant.Text))
    mblnGespeichert = True
    Me.Hide
    Exit Sub

Fehler:
    FehlerMelden "frmArtikel.cmdSpeichern_Click", Err.Number, Err.Description
End Sub

Private Sub cmdAbbrechen_Click()
    mblnGespeichert = False
    Me.Hide
End Sub

Private Sub cmdEtikett_Click()
    EtikettVormerken mobjArtikel
    mdlEtikett.Drucken
End Sub

Private Sub mobjArtikel_FeldGeändert(ByVal strFeld As String)
    lblGeändert.Visible = True
    lblGeändert.Caption = "Geändert: " & strFeld
End Sub

Private Sub txtLieferant_Change()
    lblLieferant.Caption = LieferantName(CLng(Val(txtLieferant.Text)))
End Sub

Private Sub txtPreis_KeyPress(ByVal KeyAscii As MSForms.ReturnInteger)
    ' Punkt wird Komma, alles andere außer Ziffern fällt weg
    Select Case KeyAscii
        Case Asc("0") To Asc("9"), Asc(","), vbKeyBack
        Case Asc("."): KeyAscii = Asc(",")
        Case Else: KeyAscii = 0
    End Select
End Sub

Private Sub txtNummer_AfterUpdate(): txtNummer.Text = UCase$(txtNummer.Text): End Sub
Private Sub cboGruppe_Change(): lblGeändert.Visible = Not mblnFüllen: End Sub
