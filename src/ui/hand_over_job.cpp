#include "hand_over_job.h"

#include <exception>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/project_folder.h>
#include <quillmate/export/site.h>
#include <quillmate/export/table.h>
#include <quillmate/export/zip_folder.h>
#include <quillmate/files/paths.h>

#include "error_text.h"
#include "list_source.h"
#include "module_matrix.h"
#include "qt_text.h"

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

std::optional<codedb::Facts> FactsIn(const fs::path& folder) {
  try {
    return codedb::ReadFacts(folder);
  } catch (const std::exception&) {
    // The cover says that nothing is known.
    return std::nullopt;
  }
}

}  // namespace

/// The parts of what is handed over, one after the other, in one folder.
class HandOverJob::Maker {
 public:
  Maker(HandOverJob& job, fs::path folder) : job_(job), order_(job.order_), folder_(std::move(folder)) {}

  void Make() {
    const HandOverChoice& choice = order_.choice;
    if (choice.site) MakeSite();
    if (choice.pdf) MakePdf();
    job_.Begin("Befunde und Kennzahlen");
    findings_ = checks::RunChecks(order_.known->Index(), {}, 0, &job_.cancelled_);
    metrics_ = std::make_shared<const checks::Metrics>(checks::Measure(order_.known->Index()));
    if (choice.lists) MakeLists();
    if (choice.project) MakeProject();
    MakeCover();
  }

 private:
  void MakeSite() {
    job_.Begin("HTML-Dokumentation");
    fs::create_directory(folder_ / kSiteFolder);
    output::SiteProject site = order_.site;
    site.indexFolder = job_.copy_;
    output::WriteSite(site, order_.look, folder_ / kSiteFolder,
                      [this](std::size_t done, std::size_t total) { job_.Tell(done, total); });
    parts_.push_back({std::string(kSiteFolder) + "/index.html", "HTML-Dokumentation"});
  }

  void MakePdf() {
    job_.Begin("Code als PDF");
    WriteProjectPdf(order_.pdf, job_.copy_, order_.moduleCount, folder_ / kPdfFile, [this](int page, int pages) {
      job_.Tell(static_cast<std::size_t>(page), static_cast<std::size_t>(pages));
      return true;
    });
    parts_.push_back({kPdfFile, "Code als PDF"});
  }

  void MakeLists() {
    job_.Begin("Listen");
    output::Spreadsheet book;
    const ListSource findings = FindingList(order_.known);
    const ListSource unused = UnusedList(order_.known);
    const ListSource metrics = MetricList(order_.known);
    AddList(book, findings, RowsOf(order_.known, findings_), 1);
    AddList(book, unused, unused.find(&job_.cancelled_), 2);
    AddList(book, metrics, RowsOf(order_.known, metrics_), 3);
    output::AddTable(book, ModuleMatrix(order_.known, nullptr).AsTable());
    book.Write(folder_ / kListFile);
    parts_.push_back({kListFile, "Listen: Befunde, Unbenutztes, Kennzahlen, Abhängigkeiten"});
  }

  void AddList(output::Spreadsheet& book, const ListSource& list, const ListRows& rows, std::size_t number) {
    output::AddTable(book, TableOf(list, rows));
    job_.Tell(number, 4);
  }

  void MakeProject() {
    job_.Begin("Projekt");
    fs::create_directory(folder_ / kProjectFolder);
    codedb::CopyAllFiles(job_.copy_, folder_ / kProjectFolder);
    if (!order_.notes.empty()) codedb::SaveNotes(folder_ / kProjectFolder, order_.notes);
    parts_.push_back({std::string(kProjectFolder) + "/", "Gespeichertes Projekt, mit Quillmate zu öffnen"});
  }

  void MakeCover() {
    job_.Begin("Übersicht");
    const std::optional<codedb::Facts> facts = FactsIn(job_.copy_);
    output::CoverPage page{order_.title, order_.time, facts ? &*facts : nullptr, order_.known->Index(),
                           *metrics_,    findings_,   std::move(parts_),         {}};
    for (const codedb::Note& note : order_.notes) page.notes.push_back(CoverNoteOf(note));
    files::ReplaceFile(folder_ / files::PathFromText(kCoverFile), output::CoverHtml(page));
  }

  HandOverJob& job_;
  const HandOverOrder& order_;
  const fs::path folder_;
  std::vector<output::CoverPart> parts_;
  std::vector<checks::Finding> findings_;
  std::shared_ptr<const checks::Metrics> metrics_;
};

HandOverJob::HandOverJob(HandOverChoice choice, fs::path target, QObject* parent)
    : QObject(parent),
      target_(std::move(target)),
      replacement_(choice.zipped ? nullptr : std::make_unique<files::FolderReplacement>(target_)),
      work_(files::TemporaryFolder(), files::WorkFolder::Access::kPrivate),
      copy_(work_.Path() / "stand") {
  order_.choice = choice;
  fs::create_directory(copy_);
}

HandOverJob::~HandOverJob() {
  Cancel();
  if (thread_.joinable()) thread_.join();
}

void HandOverJob::Start(HandOverOrder order) {
  order_ = std::move(order);
  const auto run = [this] {
    Run();
    QMetaObject::invokeMethod(this, &HandOverJob::TakeOver, Qt::QueuedConnection);
  };
  try {
    thread_ = std::thread(run);
  } catch (const std::system_error&) {
    run();
  }
}

void HandOverJob::Run() noexcept {
  try {
    Make();
    isMade_ = true;
  } catch (const Cancelled&) {
    // Nobody waits for it any more.
  } catch (const std::exception& error) {
    error_ = ErrorText(error);
  } catch (...) {
    error_ = "Unbekannter Fehler";
  }
}

void HandOverJob::Make() {
  if (replacement_ != nullptr) {
    Maker(*this, replacement_->Path()).Make();
    Begin("Ordner");
    replacement_->Commit();
    return;
  }
  const fs::path made = work_.Path() / "zip" / target_.stem();
  fs::create_directories(made);
  Maker(*this, made).Make();
  Begin("Packe");
  output::ZipFolder(made, target_, [this](int percent) { Tell(static_cast<std::size_t>(percent), 100); });
}

void HandOverJob::TakeOver() {
  if (thread_.joinable()) thread_.join();
  // The copy and what was begun go now, and not with the window.
  emit Finished();
  deleteLater();
}

void HandOverJob::Begin(const char* step) {
  {
    const std::lock_guard lock(mutex_);
    step_ = step;
    percent_ = 0;
  }
  if (cancelled_) throw Cancelled();
}

void HandOverJob::Tell(std::size_t done, std::size_t total) {
  {
    const std::lock_guard lock(mutex_);
    percent_ = total == 0 ? 0 : static_cast<int>(done * 100 / total);
  }
  if (cancelled_) throw Cancelled();
}

QString HandOverJob::StatusText(int& percent) const {
  const std::lock_guard lock(mutex_);
  percent = percent_;
  return cancelled_ ? QStringLiteral("Wird abgebrochen ...") : FromUtf8(step_);
}

}  // namespace quillmate::ui
