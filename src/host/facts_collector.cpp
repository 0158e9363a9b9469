#include <algorithm>
#include <set>
#include <tuple>
#include <unordered_map>
#include <utility>

#include <quillmate/codedb/index_files.h>
#include <quillmate/host/collect_facts.h>
#include <quillmate/text/characters.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "component_facts_p.h"
#include "facts_collector_p.h"

namespace quillmate::host {
namespace {

/// The name of a file, also of one on another system, in the form in which names that differ in case are equal.
std::string FoldedFileName(std::string_view path) {
  const std::size_t separator = path.find_last_of("\\/");
  std::string name = text::CodeFromUtf8(separator == std::string_view::npos ? path : path.substr(separator + 1));
  for (char& c : name) c = static_cast<char>(text::ToLower(c));
  return name;
}

/// Lines of `scanned` before the editor's code in it begins.
std::int32_t LinesBefore(std::string_view scanned, std::string_view editorCode) {
  std::string_view text = scanned;
  if (!text.ends_with(editorCode) && text.ends_with(text::kLineBreak)) text.remove_suffix(text::kLineBreak.size());
  if (!text.ends_with(editorCode)) return 0;
  text.remove_suffix(editorCode.size());
  return static_cast<std::int32_t>(std::count(text.begin(), text.end(), '\n'));
}

/// The runs of a text that begins with `header` lines, for the text without them.
std::vector<codedb::LineRun> WithoutHeader(std::vector<codedb::LineRun> runs, std::int32_t header) {
  for (codedb::LineRun& run : runs) {
    const std::int32_t cut = std::clamp(header + 1 - run.original, 0, run.count);
    run.shown += cut;
    run.original += cut - header;
    run.count -= cut;
  }
  std::erase_if(runs, [](const codedb::LineRun& run) { return run.count == 0; });
  return runs;
}

/// References to a project that is among those of the read; the file's name decides, since the path is that of another
/// machine as often as not.
void ResolveReferences(std::vector<codedb::ProjectFacts>& projects) {
  std::unordered_map<std::string, int> byFile;
  for (std::size_t i = 0; i < projects.size(); ++i) {
    constexpr int kSeveral = -1;
    const auto [known, added] = byFile.try_emplace(FoldedFileName(projects[i].file), static_cast<int>(i));
    if (!added) known->second = kSeveral;
  }
  byFile.erase(std::string());
  for (std::size_t i = 0; i < projects.size(); ++i) {
    for (codedb::ReferenceFact& reference : projects[i].references) {
      const auto found = byFile.find(FoldedFileName(reference.path));
      if (found != byFile.end() && found->second != static_cast<int>(i)) reference.project = found->second;
    }
  }
}

/// `number` is the project's among those of the facts.
void TakeBindings(HostAutomation& host, int project, int number, std::vector<codedb::BindingFact>& bindings) {
  for (codedb::BindingFact& binding : host.BindingsOfProject(project)) {
    binding.project = number;
    bindings.push_back(std::move(binding));
  }
}

/// What starts routines that were not read says nothing about the others.
void ForgetBindingCount(codedb::ProjectFacts& project) {
  std::erase_if(project.document,
                [](const codedb::DocumentFact& fact) { return fact.property == codedb::kBindingsProperty; });
}

/// The reason may begin with the file, which has a field of its own. Names are Windows-1252.
codedb::OmissionFact OmissionOf(std::string file, std::string_view project, std::string_view module,
                                std::string_view reason) {
  const std::string begin = file + ": ";
  if (reason.starts_with(begin)) reason.remove_prefix(begin.size());
  return {std::move(file), text::Utf8FromCode(project), text::Utf8FromCode(module), std::string(reason)};
}

codedb::ModuleFacts ReadComponent(HostAutomation& host, int project, int position, const HostComponent& component,
                                  std::string& code) {
  code = host.Lines(project, component.name, position, component.lineCount);
  codedb::ModuleFacts facts = host.FactsOfComponent(project, component.name, position);
  if (facts.kind.empty()) facts.kind = KindWord(component.type);
  return facts;
}

}  // namespace

codedb::Facts CollectFacts(HostAutomation& host, int projects, std::vector<std::string>& problems,
                           const std::function<void(std::size_t)>& step) {
  codedb::Facts facts;
  facts.omissions = host.Omissions();
  std::string code;
  std::size_t seen = 0;
  for (int project = 1; project <= projects; ++project) {
    if (host.Project(project).locked) continue;
    facts.projects.push_back(host.FactsOfProject(project));
    const int count = host.ComponentCount(project);
    for (int position = 1; position <= count; ++position) {
      if (step) step(seen++);
      const HostComponent component = host.Component(project, position);
      try {
        codedb::ModuleFacts module = ReadComponent(host, project, position, component, code);
        module.project = static_cast<int>(facts.projects.size()) - 1;
        if (!module.code) module.code = text::Utf8FromCode(code);
        facts.modules.push_back(std::move(module));
      } catch (const files::Failure& error) {
        problems.emplace_back(error.what());
        const codedb::ProjectFacts& owner = facts.projects.back();
        std::string file = component.file.empty() ? owner.file : component.file;
        facts.omissions.push_back(
            OmissionOf(std::move(file), host.Project(project).name, component.name, error.what()));
        ForgetBindingCount(facts.projects.back());
      }
    }
    TakeBindings(host, project, static_cast<int>(facts.projects.size()) - 1, facts.bindings);
  }
  ResolveReferences(facts.projects);
  return facts;
}

codedb::ModuleFacts WithOriginal(codedb::ModuleFacts facts, const text::CodeLayout& layout, std::string_view code,
                                 const std::optional<std::string>& editorCode, std::string_view markedText) {
  const std::int32_t header = editorCode ? LinesBefore(code, *editorCode) : 0;
  // Only the layout, and byte 159 in the code, make another text of it.
  const bool laidOut = layout.indent || layout.removeEmptyLines || layout.emptyLineBeforeRoutines;
  const bool mayDiffer = laidOut || header > 0 || code.find(text::kMarkerByte) != std::string_view::npos;
  if (mayDiffer && !facts.code) facts.code = text::Utf8FromCode(editorCode ? std::string_view(*editorCode) : code);
  if (!facts.code) return facts;
  const std::string stored = codedb::StoredCode(std::string(markedText).append(text::kLineBreak));
  if (stored == text::CodeFromUtf8(*facts.code)) {
    if (facts.replacedCharacters == 0) facts.code.reset();
    return facts;
  }
  facts.lines = codedb::MatchLines(header == 0 ? std::string_view(*facts.code) : code, stored);
  if (header > 0) facts.lines = WithoutHeader(std::move(facts.lines), header);
  return facts;
}

int FactsCollector::NumberOf(const HostProjectNode& project, HostAutomation* host) {
  const auto [known, added] = numbers_.try_emplace(project.index, static_cast<int>(projects_.size()));
  if (added) {
    codedb::ProjectFacts facts;
    facts.name = text::Utf8FromCode(text::TextBefore(project.text, " ["));
    projects_.push_back(host != nullptr ? host->FactsOfProject(project.index) : std::move(facts));
    moduleCounts_.push_back(0);
    if (host != nullptr) TakeBindings(*host, project.index, known->second, bindings_);
  }
  return known->second;
}

void FactsCollector::Add(const HostProjectNode& project, HostAutomation* host, int position,
                         codedb::ModuleFacts facts) {
  modules_.push_back({NumberOf(project, host), position, std::move(facts)});
}

void FactsCollector::AddShortModules(const HostProjectNode& project, HostAutomation& host) {
  const int index = project.index;
  const int number = NumberOf(project, &host);
  const int count = host.ComponentCount(index);
  moduleCounts_[static_cast<std::size_t>(number)] = count;
  for (int position = 1; position <= count; ++position) {
    const HostComponent component = host.Component(index, position);
    if (!IsListed(component)) AddShort(number, host, index, position, component);
  }
}

/// Nothing in the index depends on it: one that can't be read is no reason to fail.
void FactsCollector::AddShort(int project, HostAutomation& host, int index, int position,
                              const HostComponent& component) {
  try {
    std::string code;
    Added added{project, position, ReadComponent(host, index, position, component, code)};
    if (!added.facts.code) added.facts.code = text::Utf8FromCode(code);
    modules_.push_back(std::move(added));
  } catch (const files::Failure&) {
    return;
  }
}

void FactsCollector::AddOmission(const Ticked& ticked, HostAutomation* host, std::string_view reason) {
  const codedb::ProjectFacts& project = projects_[static_cast<std::size_t>(NumberOf(*ticked.project, host))];
  const std::string& file = ticked.module->file.empty() ? project.file : ticked.module->file;
  omissions_.push_back(OmissionOf(file, text::TextBefore(ticked.project->text, " ["), ticked.module->text, reason));
}

void FactsCollector::AddOmissionsOf(HostAutomation& host, const HostTree& tree) {
  std::vector<codedb::OmissionFact> omissions = host.Omissions();
  if (omissions.empty()) return;
  std::set<std::string> unwanted;
  for (const HostProjectNode& project : tree.projects) {
    if (!project.checked) unwanted.insert(host.Project(project.index).fileName.value_or(""));
  }
  unwanted.erase(std::string());
  for (codedb::OmissionFact& omission : omissions) {
    if (!unwanted.contains(omission.file)) omissions_.push_back(std::move(omission));
  }
}

void FactsCollector::Write() {
  std::stable_sort(modules_.begin(), modules_.end(), [](const Added& a, const Added& b) {
    return std::tie(a.project, a.position) < std::tie(b.project, b.position);
  });
  ResolveReferences(projects_);
  codedb::Facts facts;
  facts.projects = std::move(projects_);
  facts.bindings = std::move(bindings_);
  facts.omissions = std::move(omissions_);
  facts.modules.reserve(modules_.size());
  for (Added& added : modules_) {
    --moduleCounts_[static_cast<std::size_t>(added.project)];
    added.facts.project = added.project;
    facts.modules.push_back(std::move(added.facts));
  }
  for (std::size_t i = 0; i < moduleCounts_.size(); ++i) {
    if (moduleCounts_[i] != 0) ForgetBindingCount(facts.projects[i]);
  }
  codedb::WriteFacts(folder_, facts);
}

std::vector<std::string> FactsCollector::ReplacedCharacters() const {
  std::vector<std::string> lines;
  for (const Added& added : modules_) {
    const std::int64_t count = added.facts.replacedCharacters;
    if (count == 0) continue;
    const std::string where = added.facts.file.empty() ? "Modul " + added.facts.name : added.facts.file;
    lines.push_back(where + ": " + std::to_string(count) +
                    (count == 1 ? " Zeichen wurde durch \"?\" ersetzt" : " Zeichen wurden durch \"?\" ersetzt"));
  }
  return lines;
}

}  // namespace quillmate::host
