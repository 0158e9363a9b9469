#include <algorithm>
#include <cstddef>
#include <exception>
#include <string_view>
#include <utility>

#include <quillmate/analysis/module_indexer.h>
#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/source_text.h>
#include <quillmate/host/project_reader.h>
#include <quillmate/office/module_file.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "component_facts_p.h"
#include "facts_collector_p.h"
#include "source_file_p.h"

namespace quillmate::host {
namespace {

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
  IndexBuild(codedb::CodeDatabase& database, const ReadRequest& request)
      : database_(database), request_(request), facts_(request) {}

  FactsCollector& Facts() noexcept { return facts_; }

  /// Names the file or module that an error from here on is about, UTF-8.
  void SetSubject(std::string subject) { subject_ = std::move(subject); }

  /// Counts the module and shows its name; its text is due next.
  void StartModule(std::string name, int kind) {
    state_.module.number = {modules_ + 1};
    state_.module.name = std::move(name);
    state_.module.kind = kind;
    ShowProgress(request_, "Modul: " + text::Utf8FromCode(state_.module.name));
  }
  void ScanCode(std::string_view code) {
    analysis::ScanModule(database_, request_.folder, state_, code, request_.options);
    ++modules_;
    subject_.clear();
  }
  /// The module that was due is not in the index.
  void LeaveOut(std::string_view reason) {
    leftOut_.push_back(Detail(reason));
    subject_.clear();
  }

  /// How many modules the index holds.
  int Modules() const noexcept { return modules_; }
  std::vector<std::string>& LeftOut() noexcept { return leftOut_; }

  /// What went wrong, with the file or module in front.
  std::string Detail(std::string_view reason) const {
    const std::string inFront = subject_.empty() ? std::string() : subject_ + ": ";
    return reason.starts_with(inFront) ? OneLine(reason) : inFront + OneLine(reason);
  }

