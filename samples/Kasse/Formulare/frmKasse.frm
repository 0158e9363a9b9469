VERSION 5.00
Begin VB.Form frmKasse 
   BorderStyle     =   1  'Fest Einfach
   Caption         =   "Kasse"
   ClientHeight    =   4350
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   6120
   Icon            =   "frmKasse.frx":0000
   LinkTopic       =   "Form1"
   MaxButton       =   0   'False
   ScaleHeight     =   4350
   ScaleWidth      =   6120
   StartUpPosition =   2  'Bildschirmmitte
   Begin VB.Frame fraPosten 
      Caption         =   "Posten"
      BeginProperty Font 
         Name            =   "Tahoma"
         Size            =   8.25
         Charset         =   0
         Weight          =   700
         Underline       =   0   'False
         Italic          =   0   'False
         Strikethrough   =   0   'False
      EndProperty
      Height          =   1455
      Left            =   120
      TabIndex        =   0
      Top             =   120
      Width           =   5895
      Begin VB.TextBox txtText 
         Height          =   315
         Left            =   120
         TabIndex        =   1
         Top             =   360
         Width           =   2655
      End
      Begin VB.TextBox txtPreis 
         Alignment       =   1  'Rechts
         Height          =   315
         Left            =   2880
         TabIndex        =   2
         Text            =   "0,00"
         Top             =   360
         Width           =   1095
      End
      Begin VB.CheckBox chkErmäßigt 
         Caption         =   "&ermäßigt"
         Height          =   255
         Left            =   120
         TabIndex        =   3
         Top             =   840
         Width           =   1455
      End
      Begin VB.CommandButton cmdHinzu 
         Caption         =   "&Hinzufügen"
         Default         =   -1  'True
         Height          =   375
         Left            =   4320
         TabIndex        =   4
         Top             =   840
         Width           =   1335
      End
   End
   Begin VB.ListBox lstBeleg 
      Height          =   1815
      Left            =   120
      TabIndex        =   5
      Top             =   1680
      Width           =   5895
   End
   Begin VB.CommandButton cmdFertig 
      Caption         =   "&Fertig"
      Height          =   375
      Left            =   4680
      TabIndex        =   6
      Top             =   3720
      Width           =   1335
   End
   Begin VB.Menu mnuDatei 
      Caption         =   "&Datei"
      Begin VB.Menu mnuDatei_Storno 
         Caption         =   "&Storno"
         Shortcut        =   ^S
      End
      Begin VB.Menu mnuDatei_Ende 
         Caption         =   "&Beenden"
      End
   End
End
Attribute VB_Name = "frmKasse"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private mobjBeleg As clsBeleg

Private Sub Form_Load()
    Set mobjBeleg = New clsBeleg
End Sub

Private Sub Form_QueryUnload(Cancel As Integer, UnloadMode As Integer)
    If mobjBeleg.Anzahl > 0 Then
        Cancel = (MsgBox("Der Beleg ist noch offen. Trotzdem beenden ?", vbQuestion + vbYesNo, App.Title) = vbNo)
    End If
End Sub

Private Sub cmdHinzu_Click()
    If Not IsNumeric(txtPreis.Text) Then
        MsgBox "'" & txtPreis.Text & "' ist kein Preis.", vbExclamation, App.Title
        txtPreis.SetFocus
        Exit Sub
    End If
    mobjBeleg.PostenHinzufügen txtText.Text, 1, CCur(txtPreis.Text), (chkErmäßigt.Value = vbChecked)
    lstBeleg.AddItem txtText.Text & vbTab & txtPreis.Text
    Me.Caption = "Kasse: " & Format$(mobjBeleg.Summe(), "0.00")
    txtText.Text = ""
    txtText.SetFocus
End Sub

Private Sub cmdFertig_Click()
    gcolBelege.Add mobjBeleg
    Printer.Print mobjBeleg.AlsText()
    Printer.Print "darin Steuer: "; Format$(mobjBeleg.Steueranteil(False) + mobjBeleg.Steueranteil(True), "0.00")
    Printer.EndDoc
    BelegLeeren
End Sub

Private Sub mnuDatei_Storno_Click()
    If mobjBeleg.Anzahl > 0 Then BelegLeeren
End Sub

Private Sub mnuDatei_Ende_Click()
    Unload Me
End Sub

Private Sub BelegLeeren()
    Set mobjBeleg = New clsBeleg
    lstBeleg.Clear
    Me.Caption = "Kasse"
End Sub
