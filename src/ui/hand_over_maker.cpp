#include "hand_over_maker.h"

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

/// The parts of what is handed over, one after the other, in one folder.
class HandOverMaker {
 public:
  HandOverMaker(const HandOverOrder& order, const ProjectCopy& copy, fs::path folder, BackgroundJob& job)
      : order_(order), copy_(copy), folder_(std::move(folder)), job_(job) {}

  void Make() {
    const HandOverChoice& choice = order_.choice;
    if (choice.site) MakeSite();
    if (choice.pdf) MakePdf();
    job_.Begin("Befunde und Kennzahlen");
    findings_ = checks::RunChecks(order_.known->Index(), {}, 0, &job_.CancelFlag());
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
    site.indexFolder = copy_.Path();
    site.modules = copy_.ReadIndex();
    output::WriteSite(site, order_.look, folder_ / kSiteFolder,
                      [this](std::size_t done, std::size_t total) { job_.Tell(done, total); });
    parts_.push_back({std::string(kSiteFolder) + "/index.html", "HTML-Dokumentation"});
  }

  void MakePdf() {
    WriteProjectPdf(order_.pdf, copy_.Path(), order_.moduleCount, folder_ / kPdfFile, job_);
    parts_.push_back({kPdfFile, "Code als PDF"});
  }

  void MakeLists() {
    job_.Begin("Listen");
    output::Spreadsheet book;
    const ListSource findings = FindingList(order_.known);
    const ListSource unused = UnusedList(order_.known);
    const ListSource metrics = MetricList(order_.known);
    AddList(book, findings, RowsOf(order_.known, findings_), 1);
    AddList(book, unused, unused.find(&job_.CancelFlag()), 2);
    AddList(book, metrics, RowsOf(order_.known, metrics_), 3);
    output::AddTable(book, ModuleMatrix(order_.known, nullptr).AsTable());
    book.Write(folder_ / kListFile, &job_.CancelFlag());
    parts_.push_back({kListFile, "Listen: Befunde, Unbenutztes, Kennzahlen, Abhängigkeiten"});
  }

  void AddList(output::Spreadsheet& book, const ListSource& list, const ListRows& rows, std::size_t number) {
    output::AddTable(book, TableOf(list, rows));
    job_.Tell(number, 4);
  }

  void MakeProject() {
    job_.Begin("Projekt");
    fs::create_directory(folder_ / kProjectFolder);
    codedb::CopyAllFiles(copy_.Path(), folder_ / kProjectFolder);
    if (!order_.notes.empty()) codedb::SaveNotes(folder_ / kProjectFolder, order_.notes);
    parts_.push_back({std::string(kProjectFolder) + "/", "Gespeichertes Projekt, mit Quillmate zu öffnen"});
  }

  void MakeCover() {
    job_.Begin("Übersicht");
    const std::optional<codedb::Facts> facts = FactsIn(copy_.Path());
    output::CoverPage page{order_.title, order_.time, facts ? &*facts : nullptr, order_.known->Index(),
                           *metrics_,    findings_,   std::move(parts_),         {}};
    for (const codedb::Note& note : order_.notes) page.notes.push_back(CoverNoteOf(note));
    files::ReplaceFile(folder_ / files::PathFromText(kCoverFile), output::CoverHtml(page));
  }

  const HandOverOrder& order_;
  const ProjectCopy& copy_;
  const fs::path folder_;
  BackgroundJob& job_;
  std::vector<output::CoverPart> parts_;
  std::vector<checks::Finding> findings_;
  std::shared_ptr<const checks::Metrics> metrics_;
};

}  // namespace

void HandProjectOver(const HandOverOrder& order, BackgroundJob& job) {
  if (!order.choice.zipped) {
    files::FolderReplacement folder(order.target);
    const ProjectCopy copy(order.source, job);
    HandOverMaker(order, copy, folder.Path(), job).Make();
    job.Begin("Lege den Ordner ab");
    folder.Commit();
    return;
  }
  const files::WorkFolder work(files::TemporaryFolder(), files::WorkFolder::Access::kPrivate);
  // Its name is that of the folder in the file.
  const fs::path made = work.Path() / "zip" / order.target.stem();
  fs::create_directories(made);
  const ProjectCopy copy(order.source, job);
  HandOverMaker(order, copy, made, job).Make();
  job.Begin("Packe");
  output::ZipFolder(made, order.target, [&job](int percent) { job.Tell(static_cast<std::size_t>(percent), 100); });
}

}  // namespace quillmate::ui
