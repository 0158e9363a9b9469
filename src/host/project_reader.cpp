#include <algorithm>
#include <cstddef>
#include <exception>
#include <string_view>
#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/source_text.h>
#include <quillmate/host/project_reader.h>
#include <quillmate/office/module_file.h>
#include <quillmate/text/windows1252.h>

#include "component_facts_p.h"
#include "facts_collector_p.h"
#include "index_build_p.h"
#include "source_file_p.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

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
  explicit Attachment(HostAutomation& host) : host_(host), attached_(host.AttachHost()) {}
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

/// Drops all that has been written so far: rows, database file and module texts.
void DropIndex(codedb::CodeDatabase& database, const ReadRequest& request) noexcept {
  database.Rollback();
  database.CloseCodeDatabase();
  codedb::DeleteAllFiles(request.folder);
}

ReadReport Ended(ReadOutcome outcome, std::string message) {
  ReadReport report;
  report.outcome = outcome;
  report.message = std::move(message);
  return report;
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
    for (const Ticked& ticked : modules) readModule(ticked, build);
    build.Finish();
    readRest(build.Facts());
    report.replacedCharacters = build.Facts().ReplacedCharacters();
    build.Facts().Write();
    database.Commit();
    database.CloseCodeDatabase();
  } catch (const std::exception& error) {
    build.Stop();
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
  codedb::DeleteAllFiles(request.folder);
}

ReadModule Scan(const ReadRequest& request, WholeComponent whole) {
  if (whole.facts.kind.empty()) whole.facts.kind = KindWord(whole.component.type);
  ReadModule module{ModuleKindOf(whole.component.type), {whole.code, request.options}, {}};
  module.facts =
      WithOriginal(std::move(whole.facts), request.options, whole.code, std::nullopt, module.scan.MarkedText());
  return module;
}

void ReadThroughHost(HostAutomation& host, const ReadRequest& request, const Ticked& ticked, IndexBuild& build) {
  const auto& [project, node] = ticked;
  build.Add(ticked, node->name, &host, [&, project = project, node = node]() -> IndexBuild::Reading {
    auto reading = host.StartReading(project->index, node->name, node->position);
    build.Facts().NumberOf(*project, &host);
    return [&request, reading = std::move(reading)] { return Scan(request, reading()); };
  });
}

/// What the index lacks of the ticked projects, and what of the sources. A project that can't be read any more is known
/// without.
void ReadRest(HostAutomation& host, const HostTree& tree, FactsCollector& facts) {
  for (const HostProjectNode& project : tree.projects) {
    try {
      if (project.checked) facts.AddShortModules(project, host);
    } catch (const files::Failure&) {
      continue;
    }
  }
  try {
    facts.AddOmissionsOf(host, tree);
  } catch (const files::Failure&) {
    return;
  }
}

ReadModule ReadFromFile(const ReadRequest& request, const HostModuleNode& node) {
  if (node.file.empty()) throw files::Failure(HostReason::kNoFile);
  const fs::path path = files::PathFromText(node.file);
  std::string buffer;
  const SourceBytes content = ReadSourceFile(path, buffer);
  if (content.problem != office::Reason::kNone) throw files::Failure(content.problem);
  const std::string code = office::DropAttributeLines(files::DecodeSourceText(content.bytes));
  ReadModule module{node.kind, {code, request.options}, {}};
  office::ModuleFile file = office::ParseModuleFile(content.bytes, files::PathText(path.extension()));
  const std::string editorCode = std::move(file.code);
  codedb::ModuleFacts facts = FactsOfFile(std::move(file));
  facts.file = node.file;
  facts.linesOfFile = true;
  if (facts.name.empty()) facts.name = text::Utf8FromCode(node.text);
  module.facts = WithOriginal(std::move(facts), request.options, code, editorCode, module.scan.MarkedText());
  return module;
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
      [&](const Ticked& ticked, IndexBuild& build) { ReadThroughHost(host, request, ticked, build); },
      [&](FactsCollector& facts) { ReadRest(host, tree, facts); });
  report.projectText = LastProjectText(tree, modules);
  return report;
}

ReadReport ReadModuleFiles(const HostTree& tree, codedb::CodeDatabase& database, const ReadRequest& request) {
  if (!tree.AnyChecked()) return Ended(ReadOutcome::kNothingChecked, kNothingCheckedText);
  ClearIndex(database, request);
  const std::vector<Ticked> modules = TickedModules(tree, false);
  ReadReport report = BuildIndex(
      database, request, modules,
      [&](const Ticked& ticked, IndexBuild& build) {
        const HostModuleNode& node = *ticked.module;
        build.Add(ticked, node.text, nullptr,
                  [&] { return [&request, &node] { return ReadFromFile(request, node); }; });
      },
      [](FactsCollector&) {});
  report.projectText = LastProjectText(tree, modules);
  return report;
}

}  // namespace quillmate::host
