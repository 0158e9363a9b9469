#include <algorithm>
#include <limits>
#include <unordered_map>

#include <quillmate/codedb/codes.h>

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

}  // namespace

SiteModel::SiteModel(const SiteProject& siteProject) : project(siteProject) {
  FileNames pages;
  modules.reserve(project.modules.size());
  routines.reserve(CountRoutines(project));
  for (const codedb::ModuleRecord& record : project.modules) {
    const int first = static_cast<int>(routines.size());
    AddRoutines(record);
    const int last = static_cast<int>(routines.size());
    modules.push_back({&record, "modul-" + pages.Make(record.name) + ".html", first, last, {}});
    GroupByName(modules.back());
  }
  callers.resize(firstOfGroup.size());
  FindPublicRoutines();
  FindUnused();
}

void SiteModel::AddRoutines(const codedb::ModuleRecord& record) {
  FileNames anchors;
  for (const codedb::RoutineRecord* routine : InOrderOfCode(record)) {
    SiteRoutine added;
    added.record = routine;
    added.module = static_cast<int>(modules.size());
    added.name = names.Add(routine->name);
    added.anchor = anchors.Make(routine->name);
    routines.push_back(std::move(added));
  }
}

void SiteModel::GroupByName(const SiteModule& module) {
  std::unordered_map<int, int> groupOfName;
  for (int i = module.first; i < module.last; ++i) {
    SiteRoutine& routine = routines[static_cast<std::size_t>(i)];
    const auto [group, isNew] = groupOfName.emplace(routine.name, static_cast<int>(firstOfGroup.size()));
    routine.group = group->second;
    if (isNew) firstOfGroup.push_back(i);
  }
}

void SiteModel::FindPublicRoutines() {
  publicRoutine.assign(names.Size(), kNoRoutine);
  for (int i = 0; i < static_cast<int>(routines.size()); ++i) {
    const SiteRoutine& routine = Routine(i);
    if (routine.record->visibility == codedb::kPrivate) continue;
    int& best = publicRoutine[static_cast<std::size_t>(routine.name)];
    if (best == kNoRoutine || routine.record->number < Routine(best).record->number) best = i;
  }
}

void SiteModel::FindUnused() {
  std::unordered_map<codedb::RoutineNumber, int> byNumber;
  for (int i = 0; i < static_cast<int>(routines.size()); ++i) byNumber.emplace(Routine(i).record->number, i);
  for (const SiteUnused& entry : project.unused) {
    const auto found = byNumber.find(entry.routineNumber);
    if (found == byNumber.end()) continue;
    unused.push_back(found->second);
    routines[static_cast<std::size_t>(found->second)].unused = entry.judgement;
  }
}

}  // namespace quillmate::output