 private:
  codedb::CodeDatabase& database_;
  const ReadRequest& request_;
  analysis::ReadState state_;
  int modules_ = 0;
  std::vector<std::string> leftOut_;
  std::string subject_;
  FactsCollector facts_;
};

struct Ticked {
  const HostProjectNode* project;
  const HostModuleNode* module;
};

/// The ticked modules in tree order.
std::vector<Ticked> TickedModules(const HostTree& tree, bool ofTickedProjectsOnly) {
  std::vector<Ticked> ticked;
  for (const HostProjectNode& project : tree.projects) {
    if (ofTickedProjectsOnly && !project.checked) continue;
    for (const HostModuleNode& module : project.modules) {
      if (module.checked) ticked.push_back({&project, &module});
    }
  }
  return ticked;
}

/// The text of the last project that is ticked or has a module to read.
std::string LastProjectText(const HostTree& tree, const std::vector<Ticked>& ticked) {
  const HostProjectNode* last = ticked.empty() ? nullptr : ticked.back().project;
  for (const HostProjectNode& project : tree.projects) {
    if (project.checked && (last == nullptr || last < &project)) last = &project;
  }
  return last == nullptr ? std::string() : last->text;
}

std::string SubjectOf(const HostModuleNode& node) {
  return node.file.empty() ? text::Utf8FromCode(node.text) : node.file;
}

/// Drops all that has been written so far: rows, database file and module texts.
void DropIndex(codedb::CodeDatabase& database, const ReadRequest& request) noexcept {
  database.Rollback();
  database.CloseCodeDatabase();
  codedb::DeleteScratchFiles(request.folder);
}

ReadReport Ended(ReadOutcome outcome, std::string message) {
  ReadReport report;
  report.outcome = outcome;
  report.message = std::move(message);
  return report;
}

/// Reads the modules one after the other. One that can't be read costs itself; throws when none is left.
template <typename ReadModule>
void ReadAll(const std::vector<Ticked>& modules, IndexBuild& build, ReadModule readModule) {
  for (const Ticked& ticked : modules) {
    try {
      readModule(ticked, build);
    } catch (const HostError& error) {
      build.LeaveOut(error.what());
    } catch (const analysis::ModuleError& error) {
      build.LeaveOut(error.what());
    }
  }
  if (build.Modules() == 0 && !build.LeftOut().empty()) throw HostError(build.LeftOut().back());
}

/// Prepares the index, gives each module to `readModule` and closes it.
template <typename ReadModule, typename ReadRest>
ReadReport BuildIndex(codedb::CodeDatabase& database, const ReadRequest& request, const std::vector<Ticked>& modules,
                      ReadModule readModule, ReadRest readRest) {
  ShowProgress(request, "Erzeuge Projekt");
  codedb::PrepareResult prepared = codedb::PrepareCodeDatabase(request.folder, request.templateFile);
  if (!prepared.ok) {
    ReadReport report = Ended(ReadOutcome::kNoTemplate, std::move(prepared.message));
    report.detail = std::move(prepared.reason);
    return report;
  }

  IndexBuild build(database, request);
  ReadReport report = Ended(ReadOutcome::kDone, "");
  try {
    database.OpenCodeDatabase(request.folder);
    database.Begin();
    ReadAll(modules, build, readModule);
    readRest(build.Facts());
    report.replacedCharacters = build.Facts().ReplacedCharacters();
    build.Facts().Write();
    database.Commit();
    database.CloseCodeDatabase();
  } catch (const std::exception& error) {
    DropIndex(database, request);
    report = Ended(ReadOutcome::kFailed, kFailedText);
    report.detail = build.Detail(error.what());
    report.leftOut = std::move(build.LeftOut());
    return report;
  }
  if (!build.LeftOut().empty()) report.message = kFailedText;
  report.modules = build.Modules();
  report.leftOut = std::move(build.LeftOut());
  if (!report.leftOut.empty()) report.detail = report.leftOut.front();
  return report;
}

void ClearIndex(codedb::CodeDatabase& database, const ReadRequest& request) {
  database.CloseCodeDatabase();
  codedb::DeleteScratchFiles(request.folder);
}

void ReadThroughHost(HostAutomation& host, const Ticked& ticked, IndexBuild& build) {
  const auto& [project, node] = ticked;
  build.SetSubject(SubjectOf(*node));
  const int index = ProjectIndex(project->key);
  const std::string name = node->key.substr(project->key.size());
  const HostComponent component = host.ComponentByName(index, name, node->position);
  build.StartModule(name, ModuleKindOf(component.type));
  const std::string code = host.Lines(index, name, node->position, component.lineCount);
  codedb::ModuleFacts facts = host.FactsOfComponent(index, name, node->position);
  if (facts.kind.empty()) facts.kind = KindWord(component.type);
  build.ScanCode(code);
  facts.number = build.Modules();
  build.Facts().Add(*project, &host, node->position, std::move(facts), code);
}

/// What the index lacks of the ticked projects. One whose modules can't be read any more is known without them.
void ReadShortModules(HostAutomation& host, const HostTree& tree, FactsCollector& facts) {
  for (const HostProjectNode& project : tree.projects) {
    try {
      if (project.checked) facts.AddShortModules(project, host);
    } catch (const HostError&) {
      continue;
    }
  }
}

/// The kind that stands in an image key; a report module of Access, which has an image of its own, is a document.
int KindOfImage(const std::string& image) {
  constexpr int kReportImage = 6;
  const int kind =
      static_cast<int>(text::LeadingNumber(std::string_view(image).substr(image.empty() ? 0 : image.size() - 1)));
  if (kind == kReportImage) return codedb::kDocument;
  return kind == 0 ? codedb::kOtherKind : kind;
}

void ReadFromFile(const Ticked& ticked, std::string& buffer, IndexBuild& build) {
  const HostModuleNode& node = *ticked.module;
  build.SetSubject(SubjectOf(node));
  if (node.file.empty()) throw HostError("Modul liegt nicht in einer Datei");
  const SourceBytes content = ReadSourceFile(files::PathFromText(node.file), buffer);
  if (!content.problem.empty()) throw HostError(content.problem);
  build.StartModule(node.text, KindOfImage(node.image));
  const std::string code = office::DropAttributeLines(files::DecodeSourceText(content.bytes));
  build.ScanCode(code);
  office::ModuleFile file =
      office::ParseModuleFile(content.bytes, files::PathText(files::PathFromText(node.file).extension()));
  std::string editorCode = std::move(file.code);
  codedb::ModuleFacts facts = FactsOfFile(std::move(file));
  facts.number = build.Modules();
  facts.file = node.file;
  facts.linesOfFile = true;
  if (facts.name.empty()) facts.name = text::Utf8FromCode(node.text);
  build.Facts().Add(*ticked.project, nullptr, node.position, std::move(facts), code, std::move(editorCode));
}

}  // namespace

ReadReport ReadCheckedModules(HostAutomation& host, const HostTree& tree, codedb::CodeDatabase& database,
                              const ReadRequest& request) {
  if (!tree.AnyChecked()) return Ended(ReadOutcome::kNothingChecked, kNothingCheckedText);
  ClearIndex(database, request);
  const Attachment attachment(host);
  if (!attachment.Attached()) return Ended(ReadOutcome::kNotAttached, "");
  const std::vector<Ticked> modules = TickedModules(tree, true);
  ReadReport report = BuildIndex(
      database, request, modules,
      [&](const Ticked& ticked, IndexBuild& build) { ReadThroughHost(host, ticked, build); },
      [&](FactsCollector& facts) { ReadShortModules(host, tree, facts); });
  report.projectText = LastProjectText(tree, modules);
  return report;
}

ReadReport ReadModuleFiles(const HostTree& tree, codedb::CodeDatabase& database, const ReadRequest& request) {
  if (!tree.AnyChecked()) return Ended(ReadOutcome::kNothingChecked, kNothingCheckedText);
  ClearIndex(database, request);
  std::string buffer;
  const std::vector<Ticked> modules = TickedModules(tree, false);
  ReadReport report = BuildIndex(
      database, request, modules, [&](const Ticked& ticked, IndexBuild& build) { ReadFromFile(ticked, buffer, build); },
      [](FactsCollector&) {});
  report.projectText = LastProjectText(tree, modules);
  return report;
}

}  // namespace quillmate::host
