#include <algorithm>
#include <exception>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

#include <quillmate/analysis/module_indexer.h>
#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/host/module_file.h>
#include <quillmate/host/project_reader.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/source_text.h>
#include <quillmate/text/windows1252.h>

#include "source_file_p.h"

namespace quillmate::host {
namespace {

constexpr int kLargestModuleNumber = std::numeric_limits<std::int16_t>::max();

constexpr const char* kNothingCheckedText = "Bitte wählen Sie erst etwas aus";
constexpr const char* kFailedText =
    "Fehler beim Einlesen !\r\n"
    "Dies kann mehrere Ursachen haben:\r\n"
    "1. Die Mappe mit dem Modul ist nicht mehr geöffnet.\r\n"
    "2. Im Code sind Konstrukte, die die Quillmate nicht auslesen kann, z.B.  spezielle Doppelpunktonstrukte\r\n"
    "in der Art, \r\n"
    "Private Sub Test : End Sub\r\n"
    "(Also Deklaration Sub und  End Sub in einer Zeile)\r\n"
    "3. Syntaktisch nicht korrekter Code (Sollte dann auch im Editior rot sein)\r\n"
    "Siehe auch mögliche Fehler in der Hilfe";

/// Releases the host however the read ends.
class Attachment {
 public:
  explicit Attachment(HostAutomation& host) : host_(host), attached_(host.Attach()) {}
  ~Attachment() { host_.Release(); }
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;
  bool Attached() const noexcept { return attached_; }

 private:
  HostAutomation& host_;
  bool attached_;
};

void ShowProgress(const ReadRequest& request, const std::string& status) {
  if (request.progress) request.progress(status);
}

std::string OneLine(std::string_view text) {
  std::string line = text::ReplaceAll(text::ReplaceAll(text, "\r\n", " "), "\n", " ");
  std::replace(line.begin(), line.end(), '\r', ' ');
  return line;
}

/// The index while it is being written: the counters and what is being read just now.
class IndexBuild {
 public:
  IndexBuild(codedb::CodeDatabase& database, const ReadRequest& request) : database_(database), request_(request) {}

  /// Names the file or module that an error from here on is about, UTF-8.
  void SetSubject(std::string subject) { subject_ = std::move(subject); }

  /// Counts the module and shows its name; its text is due next.
  void StartModule(std::string name, int kind) {
    if (state_.moduleNumber == kLargestModuleNumber) {
      throw std::length_error("Mehr als " + std::to_string(kLargestModuleNumber) + " Module");
    }
    ++state_.moduleNumber;
    state_.moduleName = std::move(name);
    state_.moduleKind = kind;
    ShowProgress(request_, "Modul: " + text::Utf8FromCode(state_.moduleName));
  }
  void ScanCode(std::string_view code) {
    analysis::ScanModule(database_, request_.folder, state_, code, request_.options);
    subject_.clear();
  }

  int Modules() const noexcept { return state_.moduleNumber; }
  /// What went wrong, with the file or module in front.
  std::string Detail(std::string_view reason) const {
    if (subject_.empty() || reason.find(subject_) != std::string_view::npos) return OneLine(reason);
    return subject_ + ": " + OneLine(reason);
  }

