#include "command_table.h"

#include <algorithm>

#include <quillmate/text/operations.h>

#include "commands.h"

namespace quillmate::ui {
namespace {

constexpr Menu kMenus[] = {
    {"mnuDatei", "&Datei"},   {"mnuBearbeiten", "&Bearbeiten"}, {"mnuAnsicht", "&Ansicht"},
    {"mnuHtml", "HTML"},      {"mnuRtf", "&RTF", kWithProject}, {"mnuText", "&Nur-Text", kWithProject},
    {"mnuExtras", "&Extras"}, {"mnuHilfe", "&Hilfe"},
};

// id, menu, caption, shortcut, icon, modes, separator before, handler
constexpr Command kCommands[] = {
    {"mnuÖffnen", "mnuDatei", "&Öffnen ...", "Ctrl+O", "open", kAlways, false, OpenSavedProject},
    {"mnuNeu", "mnuDatei", "&Neu", "Ctrl+N", "neu", kWithProject, false, StartAnew},
    {"mnuSpeichern", "mnuDatei", "&Speichern Unter ...", "Ctrl+S", "save", kWithProject, false, SaveProjectAs},
    {"mnuDatei_Dateien", "mnuDatei", "&Dateien hinzufügen ...", "Ctrl+D", "add_files", kAlways, true, AddFiles},
    {"mnuDatei_Ordner", "mnuDatei", "O&rdner hinzufügen ...", "Ctrl+Shift+D", "", kAlways, false, AddFolder},
    {"mnuOpenIndex0", "mnuDatei", "&0 - ", "", "", kAlways, true, OpenRecentAt<0>},
    {"mnuOpenIndex1", "mnuDatei", "&1 - ", "", "", kAlways, false, OpenRecentAt<1>},
    {"mnuOpenIndex2", "mnuDatei", "&2 - ", "", "", kAlways, false, OpenRecentAt<2>},
    {"mnuOpenIndex3", "mnuDatei", "&3 - ", "", "", kAlways, false, OpenRecentAt<3>},
    {"mnuOpenIndex4", "mnuDatei", "&4 - ", "", "", kAlways, false, OpenRecentAt<4>},
    {"mnuOpenIndex5", "mnuDatei", "&5 - ", "", "", kAlways, false, OpenRecentAt<5>},
    {"mnuOpenIndex6", "mnuDatei", "&6 - ", "", "", kAlways, false, OpenRecentAt<6>},
    {"mnuOpenIndex7", "mnuDatei", "&7 - ", "", "", kAlways, false, OpenRecentAt<7>},
    {"mnuOpenIndex8", "mnuDatei", "&8 - ", "", "", kAlways, false, OpenRecentAt<8>},
    {"mnuOpenIndex9", "mnuDatei", "&9 - ", "", "", kAlways, false, OpenRecentAt<9>},
    {"mnuEnde", "mnuDatei", "&Beenden", "Ctrl+Q", "", kAlways, true, EndProgram},

    {"mnuBearbeiten_Code", "mnuBearbeiten", "&Code Einlesen", "F9", "doit", kNoProject, false, ReadCode},
    {"mnuBearbeiten_Suchen", "mnuBearbeiten", "&Suchen", "F3", "su_a", kAlways, true, SearchFromTop},
    {"mnuBearbeiten_SuchenWeiter", "mnuBearbeiten", "Suchen ab P&osition", "Ctrl+F3", "su_w", kAlways, false, SearchOn},
    {"mnuBearbeiten_Suchen_Projekt", "mnuBearbeiten", "&Projektsuche An/Aus", "", "su_p", kAlways, false,
     SwitchProjectSearch, true},
    {"mnuBearbeiten_Suchen_GanzWort", "mnuBearbeiten", "&Ganzes Wort Suche An/Aus", "", "su_g", kAlways, false,
     SwitchWholeWord, true},
    {"mnuBearbeiten_Suchen_Auswahl", "mnuBearbeiten", "&Auswahl nach Suche", "", "su_i", kAlways, false,
     TakeSearchText},
    {"mnuBearbeiten_Suchen_Text", "mnuBearbeiten", "Such&text eingeben", "Ctrl+F", "", kAlways, false, EnterSearchText},
    {"mnuBearbeiten_Suchen_Alle", "mnuBearbeiten", "A&lle Treffer ...", "Ctrl+Shift+F", "", kWithProject, false,
     ListAllHits},
    {"mnuBearbeiten_Rout", "mnuBearbeiten", "Aktuelle &Routine Aufrufe", "Shift+F12", "", kWithProject, true,
     FindRoutineCallers},
    {"mnuBearbeiten_Definition", "mnuBearbeiten", "&Definition", "F12", "", kWithProject, false, ShowDefinition},
    {"mnuBearbeiten_RouBew3", "mnuBearbeiten", "Routine &Zurück", "F4", "back", kBySituation, false, GoBack},
    {"mnuBearbeiten_RouBew4", "mnuBearbeiten", "Routine &Vor", "Ctrl+F4", "next", kBySituation, false, GoNext},
    {"mnuBearbeiten_Kopieren_Modul", "mnuBearbeiten", "Kopieren &Modul", "", "", kWithProject, true, CopyModule},
    {"mnuBearbeiten_Kopieren_Auswahl", "mnuBearbeiten", "&Kopieren Auswahl", "Ctrl+C", "", kWithProject, false,
     CopySelection},

    {"mnuAnsicht_App_Aktualisieren", "mnuAnsicht", "&Aktualisieren VBA Projekte", "F5", "refresh", kNoProject, false,
     RefreshProjects},
    {"mnuAnsicht_Zoom", "mnuAnsicht", "&Zoom", "F11", "zoom", kWithProject, true, SwitchZoom, true},
    {"mnuAnsicht_RouClose", "mnuAnsicht", "&Routinensuche schliessen", "Ctrl+W", "close", kBySituation, false,
     CloseCallerList},
    {"mnuAnsicht_Filter", "mnuAnsicht", "Modul oder Routine &finden", "Ctrl+T", "", kWithProject, true, FilterTree},
    {"mnuAnsicht_Quellreihenfolge", "mnuAnsicht", "Routinen in &Quellreihenfolge", "", "", kAlways, false,
     SwitchSourceOrder, true},
    {"mnuAnsicht_Zeilennummern", "mnuAnsicht", "Zeilen&nummern", "", "", kAlways, true, SwitchLineNumbers, true},
    {"mnuAnsicht_Schrift_Plus", "mnuAnsicht", "Schrift &größer", "Ctrl++", "", kAlways, false, EnlargeFont},
    {"mnuAnsicht_Schrift_Minus", "mnuAnsicht", "Schrift &kleiner", "Ctrl+-", "", kAlways, false, ReduceFont},
    {"mnuAnsicht_Schrift_Normal", "mnuAnsicht", "Schrift n&ormal", "Ctrl+0", "", kAlways, false, ResetFont},
    {"mnuAnsicht_Spezial", "mnuAnsicht", "&Spezialansicht", "", "", kAlways, true, ShowSpecialView},

    {"mnuHtml_Clipboard", "mnuHtml", "&Zwischenablage", "", "ht_clip", kAlways, false, ExportClipboardHtml},
    {"mnuHtml_Auswahl", "mnuHtml", "&Auswahl", "", "ht_aus", kWithProject, false, ExportSelectionHtml},
    {"mnuHtml_Modul", "mnuHtml", "&Modul", "", "ht_mod", kWithProject, false, ExportModuleHtml},
    {"mnuHtml_projekt", "mnuHtml", "&Projekt", "", "ht_pro", kWithProject, false, ExportProjectHtml},
    {"mnuHtml_Dokumentation", "mnuHtml", "HTML-&Dokumentation ...", "", "", kWithProject, true, WriteDocumentation},
    {"mnuPopUp_Zoom_Html", "", "Zoom nach &Html", "", "ht_clip", kWithProject, false, ExportZoomHtml},

    {"mnuRtf_Projekt", "mnuRtf", "&Projekt", "", "", kWithProject, false, ExportProjectRtf},
    {"mnuRtf_Modul", "mnuRtf", "&Modul", "", "", kWithProject, false, ExportModuleRtf},

    {"mnuText_Auswahl", "mnuText", "&Auswahl", "", "", kWithProject, false, CopySelectionText},
    {"mnuText_Modul", "mnuText", "&Modul", "", "", kWithProject, false, CopyModuleText},

    {"mnuVB", "mnuExtras", "&VB Einlesen", "", "", kAlways, false, ReadVbFiles},
    {"mnuExtras_Struktur", "mnuExtras", "&Struktur nach Zwischenablage", "", "", kAlways, false, CopyOutline},
    {"mnuTest", "mnuExtras", "Tests", "", "", kWithProject, false, ShowUnusedRoutines},
    {"mnuExtras_Optionen", "mnuExtras", "&Optionen", "", "", kAlways, true, ShowOptions},
    {"mnuExtras_Screen_define", "mnuExtras", "Benutzer Bildschirm &Festlegen", "", "", kAlways, true, StoreDisplaySize},
    {"mnuExtras_Screen_call", "mnuExtras", "&Benutzer Bildschirm Aufrufen", "", "", kAlways, false,
     ApplyStoredDisplaySize},
    {"mnuExtras_ClearClip", "mnuExtras", "&Zwischenablage Leeren", "", "", kAlways, true, ClearClipboard},

    {"mnuHilfe_Hilfe", "mnuHilfe", "&Hilfe", "F1", "", kAlways, false, ShowHelp},
    {"mnuHilfe_Info", "mnuHilfe", "&Info", "", "", kAlways, false, ShowAbout},

    {"mnuPopUpEinlesen_Entfernen", "", "Quelle &entfernen", "", "remove", kBySituation, false, RemoveSource},
};

// The refresh button starts anew like "neu" does, but is there for the time without a project.
constexpr ToolButton kToolButtons[] = {
    {"neu", "Neu", "mnuNeu", kWithProject, false},
    {"open", "Öffnen", "mnuÖffnen", kAlways, false},
    {"save", "Speichern", "mnuSpeichern", kWithProject, false},
    {"refresh", "", "mnuNeu", kNoProject, true},
    {"doit", "Code Lesen", "mnuBearbeiten_Code", kNoProject, false},
    {"ht_clip", "Zwischenablage nach HTML", "mnuHtml_Clipboard", kAlways, true},
    {"ht_aus", "Auswahl nach HTML", "mnuHtml_Auswahl", kWithProject, false},
    {"ht_mod", "Modul nach HTML", "mnuHtml_Modul", kWithProject, false},
    {"ht_pro", "Projekt nach HTML", "mnuHtml_projekt", kWithProject, false},
    {"su_a", "Suchen (F3)", "mnuBearbeiten_Suchen", kAlways, true},
    {"su_w", "Suchen ab Position(STRG+F3)", "mnuBearbeiten_SuchenWeiter", kAlways, false},
    {"su_p", "Projektweite Suche Ein/Aus", "mnuBearbeiten_Suchen_Projekt", kAlways, false},
    {"su_g", "Ganzes Wort Ein/Aus", "mnuBearbeiten_Suchen_GanzWort", kAlways, false},
    {"su_i", "Markierten Text in's Suchfenster", "mnuBearbeiten_Suchen_Auswahl", kAlways, false},
    {"zoom", "Zoom", "mnuAnsicht_Zoom", kWithProject, true},
};

constexpr ContextItem kContextItems[] = {
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Html_Index0", "&Zwischenablage", "mnuHtml_Clipboard", "&HTML"},
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Html_Index1", "&Auswahl", "mnuHtml_Auswahl", "&HTML"},
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Html_Index2", "&Modul", "mnuHtml_Modul", "&HTML"},
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Html_Index3", "&Projekt", "mnuHtml_projekt", "&HTML"},
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Copy_Modul", "&Modul", "mnuBearbeiten_Kopieren_Modul", "&Kopieren"},
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Copy_Auswahl", "&Auswahl", "mnuBearbeiten_Kopieren_Auswahl", "&Kopieren"},
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Definition", "Definition", "mnuBearbeiten_Definition", ""},
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Aufruf", "Aufruf", "mnuBearbeiten_Rout", ""},
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Zoom", "&Zoom", "mnuAnsicht_Zoom", ""},
    {"mnuPopUp_Zoom", "mnuPopUp_Zoom_Html", "Zoom nach &Html", "mnuPopUp_Zoom_Html", ""},
    {"mnuPopUp_Zoom", "mnuPopUp_Zoom_Copy", "&Zoom Kopieren", "mnuBearbeiten_Kopieren_Auswahl", ""},
    {"mnuPopUp_Zoom", "mnuPopUp_Zoom_Aus", "&Zoom Aus", "mnuAnsicht_Zoom", ""},
    {"mnuPopUpEinlesen", "mnuPopUpEinlesen_Clip", "&HTML Zwischenablage", "mnuHtml_Clipboard", ""},
    {"mnuPopUpEinlesen", "mnuPopUpEinlesen_Code", "&Code Einlesen", "mnuBearbeiten_Code", ""},
    {"mnuPopUpEinlesen", "mnuPopUpEinlesen_Entfernen", "Quelle &entfernen", "mnuPopUpEinlesen_Entfernen", ""},
};

}  // namespace

std::span<const Menu> Menus() { return kMenus; }
std::span<const Command> Commands() { return kCommands; }
std::span<const ToolButton> ToolButtons() { return kToolButtons; }
std::span<const ContextItem> ContextItems() { return kContextItems; }

const Command* FindCommand(std::string_view id) {
  const auto* found = std::find_if(std::begin(kCommands), std::end(kCommands),
                                   [id](const Command& command) { return command.id == id; });
  return found == std::end(kCommands) ? nullptr : found;
}

const ToolButton* FindToolButton(std::string_view key) {
  const auto* found = std::find_if(std::begin(kToolButtons), std::end(kToolButtons),
                                   [key](const ToolButton& button) { return text::EqualsIgnoreCase(button.key, key); });
  return found == std::end(kToolButtons) ? nullptr : found;
}

}  // namespace quillmate::ui
