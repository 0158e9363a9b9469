#include <quillmate/language/parse.h>

#include "binder_p.h"

/// Names that are no values: types, routines after AddressOf, events, labels, named arguments.
namespace quillmate::symbols {

using language::Access;
using language::Role;
namespace use_flag = language::use_flag;

void Binder::BindType(Index number) {
  const NameUse& use = Use(number);
  const bool first = use.access == Access::kSimple;
  const bool qualifier = (use.flags & use_flag::kQualifier) != 0;
  Meaning meaning;
  if (first && !qualifier) {
    Meaning& cached = scratch_.types[use.name];
    if (cached.kind == MeaningKind::kUnset) cached = TypeMeaning(tables_, module_, HashOf(use.name));
    meaning = cached;
  } else {
    const TypeRef before = use.previous == kNone ? TypeRef{} : scratch_.bound[use.previous].type;
    meaning = TypeStep(tables_, module_, HashOf(use.name), first, qualifier, before);
  }
  Bound& bound = scratch_.bound[number];
  bound.type = TypeOfMeaning(tables_, meaning);
  const Form form = use.role == Role::kImplements && !qualifier ? Form::kImplements : Form::kType;
  Certainty certainty = IsInactive(use) ? Certainty::kInactive : Certainty::kSure;
  switch (meaning.kind) {
    case MeaningKind::kModule:
      bound.state = Bound::State::kOwn;
      bound.module = meaning.module;
      bound.local = 0;
      if (tables_.nextModule[meaning.module] != kNone) {
        const ModuleTable& table = tables_.modules[meaning.module];
        Emit(number, SetNumber({SetKind::kModules, Form::kRead, false, table.project, kNone, table.nameHash, 0}), form,
             IsInactive(use) ? certainty : Certainty::kAmbiguous, reference_flag::kSet | reference_flag::kTypeUse);
        return;
      }
      return Emit(number, Raw(meaning.module, 0), form, certainty, reference_flag::kTypeUse);
    case MeaningKind::kType:
      if (tables_.modules[meaning.module].IsInactive(meaning.local)) {
        // The language's own type of that name counts where the code's is left out.
        if (!IsInactive(use) && MayBeBuiltin(use.name)) return;
        certainty = Certainty::kInactive;
      }
      bound.state = Bound::State::kOwn;
      return Emit(number, Raw(meaning.module, meaning.local), form, certainty, 0);
    case MeaningKind::kSeveral: {
      const Index project = tables_.modules[tables_.exports[meaning.local].module].project;
      bound.state = Bound::State::kSeveral;
      return Emit(number, SetNumber({SetKind::kExportedTypes, Form::kRead, false, project, kNone, HashOf(use.name), 0}),
                  form, IsInactive(use) ? certainty : Certainty::kAmbiguous, reference_flag::kSet);
    }
    default:
      bound.state = Bound::State::kLibrary;
  }
}

void Binder::BindAddress(Index number) {
  const NameUse& use = Use(number);
  if (use.access != Access::kSimple) return BindMember(number);
  const NameHash name = HashOf(use.name);
  if ((use.flags & use_flag::kQualifier) != 0) return BindMeaning(number, ValueOf(use.name));
  const Meaning meaning = AddressMeaning(tables_, module_, name);
  if (meaning.kind == MeaningKind::kGroup) return BindGroup(number, meaning.module, meaning.local, true);
  if (meaning.kind != MeaningKind::kSeveral) return;
  const Index project = tables_.modules[tables_.exports[meaning.local].module].project;
  BindSeveral(number, {SetKind::kExportedRoutines, Form::kRead, false, project, kNone, name, 0});
}

void Binder::BindEvent(Index number) {
  const NameUse& use = Use(number);
  const Local event = table_.FindEvent(HashOf(use.name));
  if (event == kNone) return;
  scratch_.bound[number] = {{}, module_, event, Bound::State::kOwn};
  const bool inactive = IsInactive(use) || table_.IsInactive(event);
  Emit(number, Raw(module_, event), Form::kRaise, inactive ? Certainty::kInactive : Certainty::kSure, 0);
}

void Binder::BindLabel(Index number) {
  const NameUse& use = Use(number);
  if (routine_ == kNone || scratch_.labelStamps[use.name] != stamp_) return;
  const Local label = scratch_.labels[use.name] + 1;
  const bool inactive = IsInactive(use) || table_.IsInactive(label);
  Emit(number, Raw(module_, label), Form::kLabel, inactive ? Certainty::kInactive : Certainty::kSure, 0);
}

void Binder::BindNamedArgument(Index number) {
  const NameUse& use = Use(number);
  if (use.owner == kNone) return;
  const Bound& owner = scratch_.bound[use.owner];
  const NameHash name = HashOf(use.name);
  if (owner.state == Bound::State::kOwn) {
    const ModuleTable& table = tables_.modules[owner.module];
    if (owner.local == 0 || !table.IsDeclaration(owner.local)) return;
    const Local parameter = table.FindParameter(owner.local, name);
    if (parameter == kNone) return;
    scratch_.bound[number] = {{}, owner.module, parameter, Bound::State::kOwn};
    const bool inactive = IsInactive(use) || table.IsInactive(parameter);
    Emit(number, Raw(owner.module, parameter), Form::kNamedArgument, inactive ? Certainty::kInactive : Certainty::kSure,
         0);
    return;
  }
  if ((owner.state != Bound::State::kSeveral && owner.state != Bound::State::kLate) || owner.local == kNone) return;
  SetRequest request = result_.sets[owner.local];
  request.argument = name;
  switch (request.kind) {
    case SetKind::kMembers:
      request.kind = SetKind::kMemberParameters;
      break;
    case SetKind::kExports:
      request.kind = SetKind::kExportParameters;
      break;
    case SetKind::kGroup:
      request.kind = SetKind::kGroupParameters;
      break;
    default:
      return;
  }
  Certainty certainty = owner.state == Bound::State::kLate ? Certainty::kByName : Certainty::kAmbiguous;
  if (IsInactive(use)) certainty = Certainty::kInactive;
  Emit(number, SetNumber(request), Form::kNamedArgument, certainty, reference_flag::kSet);
}

}  // namespace quillmate::symbols
