#include <algorithm>
#include <array>
#include <optional>

#include <quillmate/language/parse.h>
#include <quillmate/symbols/loose_ends.h>
#include <quillmate/symbols/unused.h>

#include "index_data_p.h"

namespace quillmate::symbols {
namespace {

using Data = ReferenceIndex::Data;

/// What controls of forms and sheets raise; names as folding gives them.
constexpr std::array<std::string_view, 36> kControlEvents{
    "afterupdate", "beforedragover", "beforedroporpaste", "beforeupdate", "change",          "click",     "compare",
    "dblclick",    "downclick",      "dragdrop",          "dragover",     "dropbuttonclick", "dropdown",  "enter",
    "error",       "exit",           "gotfocus",          "itemcheck",    "keydown",         "keypress",  "keyup",
    "lostfocus",   "mousedown",      "mousemove",         "mouseup",      "mousewheel",      "nodeclick", "notinlist",
    "pathchange",  "scroll",         "spindown",          "spinup",       "timer",           "upclick",   "updated",
    "validate"};
static_assert(std::is_sorted(kControlEvents.begin(), kControlEvents.end()));

bool IsControlEvent(std::string_view name) {
  return std::binary_search(kControlEvents.begin(), kControlEvents.end(), language::FoldName(name));
}

/// The control that a handler waits for, or nothing.
std::optional<std::string> LostControl(const ReferenceIndex& index, SymbolId id) {
  const Symbol& symbol = index.SymbolAt(id);
  const ModuleInfo& module = index.Modules()[symbol.module];
  const bool designed = module.kind == language::ModuleKind::kForm || module.kind == language::ModuleKind::kDocument;
  if (symbol.kind != SymbolKind::kSub || !designed || !module.controlsKnown) return std::nullopt;
  if (index.data().HandlerOf(id) != nullptr) return std::nullopt;
  const std::string_view name = index.Name(id);
  const std::size_t cut = name.rfind('_');
  if (cut == std::string_view::npos || cut == 0 || !IsControlEvent(name.substr(cut + 1))) return std::nullopt;
  const std::optional<UnusedSymbol> unused = GradeUnused(index, id);
  if (!unused || unused->grade == Grade::kHost) return std::nullopt;
  return std::string(name.substr(0, cut));
}

bool IsRibbonType(std::string_view type) {
  const std::string folded = language::FoldName(type.substr(type.rfind('.') + 1));
  return folded == "iribboncontrol" || folded == "iribbonui";
}

/// The Subs that take a ribbon's control or the ribbon itself.
std::vector<SymbolId> Callbacks(const ReferenceIndex& index) {
  std::vector<SymbolId> routines;
  for (SymbolId id = 0; id < index.SymbolCount(); ++id) {
    const Symbol& symbol = index.SymbolAt(id);
    if (symbol.kind != SymbolKind::kParameter || symbol.parent == kNone) continue;
    const bool first = routines.empty() || routines.back() != symbol.parent;
    const Symbol& routine = index.SymbolAt(symbol.parent);
    const bool counts = routine.kind == SymbolKind::kSub && (routine.flags & symbol_flag::kInactive) == 0;
    if (first && counts && IsRibbonType(index.DeclaredType(id))) routines.push_back(symbol.parent);
  }
  return routines;
}

}  // namespace

std::vector<LooseEnd> FindLooseEnds(const ReferenceIndex& index) {
  using Kind = LooseEnd::Kind;
  const Data& data = index.data();
  std::vector<LooseEnd> ends;
  for (SymbolId id = 0; id < index.SymbolCount(); ++id) {
    std::optional<std::string> control = LostControl(index, id);
    if (!control) continue;
    ends.push_back(
        {Kind::kHandlerWithoutControl, data.modules[data.symbols[id].module].project, id, std::move(*control), {}});
  }
  for (const SymbolId id : Callbacks(index)) {
    const Index project = data.modules[data.symbols[id].module].project;
    const bool known = data.tables.projects[project].outsideKnown;
    if (!known) continue;
    const std::optional<UnusedSymbol> unused = GradeUnused(index, id);
    if (unused && unused->grade != Grade::kHost) ends.push_back({Kind::kCallbackWithoutRibbon, project, id, {}, {}});
  }
  std::stable_sort(ends.begin(), ends.end(),
                   [](const LooseEnd& a, const LooseEnd& b) { return a.routine < b.routine; });
  for (const ExternalBinding& binding : data.looseBindings) {
    if (!data.tables.projects[binding.project].outsideKnown) continue;
    ends.push_back({Kind::kBindingWithoutRoutine, binding.project, kNone, binding.text, binding.place});
  }
  return ends;
}

}  // namespace quillmate::symbols
