#include <string>
#include <string_view>

#include "compare_forms.h"
#include "json.h"
#include "symbol_json.h"

/// A comparison as JSON: one module, one routine and one of everything else a line.
namespace quillmate::cli {
namespace {

using symbols::ChangeState;
using symbols::IndexOf;
using symbols::kNone;
using symbols::LineOf;
using symbols::PlaceOf;
using symbols::ReferenceIndex;

constexpr std::size_t kPiece = std::size_t{1} << 20U;

class JsonWriter {
 public:
  JsonWriter(const ComparedStates& states, Output& output) : states_(states), output_(output) {}

  void Run() {
    json_ += "{\"equal\":";
    json_ += states_.comparison.equal ? "true" : "false";
    json_ += ",\n\"projects\":";
    List(states_.comparison.projects, [&](const symbols::ProjectChange& project) { AddProject(project); });
    json_ += ",\n\"modules\":";
    List(states_.comparison.modules, [&](const symbols::ModuleChange& module) { AddModule(module); });
    json_ += ",\n\"unused\":";
    List(states_.comparison.unused, [&](const symbols::UnusedChange& unused) { AddUnused(unused); });
    json_ += ",\n\"not_compared\":";
    AddNotCompared();
    json_ += "}\n";
    output_.Write(json_);
  }

 private:
  template <typename Items, typename Add>
  void List(const Items& items, Add add) {
    json_ += '[';
    bool first = true;
    for (const auto& item : items) {
      json_ += first ? "\n" : ",\n";
      first = false;
      add(item);
      Flush();
    }
    json_ += ']';
  }

  void Flush() {
    if (json_.size() < kPiece) return;
    output_.Write(json_);
    json_.clear();
  }

  void Begin(std::string_view key, std::string_view text) {
    json_.append("{\"").append(key).append("\":");
    text.empty() ? void(json_ += "null") : AppendJsonUtf8(json_, text);
  }

  void AddTrivial(std::uint8_t bits) {
    json_ += ",\"trivial\":[";
    bool first = true;
    for (const auto& [bit, word] :
         {std::pair(symbols::trivial::kLayout, "layout"), std::pair(symbols::trivial::kComment, "comment"),
          std::pair(symbols::trivial::kCase, "case")}) {
      if ((bits & bit) == 0) continue;
      json_.append(first ? "\"" : ",\"").append(word).append("\"");
      first = false;
    }
    json_ += ']';
  }

  void AddDifference(const std::vector<DiffLine>& lines) {
    std::string text;
    for (const DiffLine& line : lines) {
      if (line.sign == '@') {
        text.append("@@ ").append(line.text).append(" @@\n");
      } else {
        text.append(1, line.sign).append(line.text).append("\n");
      }
    }
    AppendMember(json_, "diff", text);
  }

  void AddFacts(const std::vector<symbols::FactChange>& facts) {
    json_ += ",\"facts\":";
    List(facts, [&](const symbols::FactChange& fact) {
      Begin("kind", Word(fact.kind));
      AppendMember(json_, "name", fact.name);
      AppendMember(json_, "state", Word(fact.state));
      AppendMember(json_, "old", fact.oldValue);
      AppendMember(json_, "new", fact.newValue);
      json_.append(",\"counts\":").append(fact.counts ? "true}" : "false}");
    });
  }

  void AddProject(const symbols::ProjectChange& project) {
    const bool isNew = project.newProject != kNone;
    const symbols::ProjectInfo& info =
        isNew ? states_.newIndex.Projects()[project.newProject] : states_.oldIndex.Projects()[project.oldProject];
    Begin("file", info.file);
    AppendMember(json_, "project", info.name);
    AppendMember(json_, "state", Word(project.state));
    const bool both = isNew && project.oldProject != kNone;
    AppendMember(json_, "old_file", both ? states_.oldIndex.Projects()[project.oldProject].file : std::string());
    AddFacts(project.facts);
    json_ += '}';
  }

