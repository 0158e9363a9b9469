VERSION 5.00
Begin {C62A69F0-16DC-11CE-9E98-00AA00574A4F} frmInventur 
   Caption         =   "Inventur"
   ClientHeight    =   5040
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   7320
   OleObjectBlob   =   "frmInventur.frx":0000
   StartUpPosition =   1  'Fenstermitte
   Tag             =   "Lager"
End
Attribute VB_Name = "frmInventur"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private WithEvents mobjMelder As clsProtokoll
Private mstrZähler As String

Private Sub UserForm_Initialize()
    Set mobjMelder = gobjProtokoll
    mstrZähler = BenutzerName()
    txtZähler.Text = mstrZähler
    StandZeigen
End Sub

Private Sub UserForm_Terminate()
    Set mobjMelder = Nothing
End Sub

Private Sub StandZeigen()
    lblOffen.Caption = "Noch " & ZählungOffen() & " von " & gobjLager.Anzahl & " Artikeln offen"
    cmdFertig.Enabled = (ZählungOffen() < gobjLager.Anzahl)
End Sub

Private Sub cmdEintragen_Click()
    If Not IsNumeric(txtMenge.Text) Then
        lblMeldung.Caption = "Bitte eine Zahl eingeben"
    ElseIf ZählungEintragen(txtArtikel.Text, CDbl(txtMenge.Text), mstrZähler) Then
        lblMeldung.Caption = txtArtikel.Text & " = " & txtMenge.Text
        txtArtikel.Text = cLeer
        txtMenge.Text = cLeer
        TonAbspielen
    Else
        lblMeldung.Caption = "Artikel """ & txtArtikel.Text & """ unbekannt oder nicht geändert"
    End If
    StandZeigen
    txtArtikel.SetFocus
End Sub

Private Sub cmdFertig_Click()
    InventurAbschließen
End Sub

Private Sub cmdAbbrechen_Click()
    If MsgBox("Alle Zählungen verwerfen ?", vbQuestion Or vbYesNo Or vbDefaultButton2, cProgramm) = vbYes Then
        InventurAbbrechen
        Unload Me
    End If
End Sub

Private Sub cmdListe_Click()
    ZähllisteDrucken
End Sub

Private Sub txtZähler_Change()
    mstrZähler = Trim$(txtZähler.Text)
End Sub

Private Sub mobjMelder_Meldung(ByVal enmStufe As Protokollstufe, ByVal strText As String)
    If enmStufe <= psWarnung Then lblMeldung.Caption = strText
End Sub
