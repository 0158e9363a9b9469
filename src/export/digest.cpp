#include <algorithm>
#include <array>
#include <map>
#include <span>
#include <utility>

#include <quillmate/export/digest.h>
#include <quillmate/symbols/calls.h>

namespace quillmate::output {
namespace {

using checks::Finding;
using checks::RoutineNumbers;
using symbols::Index;
using symbols::kNone;
using symbols::ReferenceIndex;

/// The shares of the limit that each part may have filled when it ends; the code gets the rest.
constexpr std::size_t kDocumentsShare = 4, kOmissionsShare = 7, kModulesShare = 15, kRoutinesShare = 50,
                      kFindingsShare = 60;
/// So many callers, callees and places of one finding are named.
constexpr std::size_t kNamed = 12;

/// Text that Markdown shows as it is, on one line; of blanks in a row one.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    const bool blank = c == ' ' || c == '\n' || c == '\r' || c == '\t';
    if (blank && escaped.ends_with(' ')) continue;
    if (std::string_view("\\`*_{}[]<>#|&~").find(c) != std::string_view::npos) escaped += '\\';
    escaped += blank ? ' ' : c;
  }
  return escaped;
}

/// So many backticks that there are no more of them in a row in a text.
std::string Ticks(std::string_view text, std::size_t least) {
  std::size_t longest = least - 1, run = 0;
  for (const char c : text) longest = std::max(longest, run = c == '`' ? run + 1 : 0);
  return std::string(longest + 1, '`');
}

/// Code within a line.
std::string Code(std::string_view text) {
  const std::string ticks = Ticks(text, 1);
  const std::string_view blank = ticks.size() > 1 ? " " : "";
  return ticks + std::string(blank).append(text).append(blank) + ticks;
}

/// A comment's text without its mark.
std::string_view Comment(std::string_view line) {
  const std::size_t mark = line.find('\'');
  const std::size_t rem = line.find_first_not_of(" \t");
  if (rem != std::string_view::npos && (line.substr(rem, 4) == "Rem " || line.substr(rem, 4) == "REM ")) {
    line.remove_prefix(rem + 4);
  } else if (mark != std::string_view::npos) {
    line.remove_prefix(mark + 1);
  }
  const std::size_t first = line.find_first_not_of(" \t'*=-#~");
  if (first == std::string_view::npos) return {};
  const std::size_t last = line.find_last_not_of(" \t*=-#~");
  return line.substr(first, last - first + 1);
}

std::string CommentOf(const language::Module& code, std::uint32_t first, std::uint32_t last) {
  constexpr std::size_t kLines = 12;
  std::string text;
  std::size_t lines = 0;
  for (std::uint32_t line = first; line != 0 && line <= last && lines < kLines; ++line) {
    const std::string_view comment = Comment(code.LineText(line));
    if (comment.empty()) continue;
    text.append(text.empty() ? "" : " ").append(comment);
    ++lines;
  }
  return text;
}

/// The comment lines at the head of a module.
std::string DescriptionOf(const language::Module& code) {
  if (!code.facts.description.empty()) return code.facts.description;
  std::uint32_t first = 0;
  for (std::uint32_t line = 1; line <= code.lines.size(); ++line) {
    const language::PhysicalLine& physical = code.lines[line - 1];
    if (physical.lineClass == language::LineClass::kComment && first == 0) first = line;
    if (physical.lineClass == language::LineClass::kComment || code.EditorLine(line) == 0) continue;
    if (first != 0) return CommentOf(code, first, line - 1);
    const bool option = code.LineText(line).starts_with("Option ");
    if (physical.lineClass == language::LineClass::kCode && !option) return {};
  }
  return {};
}

/// Writes parts within the limit.
class Digest {
 public:
  Digest(const ReferenceIndex& index, const checks::Metrics& metrics, const std::vector<Finding>& findings,
         const DigestOptions& options)
      : index_(index), metrics_(metrics), findings_(findings), options_(options) {}

  std::string Write() {
    text_ = "# " + Escaped(options_.title) + "\n\n";
    Overview();
    Documents();
    Omissions();
    Modules();
    Routines();
    Findings();
    CodeOfModules();
    return std::move(text_);
  }

 private:
  bool HasRoom(std::size_t more, std::size_t share) const {
    return text_.size() + more <= options_.limit / 100 * share;
  }

  void Overview() {
    std::size_t lines = 0, code = 0;
    for (const checks::ModuleNumbers& module : metrics_.modules) {
      lines += module.lines;
      code += module.code;
    }
    std::array<std::size_t, 3> severities{};
    for (const Finding& finding : findings_)
      ++severities[static_cast<std::size_t>(checks::InfoOf(finding.check).severity)];
    text_ += "## Überblick\n\n";
    const auto row = [&](std::string_view name, std::size_t number) {
      text_.append("- ").append(name).append(": ").append(std::to_string(number)).append("\n");
    };
    row("Projekte", index_.Projects().size());
    row("Module", index_.Modules().size());
    row("Routinen", metrics_.routines.size());
    row("Zeilen", lines);
    row("davon Code", code);
    row("Befunde der Stufe Fehler", severities[0]);
    row("Befunde der Stufe Warnung", severities[1]);
    row("Befunde der Stufe Hinweis", severities[2]);
    text_ += "\nZeilen zählen wie im Editor. „?“ hinter einem Namen heißt: möglicherweise.\n\n";
  }

