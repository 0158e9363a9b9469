Attribute VB_Name = "mdlStart"
Option Explicit

' Start, Ende, Menü und Zeitsteuerung

Private Const cMenü As String = "Lager"
Private Const cKontext As String = "LagerKontext"
Private Const cSicherungAlle As String = "00:15:00"

Private mintVersuche As Integer

Public Sub Starten()
    If gblnGestartet Then Exit Sub
    Set gobjProtokoll = New clsProtokoll
    Set gobjLager = New clsLager
    ProtokollÖffnen
    MenüAufbauen
    KontextMenüAufbauen
    TastenBelegen True
    SicherungPlanen
    gblnGestartet = True
    If Weekday(Date, vbMonday) = 1 Then Application.OnTime Now + TimeValue("00:00:05"), "MontagsHinweis"
End Sub

Public Sub Beenden()
    On Error Resume Next
    If gdatNaechsteSicherung <> 0 Then Application.OnTime gdatNaechsteSicherung, "SicherungSpeichern", , False
    TastenBelegen False
    Application.CommandBars(1).Controls(cMenü).Delete
    Application.CommandBars(cKontext).Delete
    If Not gobjLager Is Nothing Then gobjLager.AllesSpeichern
    ProtokollSchließen
    Set gobjLager = Nothing
    Set gobjProtokoll = Nothing
    gblnGestartet = False
End Sub

' Wird jede Viertelstunde über OnTime aufgerufen
Public Sub SicherungSpeichern()
    Dim strZiel As String

    strZiel = ThisWorkbook.Path & "\Sicherung\" & Format$(Now, "yyyymmdd_hhnn") & "_" & ThisWorkbook.Name
    On Error GoTo Fehler
    ThisWorkbook.SaveCopyAs strZiel
    mintVersuche = 0
    SicherungPlanen
    Exit Sub

Fehler:
    mintVersuche = mintVersuche + 1
    If mintVersuche = 1 And Err.Number = 1004 Then
        MkDir ThisWorkbook.Path & "\Sicherung"
        Resume
    End If
    FehlerMelden "mdlStart.SicherungSpeichern", Err.Number, Err.Description
End Sub

Private Sub SicherungPlanen()
    gdatNaechsteSicherung = Now + TimeValue(cSicherungAlle)
    Application.OnTime gdatNaechsteSicherung, "SicherungSpeichern"
End Sub

Public Sub MontagsHinweis()
    If gblnStillerModus Then Exit Sub
    If MsgBox("Eine neue Woche (KW " & KalenderWoche(Date) & "). Bestellvorschlag erstellen ?", _
              vbQuestion Or vbYesNo, cProgramm) = vbYes Then Application.Run "mdlBestand.BestellvorschlagErstellen"
End Sub

' Alle Menüeinträge in einer Tabelle: Beschriftung, Makro, Bildnummer, Trennstrich
Private Function MenüTabelle() As Variant
    MenüTabelle = Array( _
        "&Neuer Artikel ...|ArtikelNeu|18|0", _
        "Artikel &kopieren ...|ArtikelKopieren|19|0", _
        "Artikel &suchen ...|ArtikelSuchen|25|0", _
        "Wareneingang ...|BuchungEingang|137|1", _
        "Warenausgang ...|BuchungAusgang|138|0", _
        "Buchung stornieren|BuchungStornieren|128|0", _
        "Bestellvorschlag|BestellvorschlagErstellen|0|1", _
        "Inventur beginnen|InventurBeginnen|0|1", _
        "Inventur abschließen|InventurAbschließen|0|0", _
        "Über ...|ÜberZeigen|0|1")
End Function

Private Sub MenüAufbauen()
    Dim objMenü As CommandBarPopup
    Dim varEintrag As Variant
    Dim varTeile As Variant

    On Error Resume Next
    Application.CommandBars(1).Controls(cMenü).Delete
    On Error GoTo 0
    Set objMenü = Application.CommandBars(1).Controls.Add(Type:=msoControlPopup, Temporary:=True)
    objMenü.Caption = cMenü
    For Each varEintrag In MenüTabelle()
        varTeile = Split(varEintrag, "|")
        With objMenü.Controls.Add(Type:=msoControlButton)
            .Caption = varTeile(0)
            .OnAction = "'" & ThisWorkbook.Name & "'!" & varTeile(1)
            If Val(varTeile(2)) > 0 Then .FaceId = Val(varTeile(2))
            .BeginGroup = (varTeile(3) = "1")
        End With
    Next varEintrag
End Sub

Private Sub KontextMenüAufbauen()
    Dim objLeiste As CommandBar

    On Error Resume Next
    Application.CommandBars(cKontext).Delete
    On Error GoTo 0
    Set objLeiste = Application.CommandBars.Add(Name:=cKontext, Position:=msoBarPopup, Temporary:=True)
    With objLeiste.Controls.Add(Type:=msoControlButton)
        .Caption = "&Etikett drucken"
        .OnAction = "EtikettenDerMarkierung"
    End With
    With objLeiste.Controls.Add(Type:=msoControlButton)
        .Caption = "Artikel &löschen"
        .OnAction = "ArtikelLöschen"
    End With
    With objLeiste.Controls.Add(Type:=msoControlButton)
        .Caption = "&Preise anpassen ..."
        .OnAction = "PreiseAnpassen"
        .BeginGroup = True
    End With
End Sub

Public Sub KontextMenüZeigen()
    Application.CommandBars(cKontext).ShowPopup
End Sub

Public Sub MenüSchalten(ByVal blnEin As Boolean)
    On Error Resume Next
    Application.CommandBars(1).Controls(cMenü).Enabled = blnEin
End Sub

' Strg+Umschalt+Buchstabe
Private Sub TastenBelegen(ByVal blnEin As Boolean)
    If blnEin Then
        Application.OnKey "^+E", "BuchungEingang"
        Application.OnKey "^+A", "BuchungAusgang"
        Application.OnKey "^+S", "ArtikelSuchen"
    Else
        Application.OnKey "^+E"
        Application.OnKey "^+A"
        Application.OnKey "^+S"
    End If
End Sub

' Bericht nach Namen starten: der Name kommt aus der Auswahlliste auf dem Blatt
Public Sub BerichtStarten(Optional ByVal strName As String)
    If Len(strName) = 0 Then strName = TextAus(ThisWorkbook.Names("Berichtsauswahl").RefersToRange.Value)
    On Error GoTo Fehler
    Application.Run "'" & ThisWorkbook.Name & "'!mdlBericht.Bericht" & strName
    Exit Sub

Fehler:
    If Err.Number = 1004 Then
        MsgBox "Den Bericht """ & strName & """ gibt es nicht.", vbExclamation, cProgramm
    Else
        FehlerMelden "mdlStart.BerichtStarten", Err.Number, Err.Description
    End If
End Sub

Public Sub ÜberZeigen()
    MsgBox cProgramm & " " & cVersion & vbCrLf & vbCrLf & _
           "Artikel: " & gobjLager.Anzahl & vbCrLf & _
           "Lagerwert: " & Format$(gobjLager.GesamtWert(), cEuroFormat) & vbCrLf & vbCrLf & _
           ProtokollEnde(5), vbInformation, cProgramm
End Sub
