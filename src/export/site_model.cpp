#include <algorithm>
#include <limits>

#include <quillmate/symbols/unused.h>

#include "site_model_p.h"

namespace quillmate::output {
namespace {

std::size_t CountRoutines(const SiteProject& project) {
  std::size_t count = 0;
  for (const codedb::ModuleRecord& module : project.modules) count += module.routines.size();
  return count;
}

codedb::Line StartOf(const codedb::RoutineRecord& routine) {
  return routine.start.value_or(codedb::Line{std::numeric_limits<std::int32_t>::max()});
}

std::vector<const codedb::RoutineRecord*> InOrderOfCode(const codedb::ModuleRecord& module) {
  std::vector<const codedb::RoutineRecord*> routines;
  for (const codedb::RoutineRecord& routine : module.routines) routines.push_back(&routine);
  std::stable_sort(routines.begin(), routines.end(),
                   [](const auto* a, const auto* b) { return StartOf(*a) < StartOf(*b); });
  return routines;
}

/// Of a project that nothing is known of.
const symbols::ReferenceIndex& Known(const SiteProject& project) {
  static const symbols::ReferenceIndex nothing;
  return project.understanding == nullptr ? nothing : *project.understanding;
}

}  // namespace

SiteModel::SiteModel(const SiteProject& siteProject)
    : project(siteProject), known(Known(siteProject)), byNumber_(known.Modules().size(), -1) {
  const symbols::IndexSymbols symbols(known, project.places);
  FileNames pages;
  modules.reserve(project.modules.size());
  routines.reserve(CountRoutines(project));
  for (const codedb::ModuleRecord& record : project.modules) {
    const int first = static_cast<int>(routines.size());
    AddRoutines(record, symbols);
    const int last = static_cast<int>(routines.size());
    const symbols::Index number = symbols.ModuleAt(record.number);
    if (number != symbols::kNone) byNumber_[number] = static_cast<int>(modules.size());
    modules.push_back({&record, number, "modul-" + pages.Make(record.name) + ".html", first, last, {}});
  }
}

void SiteModel::AddRoutines(const codedb::ModuleRecord& record, const symbols::IndexSymbols& symbols) {
  FileNames anchors;
  for (const codedb::RoutineRecord* routine : InOrderOfCode(record)) {
    const int position = static_cast<int>(routines.size());
    SiteRoutine& added = routines.emplace_back();
    added.record = routine;
    added.module = static_cast<int>(modules.size());
    added.anchor = anchors.Make(routine->name);
    const symbols::SymbolId symbol = symbols.RoutineAt(record.number, routine->name, routine->start);
    // What the index has twice is one routine of the code.
    if (symbol == symbols::kNone || !bySymbol_.try_emplace(symbol, position).second) continue;
    added.symbol = symbol;
    if (std::optional<symbols::UnusedSymbol> found = symbols::GradeUnused(known, symbol)) {
      added.unused = {found->grade, std::move(found->reason), std::move(found->place)};
      unused.push_back(position);
    }
  }
}

int SiteModel::RoutineOf(symbols::SymbolId symbol) const {
  const auto found = bySymbol_.find(symbol);
  return found == bySymbol_.end() ? kNoRoutine : found->second;
}

int SiteModel::ModuleOf(symbols::Index module) const { return module < byNumber_.size() ? byNumber_[module] : -1; }

std::uint32_t SiteModel::ShownLine(symbols::Index module, std::uint32_t line) const {
  return module < project.places.size() ? project.places[module].ShownLine(line) : 0;
}

}  // namespace quillmate::output
