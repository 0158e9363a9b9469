#pragma once

#include <vector>

#include "library_p.h"
#include "tables_p.h"

/// What a name without anything before it means in a module, beyond the routine around it. The answer depends on
/// module and name alone and is worked out once for each pair.
namespace quillmate::symbols {

enum class MeaningKind : std::uint8_t {
  kUnset,
  kUnknown,
  kGroup,         ///< names of one module: `local` and those that follow it in ModuleTable::next
  kSeveral,       ///< public names of several modules: `local` is an index into Tables::exports
  kModule,        ///< a module of the project or of one that it refers to
  kProject,       ///< `module` is the project
  kLibrary,       ///< `local` is the library::Result
  kLibraryScope,  ///< a library before "."
  kType,          ///< a Type or Enum: `module`, `local`
};

struct Meaning {
  Index module = kNone;
  Index local = kNone;
  MeaningKind kind = MeaningKind::kUnset;
  /// kLibrary: some host has the name, but not this project's for sure.
  bool doubtful = false;
};

/// An ordinary name, from the module on outwards.
Meaning ValueMeaning(const Tables& tables, Index module, NameHash name);
/// Modules of the project, the project itself, projects that it refers to.
Meaning ProjectMeaning(const Tables& tables, Index project, NameHash name);
/// The name of a type.
Meaning TypeMeaning(const Tables& tables, Index module, NameHash name);
/// The first part of a qualified type.
Meaning QualifierMeaning(const Tables& tables, Index module, NameHash name);
/// A routine whose address is taken; the first part of a qualified one comes from ValueMeaning.
Meaning AddressMeaning(const Tables& tables, Index module, NameHash name);
/// Public names of a project: kGroup, kSeveral, or kUnknown. `except`: a module that does not count.
Meaning ExportedMeaning(const Tables& tables, Index project, NameHash name, Index except, bool fromOutside);
/// The same for types.
Meaning ExportedType(const Tables& tables, Index project, NameHash name, Index except);

/// Whether conditional compilation leaves anything of the group at `first` in the code.
bool HasActive(const ModuleTable& table, Local first);

/// A type from what its name means.
TypeRef TypeOfMeaning(const Tables& tables, const Meaning& meaning);

/// One step of a qualified type: what `name` means after `before` (its type), or alone where it is the first.
Meaning TypeStep(const Tables& tables, Index module, NameHash name, bool first, bool qualifier, const TypeRef& before);

/// How a use picks one of several things of one name in a module.
enum class Form : std::uint8_t {
  kRead,
  kCall,
  kLet,
  kSet,
  kChange,  ///< written otherwise: For, Input, ReDim, Erase
  kType,
  kAddress,
  kImplements,
  kRaise,
  kWithEvents,
  kLabel,
  kNamedArgument,
};
/// kRead, kLet or kSet: all that matters for picking.
constexpr Form PickForm(Form form) noexcept {
  if (form == Form::kLet || form == Form::kSet) return form;
  return form == Form::kChange ? Form::kLet : Form::kRead;
}

/// Picks from the group at `first` of `table` what `form` means: Get, Let or Set of a property, active ones before
/// inactive ones, an enum before what has its name. `outside`: private names don't count; `otherProject`: Friend ones
/// neither. `routines`: nothing else counts. Appends local numbers to `picked`.
void Pick(const ModuleTable& table, Local first, Form form, bool outside, bool otherProject, bool routines,
          std::vector<Local>& picked);

}  // namespace quillmate::symbols
