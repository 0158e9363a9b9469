Attribute VB_Name = "mdlLieferant"
Option Explicit

' Lieferanten vom Blatt "Lieferanten" (Tabelle3), beim ersten Zugriff gelesen

Private mudtLieferanten() As tLieferant
Private mlngAnzahl As Long

Public Sub LieferantenCacheLeeren()
    mlngAnzahl = 0
    Erase mudtLieferanten
End Sub

Public Function LieferantLesen(ByVal lngNummer As Long, ByRef udtLieferant As tLieferant) As Boolean
    Dim i As Long

    If mlngAnzahl = 0 Then AlleLesen
    For i = 1 To mlngAnzahl
        If mudtLieferanten(i).Nummer = lngNummer Then
            udtLieferant = mudtLieferanten(i)
            LieferantLesen = True
            Exit Function
        End If
    Next i
End Function

Public Function LieferantName(ByVal lngNummer As Long) As String
    Dim udtLieferant As tLieferant

    If LieferantLesen(lngNummer, udtLieferant) Then
        LieferantName = udtLieferant.Name
        If udtLieferant.Gesperrt Then LieferantName = LieferantName & " (gesperrt)"
    End If
End Function

Private Sub AlleLesen()
    Dim lngZeile As Long, lngLetzte As Long

    lngLetzte = LetzteDatenzeile(Tabelle3)
    If lngLetzte < cErsteZeile Then Exit Sub
    ReDim mudtLieferanten(1 To lngLetzte - cErsteZeile + 1)
    For lngZeile = cErsteZeile To lngLetzte
        mlngAnzahl = mlngAnzahl + 1
        With mudtLieferanten(mlngAnzahl)
            .Nummer = CLng(ZahlAus(Tabelle3.Cells(lngZeile, slNummer).Value))
            .Name = TextAus(Tabelle3.Cells(lngZeile, slName).Value)
            .Straße = TextAus(Tabelle3.Cells(lngZeile, slStraße).Value)
            .Plz = Format$(Tabelle3.Cells(lngZeile, slPlz).Value, "00000")
            .Ort = TextAus(Tabelle3.Cells(lngZeile, slOrt).Value)
            .Telefon = TextAus(Tabelle3.Cells(lngZeile, slTelefon).Value)
            .Lieferzeit = CInt(ZahlAus(Tabelle3.Cells(lngZeile, slLieferzeit).Value))
            .Gesperrt = (UCase$(TextAus(Tabelle3.Cells(lngZeile, slGesperrt).Value)) = "X")
        End With
    Next lngZeile
End Sub

' Anschrift in drei Zeilen, wie sie aufs Etikett und ins Fenster des Umschlags passt
Public Function LieferantAnschrift(ByVal lngNummer As Long) As String
    Dim udtLieferant As tLieferant

    If Not LieferantLesen(lngNummer, udtLieferant) Then
        Err.Raise cFehlerLieferant, "mdlLieferant.LieferantAnschrift", "Lieferant " & lngNummer & " fehlt."
    End If
    With udtLieferant
        LieferantAnschrift = .Name & vbCrLf & .Straße & vbCrLf & .Plz & " " & .Ort
    End With
End Function

' Bestellung als Text in die Zwischenablage, zum Einfügen in eine Mail
Public Sub BestellungAlsText(ByVal lngNummer As Long)
    Dim objArtikel As clsArtikel
    Dim objDaten As Object
    Dim strText As String

    strText = LieferantAnschrift(lngNummer) & vbCrLf & vbCrLf & _
              "Bestellung vom " & Format$(Date, cDatumFormat) & vbCrLf & _
              String$(40, "-") & vbCrLf
    For Each objArtikel In gobjLager
        If objArtikel.LieferantNr = lngNummer And objArtikel.UnterMindestbestand Then
            strText = strText & Auffüllen(objArtikel.Nummer, 10) & _
                      Auffüllen(objArtikel.Bezeichnung, 22) & _
                      Auffüllen(CStr(objArtikel.Bestellvorschlag()), 8, True) & vbCrLf
        End If
    Next objArtikel
    Set objDaten = CreateObject("new:{1C3B4210-F441-11CE-B9EA-00AA006B1A69}")
    objDaten.SetText strText
    objDaten.PutInClipboard
End Sub

' Mittlere Lieferzeit über alle nicht gesperrten Lieferanten
Public Function MittlereLieferzeit() As Double
    Dim i As Long, lngTage As Long, lngZahl As Long

    If mlngAnzahl = 0 Then AlleLesen
    For i = 1 To mlngAnzahl
        If Not mudtLieferanten(i).Gesperrt Then lngTage = lngTage + mudtLieferanten(i).Lieferzeit: lngZahl = lngZahl + 1
    Next i
    If lngZahl > 0 Then MittlereLieferzeit = lngTage / lngZahl
End Function
