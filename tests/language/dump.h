#pragma once

#include <string>
#include <string_view>

#include <quillmate/language/parse.h>

/// What the front end read, as short texts that a test can hold beside its code. Items are parted by blanks; places are
/// the line, and the column after ":" where `columns` is asked for.
namespace quillmate::language {

std::string_view RoleName(Role role);
std::string_view KindName(DeclarationKind kind);

/// "F1-3" for each routine: its kind's letter (S, F, G, L, T for Sub, Function, Property Get, Let, Set), its name and
/// its lines; "*2" after a routine of two headers, "~" inactive, "#" dead, "!" without its End.
std::string Routines(const Module& module);

/// "kind name@line:type" for each declaration, with words for what is not the rule.
std::string Declarations(const Module& module);

/// "role name@line" for each use; "o.x" for a member of the use o, "w.x" for one of the With object w, ".x" for one of
/// something nameless; "(n)" after a name that is called with n arguments; "<f2" after the bare second argument of f.
std::string Uses(const Module& module, bool lines = true);

std::string Strings(const Module& module);
std::string Metrics(const Module& module);

}  // namespace quillmate::language
