#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <quillmate/codedb/notes.h>
#include <quillmate/project/understanding.h>

#include "exports.h"
#include "hand_over_choice.h"
#include "hand_over_maker.h"
#include "print_commands.h"
#include "table_file.h"

class QWidget;

namespace quillmate::ui {

/// "Übergabe ...": everything about the loaded project for whoever takes it over, as one folder or zip file: the cover
/// page, and as chosen the documentation, the code as PDF, the lists and the saved project. Made in the background; the
/// user may go on, and leave the project.
class HandOver : public QObject {
 public:
  /// Everything must outlive it. Dialogs appear over `window`.
  HandOver(QWidget& window, const ListDesk& desk, Exports& exports, PrintCommands& printing);

  /// Where the user's notes come from.
  void TakeNotes(std::function<std::vector<codedb::Note>()> notes) { notes_ = std::move(notes); }
  /// Asks what, then where, and begins. While one is being made, that one is shown.
  void Ask(std::shared_ptr<const project::Understanding> known);

 private:
  void Run(const HandOverChoice& choice);
  std::filesystem::path ChooseTarget(bool zipped);
  HandOverOrder OrderFor(const HandOverChoice& choice) const;

  QWidget& window_;
  ListDesk desk_;
  Exports& exports_;
  PrintCommands& printing_;
  std::function<std::vector<codedb::Note>()> notes_;
  std::shared_ptr<const project::Understanding> known_;
  /// As chosen last.
  HandOverChoice choice_;
};

}  // namespace quillmate::ui
