#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <quillmate/codedb/numbers.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/symbols/reference_index.h>

/// The index's modules and routines in the understanding, and what that says of those that the fixed list calls unused.
namespace quillmate::symbols {

struct RoutineGrade {
  Grade grade = Grade::kPossible;
  /// German, one sentence part.
  std::string reason;
  /// Where that is; may be empty.
  std::string place;
};

class IndexSymbols {
 public:
  /// `places` are those of the index's modules, one each; both must outlive this.
  IndexSymbols(const ReferenceIndex& index, std::span<const ModulePlaces> places);

  /// The understanding's number of a module; kNone when it has none.
  Index ModuleAt(codedb::ModuleNumber module) const;
  /// The routine or Declare that begins in a line of the stored text, of several the one of that name (Windows-1252);
  /// where none begins there the module's first one of that name. kNone when the understanding sees neither.
  SymbolId RoutineAt(codedb::ModuleNumber module, std::string_view name, std::optional<codedb::Line> start) const;

  /// Why the fixed list has the routine. One that is used after all, as the exact rules see it, or that they don't
  /// know, is possible.
  RoutineGrade GradeOf(codedb::ModuleNumber module, std::string_view name, std::optional<codedb::Line> start) const;

 private:
  struct Routine {
    std::uint32_t line;  ///< of the stored text
    SymbolId symbol;
  };

  bool IsInactive(Index module, codedb::Line start) const;

  const ReferenceIndex& index_;
  std::span<const ModulePlaces> places_;
  std::unordered_map<std::int32_t, Index> modules_;
  std::vector<std::vector<Routine>> routines_;  ///< by module, ascending
  /// By module and folded name; made for a module when first needed.
  mutable std::unordered_map<Index, std::unordered_map<std::string, SymbolId>> byName_;
};

}  // namespace quillmate::symbols
