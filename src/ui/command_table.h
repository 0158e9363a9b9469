#pragma once

#include <cstddef>
#include <span>
#include <string_view>

/// Every command of the main window as data: menus, toolbar and context menus are built from these tables, and the
/// mode of the window switches their entries on and off.
namespace quillmate::ui {

/// Every command of the window. What the user calls them is in the table.
enum class CommandId {
  // Datei
  kOpenSavedProject,
  kStartAnew,
  kSaveProjectAs,
  kAddFiles,
  kAddFolder,
  kSwitchReadAtOnce,
  kPrint,
  kPreviewPrint,
  kSavePdf,
  kHandOver,
  kOpenRecent0,
  kOpenRecent1,
  kOpenRecent2,
  kOpenRecent3,
  kOpenRecent4,
  kOpenRecent5,
  kOpenRecent6,
  kOpenRecent7,
  kOpenRecent8,
  kOpenRecent9,
  kEndProgram,
  // Bearbeiten
  kReadCode,
  kSearchFromTop,
  kSearchOn,
  kSwitchProjectSearch,
  kSwitchWholeWord,
  kTakeSearchText,
  kEnterSearchText,
  kListAllHits,
  kFindRoutineCallers,
  kShowDefinition,
  kShowDeclaration,
  kListUses,
  kNextUse,
  kPreviousUse,
  kGoToName,
  kGoToLine,
  kGoBack,
  kGoNext,
  kCopyModule,
  kCopySelection,
  // Ansicht
  kRefreshProjects,
  kSwitchZoom,
  kCloseCallerList,
  kFilterTree,
  kSwitchSourceOrder,
  kSwitchExactOutline,
  kSwitchDeclarations,
  kSwitchLineNumbers,
  kEnlargeFont,
  kReduceFont,
  kResetFont,
  kShowSpecialView,
  // HTML
  kExportClipboardHtml,
  kExportSelectionHtml,
  kExportModuleHtml,
  kExportProjectHtml,
  kWriteDocumentation,
  kExportZoomHtml,
  // RTF
  kExportProjectRtf,
  kExportModuleRtf,
  // Nur-Text
  kCopySelectionText,
  kCopyModuleText,
  // Lesen
  kNextRoutine,
  kPreviousRoutine,
  kToggleFold,
  kFoldAll,
  kUnfoldAll,
  kSwitchHeader,
  kToggleBookmark,
  kNextBookmark,
  kPreviousBookmark,
  kEditNote,
  kListNotes,
  // Analyse
  kShowHierarchy,
  kShowCallPicture,
  kShowDependencies,
  kShowForm,
  kListFindings,
  kListUnused,
  kListMetrics,
  // Extras
  kReadVbFiles,
  kCopyOutline,
  kShowUnusedRoutines,
  kCompareStates,
  kShowInventory,
  kShowOptions,
  kStoreDisplaySize,
  kApplyStoredDisplaySize,
  kClearClipboard,
  // Hilfe
  kShowHelp,
  kReadSample,
  kShowAbout,
  // Context menu only
  kTickAll,
  kTickNone,
  kRemoveSource
};

inline constexpr std::size_t kRecentCommands = 10;
/// The command that opens the project at a 0-based position of the list of recent projects, below kRecentCommands.
constexpr CommandId OpenRecentCommand(std::size_t position) {
  return static_cast<CommandId>(static_cast<std::size_t>(CommandId::kOpenRecent0) + position);
}

enum class MenuId { kNone, kFile, kEdit, kView, kHtml, kRtf, kText, kReading, kAnalysis, kExtras, kHelp };

enum class ButtonId {
  kNew,
  kOpen,
  kSave,
  kRefresh,
  kRead,
  kClipboardHtml,
  kSelectionHtml,
  kModuleHtml,
  kProjectHtml,
  kSearch,
  kSearchOn,
  kProjectSearch,
  kWholeWord,
  kTakeSearchText,
  kZoom
};

/// The context menus: of the code, of the zoom view, and of what is on screen before a project is loaded.
enum class PopupId { kCode, kZoom, kReading };

/// In which modes of the window an entry is on.
enum Modes : unsigned {
  kBySituation = 0,  // neither: switched by whoever knows the situation
  kNoProject = 1,    // mode 0
  kWithProject = 2,  // modes 1 and 2
  kAlways = kNoProject | kWithProject
};

struct Menu {
  MenuId id;
  /// Name of the QMenu.
  const char* name;
  const char* caption;
  unsigned modes = kAlways;
};

struct Command {
  CommandId id;
  /// Name of the menu item and of its QAction.
  const char* name;
  /// kNone for a command that only a context menu shows.
  MenuId menu;
  const char* caption;
  /// As QKeySequence reads it; empty for none.
  const char* shortcut;
  /// Image key; empty for none.
  const char* icon;
  unsigned modes;
  bool separatorBefore;
  /// A switch: its handler sets the check mark; the toolbar button shows the same.
  bool checkable = false;
};

struct ToolButton {
  ButtonId id;
  /// Key of the button, image key and name of its QAction. Keys compare without regard to case.
  std::string_view key;
  const char* tooltip;
  CommandId command;
  unsigned modes;
  bool separatorBefore;
};

struct Popup {
  PopupId id;
  /// Name of the QMenu.
  const char* name;
};

struct ContextItem {
  PopupId popup;
  /// Name of the item's QAction.
  const char* name;
  const char* caption;
  CommandId command;
  /// Title of the submenu that holds the item; empty for the popup itself. Items of a submenu follow one another.
  const char* submenu;
};

std::span<const Menu> Menus();
std::span<const Command> Commands();
std::span<const ToolButton> ToolButtons();
std::span<const Popup> Popups();
std::span<const ContextItem> ContextItems();

/// The button with that key, regardless of case; null when there is none.
const ToolButton* FindToolButton(std::string_view key);

}  // namespace quillmate::ui
