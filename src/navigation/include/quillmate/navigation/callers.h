#pragma once

#include <string_view>

#include <quillmate/codedb/code_database.h>
#include <quillmate/navigation/project_texts.h>
#include <quillmate/navigation/project_tree.h>

namespace quillmate::navigation {

/// Where the callers of a routine may be, or why they can't be looked for.
enum class CallerScope {
  kModule,    // a private routine: in its own module
  kProject,   // any other: in all modules
  kUnknown,   // the index has no such routine in the module
  kProperty,  // properties are not searched
  kFailed     // the index could not be asked
};

/// Settles the scope for a routine name (Windows-1252) in the module of a view. Never throws.
CallerScope FindCallerScope(codedb::CodeDatabase& database, codedb::ViewIndex view, std::string_view name) noexcept;

/// What the user is told when there is no scope (UTF-8); empty for kModule and kProject. kUnknown and kProperty are
/// warnings.
std::string_view ScopeMessage(CallerScope scope) noexcept;

/// All routines whose code mentions a name, from one module to another (both included), by module and line:
/// the content of the result tree `treRoutSuche`, each module's routines after its own node.
///
/// Only whole identifiers in the same spelling count, not those in comments and string literals. A routine's own header
/// line counts, so a routine is among its callers. Modules that name it among their declarations alone stay without
/// routines. `tree.moduleCount` is the number of modules found.
///
/// A routine comes again when its mentions are interrupted by those of another one that is within it, as it happens
/// around routines written on one line; `tree.Find` then leads to the first of the nodes.
///
/// Throws files::Failure, also when a module's file can't be read.
ProjectTree ScanCallers(codedb::CodeDatabase& database, ProjectTexts& texts, std::string_view name,
                        codedb::ModuleNumber first, codedb::ModuleNumber last);

struct Callers {
  CallerScope scope = CallerScope::kUnknown;
  /// Empty when nothing was found, about which the user gets no message, and when there was no scope.
  ProjectTree tree;
};

/// Both steps for the routine at the caret. `name` is not empty.
Callers FindCallers(codedb::CodeDatabase& database, ProjectTexts& texts, codedb::ViewIndex view, std::string_view name);

}  // namespace quillmate::navigation
