#include <algorithm>
#include <optional>
#include <utility>

#include <quillmate/symbols/compare_outline.h>

namespace quillmate::symbols {
namespace {

using Kind = ChangeNode::Kind;

/// "verschoben nach Modul2": only what the text of a fact says after its name.
std::string Behind(std::string text, std::string_view head) {
  if (text.starts_with(head)) text.erase(0, head.size());
  const std::size_t start = text.find_first_not_of(": ");
  return start == std::string::npos ? std::string() : text.substr(start);
}

class Outliner {
 public:
  explicit Outliner(const ComparedStates& states) : states_(states), comparison_(states.comparison) {}

  std::vector<ChangeNode> Run() {
    const bool several = comparison_.projects.size() > 1;
    for (Index project = 0; project < comparison_.projects.size(); ++project) {
      const Index node = AddProject(project, several);
      for (Index module = 0; module < comparison_.modules.size(); ++module) {
        const ModuleChange& change = comparison_.modules[module];
        if (IsListed(change) && ProjectOf(change) == project) AddModule(module, several ? node : kNone);
      }
    }
    AddUnused(true, "Jetzt unbenutzt");
    AddUnused(false, "Nicht mehr unbenutzt");
    AddNotCompared();
    return std::move(nodes_);
  }

 private:
  Index Add(ChangeNode node) {
    nodes_.push_back(std::move(node));
    return static_cast<Index>(nodes_.size() - 1);
  }

  /// The project change that a module belongs to.
  Index ProjectOf(const ModuleChange& module) const {
    const bool isNew = module.newModule != kNone;
    const Index project = isNew ? states_.newIndex.Modules()[module.newModule].project
                                : states_.oldIndex.Modules()[module.oldModule].project;
    const auto found = std::ranges::find(comparison_.projects, project,
                                         isNew ? &ProjectChange::newProject : &ProjectChange::oldProject);
    return static_cast<Index>(found - comparison_.projects.begin());
  }

  bool HasListed(Index project) const {
    return std::ranges::any_of(comparison_.modules, [&](const ModuleChange& module) {
      return IsListed(module) && ProjectOf(module) == project;
    });
  }

  Index AddProject(Index number, bool several) {
    const ProjectChange& project = comparison_.projects[number];
    if (!IsListed(project) && !(several && HasListed(number))) return kNone;
    const Index node = Add({.kind = Kind::kProject,
                            .state = project.state,
                            .text = ProjectTitle(states_, project),
                            .note = std::string(GermanWord(project.state)),
                            .project = number});
    for (const FactChange& fact : project.facts) AddFact(fact, node, number, kNone);
    return node;
  }

  void AddFact(const FactChange& fact, Index parent, Index project, Index module) {
    const std::string name = std::string(GermanWord(fact.kind)) + " " + fact.name;
    std::string note = Behind(FactText(fact), name);
    if (!fact.counts) note += " (bei jedem Speichern)";
    Add({.kind = Kind::kFact,
         .state = fact.state,
         .parent = parent,
         .text = name,
         .note = std::move(note),
         .project = project,
         .module = module});
  }

  void AddModule(Index number, Index parent) {
    const ModuleChange& module = comparison_.modules[number];
    const Index node = Add({.kind = Kind::kModule,
                            .state = module.state,
                            .parent = parent,
                            .text = std::string(NameOf(states_, module)),
                            .note = StateText(states_, module),
                            .module = number});
    for (const FactChange& fact : module.facts) AddFact(fact, node, kNone, number);
    if (!module.outside.edits.empty()) {
      const bool changed = module.outside.changed;
      const ChangeState state = module.state == ChangeState::kNew || module.state == ChangeState::kGone ? module.state
                                : changed ? ChangeState::kChanged
                                          : ChangeState::kLayout;
      Add({.kind = Kind::kOutside,
           .state = state,
           .parent = node,
           .text = "Außerhalb der Routinen",
           .note = std::string(GermanWord(state)),
           .module = number});
    }
    for (const DeclarationChange& declaration : module.declarations) AddDeclaration(declaration, node, number);
    for (Index routine = 0; routine < module.routines.size(); ++routine) {
      if (module.routines[routine].state != ChangeState::kSame) AddRoutine(routine, node, number);
    }
    for (const Departure& departure : module.departures) AddDeparture(departure, node);
  }

  void AddDeclaration(const DeclarationChange& declaration, Index parent, Index module) {
    const Side side = declaration.newSymbol != kNone ? Side::kNew : Side::kOld;
    const SymbolId id = side == Side::kNew ? declaration.newSymbol : declaration.oldSymbol;
    const ReferenceIndex& index = IndexOf(side);
    const std::string name = std::string(GermanWord(index.SymbolAt(id).kind)) + " " + std::string(index.Name(id));
    Add({.kind = Kind::kDeclaration,
         .state = declaration.state,
         .parent = parent,
         .text = name,
         .note = Behind(DeclarationText(states_, declaration), name),
         .module = module,
         .place = PlaceOf(side, id),
         .symbol = id});
  }

