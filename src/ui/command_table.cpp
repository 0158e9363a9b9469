#include "command_table.h"

#include <algorithm>

#include <quillmate/text/operations.h>

#include "commands.h"

namespace quillmate::ui {
namespace {

constexpr Menu kMenus[] = {
    {"mnuDatei", "&Datei"},
    {"mnuBearbeiten", "&Bearbeiten"},
    {"mnuAnsicht", "&Ansicht"},
    {"mnuExtras", "&Extras"},
};

// id, menu, caption, shortcut, icon, modes, separator before, handler
constexpr Command kCommands[] = {
    {"mnuNeu", "mnuDatei", "&Neu", "Ctrl+N", "neu", kWithProject, false, StartAnew},
    {"mnuSpeichern", "mnuDatei", "&Speichern Unter ...", "Ctrl+S", "save", kWithProject, false, SaveProjectAs},
    {"mnuDatei_Dateien", "mnuDatei", "&Dateien hinzufügen ...", "Ctrl+D", "add_files", kAlways, true, AddFiles},
    {"mnuDatei_Ordner", "mnuDatei", "O&rdner hinzufügen ...", "Ctrl+Shift+D", "", kAlways, false, AddFolder},
    {"mnuEnde", "mnuDatei", "&Beenden", "Ctrl+Q", "", kAlways, true, EndProgram},

    {"mnuBearbeiten_Code", "mnuBearbeiten", "&Code Einlesen", "F9", "doit", kNoProject, false, ReadCode},
    {"mnuVB", "mnuBearbeiten", "&VB Einlesen", "", "", kAlways, false, ReadVbFiles},
    {"mnuBearbeiten_Kopieren_Modul", "mnuBearbeiten", "Kopieren &Modul", "", "", kWithProject, true, CopyModule},
    {"mnuBearbeiten_Kopieren_Auswahl", "mnuBearbeiten", "&Kopieren Auswahl", "", "", kWithProject, false,
     CopySelection},

    {"mnuAnsicht_App_Aktualisieren", "mnuAnsicht", "&Aktualisieren VBA Projekte", "F5", "refresh", kNoProject, false,
     RefreshProjects},

    {"mnuExtras_Struktur", "mnuExtras", "&Struktur nach Zwischenablage", "", "", kAlways, false, CopyOutline},
    {"mnuExtras_Screen_define", "mnuExtras", "Benutzer Bildschirm &Festlegen", "", "", kAlways, true, StoreDisplaySize},
    {"mnuExtras_Screen_call", "mnuExtras", "&Benutzer Bildschirm Aufrufen", "", "", kAlways, false,
     ApplyStoredDisplaySize},
    {"mnuExtras_ClearClip", "mnuExtras", "&Zwischenablage Leeren", "", "", kAlways, true, ClearClipboard},

    {"mnuPopUpEinlesen_Entfernen", "", "Quelle &entfernen", "", "remove", kBySituation, false, RemoveSource},
};

// The refresh button starts anew like "neu" does, but is there for the time without a project.
constexpr ToolButton kToolButtons[] = {
    {"neu", "Neu", "mnuNeu", kWithProject, false},
    {"save", "Speichern", "mnuSpeichern", kWithProject, false},
    {"refresh", "", "mnuNeu", kNoProject, true},
    {"doit", "Code Lesen", "mnuBearbeiten_Code", kNoProject, false},
};

constexpr ContextItem kContextItems[] = {
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Copy_Modul", "&Modul", "mnuBearbeiten_Kopieren_Modul", "&Kopieren"},
    {"mnuPopUpHaupt", "mnuPopUpHaupt_Copy_Auswahl", "&Auswahl", "mnuBearbeiten_Kopieren_Auswahl", "&Kopieren"},
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
