#pragma once

#include <QMainWindow>
#include <QSplitter>
#include <QStackedWidget>
#include <memory>
#include <string>
#include <vector>

#include <quillmate/ui/services.h>

#include "analysis_commands.h"
#include "background_tasks.h"
#include "call_panel.h"
#include "caller_panel.h"
#include "code_area.h"
#include "code_commands.h"
#include "code_knowledge.h"
#include "command_set.h"
#include "compare_commands.h"
#include "exports.h"
#include "hand_over.h"
#include "hit_panel.h"
#include "interaction.h"
#include "inventory_commands.h"
#include "mini_window.h"
#include "name_commands.h"
#include "note_commands.h"
#include "place_bar.h"
#include "print_commands.h"
#include "project_commands.h"
#include "project_panel.h"
#include "project_session.h"
#include "qt_text.h"
#include "read_files.h"
#include "reading_commands.h"
#include "search_field.h"
#include "source_list.h"
#include "start_page.h"
#include "status_panels.h"
#include "use_panel.h"
#include "view_settings.h"

namespace quillmate::ui {

/// The inside of the main window: puts its parts together, and each command to the part that does the work. The parts
/// do not know it.
class Shell : public QObject {
  Q_OBJECT

 public:
  Shell(QMainWindow& window, const Services& services);

  /// What is shown before the user does anything.
  void Load(bool mini);
  /// Stores what is kept for the next run.
  void Unload();

  /// Runs a command as the user gives it.
  void Run(CommandId command);
  /// Asks about a project that is not saved; false when the program is to stay.
  bool MayClose();
  /// For the status bar, until something else is to be told.
  void Say(const QString& text) { interaction_.ShowProgress(ToUtf8(text)); }
  /// What was dropped on the window is taken as soon as nothing else runs.
  void TakeDropped(const QStringList& files);
  /// The user has come back to the window.
  void LookForChanges();
  /// Fonts and colours, after the options or the desktop's look have changed.
  void ApplyOptions();

  CommandSet& Commands() { return *commands_; }

 signals:
  /// The user has closed the mini window, which is in the place of the main one.
  void EndWanted();

 private:
  void BuildTrees();
  void BuildCode();
  void BuildSearch();
  void ConnectSession();
  void ConnectTrees();
  void ConnectCode();
  void ConnectNames();
  void ConnectStatusBar();
  void ConnectStartPage();

  void Carry(CommandId command);
  /// 0 no project loaded; 1 and 2 a project is loaded; anything else is ignored.
  void SetMode(int mode);
  void ShowProject();
  void ShowTitle();
  void ShowRecent(const std::vector<std::string>& folders);
  void ShowTree(QWidget& tree) { trees_->setCurrentWidget(&tree); }
  void ShowReadingMenu(const QPoint& place, bool ofSource);
  void ShowCodeMenu(const QPoint& place);

  void ShowCallers();
  void CloseCallers();
  void SetCallersShown(bool shown);
  void EnterSearchText();
  void ListHits();
  void Toggle(CommandId command, bool& on);
  void TakeKnowledge();
  ListDesk Desk() { return {interaction_, services_.globals, session_, readFiles_, tasks_}; }
  void HandProjectOver();
  void WriteDocumentation();
  bool MayEndTasks();
  void ShowOptions();
  void ShowAbout();
  void ShowMini();
  void ShowSpecialView();
  void ReturnFromMini();

  QMainWindow& window_;
  Services services_;
  Interaction interaction_;
  ProjectSession session_;
  ReadFiles readFiles_;
  BackgroundTasks tasks_;
  SearchSwitches switches_;

  StatusPanels* staBar_;
  CommandSet* commands_;
  SourceList sources_;
  ProjectCommands projects_;
  PlaceBar* placeBar_;
  CodeArea* code_;
  CodeKnowledge knowledge_;
  SearchField* txtSuche_;
  Exports exports_;
  CodeCommands navigation_;

  /// The trees, of which one is seen.
  QStackedWidget* trees_;
  ProjectPanel* project_;
  CallerPanel* callers_;
  QToolBar* tobSuche_;
  /// The start page, which is in the place of the code while no project is loaded, and the code below its place.
  QStackedWidget* area_;
  QWidget* codePane_;
  StartPage* startPage_;
  HitPanel* hits_;
  UsePanel* uses_;
  CallPanel* hierarchy_;
  NameCommands names_;
  AnalysisCommands analysis_;
  ReadingCommands reading_;
  NotePanel* notePanel_;
  NoteCommands notes_;
  PrintCommands printing_;
  CompareCommands comparing_;
  InventoryCommands inventories_;
  HandOver handOver_;
  QSplitter* container_;
  ViewSettings view_;
  std::unique_ptr<MiniWindow> mini_;
};

}  // namespace quillmate::ui
