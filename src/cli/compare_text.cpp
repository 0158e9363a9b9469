#include <algorithm>
#include <string>

#include "compare_forms.h"

/// A comparison for reading: with colours, as a table of sizes, as Markdown.
namespace quillmate::cli {
namespace {

using symbols::ChangeState;
using symbols::IndexOf;
using symbols::LineOf;
using symbols::PlaceOf;

constexpr std::string_view kPlain = "0";
constexpr std::string_view kTitle = "1";
constexpr std::string_view kHead = "36";
constexpr std::string_view kRemoved = "31";
constexpr std::string_view kAdded = "32";

std::string_view StyleOf(char sign) {
  switch (sign) {
    case '-':
      return kRemoved;
    case '+':
      return kAdded;
    case '@':
      return kHead;
    default:
      return {};
  }
}

std::string LineText(const DiffLine& line) {
  if (line.sign == '@') return "@@ " + line.text + " @@\n";
  return line.sign + line.text + "\n";
}

/// A code point may tell a terminal to turn the direction of reading: the output takes care of that.
class TextWriter {
 public:
  TextWriter(const ComparedStates& states, Output& output) : states_(states), output_(output) {}

  void Run() {
    for (const symbols::ProjectChange& project : states_.comparison.projects) {
      if (IsListed(project)) WriteProject(project);
    }
    for (const symbols::ModuleChange& module : states_.comparison.modules) {
      if (IsListed(module)) WriteModule(module);
    }
    WriteUnused(true, "Jetzt unbenutzt:");
    WriteUnused(false, "Nicht mehr unbenutzt:");
    output_.Write((states_.comparison.equal ? "Keine Unterschiede" : SummaryText(states_.comparison)) + "\n");
  }

 private:
  void Line(std::string_view style, const std::string& text) {
    if (!style.empty()) output_.Paint(style);
    output_.Write(text);
    if (!style.empty()) output_.Paint(kPlain);
    output_.Write("\n");
  }

  void WriteProject(const symbols::ProjectChange& project) {
    Line(kTitle, ProjectTitle(states_, project) + ": " + std::string(GermanWord(project.state)));
    for (const symbols::FactChange& fact : project.facts) Line({}, "  " + FactText(fact));
    output_.Write("\n");
  }

  void WriteModule(const symbols::ModuleChange& module) {
    Line(kTitle, "Modul " + std::string(NameOf(states_, module)) + ": " + StateText(states_, module));
    for (const symbols::FactChange& fact : module.facts) Line({}, "  " + FactText(fact));
    for (const auto& declaration : module.declarations) Line({}, "  " + DeclarationText(states_, declaration));
    if (!module.outside.edits.empty()) {
      Line(kTitle, "  Außerhalb der Routinen");
      WriteDifference(DifferenceOutside(states_, module));
    }
    for (const symbols::RoutineChange& routine : module.routines) {
      if (routine.state != ChangeState::kSame) WriteRoutine(routine);
    }
    for (const symbols::Departure& departure : module.departures) {
      const auto& target = states_.newIndex.Modules()[departure.newPlace.module];
      Line({}, "  " + std::string(GermanWord(RoutineKind(states_.oldIndex, departure.oldPlace))) + " " +
                   std::string(RoutineName(states_.oldIndex, departure.oldPlace)) + ": verschoben nach " + target.name);
    }
    output_.Write("\n");
  }

  void WriteRoutine(const symbols::RoutineChange& routine) {
    const std::uint32_t line = LineOf(IndexOf(states_, routine), PlaceOf(routine));
    Line(kTitle,
         "  " + TitleOf(states_, routine) + ", Zeile " + std::to_string(line) + ": " + StateText(states_, routine));
    WriteDifference(DifferenceOf(states_, routine));
    std::string callers;
    for (const symbols::CallEdge& edge : CallersOf(states_, routine)) {
      callers.append(callers.empty() ? "" : "; ").append(CallerText(IndexOf(states_, routine), edge));
    }
    if (!callers.empty()) Line({}, "  Aufrufer: " + callers);
  }

  void WriteDifference(const std::vector<DiffLine>& lines) {
    for (const DiffLine& line : lines) {
      const std::string_view style = StyleOf(line.sign);
      std::string text = LineText(line);
      text.pop_back();
      Line(style, text);
    }
  }

  void WriteUnused(bool made, const std::string& title) {
    bool any = false;
    for (const symbols::UnusedChange& unused : states_.comparison.unused) {
      if (unused.made != made) continue;
      if (!any) Line(kTitle, title);
      any = true;
      Line({}, "  " + UnusedText(states_, unused));
    }
    if (any) output_.Write("\n");
  }

  const ComparedStates& states_;
  Output& output_;
};

struct LineCounts {
  std::size_t added = 0, removed = 0;
  void Add(const symbols::PieceChange& piece) {
    for (const symbols::Edit& edit : piece.edits) {
      added += edit.newCount;
      removed += edit.oldCount;
    }
  }
};

LineCounts CountLines(const symbols::ModuleChange& module) {
  LineCounts counts;
  counts.Add(module.outside);
  for (const symbols::RoutineChange& routine : module.routines) counts.Add(routine.text);
  return counts;
}

std::size_t CharactersIn(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::ranges::count_if(utf8, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }));
}

