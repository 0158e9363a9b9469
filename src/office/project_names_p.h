#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include <quillmate/office/vba_project.h>

namespace quillmate::office {

/// The names of a project's routines, to recognise them in a document. Names compare without case.
class ProjectNames {
 public:
  explicit ProjectNames(const VbaProject& project);

  /// A function of a standard module that is not private, UTF-8: what a cell can call.
  bool IsCellFunction(std::string_view name) const;
  /// "Modul.Routine" of a standard or document module, UTF-8.
  bool IsQualifiedRoutine(std::string_view text) const;
  /// The module of the document itself; of a workbook with its sheets, one of them.
  const std::string& DocumentModule() const noexcept { return documentModule_; }
  bool HasCellFunctions() const noexcept { return !functions_.empty(); }

 private:
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
  };
  using Names = std::unordered_set<std::string, Hash, std::equal_to<>>;

  static bool Holds(const Names& names, std::string_view name);
  void TakeModule(const VbaModule& module);

  /// In upper case.
  Names functions_;
  Names qualified_;
  std::string documentModule_;
  std::size_t longestFunction_ = 0;
};

/// The functions of the project that a formula calls, each once and as written, at most 1000; those of `module` too,
/// which need not be visible elsewhere.
std::vector<std::string> CellFunctionsIn(std::string_view formula, const ProjectNames& names,
                                         std::string_view module = {});

}  // namespace quillmate::office
