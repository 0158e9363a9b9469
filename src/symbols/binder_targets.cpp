#include <algorithm>

#include "binder_p.h"

namespace quillmate::symbols {
namespace {

namespace use_flag = language::use_flag;
namespace declaration_flag = language::declaration_flag;
using language::Declaration;
using language::DeclarationKind;

/// Arguments that a routine takes where it is used as `form`: the value that is assigned to a property is none.
std::uint32_t TakenArguments(const Declaration& header, SymbolKind kind) {
  const bool assigned = kind == SymbolKind::kPropertyLet || kind == SymbolKind::kPropertySet;
  return assigned && header.childCount > 0 ? header.childCount - 1 : header.childCount;
}

constexpr Local kNothing = kNone - 1;
constexpr unsigned kShortGroup = 6;

bool IsTarget(Form form) { return form == Form::kLet || form == Form::kSet; }

}  // namespace

void Binder::Emit(Index place, Index target, Form form, Certainty certainty, std::uint16_t flags) {
  result_.references.push_back({place, target, form, certainty, flags});
}

Index Binder::SetNumber(const SetRequest& request) {
  NameHash key = request.Key();
  for (;; ++key) {
    Index& number = setNumbers_.Grow(key);
    if (number == kNone) {
      number = static_cast<Index>(result_.sets.size());
      result_.sets.push_back(request);
    }
    if (result_.sets[number] == request) return number;
  }
}

void Binder::BindSeveral(Index number, const SetRequest& request) {
  const NameUse& use = Use(number);
  Bound& bound = scratch_.bound[number];
  bound.state = Bound::State::kSeveral;
  bound.local = SetNumber(request);
  Emit(number, bound.local, FormOf(use.role), IsInactive(use) ? Certainty::kInactive : Certainty::kAmbiguous,
       static_cast<std::uint16_t>(reference_flag::kSet | (MayWrite(use) ? reference_flag::kMayWrite : 0)));
}

void Binder::BindGroup(Index number, Index module, Local first, bool routines) {
  const NameUse& use = Use(number);
  const ModuleTable& table = tables_.modules[module];
  const bool outside = module != module_;
  if (table.next[first] == kNone) {
    const Visibility visibility = VisibilityOf(table, first);
    if (outside && visibility == Visibility::kPrivate) return;
    if (table.project != project_ && visibility == Visibility::kFriend) return;
    if (routines && !IsCallable(KindOf(table, first))) return;
    return BindTo(number, module, first, table.IsInactive(first));
  }
  const Form form = PickForm(FormOf(use.role));
  const Local local = PickOne(table, module, first, form, routines);
  if (local == kNothing) return;
  if (local != kNone) return BindTo(number, module, local, table.IsInactive(local));
  BindSeveral(number, {SetKind::kGroup, form, outside, table.project, module, first, 0});
}

/// The one thing that is picked from a group; kNone when there are several, kNothing when there is none. Long groups
/// are looked through once for all of the module's uses.
Local Binder::PickOne(const ModuleTable& table, Index module, Local first, Form form, bool routines) {
  const bool outside = module != module_;
  const auto pick = [&] {
    scratch_.picked.clear();
    Pick(table, first, form, outside, table.project != project_, routines, scratch_.picked);
    if (scratch_.picked.empty()) return kNothing;
    return scratch_.picked.size() == 1 ? scratch_.picked.front() : kNone;
  };
  unsigned length = 0;
  for (Local local = first; local != kNone && length < kShortGroup; local = table.next[local]) ++length;
  if (length < kShortGroup) return pick();
  const std::uint64_t how = static_cast<std::uint64_t>(form) << 1U | (routines ? 1U : 0U);
  Index& known = scratch_.pickNumbers.Grow(Within(Within(first, module), how));
  if (known == kNone) {
    known = static_cast<Index>(scratch_.picks.size());
    scratch_.picks.push_back(pick());
  }
  return scratch_.picks[known];
}

/// Binds a use to one thing: what it does with it, what its arguments go to, what follows it.
void Binder::BindTo(Index number, Index module, Local local, bool inactive, std::uint16_t flags) {
  const NameUse& use = Use(number);
  const ModuleTable& table = tables_.modules[module];
  const SymbolKind kind = KindOf(table, local);
  const Form form = FormOf(use.role);
  const Form last = IsTarget(form) ? form : Form::kRead;
  const bool result = (flags & reference_flag::kResult) != 0;
  const bool callable = IsCallable(kind) && !result;
  unsigned lists = (use.argumentCount > 0 ? 1U : 0U) + ((use.flags & use_flag::kMoreArguments) != 0 ? 1U : 0U);
  TypeRef type = table.types[local];

  Bound& bound = scratch_.bound[number];
  bound.state = Bound::State::kOwn;
  bound.module = module;
  bound.local = local;

  Form primary = form;
  if (callable) {
    if (lists > 0 && use.argumentCount > 0 && TakenArguments(table.Declared(local), kind) > 0) --lists;
    if (kind == SymbolKind::kPropertyLet || kind == SymbolKind::kPropertySet) {
      type = TypeRef::Of(TypeKind::kScalar);
      lists = 0;
    }
  } else if (kind == SymbolKind::kEnum) {
    type = (use.flags & use_flag::kQualifier) != 0 ? TypeRef{module, local, TypeKind::kEnum, false}
                                                   : TypeRef::Of(TypeKind::kScalar);
    lists = 0;
  } else {
    // What is indexed or assigned to: an element of an array, else the default member of an object.
    TypeRef indexed = type;
    unsigned behind = lists;
    if (indexed.array && behind > 0) {
      indexed.array = false;
      --behind;
    }
    const bool object = !indexed.array && indexed.kind == TypeKind::kClass;
    const bool hasDefault = object && tables_.modules[indexed.module].defaultMember != kNone;
    const bool item = behind > 0 && !indexed.array &&
                      (object || indexed.kind == TypeKind::kLibrary || indexed.kind == TypeKind::kObject);
    if (form == Form::kLet && (item || hasDefault)) primary = Form::kRead;
    if (form == Form::kSet && item) primary = Form::kRead;
  }

  Certainty certainty = Certainty::kSure;
  if (inactive || IsInactive(use)) certainty = Certainty::kInactive;
  if (!callable && primary == Form::kRead && MayWrite(use)) flags |= reference_flag::kMayWrite;
  Emit(number, Raw(module, local), primary, certainty, flags);
  const TypeRef followed =
      Follow(number, type, lists, callable && kind != SymbolKind::kPropertyGet ? Form::kRead : last);
  scratch_.bound[number].type = followed;
  if (followed.kind == TypeKind::kRecord && !callable) NoteRecord(use, followed);
}

/// A record that goes to a Declare, to a library, to a file: every member of it may matter there.
void Binder::NoteRecord(const NameUse& use, const TypeRef& type) {
  constexpr std::uint32_t kNot = use_flag::kQualifier | use_flag::kWithObject | use_flag::kWholeValue;
  const bool read = use.role == language::Role::kValue && (use.flags & kNot) == 0;
  if (!read && use.role != language::Role::kInputTarget && (use.flags & use_flag::kCopied) == 0) return;
  if (read && use.owner != kNone && scratch_.bound[use.owner].state == Bound::State::kOwn) {
    const Bound& owner = scratch_.bound[use.owner];
    const ModuleTable& table = tables_.modules[owner.module];
    if (KindOf(table, owner.local) != SymbolKind::kDeclare) return;
  }
  result_.records.push_back({type.module, type.local});
}

/// What an expression gives after `lists` lists of arguments and what is done with it: items of arrays, default
/// members of objects.
TypeRef Binder::Follow(Index number, TypeRef type, unsigned lists, Form last) {
  const NameUse& use = Use(number);
  while (lists > 0) {
    --lists;
    if (type.array) {
      type.array = false;
    } else if (type.kind == TypeKind::kClass) {
      type =
          CallDefault(number, type.module, tables_.modules[type.module].defaultMember, lists == 0 ? last : Form::kRead);
      if (lists == 0 && IsTarget(last)) return type;
    } else if (type.kind == TypeKind::kLibrary) {
      type = type.local == 1 ? TypeRef::Of(TypeKind::kObject) : TypeRef::Library();
    } else {
      type = TypeRef{};
    }
  }
  if (type.kind != TypeKind::kClass || type.array) return type;
  const ModuleTable& table = tables_.modules[type.module];
  const bool value = (use.flags & (use_flag::kWholeValue | use_flag::kObjectValue)) == use_flag::kWholeValue;
  if ((use.flags & use_flag::kForEachSource) != 0) {
    return CallDefault(number, type.module, table.enumerator, Form::kRead);
  }
  if (use.role == language::Role::kLetTarget && last == Form::kLet) {
    return CallDefault(number, type.module, table.defaultMember, Form::kLet);
  }
  if (value || (use.role == language::Role::kCall && (use.flags & use_flag::kQualifier) == 0 &&
                scratch_.bound[number].state == Bound::State::kOwn &&
                !IsCallable(KindOf(tables_.modules[scratch_.bound[number].module], scratch_.bound[number].local)))) {
    if (table.defaultMember != kNone) return CallDefault(number, type.module, table.defaultMember, Form::kRead);
  }
  return type;
}

/// The use of a member that the code doesn't name.
TypeRef Binder::CallDefault(Index place, Index module, Local member, Form form) {
  if (member == kNone) return {};
  const ModuleTable& table = tables_.modules[module];
  scratch_.picked.clear();
  Pick(table, table.Find(table.NameOf(member)), PickForm(form), false, false, false, scratch_.picked);
  if (scratch_.picked.empty()) return {};
  const Local local = scratch_.picked.front();
  const bool inactive = table.IsInactive(local) || IsInactive(Use(place));
  Emit(place, Raw(module, local), form, inactive ? Certainty::kInactive : Certainty::kSure, reference_flag::kImplicit);
  return table.types[local];
}

/// A variable that is handed over as it is may come back changed.
bool Binder::MayWrite(const NameUse& use) const {
  if ((use.flags & use_flag::kBareArgument) == 0 || use.role != language::Role::kValue) return false;
  return !IsGivenByValue(use);
}

bool Binder::IsGivenByValue(const NameUse& use) const {
  if ((use.flags & use_flag::kByValArgument) != 0) return true;
  if (use.owner == kNone || (use.flags & use_flag::kOfResult) != 0) return false;
  const Bound& owner = scratch_.bound[use.owner];
  if (owner.state != Bound::State::kOwn) return false;
  const ModuleTable& table = tables_.modules[owner.module];
  if (!table.IsDeclaration(owner.local)) return true;
  if (!IsCallable(KindOf(table, owner.local))) return true;  // an index
  const Declaration& header = table.Declared(owner.local);
  if (header.childCount == 0) return true;  // of the result's default member
  Index parameter = header.firstChild + header.childCount - 1;
  if (use.position > 0) {
    parameter = header.firstChild + std::min<std::uint32_t>(use.position, header.childCount) - 1;
  } else if (lastArgumentName_ != kNone && Use(lastArgumentName_).owner == use.owner &&
             scratch_.bound[lastArgumentName_].state == Bound::State::kOwn) {
    parameter = scratch_.bound[lastArgumentName_].local - 1;
  } else {
    return false;
  }
  return (table.code->declarations[parameter].flags & declaration_flag::kByVal) != 0;
}

}  // namespace quillmate::symbols
