#include "hand_over.h"

#include <QDateTime>
#include <QProgressDialog>
#include <exception>
#include <stdexcept>
#include <utility>

#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/project_folder.h>
#include <quillmate/export/table.h>
#include <quillmate/export/zip_folder.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>
#include <quillmate/files/work_folder.h>

#include "list_source.h"
#include "module_matrix.h"
#include "qt_text.h"
#include "save_dialog.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

constexpr const char* kCoverFile = "Übersicht.html";
constexpr const char* kSiteFolder = "Dokumentation";
constexpr const char* kPdfFile = "Code.pdf";
constexpr const char* kListFile = "Listen.xlsx";
constexpr const char* kProjectFolder = "Projekt";

/// The user has had enough.
class Cancelled : public std::exception {};

/// A place in a folder that nothing has yet: "Lager Übergabe", "Lager Übergabe (2)".
fs::path FreeName(const fs::path& folder, const std::string& name) {
  fs::path free = folder / files::PathFromText(name);
  std::error_code ignored;
  for (int number = 2; fs::exists(fs::symlink_status(free, ignored)); ++number) {
    free = folder / files::PathFromText(name + " (" + std::to_string(number) + ")");
  }
  return free;
}

output::CoverNote CoverNoteOf(const codedb::Note& note) {
  output::CoverNote cover;
  for (const std::string* part : {&note.project, &note.module, &note.routine}) {
    if (part->empty()) continue;
    cover.place += (cover.place.empty() ? "" : ".") + *part;
  }
  cover.place += "\n" + note.line;
  cover.text = note.text.empty() ? "(Lesezeichen)" : note.text;
  return cover;
}

}  // namespace

/// What is being done, with a button that ends it.
class HandOver::Steps {
 public:
  Steps(QWidget& window, Interaction& interaction)
      : interaction_(interaction), dialog_(QString(), QStringLiteral("Abbrechen"), 0, 100, &window) {
    dialog_.setObjectName(QStringLiteral("frmUebergabeFortschritt"));
    dialog_.setWindowTitle(QStringLiteral("Übergabe"));
    dialog_.setWindowModality(Qt::WindowModal);
    dialog_.setAutoReset(false);
    dialog_.setAutoClose(false);
  }

  void Begin(const char* text) {
    text_ = text;
    Tell(0, 1);
  }
  void Tell(std::size_t done, std::size_t total) {
    const int percent = total == 0 ? 0 : static_cast<int>(done * 100 / total);
    interaction_.ShowProgress(text_ + ": " + std::to_string(percent) + " %");
    if (percent != dialog_.value() || dialog_.labelText() != FromUtf8(text_)) {
      dialog_.setLabelText(FromUtf8(text_));
      // Lets the button be pressed, too.
      dialog_.setValue(percent);
    }
    if (dialog_.wasCanceled()) throw Cancelled();
  }

 private:
  Interaction& interaction_;
  QProgressDialog dialog_;
  std::string text_;
};

HandOver::HandOver(QWidget& window, const ListDesk& desk, codedb::CodeDatabase& database, Exports& exports,
                   PrintCommands& printing)
    : window_(window), desk_(desk), database_(database), exports_(exports), printing_(printing) {}

void HandOver::Ask(std::shared_ptr<const project::Understanding> known) {
  known_ = std::move(known);
  auto* dialog = new HandOverDialog(&window_, choice_);
  connect(dialog, &HandOverDialog::Chosen, this, [this](const HandOverChoice& choice) {
    choice_ = choice;
    desk_.interaction.Guarded([this, choice] {
      if (desk_.session.IsLoaded()) Run(choice);
    });
  });
  connect(dialog, &QDialog::finished, this, [this](int result) {
    if (result == QDialog::Rejected) known_.reset();
  });
  dialog->open();
}

fs::path HandOver::ChooseTarget(bool zipped) {
  const QString start = FromUtf8(desk_.globals.LastProjectFolder);
  const std::string name = files::CleanName(desk_.session.Name() + " Übergabe");
  if (zipped) {
    return ToPath(SaveFileDialog(desk_.interaction, QStringLiteral("zip"), "Zip-Datei:zip;", start, FromUtf8(name)));
  }
  const QString chosen =
      desk_.interaction.Desktop().ChooseFolder(QStringLiteral("Bitte Ordner für die Übergabe auswählen"), start);
  return chosen.isEmpty() ? fs::path() : FreeName(ToPath(chosen), name);
}

