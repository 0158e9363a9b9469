#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <quillmate/project/understanding.h>

/// What of a module hangs together, as lines of its view: 0-based.
namespace quillmate::project {

/// A stretch of lines that can be folded into its first one.
struct Fold {
  int first = 0;
  int last = 0;
};

/// Routines, types, enums and the blocks in routines, by place, outer ones before inner ones. Those that are on one
/// line are none.
std::vector<Fold> FoldsOf(const Understanding& understanding, symbols::Index module);

/// A routine in its view: `first` to `last` with its header, which ends in `headerLast`.
struct RoutineLines {
  int first = 0;
  int headerLast = 0;
  int last = 0;
  std::string name;  ///< UTF-8
};

/// By place; those whose header is not shown are left out.
std::vector<RoutineLines> RoutinesOf(const Understanding& understanding, symbols::Index module);
/// The same of a module that is at `places`.
std::vector<RoutineLines> RoutinesOf(const language::Module& code, const symbols::ModulePlaces& places);

}  // namespace quillmate::project
