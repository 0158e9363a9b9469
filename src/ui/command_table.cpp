#include "command_table.h"

#include <algorithm>

#include <quillmate/text/operations.h>

namespace quillmate::ui {
namespace {

using enum CommandId;

constexpr Menu kMenus[] = {
    {MenuId::kFile, "mnuDatei", "&Datei"},
    {MenuId::kEdit, "mnuBearbeiten", "&Bearbeiten"},
    {MenuId::kView, "mnuAnsicht", "&Ansicht"},
    {MenuId::kHtml, "mnuHtml", "HTML"},
    {MenuId::kRtf, "mnuRtf", "&RTF", kWithProject},
    {MenuId::kText, "mnuText", "&Nur-Text", kWithProject},
    {MenuId::kReading, "mnuLesen", "&Lesen", kWithProject},
    {MenuId::kAnalysis, "mnuAnalyse", "Anal&yse", kWithProject},
    {MenuId::kExtras, "mnuExtras", "&Extras"},
    {MenuId::kHelp, "mnuHilfe", "&Hilfe"},
};

// id, name, menu, caption, shortcut, icon, modes, separator before, switch
constexpr Command kCommands[] = {
    {kOpenSavedProject, "mnuÖffnen", MenuId::kFile, "&Öffnen ...", "Ctrl+O", "open", kAlways, false},
    {kStartAnew, "mnuNeu", MenuId::kFile, "&Neu", "Ctrl+N", "neu", kWithProject, false},
    {kSaveProjectAs, "mnuSpeichern", MenuId::kFile, "&Speichern Unter ...", "Ctrl+S", "save", kWithProject, false},
    {kAddFiles, "mnuDatei_Dateien", MenuId::kFile, "&Dateien hinzufügen ...", "Ctrl+D", "add_files", kAlways, true},
    {kAddFolder, "mnuDatei_Ordner", MenuId::kFile, "O&rdner hinzufügen ...", "Ctrl+Shift+D", "", kAlways, false},
    {kSwitchReadAtOnce, "mnuDatei_Sofort", MenuId::kFile, "Einze&lnes Dokument sofort lesen", "", "", kAlways, false,
     true},
    {kPrint, "mnuDatei_Drucken", MenuId::kFile, "Dru&cken ...", "Ctrl+P", "", kWithProject, true},
    {kPreviewPrint, "mnuDatei_Druckvorschau", MenuId::kFile, "Druck&vorschau ...", "", "", kWithProject, false},
    {kSavePdf, "mnuDatei_Pdf", MenuId::kFile, "Als &PDF speichern ...", "", "", kWithProject, false},
    {kHandOver, "mnuDatei_Uebergabe", MenuId::kFile, "Über&gabe ...", "", "", kWithProject, false},
    {kOpenRecent0, "mnuOpenIndex0", MenuId::kFile, "&0 - ", "", "", kAlways, true},
    {kOpenRecent1, "mnuOpenIndex1", MenuId::kFile, "&1 - ", "", "", kAlways, false},
    {kOpenRecent2, "mnuOpenIndex2", MenuId::kFile, "&2 - ", "", "", kAlways, false},
    {kOpenRecent3, "mnuOpenIndex3", MenuId::kFile, "&3 - ", "", "", kAlways, false},
    {kOpenRecent4, "mnuOpenIndex4", MenuId::kFile, "&4 - ", "", "", kAlways, false},
    {kOpenRecent5, "mnuOpenIndex5", MenuId::kFile, "&5 - ", "", "", kAlways, false},
    {kOpenRecent6, "mnuOpenIndex6", MenuId::kFile, "&6 - ", "", "", kAlways, false},
    {kOpenRecent7, "mnuOpenIndex7", MenuId::kFile, "&7 - ", "", "", kAlways, false},
    {kOpenRecent8, "mnuOpenIndex8", MenuId::kFile, "&8 - ", "", "", kAlways, false},
    {kOpenRecent9, "mnuOpenIndex9", MenuId::kFile, "&9 - ", "", "", kAlways, false},
    {kEndProgram, "mnuEnde", MenuId::kFile, "&Beenden", "Ctrl+Q", "", kAlways, true},

    {kReadCode, "mnuBearbeiten_Code", MenuId::kEdit, "&Code Einlesen", "F9", "doit", kNoProject, false},
    {kSearchFromTop, "mnuBearbeiten_Suchen", MenuId::kEdit, "&Suchen", "F3", "su_a", kAlways, true},
    {kSearchOn, "mnuBearbeiten_SuchenWeiter", MenuId::kEdit, "Suchen ab P&osition", "Ctrl+F3", "su_w", kAlways, false},
    {kSwitchProjectSearch, "mnuBearbeiten_Suchen_Projekt", MenuId::kEdit, "&Projektsuche An/Aus", "", "su_p", kAlways,
     false, true},
    {kSwitchWholeWord, "mnuBearbeiten_Suchen_GanzWort", MenuId::kEdit, "&Ganzes Wort Suche An/Aus", "", "su_g", kAlways,
     false, true},
    {kTakeSearchText, "mnuBearbeiten_Suchen_Auswahl", MenuId::kEdit, "&Auswahl nach Suche", "", "su_i", kAlways, false},
    {kEnterSearchText, "mnuBearbeiten_Suchen_Text", MenuId::kEdit, "Such&text eingeben", "Ctrl+F", "", kAlways, false},
    {kListAllHits, "mnuBearbeiten_Suchen_Alle", MenuId::kEdit, "A&lle Treffer ...", "Ctrl+Shift+F", "", kWithProject,
     false},
    {kFindRoutineCallers, "mnuBearbeiten_Rout", MenuId::kEdit, "Aktuelle &Routine Aufrufe", "Shift+F12", "",
     kWithProject, true},
    {kShowDefinition, "mnuBearbeiten_Definition", MenuId::kEdit, "&Definition", "F12", "", kWithProject, false},
    {kShowDeclaration, "mnuBearbeiten_Deklaration", MenuId::kEdit, "D&eklaration", "Shift+F2", "", kWithProject, false},
    {kListUses, "mnuBearbeiten_Verwendungen", MenuId::kEdit, "Alle Ver&wendungen", "Alt+Shift+F12", "", kWithProject,
     false},
    {kNextUse, "mnuBearbeiten_Verwendung_Vor", MenuId::kEdit, "Näc&hste Verwendung", "F8", "", kWithProject, false},
    {kPreviousUse, "mnuBearbeiten_Verwendung_Zurück", MenuId::kEdit, "Vor&ige Verwendung", "Shift+F8", "", kWithProject,
     false},
    {kGoToName, "mnuBearbeiten_GeheZuName", MenuId::kEdit, "Gehe zu &Name ...", "Ctrl+K", "", kWithProject, true},
    {kGoToLine, "mnuBearbeiten_GeheZuZeile", MenuId::kEdit, "Gehe z&u Zeile ...", "Ctrl+G", "", kWithProject, false},
    {kGoBack, "mnuBearbeiten_RouBew3", MenuId::kEdit, "Routine &Zurück", "F4", "back", kBySituation, false},
    {kGoNext, "mnuBearbeiten_RouBew4", MenuId::kEdit, "Routine &Vor", "Ctrl+F4", "next", kBySituation, false},
    {kCopyModule, "mnuBearbeiten_Kopieren_Modul", MenuId::kEdit, "Kopieren &Modul", "", "", kWithProject, true},
    {kCopySelection, "mnuBearbeiten_Kopieren_Auswahl", MenuId::kEdit, "&Kopieren Auswahl", "Ctrl+C", "", kWithProject,
     false},

    {kRefreshProjects, "mnuAnsicht_App_Aktualisieren", MenuId::kView, "&Aktualisieren VBA Projekte", "F5", "refresh",
     kNoProject, false},
    {kSwitchZoom, "mnuAnsicht_Zoom", MenuId::kView, "&Zoom", "F11", "zoom", kWithProject, true, true},
    {kCloseCallerList, "mnuAnsicht_RouClose", MenuId::kView, "&Routinensuche schliessen", "Ctrl+W", "close",
     kBySituation, false},
    {kFilterTree, "mnuAnsicht_Filter", MenuId::kView, "Modul oder Routine &finden", "Ctrl+T", "", kWithProject, true},
    {kSwitchSourceOrder, "mnuAnsicht_Quellreihenfolge", MenuId::kView, "Routinen in &Quellreihenfolge", "", "", kAlways,
     false, true},
    {kSwitchExactOutline, "mnuAnsicht_Gliederung", MenuId::kView, "Gena&ue Gliederung", "", "", kAlways, false, true},
    {kSwitchDeclarations, "mnuAnsicht_Deklarationen", MenuId::kView, "&Deklarationen zeigen", "", "", kAlways, false,
     true},
    {kSwitchLineNumbers, "mnuAnsicht_Zeilennummern", MenuId::kView, "Zeilen&nummern", "", "", kAlways, true, true},
    {kEnlargeFont, "mnuAnsicht_Schrift_Plus", MenuId::kView, "Schrift &größer", "Ctrl++", "", kAlways, false},
    {kReduceFont, "mnuAnsicht_Schrift_Minus", MenuId::kView, "Schrift &kleiner", "Ctrl+-", "", kAlways, false},
    {kResetFont, "mnuAnsicht_Schrift_Normal", MenuId::kView, "Schrift n&ormal", "Ctrl+0", "", kAlways, false},
    {kShowSpecialView, "mnuAnsicht_Spezial", MenuId::kView, "&Spezialansicht", "", "", kAlways, true},

    {kExportClipboardHtml, "mnuHtml_Clipboard", MenuId::kHtml, "&Zwischenablage", "", "ht_clip", kAlways, false},
    {kExportSelectionHtml, "mnuHtml_Auswahl", MenuId::kHtml, "&Auswahl", "", "ht_aus", kWithProject, false},
    {kExportModuleHtml, "mnuHtml_Modul", MenuId::kHtml, "&Modul", "", "ht_mod", kWithProject, false},
    {kExportProjectHtml, "mnuHtml_projekt", MenuId::kHtml, "&Projekt", "", "ht_pro", kWithProject, false},
    {kWriteDocumentation, "mnuHtml_Dokumentation", MenuId::kHtml, "HTML-&Dokumentation ...", "", "", kWithProject,
     true},
    {kExportZoomHtml, "mnuPopUp_Zoom_Html", MenuId::kNone, "Zoom nach &Html", "", "ht_clip", kWithProject, false},

    {kExportProjectRtf, "mnuRtf_Projekt", MenuId::kRtf, "&Projekt", "", "", kWithProject, false},
    {kExportModuleRtf, "mnuRtf_Modul", MenuId::kRtf, "&Modul", "", "", kWithProject, false},

    {kCopySelectionText, "mnuText_Auswahl", MenuId::kText, "&Auswahl", "", "", kWithProject, false},
    {kCopyModuleText, "mnuText_Modul", MenuId::kText, "&Modul", "", "", kWithProject, false},

    {kNextRoutine, "mnuLesen_Vor", MenuId::kReading, "&Nächste Routine", "Ctrl+Down", "", kWithProject, false},
    {kPreviousRoutine, "mnuLesen_Zurück", MenuId::kReading, "Vor&ige Routine", "Ctrl+Up", "", kWithProject, false},
    {kToggleFold, "mnuLesen_Klappen", MenuId::kReading, "&Einklappen oder ausklappen", "Ctrl+E", "", kWithProject,
     true},
    {kFoldAll, "mnuLesen_Einklappen", MenuId::kReading, "&Alles einklappen", "Ctrl+Shift+E", "", kWithProject, false},
    {kUnfoldAll, "mnuLesen_Ausklappen", MenuId::kReading, "Alles a&usklappen", "Ctrl+Shift+A", "", kWithProject, false},
    {kSwitchHeader, "mnuLesen_Kopf", MenuId::kReading, "Routinen&kopf festhalten", "", "", kWithProject, true, true},
    {kToggleBookmark, "mnuLesen_Lesezeichen", MenuId::kReading, "&Lesezeichen setzen oder löschen", "Ctrl+F2", "",
     kWithProject, true},
    {kNextBookmark, "mnuLesen_Lesezeichen_Vor", MenuId::kReading, "Näc&hstes Lesezeichen", "F2", "", kWithProject,
     false},
    {kPreviousBookmark, "mnuLesen_Lesezeichen_Zurück", MenuId::kReading, "Vori&ges Lesezeichen", "Ctrl+Shift+F2", "",
     kWithProject, false},
    {kEditNote, "mnuLesen_Notiz", MenuId::kReading, "N&otiz ...", "Ctrl+Shift+N", "", kWithProject, false},
    {kListNotes, "mnuLesen_Notizen", MenuId::kReading, "No&tizen und Lesezeichen", "", "", kWithProject, false},

    {kShowHierarchy, "mnuAnalyse_Hierarchie", MenuId::kAnalysis, "Aufruf&hierarchie", "Ctrl+Shift+H", "", kWithProject,
     false},
    {kShowCallPicture, "mnuAnalyse_Aufrufbild", MenuId::kAnalysis, "Aufruf&bild", "Ctrl+Shift+B", "", kWithProject,
     false},
    {kShowDependencies, "mnuAnalyse_Abhaengigkeiten", MenuId::kAnalysis, "&Abhängigkeiten der Module", "", "",
     kWithProject, false},
    {kShowForm, "mnuAnalyse_Formular", MenuId::kAnalysis, "&Formular des Moduls", "", "", kWithProject, false},
    {kListFindings, "mnuAnalyse_Befunde", MenuId::kAnalysis, "Bef&unde", "", "", kWithProject, true},
    {kListUnused, "mnuAnalyse_Unbenutztes", MenuId::kAnalysis, "Unb&enutztes", "", "", kWithProject, false},
    {kListMetrics, "mnuAnalyse_Kennzahlen", MenuId::kAnalysis, "&Kennzahlen", "", "", kWithProject, false},

    {kReadVbFiles, "mnuVB", MenuId::kExtras, "&VB Einlesen", "", "", kAlways, false},
    {kCopyOutline, "mnuExtras_Struktur", MenuId::kExtras, "&Struktur nach Zwischenablage", "", "", kAlways, false},
    {kShowUnusedRoutines, "mnuTest", MenuId::kExtras, "Tests", "", "", kWithProject, false},
    {kCompareStates, "mnuExtras_Vergleichen", MenuId::kExtras, "Ver&gleichen mit ...", "", "", kAlways, false},
    {kShowInventory, "mnuExtras_Bestand", MenuId::kExtras, "B&estand ...", "", "", kAlways, false},
    {kShowOptions, "mnuExtras_Optionen", MenuId::kExtras, "&Optionen", "", "", kAlways, true},
    {kStoreDisplaySize, "mnuExtras_Screen_define", MenuId::kExtras, "Benutzer Bildschirm &Festlegen", "", "", kAlways,
     true},
    {kApplyStoredDisplaySize, "mnuExtras_Screen_call", MenuId::kExtras, "&Benutzer Bildschirm Aufrufen", "", "",
     kAlways, false},
    {kClearClipboard, "mnuExtras_ClearClip", MenuId::kExtras, "&Zwischenablage Leeren", "", "", kAlways, true},

    {kShowHelp, "mnuHilfe_Hilfe", MenuId::kHelp, "&Hilfe", "F1", "", kAlways, false},
    {kReadSample, "mnuHilfe_Beispiel", MenuId::kHelp, "&Beispielprojekt lesen", "", "", kAlways, false},
    {kShowAbout, "mnuHilfe_Info", MenuId::kHelp, "&Info", "", "", kAlways, false},

    {kTickAll, "mnuPopUpEinlesen_Alle", MenuId::kNone, "&Alle ankreuzen", "", "", kNoProject, false},
    {kTickNone, "mnuPopUpEinlesen_Keine", MenuId::kNone, "&Keine ankreuzen", "", "", kNoProject, false},
    {kRemoveSource, "mnuPopUpEinlesen_Entfernen", MenuId::kNone, "Quelle &entfernen", "", "remove", kBySituation,
     false},
};

// The refresh button starts anew like "neu" does, but is there for the time without a project.
constexpr ToolButton kToolButtons[] = {
    {ButtonId::kNew, "neu", "Neu", kStartAnew, kWithProject, false},
    {ButtonId::kOpen, "open", "Öffnen", kOpenSavedProject, kAlways, false},
    {ButtonId::kSave, "save", "Speichern", kSaveProjectAs, kWithProject, false},
    {ButtonId::kRefresh, "refresh", "", kStartAnew, kNoProject, true},
    {ButtonId::kRead, "doit", "Code Lesen", kReadCode, kNoProject, false},
    {ButtonId::kClipboardHtml, "ht_clip", "Zwischenablage nach HTML", kExportClipboardHtml, kAlways, true},
    {ButtonId::kSelectionHtml, "ht_aus", "Auswahl nach HTML", kExportSelectionHtml, kWithProject, false},
    {ButtonId::kModuleHtml, "ht_mod", "Modul nach HTML", kExportModuleHtml, kWithProject, false},
    {ButtonId::kProjectHtml, "ht_pro", "Projekt nach HTML", kExportProjectHtml, kWithProject, false},
    {ButtonId::kSearch, "su_a", "Suchen (F3)", kSearchFromTop, kAlways, true},
    {ButtonId::kSearchOn, "su_w", "Suchen ab Position(STRG+F3)", kSearchOn, kAlways, false},
    {ButtonId::kProjectSearch, "su_p", "Projektweite Suche Ein/Aus", kSwitchProjectSearch, kAlways, false},
    {ButtonId::kWholeWord, "su_g", "Ganzes Wort Ein/Aus", kSwitchWholeWord, kAlways, false},
    {ButtonId::kTakeSearchText, "su_i", "Markierten Text in's Suchfenster", kTakeSearchText, kAlways, false},
    {ButtonId::kZoom, "zoom", "Zoom", kSwitchZoom, kWithProject, true},
};

constexpr Popup kPopups[] = {
    {PopupId::kCode, "mnuPopUpHaupt"}, {PopupId::kZoom, "mnuPopUp_Zoom"}, {PopupId::kReading, "mnuPopUpEinlesen"}};

constexpr ContextItem kContextItems[] = {
    {PopupId::kCode, "mnuPopUpHaupt_Html_Index0", "&Zwischenablage", kExportClipboardHtml, "&HTML"},
    {PopupId::kCode, "mnuPopUpHaupt_Html_Index1", "&Auswahl", kExportSelectionHtml, "&HTML"},
    {PopupId::kCode, "mnuPopUpHaupt_Html_Index2", "&Modul", kExportModuleHtml, "&HTML"},
    {PopupId::kCode, "mnuPopUpHaupt_Html_Index3", "&Projekt", kExportProjectHtml, "&HTML"},
    {PopupId::kCode, "mnuPopUpHaupt_Copy_Modul", "&Modul", kCopyModule, "&Kopieren"},
    {PopupId::kCode, "mnuPopUpHaupt_Copy_Auswahl", "&Auswahl", kCopySelection, "&Kopieren"},
    {PopupId::kCode, "mnuPopUpHaupt_Definition", "Definition", kShowDefinition, ""},
    {PopupId::kCode, "mnuPopUpHaupt_Aufruf", "Aufruf", kFindRoutineCallers, ""},
    {PopupId::kCode, "mnuPopUpHaupt_Deklaration", "D&eklaration", kShowDeclaration, ""},
    {PopupId::kCode, "mnuPopUpHaupt_Verwendungen", "Alle Ver&wendungen", kListUses, ""},
    {PopupId::kCode, "mnuPopUpHaupt_Zoom", "&Zoom", kSwitchZoom, ""},
    {PopupId::kZoom, "mnuPopUp_Zoom_Html", "Zoom nach &Html", kExportZoomHtml, ""},
    {PopupId::kZoom, "mnuPopUp_Zoom_Copy", "&Zoom Kopieren", kCopySelection, ""},
    {PopupId::kZoom, "mnuPopUp_Zoom_Aus", "&Zoom Aus", kSwitchZoom, ""},
    {PopupId::kReading, "mnuPopUpEinlesen_Clip", "&HTML Zwischenablage", kExportClipboardHtml, ""},
    {PopupId::kReading, "mnuPopUpEinlesen_Code", "&Code Einlesen", kReadCode, ""},
    {PopupId::kReading, "mnuPopUpEinlesen_Alle", "&Alle ankreuzen", kTickAll, ""},
    {PopupId::kReading, "mnuPopUpEinlesen_Keine", "&Keine ankreuzen", kTickNone, ""},
    {PopupId::kReading, "mnuPopUpEinlesen_Entfernen", "Quelle &entfernen", kRemoveSource, ""},
};

/// Each id has a row, and no id has two.
template <typename Row, std::size_t kRows>
constexpr bool IsWhole(const Row (&rows)[kRows], std::size_t ids) {
  for (std::size_t id = 0; id < kRows; ++id) {
    if (static_cast<std::size_t>(rows[id].id) != id) return false;
  }
  return kRows == ids;
}
static_assert(IsWhole(kCommands, static_cast<std::size_t>(kRemoveSource) + 1));
static_assert(IsWhole(kToolButtons, static_cast<std::size_t>(ButtonId::kZoom) + 1));

}  // namespace

std::span<const Menu> Menus() { return kMenus; }
std::span<const Command> Commands() { return kCommands; }
std::span<const ToolButton> ToolButtons() { return kToolButtons; }
std::span<const Popup> Popups() { return kPopups; }
std::span<const ContextItem> ContextItems() { return kContextItems; }

const ToolButton* FindToolButton(std::string_view key) {
  const auto* found = std::find_if(std::begin(kToolButtons), std::end(kToolButtons),
                                   [key](const ToolButton& button) { return text::EqualsIgnoreCase(button.key, key); });
  return found == std::end(kToolButtons) ? nullptr : found;
}

}  // namespace quillmate::ui
