#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <utility>

#include "compare_p.h"

/// What is no code: references, constants, properties of the document, bindings, controls, attributes.
namespace quillmate::symbols {
namespace {

/// One fact under a name that finds it again. Facts of one key are paired in their order.
struct Fact {
  std::string key, name, value;
  /// What says only where and how large something is.
  std::string layout{};
  bool counts = true;
};

/// Facts by a text of theirs, handed out in their order.
class FactsByText {
 public:
  void Add(std::string text, std::size_t number) { numbers_[std::move(text)].push_back(number); }
  /// The first one that is not taken yet.
  std::optional<std::size_t> Find(const std::string& text, const std::vector<bool>& taken) {
    const auto found = numbers_.find(text);
    if (found == numbers_.end()) return std::nullopt;
    std::size_t& next = next_[text];
    while (next < found->second.size() && taken[found->second[next]]) ++next;
    return next < found->second.size() ? std::optional(found->second[next]) : std::nullopt;
  }

 private:
  std::map<std::string, std::vector<std::size_t>> numbers_;
  std::map<std::string, std::size_t> next_;
};

std::string WholeText(const Fact& fact) { return fact.key + '\n' + fact.value + '\n' + fact.layout; }

void CompareLists(FactKind kind, const std::vector<Fact>& olds, const std::vector<Fact>& news,
                  std::vector<FactChange>& changes) {
  FactsByText byWhole, byKey;
  for (std::size_t number = 0; number < olds.size(); ++number) {
    byWhole.Add(WholeText(olds[number]), number);
    byKey.Add(olds[number].key, number);
  }
  std::vector<bool> taken(olds.size());
  std::vector<bool> same(news.size());
  // The same facts first, so that one more or less does not make the others look changed.
  for (std::size_t number = 0; number < news.size(); ++number) {
    const auto partner = byWhole.Find(WholeText(news[number]), taken);
    if (partner) taken[*partner] = same[number] = true;
  }
  for (std::size_t number = 0; number < news.size(); ++number) {
    if (same[number]) continue;
    const Fact& fact = news[number];
    FactChange change{kind, ChangeState::kNew, fact.name, {}, fact.value + fact.layout, fact.counts};
    if (const auto partner = byKey.Find(fact.key, taken)) {
      taken[*partner] = true;
      change.state = olds[*partner].value == fact.value ? ChangeState::kLayout : ChangeState::kChanged;
      change.oldValue = olds[*partner].value + olds[*partner].layout;
    }
    changes.push_back(std::move(change));
  }
  for (std::size_t number = 0; number < olds.size(); ++number) {
    if (taken[number]) continue;
    const Fact& fact = olds[number];
    changes.push_back({kind, ChangeState::kGone, fact.name, fact.value + fact.layout, {}, fact.counts});
  }
}

// ------------------------------------------------------------------------------------------------ facts of projects

std::vector<Fact> ReferencesOf(const codedb::ProjectFacts& project) {
  std::vector<Fact> facts;
  for (const codedb::ReferenceFact& reference : project.references) {
    // The path is that of one machine or another; for what has no name, it is all there is.
    const std::string& name = reference.name.empty() ? reference.path : reference.name;
    facts.push_back({Folded(name), name, reference.version});
  }
  return facts;
}

std::vector<Fact> ConstantsOf(const codedb::ProjectFacts& project) {
  std::vector<Fact> facts;
  for (const codedb::ConstantFact& constant : project.constants) {
    facts.push_back({Folded(constant.name), constant.name, std::to_string(constant.value)});
  }
  return facts;
}

/// Dates and names that every saving writes anew.
bool IsOfSaving(std::string_view property) {
  const std::string folded = Folded(property);
  return folded.find("gespeichert") != std::string::npos || folded.find("geändert") != std::string::npos;
}

std::vector<Fact> DocumentOf(const codedb::ProjectFacts& project) {
  std::vector<Fact> facts;
  for (const codedb::DocumentFact& fact : project.document) {
    facts.push_back({fact.property, fact.property, fact.value, {}, !IsOfSaving(fact.property)});
  }
  return facts;
}

/// Folders and module files have a name and nothing else of their own.
std::vector<Fact> PropertiesOf(const codedb::ProjectFacts& project) {
  std::vector<Fact> facts;
  facts.push_back({"name", "Projektname", project.name});
  if (project.codePage != 0) facts.push_back({"codepage", "Codepage", std::to_string(project.codePage)});
  return facts;
}

std::string WithArticle(const codedb::BindingFact& binding) {
  return binding.module.empty() ? binding.place : binding.place + " (" + binding.module + ")";
}

std::vector<Fact> BindingsOf(const codedb::Facts& facts, Index project) {
  std::vector<Fact> found;
  for (const codedb::BindingFact& binding : facts.bindings) {
    if (binding.project != static_cast<int>(project)) continue;
    found.push_back({binding.kind + "\t" + binding.module + "\t" + binding.place, WithArticle(binding), binding.text});
  }
  return found;
}

void CompareProject(const ComparisonWork& work, ProjectChange& change) {
  const codedb::Facts& oldFacts = work.oldState.facts;
  const codedb::Facts& newFacts = work.newState.facts;
  const codedb::ProjectFacts& olds = oldFacts.projects[change.oldProject];
  const codedb::ProjectFacts& news = newFacts.projects[change.newProject];
  // What is a folder of module files on one side has no facts there.
  if (olds.host.empty() || news.host.empty()) return;
  CompareLists(FactKind::kProject, PropertiesOf(olds), PropertiesOf(news), change.facts);
  CompareLists(FactKind::kReference, ReferencesOf(olds), ReferencesOf(news), change.facts);
  CompareLists(FactKind::kConstant, ConstantsOf(olds), ConstantsOf(news), change.facts);
  CompareLists(FactKind::kDocument, DocumentOf(olds), DocumentOf(news), change.facts);
  CompareLists(FactKind::kBinding, BindingsOf(oldFacts, change.oldProject), BindingsOf(newFacts, change.newProject),
               change.facts);
}

// ------------------------------------------------------------------------------------------------- facts of modules

void AppendPart(std::string& text, std::string_view word, std::string_view value) {
  if (value.empty()) return;
  text.append(text.empty() ? "" : ", ").append(word).append(value);
}

/// " (Lage 120/240, Größe 900/300, Tab 3)"
std::string LayoutOf(const codedb::ControlFact& control) {
  const auto text = [](const std::optional<std::int32_t>& number) {
    return number ? std::to_string(*number) : std::string("?");
  };
  std::string layout;
  if (control.left || control.top) AppendPart(layout, "Lage ", text(control.left) + "/" + text(control.top));
  if (control.width || control.height) AppendPart(layout, "Größe ", text(control.width) + "/" + text(control.height));
  if (control.tabIndex) AppendPart(layout, "Tab ", text(control.tabIndex));
  return layout.empty() ? layout : " (" + layout + ")";
}

std::vector<Fact> ControlsOf(const codedb::ModuleFacts& module) {
  std::vector<Fact> facts;
  for (const codedb::ControlFact& control : module.controls) {
    std::string value = control.type;
    if (!control.caption.empty()) AppendPart(value, "", "\"" + control.caption + "\"");
    AppendPart(value, "in ", control.parent);
    if (control.inArray) AppendPart(value, "", "Steuerelementfeld");
    facts.push_back({Folded(control.name), control.name, std::move(value), LayoutOf(control)});
  }
  return facts;
}

/// The module's own name is told by the module; controls are told as such.
std::vector<Fact> AttributesOf(const codedb::ModuleFacts& module) {
  std::vector<Fact> facts;
  for (const codedb::AttributeFact& attribute : module.attributes) {
    if (attribute.name == "VB_Name" || attribute.name == "VB_Control") continue;
    const std::string name = attribute.member.empty() ? attribute.name : attribute.member + "." + attribute.name;
    facts.push_back({Folded(name), name, attribute.value});
  }
  return facts;
}

void CompareModule(const codedb::ModuleFacts& olds, const codedb::ModuleFacts& news, ModuleChange& change) {
  if ((olds.controlsKnown && news.controlsKnown) || (!olds.controls.empty() && !news.controls.empty())) {
    CompareLists(FactKind::kControl, ControlsOf(olds), ControlsOf(news), change.facts);
  }
  // A side whose source does not hand out hidden lines has none at all, not even the name.
  if (!olds.attributes.empty() && !news.attributes.empty()) {
    CompareLists(FactKind::kAttribute, AttributesOf(olds), AttributesOf(news), change.facts);
  }
}

bool FactsFit(const ComparedState& state) {
  return state.hasFacts && state.facts.projects.size() == state.index.Projects().size() &&
         state.facts.modules.size() == state.index.Modules().size();
}

}  // namespace

void CompareFacts(ComparisonWork& work) {
  Comparison& result = work.result;
  const bool known = FactsFit(work.oldState) && FactsFit(work.newState);
  const auto unknown = [](bool lacks, ChangeState state) { return lacks ? ChangeState::kSame : state; };
  for (Index project = 0; project < work.oldProjectOf.size(); ++project) {
    ProjectChange& change = result.projects.emplace_back();
    change.newProject = project;
    change.oldProject = work.oldProjectOf[project];
    if (change.oldProject == kNone) change.state = unknown(work.oldState.lacksProjects, ChangeState::kNew);
    if (known && change.oldProject != kNone) CompareProject(work, change);
    if ((result.options.ignore & trivial::kLayout) == 0) continue;
    std::erase_if(change.facts, [](const FactChange& fact) { return fact.state == ChangeState::kLayout; });
  }
  for (Index project = 0; project < work.newProjectOf.size(); ++project) {
    if (work.newProjectOf[project] != kNone) continue;
    ProjectChange& change = result.projects.emplace_back();
    change.oldProject = project;
    change.state = unknown(work.newState.lacksProjects, ChangeState::kGone);
  }
  if (!known) return;
  for (ModuleChange& change : result.modules) {
    if (change.oldModule == kNone || change.newModule == kNone) continue;
    CompareModule(work.oldState.facts.modules[change.oldModule], work.newState.facts.modules[change.newModule], change);
    if ((result.options.ignore & trivial::kLayout) == 0) continue;
    std::erase_if(change.facts, [](const FactChange& fact) { return fact.state == ChangeState::kLayout; });
  }
}

}  // namespace quillmate::symbols