  void AddRoutine(Index routine, Index parent, Index module) {
    const RoutineChange& change = comparison_.modules[module].routines[routine];
    const Side side = change.newPlace.IsKnown() ? Side::kNew : Side::kOld;
    const RoutinePlace place = symbols::PlaceOf(change);
    const ReferenceIndex& index = IndexOf(side);
    Add({.kind = Kind::kRoutine,
         .state = change.state,
         .parent = parent,
         .text = TitleOf(states_, change),
         .note = StateText(states_, change),
         .module = module,
         .routine = routine,
         .place = {side, place.module, LineOf(index, place)},
         .symbol = index.RoutineSymbol(place.module, place.routine)});
  }

  void AddDeparture(const Departure& departure, Index parent) {
    const RoutinePlace& place = departure.newPlace;
    const auto [module, routine] = ChangeOf(place);
    Add({.kind = Kind::kDeparture,
         .state = ChangeState::kMoved,
         .parent = parent,
         .text = std::string(GermanWord(RoutineKind(states_.oldIndex, departure.oldPlace))) + " " +
                 std::string(RoutineName(states_.oldIndex, departure.oldPlace)),
         .note = "verschoben nach " + states_.newIndex.Modules()[place.module].name,
         .module = module,
         .routine = routine,
         .place = {Side::kNew, place.module, LineOf(states_.newIndex, place)},
         .symbol = states_.newIndex.RoutineSymbol(place.module, place.routine)});
  }

  std::pair<Index, Index> ChangeOf(const RoutinePlace& place) const {
    const auto module = std::ranges::find(comparison_.modules, place.module, &ModuleChange::newModule);
    if (module == comparison_.modules.end()) return {kNone, kNone};
    const auto routine = std::ranges::find(module->routines, place, &RoutineChange::newPlace);
    return {static_cast<Index>(module - comparison_.modules.begin()),
            routine == module->routines.end() ? kNone : static_cast<Index>(routine - module->routines.begin())};
  }

  void AddUnused(bool made, const char* title) {
    Index group = kNone;
    for (const UnusedChange& unused : comparison_.unused) {
      if (unused.made != made) continue;
      if (group == kNone) group = Add({.kind = Kind::kGroup, .state = ChangeState::kChanged, .text = title});
      const Side side = unused.newSymbol != kNone ? Side::kNew : Side::kOld;
      const SymbolId id = side == Side::kNew ? unused.newSymbol : unused.oldSymbol;
      const ComparedLine place = PlaceOf(side, id);
      if (!places_) places_.emplace(states_);
      const std::string_view kind = GermanWord(IndexOf(side).SymbolAt(id).kind);
      const std::string name = std::string(kind) + " " + std::string(IndexOf(side).Name(id));
      Add({.kind = Kind::kUnused,
           .state = ChangeState::kChanged,
           .parent = group,
           .text = name,
           .note = Behind(UnusedText(states_, unused), name),
           .module = places_->ChangeAt(place),
           .place = place,
           .symbol = id});
    }
  }

  void AddNotCompared() {
    const NotCompared& gaps = comparison_.notCompared;
    if (gaps.oldModules.empty() && gaps.newModules.empty()) return;
    const Index group = Add({.kind = Kind::kGroup, .state = ChangeState::kChanged, .text = "Nicht verglichen"});
    const auto add = [&](const ReferenceIndex& index, Index module, std::string_view side) {
      Add({.kind = Kind::kNotCompared,
           .state = ChangeState::kChanged,
           .parent = group,
           .text = index.Modules()[module].name,
           .note = "der " + std::string(side) + " Stand ist nicht ganz lesbar"});
    };
    for (const Index module : gaps.oldModules) add(states_.oldIndex, module, "neue");
    for (const Index module : gaps.newModules) add(states_.newIndex, module, "alte");
  }

  const ReferenceIndex& IndexOf(Side side) const noexcept {
    return side == Side::kNew ? states_.newIndex : states_.oldIndex;
  }
  ComparedLine PlaceOf(Side side, SymbolId id) const {
    const Symbol& symbol = IndexOf(side).SymbolAt(id);
    return {side, symbol.module, symbol.line == 0 ? 0 : IndexOf(side).EditorLine(symbol.module, symbol.line)};
  }

  const ComparedStates& states_;
  const Comparison& comparison_;
  std::vector<ChangeNode> nodes_;
  std::optional<ChangePlaces> places_;
};

/// Upper and lower case of ASCII count alike, as in names that are typed.
bool Contains(std::string_view text, std::string_view part) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  const auto alike = [lower](char a, char b) { return lower(a) == lower(b); };
  return part.empty() || std::search(text.begin(), text.end(), part.begin(), part.end(), alike) != text.end();
}

}  // namespace