  void AddModule(const symbols::ModuleChange& module) {
    const bool isNew = module.newModule != kNone;
    json_ += '{';
    AppendModuleJson(json_, isNew ? states_.newIndex : states_.oldIndex, isNew ? module.newModule : module.oldModule);
    AppendMember(json_, "state", Word(module.state));
    const bool other = module.state == ChangeState::kRenamed || module.state == ChangeState::kMoved;
    const auto* const old = other ? &states_.oldIndex.Modules()[module.oldModule] : nullptr;
    AppendMember(json_, "old_name",
                 module.state == ChangeState::kRenamed ? std::string_view(old->name) : std::string_view());
    AppendMember(
        json_, "old_project",
        old != nullptr ? std::string_view(states_.oldIndex.Projects()[old->project].name) : std::string_view());
    AddTrivial(module.trivial);
    AddDifference(DifferenceOutside(states_, module));
    json_ += ",\"declarations\":";
    List(module.declarations, [&](const symbols::DeclarationChange& each) { AddDeclaration(each); });
    AddFacts(module.facts);
    json_ += ",\"routines\":";
    List(module.routines, [&](const symbols::RoutineChange& routine) { AddRoutine(module, routine); });
    json_ += ",\"moved_away\":";
    List(module.departures, [&](const symbols::Departure& departure) {
      Begin("routine", RoutineName(states_.oldIndex, departure.oldPlace));
      AppendMember(json_, "routine_kind", Word(RoutineKind(states_.oldIndex, departure.oldPlace)));
      AppendMember(json_, "line", LineOf(states_.oldIndex, departure.oldPlace));
      AppendMember(json_, "new_module", states_.newIndex.Modules()[departure.newPlace.module].name);
      AppendMember(json_, "new_name", RoutineName(states_.newIndex, departure.newPlace));
      json_ += '}';
    });
    json_ += '}';
  }

  void AddRoutine(const symbols::ModuleChange& module, const symbols::RoutineChange& routine) {
    const ReferenceIndex& index = IndexOf(states_, routine);
    const symbols::RoutinePlace place = PlaceOf(routine);
    const bool isOld = routine.oldPlace.IsKnown(), isNew = routine.newPlace.IsKnown();
    Begin("routine", RoutineName(index, place));
    AppendMember(json_, "routine_kind", Word(RoutineKind(index, place)));
    AppendMember(json_, "state", Word(routine.state));
    AppendMember(json_, "old_name",
                 routine.nameChanged ? RoutineName(states_.oldIndex, routine.oldPlace) : std::string_view());
    const bool moved = isOld && isNew && routine.oldPlace.module != module.oldModule;
    AppendMember(
        json_, "old_module",
        moved ? std::string_view(states_.oldIndex.Modules()[routine.oldPlace.module].name) : std::string_view());
    AppendMember(json_, "old_line", isOld ? LineOf(states_.oldIndex, routine.oldPlace) : 0);
    AppendMember(json_, "line", isNew ? LineOf(states_.newIndex, routine.newPlace) : 0);
    const auto& code = index.Code(place.module);
    const std::uint32_t line = code.declarations[code.routines[place.routine].declaration].line;
    AppendMember(json_, "source_line", isNew ? index.SourceLine(place.module, line) : 0);
    AddTrivial(routine.text.trivial);
    AddDifference(DifferenceOf(states_, routine));
    json_ += ",\"callers\":[";
    bool first = true;
    for (const symbols::CallEdge& edge : symbols::CallersOf(states_, routine)) {
      if (!first) json_ += ',';
      first = false;
      AddCaller(index, edge);
    }
    json_ += "]}";
  }