  /// What documents say of themselves.
  void Documents() {
    std::size_t left = 0;
    bool any = false;
    for (const symbols::ProjectInfo& project : index_.Projects()) {
      if (project.properties.empty()) continue;
      if (!std::exchange(any, true)) text_ += "## Dokumente\n\n";
      std::string entry = "- " + Code(project.name) + ", " + Code(project.file) + "\n";
      if (!HasRoom(entry.size(), kDocumentsShare)) entry.clear();
      text_ += entry;
      for (const symbols::DocumentProperty& property : project.properties) {
        std::string row = "  - " + Escaped(property.name) + ": " + Escaped(property.value) + "\n";
        !entry.empty() && HasRoom(row.size(), kDocumentsShare) ? void(text_ += row) : void(++left);
      }
    }
    if (any) LeftOut(left, "Angabe ist hier nicht aufgeführt", "Angaben sind hier nicht aufgeführt");
  }

  void Omissions() {
    if (index_.Omissions().empty()) return;
    text_ += "## Nicht gelesen\n\n";
    std::size_t left = 0;
    for (const symbols::Omission& omission : index_.Omissions()) {
      std::string row = "- " + Code(omission.file.empty() ? omission.project : omission.file);
      if (!omission.module.empty()) row += ", Modul " + Code(omission.module);
      row += ": " + Escaped(omission.reason) + "\n";
      HasRoom(row.size(), kOmissionsShare) ? void(text_ += row) : void(++left);
    }
    LeftOut(left, "Stelle ist hier nicht aufgeführt", "Stellen sind hier nicht aufgeführt");
  }

  std::string ModuleName(Index module) const {
    const symbols::ModuleInfo& info = index_.Modules()[module];
    const std::string& project = index_.Projects()[info.project].name;
    return index_.Projects().size() > 1 && !project.empty() ? project + "." + info.name : info.name;
  }

  void Modules() {
    text_ += "## Module\n\n| Modul | Art | Zeilen | Code | Routinen | Beschreibung |\n|---|---|---|---|---|---|\n";
    std::size_t left = 0;
    for (Index module = 0; module < index_.Modules().size(); ++module) {
      const symbols::ModuleInfo& info = index_.Modules()[module];
      const language::Module& code = index_.Code(module);
      std::string row = "| " + Code(ModuleName(module)) + " | ";
      row.append(symbols::GermanWord(index_.SymbolAt(info.symbol).kind)).append(" | ");
      row.append(std::to_string(metrics_.modules[module].lines)).append(" | ");
      row.append(std::to_string(metrics_.modules[module].code)).append(" | ");
      row.append(std::to_string(code.routines.size()))
          .append(" | ")
          .append(Escaped(DescriptionOf(code)))
          .append(" |\n");
      HasRoom(row.size(), kModulesShare) ? void(text_ += row) : void(++left);
    }
    LeftOut(left, "Modul ist hier nicht aufgeführt", "Module sind hier nicht aufgeführt");
  }

  void LeftOut(std::size_t count, std::string_view one, std::string_view many) {
    text_ += "\n";
    if (count == 0) return;
    text_.append(count == 1 ? "Ein " : std::to_string(count) + " ").append(count == 1 ? one : many);
    text_ += ", weil die Größe begrenzt ist.\n\n";
  }

  std::string RoutineName(symbols::SymbolId routine, Index from) const {
    const symbols::Symbol& symbol = index_.SymbolAt(routine);
    std::string name(index_.Name(routine));
    return symbol.module == from ? name : ModuleName(symbol.module) + "." + name;
  }

  std::string Edges(const std::vector<symbols::CallEdge>& edges, Index module) const {
    std::string text;
    std::size_t count = 0;
    symbols::SymbolId last = kNone;
    for (const symbols::CallEdge& edge : edges) {
      if (edge.routine != kNone && std::exchange(last, edge.routine) == edge.routine) continue;
      if (++count > kNamed) continue;
      if (!text.empty()) text += ", ";
      if (edge.routine == kNone) {
        text += Escaped(edge.host);
      } else {
        text += Code(RoutineName(edge.routine, module)) + (edge.certainty == symbols::Certainty::kSure ? "" : "?");
      }
    }
    if (count > kNamed) text += " und " + std::to_string(count - kNamed) + " weitere";
    return text;
  }