std::vector<ChangeNode> OutlineOf(const ComparedStates& states) { return Outliner(states).Run(); }

std::vector<bool> ShownNodes(const std::vector<ChangeNode>& outline, const OutlineFilter& filter) {
  std::vector<bool> named(outline.size()), shown(outline.size());
  for (std::size_t i = 0; i < outline.size(); ++i) {
    const ChangeNode& node = outline[i];
    named[i] = Contains(node.text, filter.text) || (node.parent != kNone && named[node.parent]);
    // A module that changed only in what is not wanted goes with it; what has no children stands for itself.
    const bool isLeaf = i + 1 == outline.size() || outline[i + 1].parent != i;
    shown[i] = named[i] && isLeaf && (filter.states & Bit(node.state)) != 0;
  }
  for (std::size_t i = outline.size(); i-- > 0;) {
    if (shown[i] && outline[i].parent != kNone) shown[outline[i].parent] = true;
  }
  return shown;
}

ChangePlaces::ChangePlaces(const ComparedStates& states)
    : states_(states),
      oldModules_(states.oldIndex.Modules().size(), kNone),
      newModules_(states.newIndex.Modules().size(), kNone),
      oldRoutines_(states.oldIndex.Modules().size()) {
  for (Index module = 0; module < oldRoutines_.size(); ++module) {
    oldRoutines_[module].resize(states.oldIndex.Code(module).routines.size(), {kNone, kNone});
  }
  const std::vector<ModuleChange>& changes = states.comparison.modules;
  for (Index number = 0; number < changes.size(); ++number) {
    const ModuleChange& change = changes[number];
    if (change.oldModule != kNone) oldModules_[change.oldModule] = number;
    if (change.newModule != kNone) newModules_[change.newModule] = number;
    for (Index routine = 0; routine < change.routines.size(); ++routine) {
      const RoutinePlace& place = change.routines[routine].oldPlace;
      if (place.IsKnown()) oldRoutines_[place.module][place.routine] = {number, routine};
    }
  }
}

const ReferenceIndex& ChangePlaces::IndexOf(Side side) const noexcept {
  return side == Side::kNew ? states_.newIndex : states_.oldIndex;
}

Index ChangePlaces::RoutineAt(const ComparedLine& line) const {
  const language::Module& code = IndexOf(line.side).Code(line.module);
  const std::uint32_t at = code.LineOfEditorLine(line.line);
  return at == 0 ? kNone : code.RoutineAt(at);
}

Index ChangePlaces::ChangeAt(const ComparedLine& line) const {
  if (line.module == kNone) return kNone;
  if (line.side == Side::kNew) return newModules_[line.module];
  const Index routine = RoutineAt(line);
  const Index moved = routine == kNone ? kNone : oldRoutines_[line.module][routine].first;
  return moved != kNone ? moved : oldModules_[line.module];
}

ChangeState ChangePlaces::StateAt(const ComparedLine& line) const {
  if (line.module == kNone) return ChangeState::kSame;
  const Index routine = RoutineAt(line);
  if (routine == kNone) return ChangeState::kSame;
  if (line.side == Side::kOld) {
    const auto [change, number] = oldRoutines_[line.module][routine];
    return change == kNone ? ChangeState::kSame : states_.comparison.modules[change].routines[number].state;
  }
  const Index change = newModules_[line.module];
  if (change == kNone) return ChangeState::kSame;
  const auto& routines = states_.comparison.modules[change].routines;
  const auto found = std::ranges::find(routines, RoutinePlace{line.module, routine}, &RoutineChange::newPlace);
  return found == routines.end() ? ChangeState::kSame : found->state;
}

std::vector<ComparedUse> UsesOf(const ComparedStates& states, const ChangePlaces& places, Side side, SymbolId symbol) {
  const ReferenceIndex& index = side == Side::kNew ? states.newIndex : states.oldIndex;
  std::vector<ComparedUse> uses;
  if (symbol == kNone) return uses;
  for (const Reference& reference : index.ReferencesTo(symbol)) {
    const ComparedLine line{side, reference.module, index.EditorLine(reference.module, reference.line)};
    if (!uses.empty() && uses.back().line.module == line.module && uses.back().line.line == line.line) continue;
    ComparedUse& use = uses.emplace_back();
    use.line = line;
    use.routine = index.Modules()[line.module].name;
    if (reference.inRoutine != kNone) use.routine.append(".").append(index.Name(reference.inRoutine));
    const std::string_view text = index.Code(line.module).LineText(reference.line);
    const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
    use.text = text.substr(first);
    use.certainty = reference.certainty;
    use.state = places.StateAt(line);
  }
  for (std::string& place : index.HostPlaces(symbol)) {
    uses.push_back({.line = {side, kNone, 0}, .text = std::move(place), .certainty = Certainty::kHost});
  }
  return uses;
}

}  // namespace quillmate::symbols