/// Names and code in Markdown text: nothing in them is markup.
std::string Escaped(std::string_view text) {
  constexpr std::string_view kMarks = "\\`*_{}[]<>#+-.!|~&";
  std::string escaped;
  for (const char c : text) {
    if (kMarks.find(c) != std::string_view::npos) escaped += '\\';
    escaped += c == '\n' || c == '\r' ? ' ' : c;
  }
  return escaped;
}

/// A fence of more backticks than any run of them in the code.
std::string FenceFor(const std::vector<DiffLine>& lines) {
  std::size_t longest = 2;
  for (const DiffLine& line : lines) {
    std::size_t run = 0;
    for (const char c : line.text) {
      run = c == '`' ? run + 1 : 0;
      longest = std::max(longest, run);
    }
  }
  return std::string(longest + 1, '`');
}

void AppendFenced(std::string& text, const std::vector<DiffLine>& lines) {
  if (lines.empty()) return;
  const std::string fence = FenceFor(lines);
  text.append("\n").append(fence).append("diff\n");
  for (const DiffLine& line : lines) text += LineText(line);
  text.append(fence).append("\n");
}

std::string MarkdownOf(const ComparedStates& states, const symbols::RoutineChange& routine) {
  const std::uint32_t line = LineOf(IndexOf(states, routine), PlaceOf(routine));
  std::string text = "\n### " + Escaped(TitleOf(states, routine)) + ": " + Escaped(StateText(states, routine)) +
                     " (Zeile " + std::to_string(line) + ")\n";
  AppendFenced(text, DifferenceOf(states, routine));
  const std::vector<symbols::CallEdge> callers = CallersOf(states, routine);
  if (!callers.empty()) text += "\nAufrufer:\n\n";
  for (const symbols::CallEdge& edge : callers) {
    text += "- " + Escaped(CallerText(IndexOf(states, routine), edge)) + "\n";
  }
  return text;
}

std::string MarkdownOf(const ComparedStates& states, const symbols::ModuleChange& module) {
  std::string text = "\n## " + Escaped(NameOf(states, module)) + ": " + Escaped(StateText(states, module)) + "\n";
  if (!module.facts.empty() || !module.declarations.empty() || !module.departures.empty()) text += "\n";
  for (const symbols::FactChange& fact : module.facts) text += "- " + Escaped(FactText(fact)) + "\n";
  for (const auto& declaration : module.declarations) {
    text += "- " + Escaped(DeclarationText(states, declaration)) + "\n";
  }
  for (const symbols::Departure& departure : module.departures) {
    text += "- " + Escaped(RoutineName(states.oldIndex, departure.oldPlace)) + ": verschoben nach " +
            Escaped(states.newIndex.Modules()[departure.newPlace.module].name) + "\n";
  }
  AppendFenced(text, DifferenceOutside(states, module));
  return text;
}

}  // namespace

void WriteComparisonText(const ComparedStates& states, Output& output) { TextWriter(states, output).Run(); }

void WriteComparisonStat(const ComparedStates& states, Output& output) {
  std::size_t width = 0;
  for (const symbols::ModuleChange& module : states.comparison.modules) {
    if (IsListed(module)) width = std::max(width, CharactersIn(NameOf(states, module)));
  }
  for (const symbols::ModuleChange& module : states.comparison.modules) {
    if (!IsListed(module)) continue;
    const std::string name(NameOf(states, module));
    const LineCounts counts = CountLines(module);
    output.Write(" " + name + std::string(width - CharactersIn(name), ' ') + " | ");
    output.Paint(kAdded);
    output.Write("+" + std::to_string(counts.added));
    output.Paint(kPlain);
    output.Write(" ");
    output.Paint(kRemoved);
    output.Write("-" + std::to_string(counts.removed));
    output.Paint(kPlain);
    output.Write(" " + StateText(states, module) + "\n");
  }
  output.Write((states.comparison.equal ? "Keine Unterschiede" : SummaryText(states.comparison)) + "\n");
}

void WriteComparisonMarkdown(const ComparedStates& states, Output& output) {
  output.Write("# Vergleich\n\n" +
               Escaped(states.comparison.equal ? "Keine Unterschiede" : SummaryText(states.comparison)) + "\n");
  for (const symbols::ProjectChange& project : states.comparison.projects) {
    if (!IsListed(project)) continue;
    std::string text = "\n## " + Escaped(ProjectTitle(states, project)) + ": " +
                       std::string(GermanWord(project.state)) + "\n" + (project.facts.empty() ? "" : "\n");
    for (const symbols::FactChange& fact : project.facts) text += "- " + Escaped(FactText(fact)) + "\n";
    output.Write(text);
  }
  for (const symbols::ModuleChange& module : states.comparison.modules) {
    if (!IsListed(module)) continue;
    output.Write(MarkdownOf(states, module));
    for (const symbols::RoutineChange& routine : module.routines) {
      if (routine.state != ChangeState::kSame) output.Write(MarkdownOf(states, routine));
    }
  }
  for (const bool made : {true, false}) {
    bool any = false;
    for (const symbols::UnusedChange& unused : states.comparison.unused) {
      if (unused.made != made) continue;
      if (!any) output.Write(made ? "\n## Jetzt unbenutzt\n\n" : "\n## Nicht mehr unbenutzt\n\n");
      any = true;
      output.Write("- " + Escaped(UnusedText(states, unused)) + "\n");
    }
  }
}

}  // namespace quillmate::cli
