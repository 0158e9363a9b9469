#pragma once

#include <atomic>
#include <filesystem>
#include <string>
#include <vector>

#include <quillmate/codedb/code_database.h>

/// Finds the routines that nothing in the project calls.
///
/// Candidates are Subs, Functions and Declares, never properties: public ones whose name no other public one has, in
/// either case, and all private and Friend ones. A public candidate is looked for in every module, the others in their
/// own. What counts as a reference is settled character by character:
/// * Header and end lines of routines, keywords, string literals and comments are left out.
/// * The name must be in the same spelling. The character before it must not be a letter or "_", the one after it
///   not a letter, a digit or "_"; "Z" is no letter here. So "xZName" is a reference to "Name", and so is "3Name".
/// * The names are looked for one after the other, and each reference found is set apart from what is around it before
///   the next name's turn. In "Foo3Name" the reference to "Name", when it comes first, makes "Foo3" one; a name that
///   holds another one, as "xZName" does, is no longer found after it.
/// Why nothing calls what is left, the understanding says.
namespace quillmate::analysis {

struct UnusedRoutine {
  codedb::ModuleNumber moduleNumber;
  codedb::RoutineNumber routineNumber;
  /// Windows-1252.
  std::string moduleName;
  std::string routineName;
};

/// The candidates without a reference by module; within a module first the public ones by name, then the others in the
/// order of their routine numbers. `folder` holds the index's module texts. The time it takes grows with the size of
/// the project, not with the number of names. Throws files::Failure, also when a module's text can't be
/// read. Once `cancelled`, which may be null, is true, it ends soon and returns nothing.
std::vector<UnusedRoutine> FindUnusedRoutines(codedb::CodeDatabase& database, const std::filesystem::path& folder,
                                              const std::atomic<bool>* cancelled = nullptr);

}  // namespace quillmate::analysis