void HandOver::Run(const HandOverChoice& choice) {
  const std::shared_ptr<const project::Understanding> held = known_;
  const fs::path target = ChooseTarget(choice.zipped);
  if (target.empty()) return;
  desk_.readFiles.Check({target});
  try {
    const Working working(desk_.interaction);
    Steps steps(window_, desk_.interaction);
    const files::WorkFolder work(
        choice.zipped ? fs::temp_directory_path() : target.parent_path(),
        choice.zipped ? files::WorkFolder::Access::kPrivate : files::WorkFolder::Access::kAsPlace);
    const fs::path made = work.Path() / (choice.zipped ? target.stem() : target.filename());
    fs::create_directory(made);
    Make(choice, made, steps);
    if (choice.zipped) {
      steps.Begin("Packe");
      output::ZipFolder(made, target, [&steps](int percent) { steps.Tell(static_cast<std::size_t>(percent), 100); });
    } else {
      const files::EndGuard guard;
      fs::rename(made, target);
    }
  } catch (const Cancelled&) {
    desk_.interaction.ShowProgress("Die Übergabe wurde abgebrochen.");
    return;
  }
  desk_.interaction.Show("Die Übergabe steht in\r\n" + files::PathText(target), MessageIcon::kInformation);
}

void HandOver::Make(const HandOverChoice& choice, const fs::path& folder, Steps& steps) {
  std::vector<output::CoverPart> parts;
  if (choice.site) {
    steps.Begin("HTML-Dokumentation");
    fs::create_directory(folder / kSiteFolder);
    exports_.WriteSiteInto(*known_, folder / kSiteFolder,
                           [&steps](std::size_t done, std::size_t total) { steps.Tell(done, total); });
    parts.push_back({std::string(kSiteFolder) + "/index.html", "HTML-Dokumentation"});
  }
  if (choice.pdf) {
    steps.Begin("Code als PDF");
    printing_.WriteProjectPdf(folder / kPdfFile, [&steps](int page, int pages) {
      steps.Tell(static_cast<std::size_t>(page), static_cast<std::size_t>(pages));
      return true;
    });
    parts.push_back({kPdfFile, "Code als PDF"});
  }
  if (choice.lists) {
    steps.Begin("Listen");
    WriteLists(folder / kListFile);
    parts.push_back({kListFile, "Listen: Befunde, Unbenutztes, Kennzahlen, Abhängigkeiten"});
  }
  if (choice.project) {
    steps.Begin("Projekt");
    CopyProject(folder / kProjectFolder);
    parts.push_back({std::string(kProjectFolder) + "/", "Gespeichertes Projekt, mit Quillmate zu öffnen"});
  }
  steps.Begin("Übersicht");
  WriteCover(folder, std::move(parts));
}

void HandOver::WriteLists(const fs::path& file) {
  output::Spreadsheet book;
  for (const auto make : {&FindingList, &UnusedList, &MetricList}) {
    const ListSource list = make(known_);
    output::AddTable(book, TableOf(list, list.find(nullptr)));
  }
  output::AddTable(book, ModuleMatrix(known_, nullptr).AsTable());
  if (const auto problem = book.Write(file)) throw std::runtime_error(*problem);
}

void HandOver::CopyProject(const fs::path& folder) {
  fs::create_directory(folder);
  emit AboutToCopy();
  const fs::path source = desk_.session.Files();
  database_.CloseCodeDatabase();
  std::exception_ptr failure;
  try {
    codedb::CopyAllFiles(source, folder);
  } catch (...) {
    failure = std::current_exception();
  }
  database_.OpenCodeDatabase(source);
  if (!failure && notes_) codedb::SaveNotes(folder, notes_());
  if (failure) std::rethrow_exception(failure);
}

void HandOver::WriteCover(const fs::path& folder, std::vector<output::CoverPart> parts) {
  std::optional<codedb::Facts> facts;
  try {
    facts = codedb::ReadFacts(desk_.session.Files());
  } catch (const std::exception&) {
    // The cover says that nothing is known.
  }
  const checks::Metrics metrics = checks::Measure(known_->Index());
  const std::vector<checks::Finding> findings = checks::RunChecks(known_->Index());
  const QString time = QDateTime::currentDateTime().toString(QStringLiteral("dd.MM.yyyy, HH:mm"));
  output::CoverPage page{desk_.session.Name(),
                         ToUtf8(time),
                         facts ? &*facts : nullptr,
                         known_->Index(),
                         metrics,
                         findings,
                         std::move(parts),
                         {}};
  if (notes_) {
    for (const codedb::Note& note : notes_()) page.notes.push_back(CoverNoteOf(note));
  }
  files::ReplaceFile(folder / files::PathFromText(kCoverFile), output::CoverHtml(page));
}

}  // namespace quillmate::ui
