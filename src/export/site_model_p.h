#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <quillmate/codedb/records.h>
#include <quillmate/export/site_project.h>
#include <quillmate/symbols/index_symbols.h>

#include "site_names_p.h"
#include "site_tags_p.h"

/// The project as the pages of a site see it. Modules and routines are known by their position in the model's lists.
namespace quillmate::output {

inline constexpr int kNoRoutine = -1;

struct SiteRoutine {
  const codedb::RoutineRecord* record = nullptr;
  int module = 0;
  /// What the understanding calls it; kNone when that sees no routine there.
  symbols::SymbolId symbol = symbols::kNone;
  /// After "r-" and "c-"; unique in the module.
  std::string anchor;
  /// True when the code has the anchor "c-".
  bool hasCode = false;
  /// Set when nothing surely calls it.
  std::optional<symbols::RoutineGrade> unused;
};

struct SiteModule {
  const codedb::ModuleRecord* record = nullptr;
  /// In the understanding; kNone when that lacks it.
  symbols::Index number = symbols::kNone;
  /// Name of its file.
  std::string page;
  /// Its routines, in the order of the code: positions `first` up to before `last`.
  int first = 0;
  int last = 0;
  /// What the comment at the top says.
  TaggedComment description;
};

struct SiteModel {
  explicit SiteModel(const SiteProject& siteProject);

  const SiteProject& project;
  const symbols::ReferenceIndex& known;
  std::vector<SiteModule> modules;
  std::vector<SiteRoutine> routines;
  /// Those that nothing surely calls, in the order of the model.
  std::vector<int> unused;

  const SiteRoutine& Routine(int position) const { return routines[static_cast<std::size_t>(position)]; }
  const SiteModule& Module(int position) const { return modules[static_cast<std::size_t>(position)]; }
  const SiteModule& ModuleOf(const SiteRoutine& routine) const { return Module(routine.module); }
  /// kNoRoutine for what is no routine of the index.
  int RoutineOf(symbols::SymbolId symbol) const;
  /// The page's module of one of the understanding; -1 when the index lacks it.
  int ModuleOf(symbols::Index module) const;
  /// The line of the stored text, 0 for one that isn't shown.
  std::uint32_t ShownLine(symbols::Index module, std::uint32_t line) const;

 private:
  void AddRoutines(const codedb::ModuleRecord& record, const symbols::IndexSymbols& symbols);

  std::unordered_map<symbols::SymbolId, int> bySymbol_;
  std::vector<int> byNumber_;  ///< by the understanding's modules
};

}  // namespace quillmate::output
