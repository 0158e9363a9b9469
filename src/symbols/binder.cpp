#include <quillmate/language/parse.h>

#include "binder_p.h"

namespace quillmate::symbols {
namespace {

using language::Access;
using language::Declaration;
using language::DeclarationKind;
using language::Role;
namespace use_flag = language::use_flag;
namespace declaration_flag = language::declaration_flag;

constexpr Meaning kUnknownMeaning{kNone, kNone, MeaningKind::kUnknown};

/// False for groups of nothing but Subs.
bool GivesValue(const ModuleTable& table, Local first) {
  for (Local local = first; local != kNone; local = table.next[local]) {
    if (KindOf(table, local) != SymbolKind::kSub) return true;
  }
  return false;
}

}  // namespace

Binder::Binder(const Tables& tables, Index module, Scratch& scratch, ModuleReferences& result)
    : tables_(tables),
      module_(module),
      table_(tables.modules[module]),
      code_(*table_.code),
      scratch_(scratch),
      result_(result),
      project_(table_.project) {
  if (scratch_.wordHashes.empty()) {
    for (language::NameId word = 0; word < language::kWordCount; ++word) {
      scratch_.wordHashes.push_back(code_.NameHash(word));
    }
  }
  const std::size_t names = code_.NameCount();
  scratch_.values.assign(names, Meaning{});
  scratch_.types.assign(names, Meaning{});
  scratch_.bound.assign(code_.uses.size(), Bound{});
  scratch_.localStamps.assign(names, 0);
  scratch_.labelStamps.assign(names, 0);
  scratch_.pendingStamps.assign(names, 0);
  scratch_.locals.resize(names);
  scratch_.labels.resize(names);
  scratch_.pickNumbers = {};
  scratch_.picks.clear();
  scratch_.pendings.resize(names);
}

void Binder::Run() {
  result_.references.reserve(code_.uses.size());
  result_.routineEnds.reserve(code_.routines.size());
  for (Index number = 0; number < code_.uses.size(); ++number) {
    const Index routine = Use(number).routine;
    if (routine != routine_) {
      LeaveRoutine();
      while (routine != kNone && nextRoutine_ < routine) {
        EnterRoutine(nextRoutine_);
        LeaveRoutine();
      }
      if (routine != kNone) EnterRoutine(routine);
    }
    BindUse(number);
  }
  LeaveRoutine();
  while (nextRoutine_ < code_.routines.size()) {
    EnterRoutine(nextRoutine_);
    LeaveRoutine();
  }
  for (; nextString_ < code_.strings.size(); ++nextString_) BindString(nextString_);
}

// ------------------------------------------------------------------------------------------------------- routines

const Meaning& Binder::ValueOf(language::NameId name) {
  Meaning& meaning = scratch_.values[name];
  if (meaning.kind == MeaningKind::kUnset) meaning = ValueMeaning(tables_, module_, HashOf(name));
  return meaning;
}

// ------------------------------------------------------------------------------------------------------------ uses

Form Binder::FormOf(Role role) noexcept {
  switch (role) {
    case Role::kCall:
      return Form::kCall;
    case Role::kLetTarget:
      return Form::kLet;
    case Role::kSetTarget:
      return Form::kSet;
    case Role::kForVariable:
    case Role::kForEachVariable:
    case Role::kInputTarget:
    case Role::kReDim:
    case Role::kErase:
      return Form::kChange;
    case Role::kType:
    case Role::kNew:
    case Role::kTypeOf:
      return Form::kType;
    case Role::kImplements:
      return Form::kImplements;
    case Role::kAddressOf:
      return Form::kAddress;
    case Role::kRaiseEvent:
      return Form::kRaise;
    case Role::kLabel:
      return Form::kLabel;
    case Role::kNamedArgument:
      return Form::kNamedArgument;
    default:
      return Form::kRead;
  }
}

void Binder::BindUse(Index number) {
  switch (Use(number).role) {
    case Role::kConditional:
    case Role::kAttributeMember:
      return;
    case Role::kType:
    case Role::kNew:
    case Role::kTypeOf:
    case Role::kImplements:
      return BindType(number);
    case Role::kAddressOf:
      return BindAddress(number);
    case Role::kRaiseEvent:
      return BindEvent(number);
    case Role::kLabel:
      return BindLabel(number);
    case Role::kNamedArgument:
      return BindNamedArgument(number);
    default:
      return BindValue(number);
  }
}

void Binder::BindValue(Index number) {
  switch (Use(number).access) {
    case Access::kSimple:
      return BindSimple(number);
    case Access::kMember:
    case Access::kWith:
      return BindMember(number);
    case Access::kKey:
    case Access::kWithKey:
      return BindKey(number);
  }
}

void Binder::BindSimple(Index number) {
  const NameUse& use = Use(number);
  if (use.name == language::kWordMe && (use.flags & use_flag::kBracketed) == 0) {
    Bound& bound = scratch_.bound[number];
    bound.state = Bound::State::kOwn;
    bound.module = module_;
    bound.local = 0;
    if (table_.classLike)
      bound.type = Follow(number, TypeRef::Class(module_), use.argumentCount > 0 ? 1 : 0, FormOf(use.role));
    return;
  }
  if (IsStatementWord(use)) {
    scratch_.bound[number].state = Bound::State::kLibrary;
    return;
  }
  if (routine_ != kNone && (BindLocal(number) || BindResult(number))) return;
  BindMeaning(number, ValueOf(use.name));
}

/// `Error 5` and `Reset` are statements, unless a routine is called like that.
bool Binder::IsStatementWord(const NameUse& use) {
  if ((use.name != language::kWordError && use.name != language::kWordReset) || use.role != Role::kCall) return false;
  if ((use.flags & (use_flag::kBracketed | use_flag::kCallWord)) != 0) return false;
  if (routine_ != kNone && scratch_.localStamps[use.name] == stamp_) return true;
  const Meaning& meaning = ValueOf(use.name);
  if (meaning.kind != MeaningKind::kGroup) return meaning.kind != MeaningKind::kSeveral;
  return !IsCallable(KindOf(tables_.modules[meaning.module], meaning.local));
}

/// What the routine itself declares. An active use of something that only inactive code declares goes on looking.
bool Binder::BindLocal(Index number) {
  const NameUse& use = Use(number);
  if (scratch_.localStamps[use.name] != stamp_) return false;
  const Index declaration = scratch_.locals[use.name];
  const Declaration& declared = code_.declarations[declaration];
  if ((use.flags & use_flag::kConstant) != 0 &&
      (declared.kind != DeclarationKind::kConstant || declared.offset > use.offset)) {
    return false;
  }
  const bool inactive = (declared.flags & declaration_flag::kInactive) != 0;
  if (inactive && !IsInactive(use)) {
    const Meaning& meaning = ValueOf(use.name);
    if (meaning.kind == MeaningKind::kGroup && HasActive(tables_.modules[meaning.module], meaning.local)) return false;
  }
  if (declared.kind == DeclarationKind::kReDim && declared.offset == use.offset) {
    scratch_.bound[number] = {table_.types[declaration + 1], module_, declaration + 1, Bound::State::kOwn};
    return true;
  }
  BindTo(number, module_, declaration + 1, inactive);
  return true;
}

/// The routine's own name where it stands for its result.
bool Binder::BindResult(Index number) {
  const NameUse& use = Use(number);
  const language::Routine& routine = code_.routines[routine_];
  const Declaration& header = code_.declarations[routine.declaration];
  if (header.name != use.name || !IsFunction(header.kind) || use.role == Role::kCall) return false;
  if ((use.flags & (use_flag::kParenthesised | use_flag::kConstant)) != 0) return false;
  if ((table_.status[routine.declaration] & status::kNone) != 0) return false;
  BindTo(number, module_, routine.declaration + 1, table_.IsInactive(routine.declaration + 1), reference_flag::kResult);
  return true;
}

void Binder::BindMeaning(Index number, const Meaning& meaning) {
  switch (meaning.kind) {
    case MeaningKind::kGroup: {
      const NameUse& use = Use(number);
      // "Left" of a form and the function Left: two arguments tell them apart.
      if (use.argumentCount == 2 && meaning.module == module_ && (use.flags & use_flag::kParenthesised) != 0) {
        static const NameHash kLeft = language::HashName("left");
        const ModuleTable& table = tables_.modules[meaning.module];
        const TypeKind type = table.types[meaning.local].kind;
        const bool simple = type == TypeKind::kScalar && !table.types[meaning.local].array;
        if (HashOf(use.name) == kLeft && simple &&
            (!table.IsDeclaration(meaning.local) || table.Declared(meaning.local).childCount == 0)) {
          return BindLibrary(number, library::Result::kPlain);
        }
      }
      // A Sub gives nothing that could have members: its module or project of that name is meant.
      if ((use.flags & use_flag::kQualifier) != 0 && !GivesValue(tables_.modules[meaning.module], meaning.local)) {
        const Meaning outer = ProjectMeaning(tables_, project_, HashOf(use.name));
        if (outer.kind != MeaningKind::kUnknown) return BindMeaning(number, outer);
      }
      return BindGroup(number, meaning.module, meaning.local);
    }
    case MeaningKind::kSeveral: {
      const Index project = tables_.modules[tables_.exports[meaning.local].module].project;
      const Form form = PickForm(FormOf(Use(number).role));
      return BindSeveral(number, {SetKind::kExports, form, false, project, kNone, HashOf(Use(number).name), 0});
    }
    case MeaningKind::kModule:
      return BindModuleName(number, meaning.module);
    case MeaningKind::kProject:
    case MeaningKind::kLibraryScope:
      scratch_.bound[number].type = TypeOfMeaning(tables_, meaning);
      scratch_.bound[number].state = Bound::State::kLibrary;
      return;
    case MeaningKind::kLibrary:
      if (meaning.doubtful) BindUnknown(number, meaning);
      return BindLibrary(number, static_cast<library::Result>(meaning.local));
    default:
      if (BindAssumedProject(number)) return;
      return BindUnknown(number, meaning);
  }
}

/// A project whose name nobody knows: what is in front of one of its modules, or its assumed name in front of
/// something public.
bool Binder::BindAssumedProject(Index number) {
  const ProjectTable& project = tables_.projects[project_];
  const NameUse& use = Use(number);
  constexpr std::uint32_t kLooked = use_flag::kQualifier | use_flag::kParenthesised;
  if (!project.nameAssumed || (use.flags & kLooked) != use_flag::kQualifier) return false;
  if (number + 1 >= code_.uses.size()) return false;
  const NameUse& next = Use(number + 1);
  if (next.previous != number || next.access != Access::kMember) return false;
  const bool called = project.nameHash == HashOf(use.name);
  const Index module = tables_.FindModule(project_, HashOf(next.name));
  // Without Option Explicit it may be a variable, of a library's book with a sheet of that name.
  const bool sure = called || code_.facts.optionExplicit;
  const bool named = module != kNone && (sure || !tables_.modules[module].classLike);
  if (!named && !(called && project.exportNames.Find(HashOf(next.name)) != kNone)) return false;
  scratch_.bound[number].type = {project_, kNone, TypeKind::kProjectScope, false};
  scratch_.bound[number].state = Bound::State::kLibrary;
  return true;
}

void Binder::BindModuleName(Index number, Index module) {
  const NameUse& use = Use(number);
  const ModuleTable& table = tables_.modules[module];
  Bound& bound = scratch_.bound[number];
  if (tables_.nextModule[module] != kNone) {
    bound.state = Bound::State::kSeveral;
    if (!table.classLike) bound.type = {table.project, kNone, TypeKind::kProjectScope, false};
    Emit(number, SetNumber({SetKind::kModules, Form::kRead, false, table.project, kNone, table.nameHash, 0}),
         Form::kRead, IsInactive(use) ? Certainty::kInactive : Certainty::kAmbiguous, reference_flag::kSet);
    return;
  }
  const bool object = table.classLike && table.predeclared;
  const Certainty certainty = IsInactive(use) ? Certainty::kInactive : Certainty::kSure;
  Emit(number, Raw(module, 0), FormOf(use.role), certainty, object ? std::uint16_t{0} : reference_flag::kTypeUse);
  bound.state = Bound::State::kOwn;
  bound.module = module;
  bound.local = 0;
  if (object) {
    bound.type = Follow(number, TypeRef::Class(module), use.argumentCount > 0 ? 1 : 0, FormOf(use.role));
  } else if (table.classLike) {
    bound.type = TypeRef::Of(TypeKind::kScalar);
  } else if ((use.flags & use_flag::kQualifier) != 0) {
    bound.type = {module, kNone, TypeKind::kModuleScope, false};
  } else {
    // A routine with the name of a module needs the module before it; whoever forgot that meant it.
    const Meaning routine = ExportedMeaning(tables_, table.project, table.nameHash, kNone, false);
    if (routine.kind == MeaningKind::kUnknown) return;
    Emit(number,
         SetNumber({SetKind::kExports, PickForm(FormOf(use.role)), false, table.project, kNone, table.nameHash, 0}),
         FormOf(use.role), IsInactive(use) ? Certainty::kInactive : Certainty::kAmbiguous, reference_flag::kSet);
  }
}

void Binder::BindLibrary(Index number, library::Result result) {
  const NameUse& use = Use(number);
  Bound& bound = scratch_.bound[number];
  bound.state = Bound::State::kLibrary;
  const unsigned lists = (use.argumentCount > 0 ? 1U : 0U) + ((use.flags & use_flag::kMoreArguments) != 0 ? 1U : 0U);
  bound.type = library::TypeOf(result);
  static const NameHash kCallByName = language::HashName("callbyname");
  if (result == library::Result::kLate && HashOf(use.name) == kCallByName) ++result_.callsByName;
  if (lists > 0 && result == library::Result::kElements) bound.type = TypeRef::Of(TypeKind::kObject);
}

/// Nothing has the name. Without Option Explicit that makes a variable, whose first use declares it.
void Binder::BindUnknown(Index number, const Meaning& meaning) {
  const NameUse& use = Use(number);
  if ((use.flags & use_flag::kBracketed) != 0) return BindBracketed(number);
  if (routine_ == kNone || code_.facts.optionExplicit) return;
  if ((use.flags & use_flag::kConstant) != 0 || use.role == Role::kCall) return;
  if (scratch_.pendingStamps[use.name] != stamp_) {
    scratch_.pendingStamps[use.name] = stamp_;
    scratch_.pendings[use.name] = static_cast<Index>(pendings_.size());
    Pending& pending = pendings_.emplace_back();
    pending.constant = library::LooksLikeConstant(code_.Spelling(use));
    pending.doubtful = meaning.kind == MeaningKind::kLibrary;
  }
  const Index number_ = scratch_.pendings[use.name];
  Pending& pending = pendings_[number_];
  const Form form = FormOf(use.role);
  const bool write = form == Form::kLet || form == Form::kSet || form == Form::kChange;
  if ((use.flags & use_flag::kParenthesised) == 0) {
    const bool left = (use.flags & use_flag::kQualifier) != 0;
    if (pending.use == kNone) {
      pending.use = number;
      pending.form = form;
    }
    // Inactive code alone declares nothing.
    if (!IsInactive(use)) {
      pending.written = pending.written || (write && !left);
      pending.value = pending.value || !left;
    }
  }
  const std::uint16_t flags = MayWrite(use) ? reference_flag::kMayWrite : std::uint16_t{0};
  Emit(number, number_, form, IsInactive(use) ? Certainty::kInactive : Certainty::kSure,
       static_cast<std::uint16_t>(reference_flag::kPending | flags));
}

}  // namespace quillmate::symbols