  void AddCaller(const ReferenceIndex& index, const symbols::CallEdge& edge) {
    if (edge.routine == kNone) {
      Begin("host", edge.host);
      json_ += '}';
      return;
    }
    const symbols::Symbol& symbol = index.SymbolAt(edge.routine);
    json_ += '{';
    AppendModuleJson(json_, index, symbol.module);
    AppendMember(json_, "routine", index.Name(edge.routine));
    AppendMember(json_, "routine_kind", Word(symbol.kind));
    AppendMember(json_, "line", index.EditorLine(symbol.module, symbol.line));
    AppendMember(json_, "certainty", Word(edge.certainty));
    json_ += ",\"lines\":[";
    for (std::size_t i = 0; i < edge.lines.size(); ++i) {
      json_.append(i > 0 ? "," : "").append(std::to_string(index.EditorLine(symbol.module, edge.lines[i])));
    }
    json_ += "]}";
  }

  void AddDeclaration(const symbols::DeclarationChange& declaration) {
    const bool isNew = declaration.newSymbol != kNone;
    const ReferenceIndex& index = isNew ? states_.newIndex : states_.oldIndex;
    const symbols::SymbolId id = isNew ? declaration.newSymbol : declaration.oldSymbol;
    Begin("name", index.Name(id));
    AppendMember(json_, "kind", Word(index.SymbolAt(id).kind));
    AppendMember(json_, "state", Word(declaration.state));
    const bool moved = declaration.state == ChangeState::kMoved;
    AppendMember(json_, "old_module",
                 moved ? std::string_view(
                             states_.oldIndex.Modules()[states_.oldIndex.SymbolAt(declaration.oldSymbol).module].name)
                       : std::string_view());
    const auto lineOf = [](const ReferenceIndex& side, symbols::SymbolId symbol) {
      if (symbol == kNone) return std::uint32_t{0};
      return side.EditorLine(side.SymbolAt(symbol).module, side.SymbolAt(symbol).line);
    };
    AppendMember(json_, "old_line", lineOf(states_.oldIndex, declaration.oldSymbol));
    AppendMember(json_, "line", lineOf(states_.newIndex, declaration.newSymbol));
    AppendMember(json_, "old", declaration.oldText);
    AppendMember(json_, "new", declaration.newText);
    json_ += '}';
  }

  void AddUnused(const symbols::UnusedChange& unused) {
    const bool isNew = unused.newSymbol != kNone;
    const ReferenceIndex& index = isNew ? states_.newIndex : states_.oldIndex;
    const symbols::SymbolId id = isNew ? unused.newSymbol : unused.oldSymbol;
    const symbols::Symbol& symbol = index.SymbolAt(id);
    Begin("change", unused.made ? "made" : isNew ? "mended" : "gone");
    json_ += ',';
    AppendModuleJson(json_, index, symbol.module);
    AppendMember(json_, "name", index.Name(id));
    AppendMember(json_, "kind", Word(symbol.kind));
    AppendMember(json_, "parent", symbol.parent == kNone ? std::string_view() : index.Name(symbol.parent));
    AppendMember(json_, "line", index.EditorLine(symbol.module, symbol.line));
    AppendMember(json_, "grade", Word(unused.grade));
    AppendMember(json_, "reason", unused.reason);
    json_ += '}';
  }

  void AddNotCompared() {
    json_ += '[';
    bool first = true;
    const auto add = [&](const ReferenceIndex& index, symbols::Index module) {
      json_ += first ? "\n{" : ",\n{";
      first = false;
      AppendModuleJson(json_, index, module);
      json_ += '}';
    };
    for (const symbols::Index module : states_.comparison.notCompared.oldModules) add(states_.oldIndex, module);
    for (const symbols::Index module : states_.comparison.notCompared.newModules) add(states_.newIndex, module);
    json_ += ']';
  }

  const ComparedStates& states_;
  Output& output_;
  std::string json_;
};

}  // namespace

void WriteComparisonJson(const ComparedStates& states, Output& output) { JsonWriter(states, output).Run(); }

}  // namespace quillmate::cli
