#pragma once

#include <QString>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <quillmate/codedb/notes.h>
#include <quillmate/export/cover_page.h>
#include <quillmate/project/understanding.h>

#include "exports.h"
#include "hand_over_choice.h"
#include "print_commands.h"
#include "table_file.h"

class QWidget;

namespace quillmate::ui {

/// "Übergabe ...": everything about the loaded project for whoever takes it over, as one folder or zip file: the cover
/// page, and as chosen the documentation, the code as PDF, the lists and the saved project.
class HandOver : public QObject {
  Q_OBJECT

 public:
  /// Everything must outlive it. Dialogs stand over `window`.
  HandOver(QWidget& window, const ListDesk& desk, codedb::CodeDatabase& database, Exports& exports,
           PrintCommands& printing);

  /// Where the user's notes come from.
  void TakeNotes(std::function<std::vector<codedb::Note>()> notes) { notes_ = std::move(notes); }
  /// Asks what, then where, and makes it.
  void Ask(std::shared_ptr<const project::Understanding> known);

 signals:
  /// The project's files are about to be copied: nobody may read them meanwhile.
  void AboutToCopy();

 private:
  class Steps;

  void Run(const HandOverChoice& choice);
  std::filesystem::path ChooseTarget(bool zipped);
  void Make(const HandOverChoice& choice, const std::filesystem::path& folder, Steps& steps);
  void WriteLists(const std::filesystem::path& file);
  void CopyProject(const std::filesystem::path& folder);
  void WriteCover(const std::filesystem::path& folder, std::vector<output::CoverPart> parts);

  QWidget& window_;
  ListDesk desk_;
  codedb::CodeDatabase& database_;
  Exports& exports_;
  PrintCommands& printing_;
  std::function<std::vector<codedb::Note>()> notes_;
  std::shared_ptr<const project::Understanding> known_;
  /// As chosen last.
  HandOverChoice choice_;
};

}  // namespace quillmate::ui