 private:
  codedb::CodeDatabase& database_;
  const ReadRequest& request_;
  analysis::ReadState state_;
  std::string subject_;
};

std::string SubjectOf(const HostModuleNode& node) {
  return node.file.empty() ? text::Utf8FromCode(node.text) : node.file;
}

/// Drops all that has been written so far: rows, database file and module texts.
void DropIndex(codedb::CodeDatabase& database, const ReadRequest& request) noexcept {
  database.Rollback();
  database.Close();
  codedb::DeleteScratchFiles(request.folder);
}

/// Prepares the index, lets `readModules` fill it and closes it.
template <typename ReadModules>
ReadReport BuildIndex(codedb::CodeDatabase& database, const ReadRequest& request, ReadModules readModules) {
  ReadReport report;
  ShowProgress(request, "Erzeuge Projekt");
  const codedb::PrepareResult prepared = codedb::PrepareCodeDatabase(request.folder, request.templateFile);
  if (!prepared.ok) {
    report.outcome = ReadOutcome::kNoTemplate;
    report.message = prepared.message;
    return report;
  }
  IndexBuild build(database, request);
  try {
    database.Open(codedb::DatabasePath(request.folder));
    database.Begin();
    readModules(build, report);
    database.Commit();
    database.Close();
    report.outcome = ReadOutcome::kDone;
    report.modules = build.Modules();
  } catch (const std::exception& error) {
    DropIndex(database, request);
    report.outcome = ReadOutcome::kFailed;
    report.message = kFailedText;
    report.detail = build.Detail(error.what());
  }
  return report;
}

ReadReport Ended(ReadOutcome outcome, const char* message) {
  ReadReport report;
  report.outcome = outcome;
  report.message = message;
  return report;
}

void ClearIndex(codedb::CodeDatabase& database, const ReadRequest& request) {
  database.Close();
  codedb::DeleteScratchFiles(request.folder);
}

void ReadThroughHost(HostAutomation& host, const HostProjectNode& project, const HostModuleNode& node,
                     IndexBuild& build) {
  build.SetSubject(SubjectOf(node));
  const int index = ProjectIndex(project.key);
  const std::string name = node.key.substr(project.key.size());
  const HostComponent component = host.ComponentByName(index, name, node.position);
  build.StartModule(name, ModuleKindOf(component.type));
  build.ScanCode(host.Lines(index, name, node.position, component.lineCount));
}

/// The kind that stands in an image key; a report module of Access, which has an image of its own, is a document.
int KindOfImage(const std::string& image) {
  constexpr int kReportImage = 6;
  const int kind =
      static_cast<int>(text::LeadingNumber(std::string_view(image).substr(image.empty() ? 0 : image.size() - 1)));
  if (kind == kReportImage) return codedb::kDocument;
  return kind == 0 ? codedb::kOtherKind : kind;
}

void ReadFromFile(const HostModuleNode& node, std::string& buffer, IndexBuild& build) {
  build.SetSubject(SubjectOf(node));
  if (node.file.empty()) throw HostError("Modul liegt nicht in einer Datei");
  const SourceBytes content = ReadSourceFile(codedb::PathFromText(node.file), buffer);
  if (!content.problem.empty()) throw HostError(content.problem);
  build.StartModule(node.text, KindOfImage(node.image));
  build.ScanCode(DropAttributeLines(text::DecodeSourceText(content.bytes)));
}

}  // namespace

ReadReport ReadCheckedModules(HostAutomation& host, const HostTree& tree, codedb::CodeDatabase& database,
                              const ReadRequest& request) {
  if (!tree.AnyChecked()) return Ended(ReadOutcome::kNothingChecked, kNothingCheckedText);
  ClearIndex(database, request);
  const Attachment attachment(host);
  if (!attachment.Attached()) return Ended(ReadOutcome::kNotAttached, "");
  return BuildIndex(database, request, [&](IndexBuild& build, ReadReport& report) {
    for (const HostProjectNode& project : tree.projects) {
      if (!project.checked) continue;
      report.projectText = project.text;
      for (const HostModuleNode& node : project.modules) {
        if (node.checked) ReadThroughHost(host, project, node, build);
      }
    }
  });
}

ReadReport ReadModuleFiles(const HostTree& tree, codedb::CodeDatabase& database, const ReadRequest& request) {
  if (!tree.AnyChecked()) return Ended(ReadOutcome::kNothingChecked, kNothingCheckedText);
  ClearIndex(database, request);
  return BuildIndex(database, request, [&](IndexBuild& build, ReadReport& report) {
    std::string buffer;
    for (const HostProjectNode& project : tree.projects) {
      if (project.checked) report.projectText = project.text;
      for (const HostModuleNode& node : project.modules) {
        if (!node.checked) continue;
        report.projectText = project.text;
        ReadFromFile(node, buffer, build);
      }
    }
  });
}

}  // namespace quillmate::host
