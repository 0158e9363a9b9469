#pragma once

#include <QStackedWidget>
#include <QTreeView>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <quillmate/navigation/code_views.h>
#include <quillmate/ui/main_window.h>

#include "caller_list.h"
#include "code_editor.h"
#include "command_set.h"
#include "host_tree_model.h"
#include "mini_window.h"
#include "node_tree.h"
#include "project_tree_model.h"
#include "status_panels.h"
#include "whereabouts.h"
#include "zoom_view.h"

namespace quillmate::ui {

class HitPanel;
class StartPage;
class TreeFilter;

/// The inside of the main window: its widgets, the state of what they show, and the few verbs that command handlers
/// share. Handlers get a Shell and nothing else.
class Shell {
 public:
  Shell(MainWindow& mainWindow, const Surroundings& surroundings);

  startup::AppGlobals& Globals() const { return around.globals; }

  /// Runs something the user asked for. An error is shown and ends it; while something runs, nothing else starts.
  void Guarded(const std::function<void()>& work);

  /// Message box under the program's title. Texts are UTF-8.
  Answer Show(std::string_view text, MessageIcon icon = MessageIcon::kNone, Buttons buttons = Buttons::kOk,
              std::string_view detail = {});

  /// 0 no project loaded; 1 and 2 a project is loaded; anything else is ignored.
  void SetMode(int newMode);
  /// Title and, behind it, what is loaded.
  void SetCaption(const QString& project = {});
  /// Name of the loaded project as the title shows it; empty when there is none.
  QString ProjectName() const;
  /// Panel 5, UTF-8; empty when the work is done. Keeps the desktop from taking the program for dead.
  void ShowProgress(std::string_view text);
  /// Shows one of the trees.
  void ShowTree(QTreeView& tree);
  /// The code on screen: the zoom view when zoom is on, otherwise the code view.
  CodeEditor& Editor() const;
  /// What is selected in the code view that is seen, Windows-1252 with CR LF; empty when nothing is.
  std::string VisibleSelection();
  /// Colours and fonts of the code as the options are now.
  void ApplyOptions();

  Surroundings around;
  MainWindow& window;

  int mode = 0;
  /// The modules of the loaded project; one empty view while there is none.
  navigation::CodeViews views;

  Whereabouts whereabouts;
  ZoomText zoom;

  QStackedWidget* trees = nullptr;
  QTreeView* treApp = nullptr;
  HostTreeModel* hostModel = nullptr;
  NodeTree* treProjekt = nullptr;
  ProjectTreeModel* projectModel = nullptr;
  TreeFilter* treeFilter = nullptr;
  CallerList callers;
  CodeEditor* rtbHaupt = nullptr;
  /// Lies over the code view while zoom is on.
  CodeEditor* rtbZoom = nullptr;
  QStackedWidget* codes = nullptr;
  /// Stands in the place of the code while no project is loaded.
  StartPage* startPage = nullptr;
  /// Holds the start page and the code.
  QStackedWidget* area = nullptr;
  QLineEdit* txtSuche = nullptr;
  HitPanel* hits = nullptr;
  StatusPanels* staBar = nullptr;
  CommandSet* commands = nullptr;
  std::unique_ptr<MiniWindow> mini;
  /// The project folders behind the items `mnuOpenIndex`(0..9).
  std::vector<std::string> recent;

 private:
  void BuildTrees();
  void BuildArea();
  void BuildNavigation();
  void WireContextMenus();

  bool busy_ = false;
  qint64 lastShown_ = 0;
};

/// Keeps a widget from painting while it is being filled.
class UpdateLock {
 public:
  explicit UpdateLock(QWidget& widget) : widget_(widget) { widget_.setUpdatesEnabled(false); }
  ~UpdateLock() { widget_.setUpdatesEnabled(true); }
  UpdateLock(const UpdateLock&) = delete;
  UpdateLock& operator=(const UpdateLock&) = delete;

 private:
  QWidget& widget_;
};

/// The hourglass, and an empty panel 5 at the end, however the work ends.
class Working {
 public:
  explicit Working(Shell& shell);
  ~Working();
  Working(const Working&) = delete;
  Working& operator=(const Working&) = delete;

 private:
  Shell& shell_;
};

}  // namespace quillmate::ui