  std::string RoutineEntry(const RoutineNumbers& numbers) const {
    const language::Module& code = index_.Code(numbers.module);
    const language::Routine& routine = code.routines[numbers.routine];
    const symbols::SymbolId symbol = index_.RoutineSymbol(numbers.module, numbers.routine);
    std::string entry = "- " + Code(Signature(code, routine)) + ", Zeile ";
    entry += std::to_string(index_.EditorLine(numbers.module, routine.firstLine));
    entry += ", Komplexität " + std::to_string(numbers.complexity) + "\n";
    const std::string comment = CommentOf(code, routine.descriptionFirst, routine.descriptionLast);
    if (!comment.empty()) entry += "  - " + Escaped(comment) + "\n";
    if (symbol == kNone) return entry;
    const std::string callees = Edges(symbols::CalleesOf(index_, symbol), numbers.module);
    if (!callees.empty()) entry += "  - ruft " + callees + "\n";
    const std::string callers = Edges(symbols::CallersOf(index_, symbol), numbers.module);
    if (!callers.empty()) entry += "  - aufgerufen von " + callers + "\n";
    return entry;
  }

  void Routines() {
    text_ += "## Routinen\n\n";
    std::size_t left = 0;
    Index module = kNone;
    for (const RoutineNumbers& numbers : metrics_.routines) {
      if (left > 0) {
        ++left;
        continue;
      }
      std::string entry;
      if (numbers.module != module) entry = "### " + Escaped(ModuleName(numbers.module)) + "\n\n";
      entry = (module != kNone && !entry.empty() ? "\n" : "") + entry + RoutineEntry(numbers);
      if (!HasRoom(entry.size(), kRoutinesShare)) {
        ++left;
        continue;
      }
      text_ += entry;
      module = numbers.module;
    }
    LeftOut(left, "Routine ist hier nicht aufgeführt", "Routinen sind hier nicht aufgeführt");
  }

  void Findings() {
    text_ += "## Befunde\n\n";
    if (findings_.empty()) text_ += "Keine.\n\n";
    std::map<std::pair<checks::Severity, checks::CheckId>, std::vector<const Finding*>> byCheck;
    for (const Finding& finding : findings_) {
      byCheck[{checks::InfoOf(finding.check).severity, finding.check}].push_back(&finding);
    }
    std::size_t left = 0;
    for (const auto& [key, places] : byCheck) {
      const checks::Check& check = checks::InfoOf(key.second);
      std::string entry = "- **" + std::string(checks::Word(check.severity)) + "** " + Escaped(check.title) + " (" +
                          Code(check.id) + ", " + std::to_string(places.size()) + "-mal): " + Escaped(check.advice) +
                          "\n";
      for (std::size_t i = 0; i < places.size() && i < kNamed; ++i) {
        const std::uint32_t line = index_.EditorLine(places[i]->module, places[i]->line);
        entry += "  - " + Code(ModuleName(places[i]->module)) + (line == 0 ? "" : ", Zeile " + std::to_string(line)) +
                 ": " + Escaped(places[i]->text) + "\n";
      }
      if (places.size() > kNamed) entry += "  - und " + std::to_string(places.size() - kNamed) + " weitere\n";
      HasRoom(entry.size(), kFindingsShare) ? void(text_ += entry) : void(++left);
    }
    LeftOut(left, "Art von Befunden ist hier nicht aufgeführt", "Arten von Befunden sind hier nicht aufgeführt");
  }

  /// The lines that the editor shows.
  static std::string ShownCode(const language::Module& code) {
    std::string shown;
    for (std::uint32_t line = 1; line <= code.lines.size(); ++line) {
      if (code.EditorLine(line) != 0) shown.append(code.LineText(line)).append("\n");
    }
    return shown;
  }

  void CodeOfModules() {
    text_ += "## Code\n\n";
    std::vector<Index> left;
    for (Index module = 0; module < index_.Modules().size(); ++module) {
      const language::Module& code = index_.Code(module);
      if (metrics_.modules[module].lines == 0) continue;
      // Looked at before the text is made: what is too long need not be.
      constexpr std::size_t kAround = 200;
      const bool fits = text_.size() + code.text.size() + kAround <= options_.limit;
      const std::string shown = fits ? ShownCode(code) : std::string();
      const std::string fence = Ticks(shown, 3);
      if (!fits || text_.size() + shown.size() + 2 * fence.size() + kAround > options_.limit) {
        left.push_back(module);
        continue;
      }
      text_ += "### " + Escaped(ModuleName(module)) + "\n\n" + fence + "vba\n" + shown + fence + "\n\n";
    }
    if (left.empty()) return;
    text_ += "Nicht enthalten, weil die Größe begrenzt ist:\n\n";
    for (std::size_t i = 0; i < left.size(); ++i) {
      const std::string row =
          "- " + Code(ModuleName(left[i])) + ", " + std::to_string(metrics_.modules[left[i]].lines) + " Zeilen\n";
      if (text_.size() + row.size() + 60 > options_.limit) {
        text_ += "- und " + std::to_string(left.size() - i) + " weitere Module\n";
        return;
      }
      text_ += row;
    }
  }

  const ReferenceIndex& index_;
  const checks::Metrics& metrics_;
  const std::vector<Finding>& findings_;
  const DigestOptions& options_;
  std::string text_;
};

}  // namespace

std::string ProjectDigest(const ReferenceIndex& index, const checks::Metrics& metrics,
                          const std::vector<Finding>& findings, const DigestOptions& options) {
  return Digest(index, metrics, findings, options).Write();
}

}  // namespace quillmate::output
