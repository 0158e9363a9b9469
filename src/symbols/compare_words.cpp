#include <algorithm>
#include <array>
#include <utility>

#include <quillmate/symbols/compare_words.h>

namespace quillmate::symbols {
namespace {

/// "Layout, Kommentare"
std::string TrivialText(std::uint8_t bits) {
  constexpr std::array<std::pair<std::uint8_t, std::string_view>, 3> kWords{
      {{trivial::kLayout, "Layout"}, {trivial::kComment, "Kommentare"}, {trivial::kCase, "Groß- und Kleinschreibung"}}};
  std::string text;
  for (const auto& [bit, word] : kWords) {
    if ((bits & bit) != 0) text.append(text.empty() ? "" : ", ").append(word);
  }
  return text;
}

void AppendPart(std::string& text, std::string_view part) { text.append(text.empty() ? "" : ", ").append(part); }

std::string CountText(const std::size_t (&counts)[kChangeStateCount]) {
  constexpr std::array kOrder{ChangeState::kNew,   ChangeState::kGone,    ChangeState::kChanged,
                              ChangeState::kMoved, ChangeState::kRenamed, ChangeState::kLayout};
  std::string text;
  for (const ChangeState state : kOrder) {
    const std::size_t count = counts[static_cast<std::size_t>(state)];
    if (count > 0) AppendPart(text, std::to_string(count) + " " + std::string(GermanWord(state)));
  }
  return text;
}

}  // namespace

const ReferenceIndex& IndexOf(const ComparedStates& states, const RoutineChange& routine) {
  return routine.newPlace.IsKnown() ? states.newIndex : states.oldIndex;
}

RoutinePlace PlaceOf(const RoutineChange& routine) {
  return routine.newPlace.IsKnown() ? routine.newPlace : routine.oldPlace;
}

std::uint32_t LineOf(const ReferenceIndex& index, const RoutinePlace& place) {
  const auto& code = index.Code(place.module);
  return index.EditorLine(place.module, code.declarations[code.routines[place.routine].declaration].line);
}

std::string_view NameOf(const ComparedStates& states, const ModuleChange& module) {
  return module.newModule != kNone ? states.newIndex.Modules()[module.newModule].name
                                   : states.oldIndex.Modules()[module.oldModule].name;
}

std::string TitleOf(const ComparedStates& states, const RoutineChange& routine) {
  const ReferenceIndex& index = IndexOf(states, routine);
  const RoutinePlace place = PlaceOf(routine);
  return std::string(GermanWord(RoutineKind(index, place))).append(" ").append(RoutineName(index, place));
}

std::string StateText(const ComparedStates& states, const RoutineChange& routine) {
  std::string text(GermanWord(routine.state));
  const bool moved = routine.state == ChangeState::kMoved;
  if (routine.nameChanged || moved) {
    text += ", vorher ";
    if (routine.nameChanged) text += RoutineName(states.oldIndex, routine.oldPlace);
    if (moved) {
      text.append(routine.nameChanged ? " in " : "in ");
      text += states.oldIndex.Modules()[routine.oldPlace.module].name;
    }
    if (routine.text.changed) text += ", geändert";
  }
  if (routine.text.trivial != 0) {
    text.append(routine.state == ChangeState::kLayout ? " (" : ", nur Form (");
    text.append(TrivialText(routine.text.trivial)).append(")");
  }
  return text;
}

std::string StateText(const ComparedStates& states, const ModuleChange& module) {
  std::string text(GermanWord(module.state));
  if (module.state == ChangeState::kRenamed) {
    text.append(", vorher ").append(states.oldIndex.Modules()[module.oldModule].name);
  } else if (module.state == ChangeState::kMoved) {
    const ModuleInfo& old = states.oldIndex.Modules()[module.oldModule];
    text.append(", vorher ").append(states.oldIndex.Projects()[old.project].name).append(".").append(old.name);
  } else if (module.state == ChangeState::kLayout) {
    text.append(" (").append(TrivialText(module.trivial)).append(")");
  }
  return text;
}

std::vector<CallEdge> CallersOf(const ComparedStates& states, const RoutineChange& routine) {
  if (routine.state == ChangeState::kSame || routine.state == ChangeState::kLayout) return {};
  return symbols::CallersOf(IndexOf(states, routine), PlaceOf(routine));
}

std::string CallerText(const ReferenceIndex& index, const CallEdge& edge) {
  if (edge.routine == kNone) return edge.host;
  const Symbol& symbol = index.SymbolAt(edge.routine);
  std::string text = index.Modules()[symbol.module].name;
  text.append(".").append(index.Name(edge.routine));
  text += edge.lines.size() == 1 ? " (Zeile " : " (Zeilen ";
  for (std::size_t i = 0; i < edge.lines.size(); ++i) {
    text.append(i > 0 ? ", " : "").append(std::to_string(index.EditorLine(symbol.module, edge.lines[i])));
  }
  if (edge.certainty != Certainty::kSure) text.append("; ").append(GermanWord(edge.certainty));
  return text + ")";
}

std::string FactText(const FactChange& fact) {
  std::string text(GermanWord(fact.kind));
  text.append(" ").append(fact.name).append(": ").append(GermanWord(fact.state));
  if (!fact.oldValue.empty() && !fact.newValue.empty()) {
    return text.append(": ").append(fact.oldValue).append(" -> ").append(fact.newValue);
  }
  const std::string& value = fact.oldValue.empty() ? fact.newValue : fact.oldValue;
  return value.empty() ? text : text.append(": ").append(value);
}

std::string DeclarationText(const ComparedStates& states, const DeclarationChange& declaration) {
  const bool isNew = declaration.newSymbol != kNone;
  const ReferenceIndex& index = isNew ? states.newIndex : states.oldIndex;
  const SymbolId id = isNew ? declaration.newSymbol : declaration.oldSymbol;
  std::string text(GermanWord(index.SymbolAt(id).kind));
  text.append(" ").append(index.Name(id)).append(": ").append(GermanWord(declaration.state));
  if (declaration.state == ChangeState::kMoved) {
    const Symbol& old = states.oldIndex.SymbolAt(declaration.oldSymbol);
    text.append(", vorher in ").append(states.oldIndex.Modules()[old.module].name);
  }
  return text;
}

std::string UnusedText(const ComparedStates& states, const UnusedChange& unused) {
  const bool isNew = unused.newSymbol != kNone;
  const ReferenceIndex& index = isNew ? states.newIndex : states.oldIndex;
  const SymbolId id = isNew ? unused.newSymbol : unused.oldSymbol;
  const Symbol& symbol = index.SymbolAt(id);
  std::string text(GermanWord(symbol.kind));
  text.append(" ").append(index.Name(id)).append(" in ").append(index.Modules()[symbol.module].name);
  if (symbol.line > 0) text.append(", Zeile ").append(std::to_string(index.EditorLine(symbol.module, symbol.line)));
  if (unused.made) return text.append(" (").append(GermanWord(unused.grade)).append(": ").append(unused.reason) + ")";
  return isNew ? text : text + " (entfallen)";
}

std::string SummaryText(const Comparison& comparison) {
  const ChangeCounts counts = CountChanges(comparison);
  std::string text;
  const auto append = [&](std::string_view title, const std::string& part) {
    if (!part.empty()) text.append(text.empty() ? "" : "; ").append(title).append(part);
  };
  append("Module: ", CountText(counts.modules));
  append("Routinen: ", CountText(counts.routines));
  if (counts.addedLines + counts.removedLines > 0) {
    append("Zeilen: ", std::to_string(counts.addedLines) + " dazu, " + std::to_string(counts.removedLines) + " weg");
  }
  return text.empty() ? "Keine Unterschiede im Code" : text;
}

std::string ProjectTitle(const ComparedStates& states, const ProjectChange& project) {
  const bool isNew = project.newProject != kNone;
  const ProjectInfo& info =
      isNew ? states.newIndex.Projects()[project.newProject] : states.oldIndex.Projects()[project.oldProject];
  return "Projekt " + (info.name.empty() ? info.file : info.name);
}

bool IsListed(const ModuleChange& module) noexcept { return module.state != ChangeState::kSame; }
bool IsListed(const ProjectChange& project) noexcept {
  return project.state != ChangeState::kSame || !project.facts.empty();
}

}  // namespace quillmate::symbols
