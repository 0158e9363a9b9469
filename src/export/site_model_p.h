#pragma once

#include <optional>
#include <string>
#include <vector>

#include <quillmate/codedb/records.h>
#include <quillmate/export/site.h>
#include <quillmate/text/name_table.h>

#include "site_names_p.h"

/// The project as the pages of a site see it. Modules and routines are known by their position in the model's lists.
namespace quillmate::output {

inline constexpr int kNoRoutine = -1;

/// Where a name is used: in a routine, or in the declarations of a module (`routine` is kNoRoutine then).
struct SiteSource {
  int module = 0;
  int routine = kNoRoutine;
  auto operator<=>(const SiteSource&) const = default;
};

struct SiteRoutine {
  const codedb::RoutineRecord* record = nullptr;
  int module = 0;
  /// Position in SiteModel::names.
  int name = text::NameTable::kNone;
  /// Position in SiteModel::callers; shared by the routines of a module with the same name.
  int group = 0;
  /// Behind "r-" and "c-"; unique in the module.
  std::string anchor;
  /// True when the code has the anchor "c-".
  bool hasCode = false;
  /// The first one of each group that is called, in the order of the model.
  std::vector<int> calls;
  /// Set when nothing calls it.
  std::optional<SiteJudgement> unused;
};

struct SiteModule {
  const codedb::ModuleRecord* record = nullptr;
  /// Name of its file.
  std::string page;
  /// Its routines, in the order of the code: positions `first` up to before `last`.
  int first = 0;
  int last = 0;
  /// What the comment at the top says, escaped, lines separated by LF.
  std::string description;
};

struct SiteModel {
  explicit SiteModel(const SiteProject& siteProject);

  const SiteProject& project;
  std::vector<SiteModule> modules;
  std::vector<SiteRoutine> routines;
  text::NameTable names;
  /// By name: the first routine of that name that is not private, in the order of the routines' numbers.
  std::vector<int> publicRoutine;
  /// By group: its first routine.
  std::vector<int> firstOfGroup;
  /// By group: who uses the name, in the order of the model.
  std::vector<std::vector<SiteSource>> callers;
  /// Those that nothing calls, in the project's order.
  std::vector<int> unused;

  const SiteRoutine& Routine(int position) const { return routines[static_cast<std::size_t>(position)]; }
  const SiteModule& Module(int position) const { return modules[static_cast<std::size_t>(position)]; }
  const SiteModule& ModuleOf(const SiteRoutine& routine) const { return Module(routine.module); }

 private:
  void AddRoutines(const codedb::ModuleRecord& record);
  void GroupByName(const SiteModule& module);
  void FindPublicRoutines();
  void FindUnused();
};

}  // namespace quillmate::output
