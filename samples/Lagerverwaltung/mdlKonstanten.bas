Attribute VB_Name = "mdlKonstanten"
Option Explicit

' ---------------------------------------------------------------------------
' Lagerverwaltung: Konstanten, Aufzählungen und Datentypen
' Dieses Modul enthält absichtlich keine Routinen.
' ---------------------------------------------------------------------------

Public Const cProgramm As String = "Lagerverwaltung"
Public Const cVersion As String = "3.2"
Public Const cAbschnitt As String = "Einstellungen"
Public Const cKennwort As String = ""              ' Blattschutz ohne Kennwort

Public Const cErsteZeile As Long = 5               ' erste Datenzeile auf allen Blättern
Public Const cMaxZeilen As Long = 65536
Public Const cTrenner As String = ";"
Public Const cAnf As String = """"                 ' ein einzelnes Anführungszeichen
Public Const cLeer As String = ""
Public Const cDatumFormat As String = "dd.mm.yyyy"
Public Const cZahlFormat As String = "#,##0.00"
Public Const cEuroFormat As String = "#,##0.00 ""€"""

' Fehlernummern der Anwendung
Public Const cFehlerBasis As Long = vbObjectError + 2000
Public Const cFehlerArtikel As Long = cFehlerBasis + 1
Public Const cFehlerMenge As Long = cFehlerBasis + 2
Public Const cFehlerLieferant As Long = cFehlerBasis + 3
Public Const cFehlerInventur As Long = cFehlerBasis + 4

' Spalten des Blattes "Bestand" (Tabelle1)
Public Enum SpalteBestand
    sbNummer = 1
    sbBezeichnung = 2
    sbGruppe = 3
    sbLagerort = 4
    sbMenge = 5
    sbMindest = 6
    sbEinheit = 7
    sbPreis = 8
    sbLieferant = 9
    sbBewegung = 10
    sbGezählt = 11
End Enum

' Spalten des Blattes "Buchungen" (Tabelle2)
Public Enum SpalteBuchung
    suNummer = 1
    suDatum
    suArtikel
    suArt
    suMenge
    suBestandDanach
    suBeleg
    suBenutzer
    suText
End Enum

' Spalten des Blattes "Lieferanten" (Tabelle3)
Public Enum SpalteLieferant
    slNummer = 1
    slName
    slStraße
    slPlz
    slOrt
    slTelefon
    slLieferzeit
    slGesperrt
End Enum

Public Enum Buchungsart
    baUnbekannt = 0
    baEingang = 1
    baAusgang = 2
    baKorrektur = 3
    baUmlagerung = 4
    baInventur = 5
End Enum

Public Enum Protokollstufe
    psFehler = 0
    psWarnung = 1
    psHinweis = 2
    psAblauf = 3
End Enum

Public Type tLieferant
    Nummer As Long
    Name As String
    Straße As String
    Plz As String * 5
    Ort As String
    Telefon As String
    Lieferzeit As Integer         ' in Tagen
    Gesperrt As Boolean
End Type

Public Type tZählung
    ArtikelNr As String
    Soll As Double
    Ist As Double
    Gezählt As Boolean
    Zähler As String
    Zeitpunkt As Date
End Type

Public Type tEtikett
    Zeilen(1 To 4) As String
    Strichcode As String
    Anzahl As Integer
End Type

Public Type tBerichtSpalte
    Titel As String
    Breite As Double
    Format As String
    Summe As Boolean
End Type

' Zustand der laufenden Sitzung
Public gblnGestartet As Boolean
Public gblnStillerModus As Boolean
Public gdatNaechsteSicherung As Date
Public gobjLager As clsLager
Public gobjProtokoll As clsProtokoll
