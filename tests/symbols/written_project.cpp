#include "symbols/written_project.h"

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include <quillmate/language/parse.h>

namespace quillmate::symbols::testing {
namespace {

Host HostNamed(std::string_view word) {
  static const std::map<std::string_view, Host> kHosts = {{"excel", Host::kExcel},
                                                          {"word", Host::kWord},
                                                          {"access", Host::kAccess},
                                                          {"powerpoint", Host::kPowerPoint},
                                                          {"vb6", Host::kVb6}};
  const auto found = kHosts.find(word);
  return found == kHosts.end() ? Host::kUnknown : found->second;
}

/// The settings of "== project" after the project's name.
void ReadProject(std::istringstream& words, Sources& sources) {
  ProjectSource project;
  words >> project.name;
  for (std::string word; words >> word;) {
    if (word == "uses") {
      for (words >> word; !word.empty(); word.clear()) {
        for (Index other = 0; other < sources.projects.size(); ++other) {
          if (sources.projects[other].name == word) project.references.push_back(other);
        }
      }
    } else if (word == "assumed") {
      project.nameAssumed = true;
    } else {
      project.host = HostNamed(word);
      if (project.host == Host::kVb6) project.dialect = language::Dialect::kVb6;
    }
  }
  sources.projects.push_back(std::move(project));
}

void ReadModule(const std::string& kind, std::istringstream& words, Sources& sources) {
  static const std::map<std::string_view, language::ModuleKind> kKinds = {
      {"module", language::ModuleKind::kStandard},
      {"class", language::ModuleKind::kClass},
      {"form", language::ModuleKind::kForm},
      {"document", language::ModuleKind::kDocument},
      {"usercontrol", language::ModuleKind::kUserControl}};
  ModuleSource module;
  module.project = static_cast<Index>(sources.projects.size() - 1);
  module.kind = kKinds.at(kind);
  words >> module.name;
  bool typed = false;
  for (std::string word; words >> word;) {
    if (word.ends_with(',')) word.pop_back();
    if (word == "predeclared") {
      module.predeclared = true;
    } else if (word == "exposed") {
      module.exposed = true;
    } else if (word == "assumed") {
      module.kindAssumed = true;
    } else if (word == "known") {
      module.controlsKnown = true;
    } else if (word == "control") {
      module.controlsKnown = true;
      typed = false;
    } else if (!typed) {
      const bool array = word.ends_with("[]");
      module.controls.push_back({array ? word.substr(0, word.size() - 2) : word, "", array});
      typed = true;
    } else {
      module.controls.back().type = word;
    }
  }
  sources.modules.push_back(std::move(module));
}

bool IsWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

std::string Folded(std::string_view text) { return language::FoldName(text); }

/// 1-based column of the nth word of a line, 0 when there is none.
std::uint32_t ColumnOf(const std::string& line, std::string_view name, unsigned nth) {
  const std::string text = Folded(line), word = Folded(name);
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    const bool begins = at == 0 || !IsWordCharacter(text[at - 1]);
    const bool ends = at + word.size() >= text.size() || !IsWordCharacter(text[at + word.size()]);
    if (begins && ends && --nth == 0) {
      return static_cast<std::uint32_t>(
          1 + std::count_if(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at),
                            [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }));
    }
  }
  return 0;
}

std::string TargetText(const WrittenProject& project, const ReferenceIndex& index, SymbolId id) {
  const Symbol& symbol = index.SymbolAt(id);
  if (IsModule(symbol.kind)) return std::string(index.Name(id));
  if (symbol.kind == SymbolKind::kControl) return "control";
  return std::to_string(LineNumber(project, symbol.module, symbol.line));
}

}  // namespace

WrittenProject::WrittenProject(std::string_view text) {
  std::istringstream in{std::string(text)};
  sources.projects.emplace_back().name = "P";
  bool first = true;
  for (std::string line; std::getline(in, line);) {
    if (!line.starts_with("== ")) {
      if (sources.modules.empty()) continue;
      sources.modules.back().text += line + "\r\n";
      lines.push_back(line);
      continue;
    }
    std::istringstream words(line.substr(3));
    std::string kind;
    words >> kind;
    if (kind == "project") {
      if (first) sources.projects.clear();
      ReadProject(words, sources);
    } else if (kind == "binding") {
      ExternalBinding binding;
      binding.project = static_cast<Index>(sources.projects.size() - 1);
      const std::size_t arrow = line.find(" -> ");
      binding.text = line.substr(11, arrow - 11);
      binding.place = line.substr(arrow + 4);
      if (binding.place.starts_with("Name ")) binding.kind = BindingKind::kDefinedName;
      if (binding.place.starts_with("Knopf ")) binding.kind = BindingKind::kButton;
      sources.projects.back().outsideKnown = true;
      sources.bindings.push_back(std::move(binding));
    } else {
      ReadModule(kind, words, sources);
      firstLines.push_back(static_cast<std::uint32_t>(lines.size()) + 1);
    }
    first = false;
  }
}

std::uint32_t LineNumber(const WrittenProject& project, Index module, std::uint32_t line) {
  return project.firstLines[module] + line - 1;
}

std::string MeaningAt(const WrittenProject& project, const ReferenceIndex& index, std::string_view name,
                      std::uint32_t line, unsigned nth) {
  Index module = 0;
  while (module + 1 < project.firstLines.size() && project.firstLines[module + 1] <= line) ++module;
  const std::uint32_t ownLine = line - project.firstLines[module] + 1;
  const std::uint32_t column = ColumnOf(project.lines[line - 1], name, nth);
  if (column == 0) return "no such word";
  // Targets of one use: "1|2 call ambiguous".
  std::map<std::string, std::set<std::string>> uses;
  for (SymbolId symbol = 0; symbol < index.SymbolCount(); ++symbol) {
    const Symbol& declared = index.SymbolAt(symbol);
    if (declared.module == module && declared.line == ownLine && declared.column == column) {
      uses[(declared.flags & symbol_flag::kImplicit) != 0 ? "declares implicit" : "declares"].insert("");
    }
    for (const Reference& reference : index.ReferencesTo(symbol)) {
      if (reference.module != module || reference.line != ownLine || reference.column != column) continue;
      std::string use(Word(reference.use));
      if (reference.certainty != Certainty::kSure) use.append(" ").append(Word(reference.certainty));
      if (reference.implicit) use += " implicit";
      uses[use].insert(TargetText(project, index, symbol));
    }
  }
  std::string meaning;
  for (const auto& [use, targets] : uses) {
    std::string joined;
    for (const std::string& target : targets) joined.append(joined.empty() ? "" : "|").append(target);
    if (!meaning.empty()) meaning += " & ";
    meaning.append(joined).append(joined.empty() ? "" : " ").append(use);
  }
  return meaning.empty() ? "none" : meaning;
}

}  // namespace quillmate::symbols::testing
