#include <quillmate/language/parse.h>

#include "binder_p.h"

namespace quillmate::symbols {
namespace {

namespace use_flag = language::use_flag;
using language::Role;

/// Whether any project that `project` sees has something of that name in a class-like module.
bool HasMember(const Tables& tables, Index project, NameHash name) {
  if (tables.projects[project].memberNames.Find(name) != kNone) return true;
  for (const Index reference : tables.projects[project].references) {
    if (tables.projects[reference].memberNames.Find(name) != kNone) return true;
  }
  return false;
}

}  // namespace

void Binder::BindMember(Index number) {
  const NameUse& use = Use(number);
  if ((use.flags & use_flag::kNoWith) != 0) {
    // ".x" without a With is a member of nothing.
    scratch_.bound[number].type = TypeRef::Of(TypeKind::kScalar);
    return;
  }
  TypeRef before;
  if (use.previous != kNone) before = scratch_.bound[use.previous].type;
  if (before.array) return;
  switch (before.kind) {
    case TypeKind::kLate:
    case TypeKind::kObject:
      return BindLate(number);
    case TypeKind::kScalar:
      return;
    case TypeKind::kClass:
      return BindClassMember(number, before.module);
    case TypeKind::kRecord:
    case TypeKind::kEnum: {
      const ModuleTable& table = tables_.modules[before.module];
      const Local member = table.FindNested(HashOf(use.name), before.local);
      if (member != kNone) return BindTo(number, before.module, member, table.IsInactive(member));
      scratch_.bound[number].type = TypeRef::Of(TypeKind::kScalar);
      return;
    }
    case TypeKind::kModuleScope: {
      const ModuleTable& table = tables_.modules[before.module];
      const Local first = table.Find(HashOf(use.name));
      if (first != kNone) BindGroup(number, before.module, first, use.role == Role::kAddressOf);
      return;
    }
    case TypeKind::kProjectScope:
      return BindProjectMember(number, before.module);
    case TypeKind::kLibrary:
    case TypeKind::kLibraryScope:
      return BindLibraryMember(number);
  }
}

void Binder::BindLibraryMember(Index number) {
  const NameUse& use = Use(number);
  const NameHash name = HashOf(use.name);
  library::Result result = library::MemberResult(name);
  if (use.previous != kNone && scratch_.bound[use.previous].type.kind == TypeKind::kLibraryScope) {
    const library::Global global = library::FindGlobal(name);
    if (global.hosts != 0) result = global.result;
    if (library::IsScope(name)) {
      scratch_.bound[number].type = TypeRef::Of(TypeKind::kLibraryScope);
      scratch_.bound[number].state = Bound::State::kLibrary;
      return;
    }
  }
  constexpr std::uint16_t kDocuments = library::base::kExcelDocument | library::base::kWordDocument;
  if (result == library::Result::kPlain && (library::BasesWith(name) & kDocuments) == 0 &&
      tables_.projects[project_].documentNames.Find(name) != kNone) {
    // Of a workbook, a sheet, a document: it may be the one that the module belongs to.
    EmitLate(number, SetKind::kDocumentMembers);
  }
  BindLibrary(number, result);
}

void Binder::BindClassMember(Index number, Index module) {
  const NameUse& use = Use(number);
  const ModuleTable& table = tables_.modules[module];
  const NameHash name = HashOf(use.name);
  const Local first = table.Find(name);
  if (first != kNone) {
    BindGroup(number, module, first);
    if (scratch_.bound[number].state != Bound::State::kUnknown) return;
  }
  if (table.bases == 0) return;
  // A member of what the form or document is built on, or a field of its data.
  if ((library::BasesWith(name) & table.bases) != 0) return BindLibrary(number, library::MemberResult(name));
  scratch_.bound[number].state = Bound::State::kLibrary;
}

void Binder::BindProjectMember(Index number, Index project) {
  const NameUse& use = Use(number);
  const NameHash name = HashOf(use.name);
  const Index named = tables_.FindModule(project, name);
  if (named != kNone) return BindModuleName(number, named);
  const Meaning meaning = ExportedMeaning(tables_, project, name, kNone, project != project_);
  if (meaning.kind == MeaningKind::kUnknown && project == project_ && table_.Find(name) != kNone) {
    return BindGroup(number, module_, table_.Find(name));
  }
  if (meaning.kind != MeaningKind::kUnknown) BindMeaning(number, meaning);
}

/// Nobody knows the object: every public member of that name in a class is possible.
void Binder::BindLate(Index number) {
  const NameUse& use = Use(number);
  const NameHash name = HashOf(use.name);
  Bound& bound = scratch_.bound[number];
  bound.state = Bound::State::kLate;
  if (HasMember(tables_, project_, name)) bound.local = EmitLate(number, SetKind::kMembers);
}

/// A use of one of several members, by its name alone; gives the number of their set.
Index Binder::EmitLate(Index number, SetKind kind) {
  const NameUse& use = Use(number);
  const Form form = FormOf(use.role);
  const Index set = SetNumber({kind, PickForm(form), false, project_, kNone, HashOf(use.name), 0});
  Emit(number, set, form, IsInactive(use) ? Certainty::kInactive : Certainty::kByName,
       static_cast<std::uint16_t>(reference_flag::kSet | (MayWrite(use) ? reference_flag::kMayWrite : 0)));
  return set;
}

/// The control of a name that the collection `Controls` at `collection` has, of the form in front of it or of the own
/// one: its module and local number, kNone for none.
std::pair<Index, Local> Binder::FindControl(Index collection, NameHash name) const {
  static const NameHash kControls = language::HashName("controls");
  const NameUse& use = Use(collection);
  if (HashOf(use.name) != kControls) return {kNone, kNone};
  TypeRef type;
  if (use.access == language::Access::kSimple) type = TypeRef::Class(module_);
  if (use.previous != kNone) type = scratch_.bound[use.previous].type;
  if (type.kind != TypeKind::kClass || type.array) return {kNone, kNone};
  const ModuleTable& table = tables_.modules[type.module];
  for (Local local = table.Find(name); local != kNone; local = table.next[local]) {
    if (table.IsControl(local)) return {type.module, local};
  }
  return {kNone, kNone};
}

/// A name after "!": the text of a key for the object's default member, but a control where the object has it.
void Binder::BindKey(Index number) {
  const NameUse& use = Use(number);
  Bound& bound = scratch_.bound[number];
  if (use.previous == kNone) return;
  const Bound& before = scratch_.bound[use.previous];
  if (before.type.kind == TypeKind::kClass && !before.type.array) {
    const Index module = before.type.module;
    const ModuleTable& table = tables_.modules[module];
    for (Local local = table.Find(HashOf(use.name)); local != kNone; local = table.next[local]) {
      if (table.IsControl(local)) return BindTo(number, module, local, false);
    }
    if (table.bases != 0) {
      bound.state = Bound::State::kLibrary;
      return;
    }
    const Form form = use.role == Role::kLetTarget || use.role == Role::kSetTarget ? FormOf(use.role) : Form::kRead;
    bound.type = CallDefault(use.previous, module, table.defaultMember, form);
    return;
  }
  bound.state = Bound::State::kLibrary;
  if (before.state != Bound::State::kLibrary) return;
  if (const auto [module, control] = FindControl(use.previous, HashOf(use.name)); control != kNone) {
    return BindTo(number, module, control, false);
  }
  // Forms!Kunden of Access: the module is called after it.
  static const NameHash kForms = language::HashName("forms"), kReports = language::HashName("reports");
  const NameHash collection = HashOf(Use(use.previous).name);
  if (collection != kForms && collection != kReports) return;
  const std::string_view prefix = collection == kForms ? "form_" : "report_";
  const std::string name = std::string(prefix).append(code_.NameText(use.name));
  const Index module = tables_.FindModule(project_, language::HashName(name));
  if (module == kNone || !tables_.modules[module].classLike) return;
  Emit(number, Raw(module, 0), Form::kRead, IsInactive(use) ? Certainty::kInactive : Certainty::kSure, 0);
  bound = {TypeRef::Class(module), module, 0, Bound::State::kOwn};
}

}  // namespace quillmate::symbols
