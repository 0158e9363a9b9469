#pragma once

#include <QObject>
#include <QWidget>
#include <functional>
#include <memory>

#include "code_knowledge.h"
#include "list_source.h"
#include "name_commands.h"
#include "quick_open.h"
#include "table_file.h"

namespace quillmate::ui {

/// The commands that open windows about what the loaded project's code means: lists, pictures, forms and the search for
/// names. Each stays above the main window, which shows the places that are chosen in it.
class AnalysisCommands : public QObject {
 public:
  using MakeList = ListSource(const std::shared_ptr<const project::Understanding>&);

  /// Everything must outlive it.
  AnalysisCommands(QWidget& window, const ListDesk& desk, CodeKnowledge& knowledge, NameCommands& names);

  /// The project leaves: closes its windows, and forgets what waits.
  void CloseAll();

  /// The project's files are about to be copied: returns when none of the windows reads them any more.
  void FinishReading();

  /// Does it now, or as soon as it is known what the code means; the last wish counts.
  void WhenKnown(std::function<void()> work);
  /// It is known now, or never will be: does what waits.
  void DoWaiting();

  void OpenName();
  void ShowUnusedRoutines();
  void ShowList(MakeList& make);
  void ShowCallPicture(symbols::SymbolId routine);
  void ShowDependencies();
  /// Of the module on screen.
  void ShowForm();

 private:
  QWidget& window_;
  ListDesk desk_;
  Interaction& interaction_;
  project::Session& session_;
  CodeKnowledge& knowledge_;
  NameCommands& names_;
  QuickOpen* quickOpen_;
  /// What the user waits for while the code is being looked through.
  std::function<void()> waiting_;
};

}  // namespace quillmate::ui
