#include <algorithm>

#include "meanings_p.h"

namespace quillmate::symbols {
namespace {

bool HasRoutine(const ModuleTable& table, Local first, bool outside) {
  for (Local local = first; local != kNone; local = table.next[local]) {
    if (!IsCallable(KindOf(table, local))) continue;
    if (!outside || VisibilityOf(table, local) != Visibility::kPrivate) return true;
  }
  return false;
}

/// One group of a list, several, or none. Active groups hide inactive ones.
template <typename Counts>
Meaning Gather(const Tables& tables, Index first, Counts counts) {
  Meaning found{kNone, kNone, MeaningKind::kUnknown};
  bool active = false;
  for (Index at = first; at != kNone; at = tables.exports[at].next) {
    const Exported& group = tables.exports[at];
    const ModuleTable& table = tables.modules[group.module];
    if (!counts(table, group)) continue;
    const bool isActive = group.active;
    if (found.kind == MeaningKind::kUnknown || (isActive && !active)) {
      found = {group.module, group.first, MeaningKind::kGroup};
      active = isActive;
    } else if (isActive == active) {
      found.kind = MeaningKind::kSeveral;
      if (active) break;  // the third and all further ones change nothing
    }
  }
  if (found.kind == MeaningKind::kSeveral) found.local = first;
  return found;
}

Meaning LibraryMeaning(library::Global global, bool known) {
  return {kNone, static_cast<Index>(global.result), MeaningKind::kLibrary, !known};
}

}  // namespace

bool HasActive(const ModuleTable& table, Local first) {
  for (Local local = first; local != kNone; local = table.next[local]) {
    if (!table.IsInactive(local)) return true;
  }
  return false;
}

Meaning ProjectMeaning(const Tables& tables, Index project, NameHash name) {
  const Index module = tables.FindModule(project, name);
  if (module != kNone) return {module, kNone, MeaningKind::kModule};
  const ProjectTable& own = tables.projects[project];
  if (own.nameHash == name && !own.nameAssumed) return {project, kNone, MeaningKind::kProject};
  for (const Index reference : own.references) {
    if (tables.projects[reference].nameHash == name) return {reference, kNone, MeaningKind::kProject};
  }
  return {kNone, kNone, MeaningKind::kUnknown};
}

Meaning ExportedMeaning(const Tables& tables, Index project, NameHash name, Index except, bool fromOutside) {
  const Index first = tables.projects[project].exportNames.Find(name);
  return Gather(tables, first, [&](const ModuleTable& table, const Exported& group) {
    return group.module != except && (!fromOutside || table.exported);
  });
}

Meaning ExportedType(const Tables& tables, Index project, NameHash name, Index except) {
  Meaning found{kNone, kNone, MeaningKind::kUnknown};
  bool active = false;
  const Index first = tables.projects[project].exportTypes.Find(name);
  for (Index at = first; at != kNone; at = tables.exports[at].next) {
    const Exported& type = tables.exports[at];
    if (type.module == except) continue;
    const bool isActive = !tables.modules[type.module].IsInactive(type.first);
    if (found.kind == MeaningKind::kUnknown || (isActive && !active)) {
      found = {type.module, type.first, MeaningKind::kType};
      active = isActive;
    } else if (isActive == active) {
      found.kind = MeaningKind::kSeveral;
      if (active) break;
    }
  }
  if (found.kind == MeaningKind::kSeveral) found.local = first;
  return found;
}

Meaning ValueMeaning(const Tables& tables, Index module, NameHash name) {
  const ModuleTable& table = tables.modules[module];
  const ProjectTable& project = tables.projects[table.project];
  const Local own = table.Find(name);
  const Meaning ownMeaning{module, own, MeaningKind::kGroup};
  if (own != kNone && HasActive(table, own)) return ownMeaning;
  if (own == kNone && (library::BasesWith(name) & table.bases) != 0) {
    return {kNone, static_cast<Index>(library::MemberResult(name)), MeaningKind::kLibrary};
  }
  const Meaning outer = ProjectMeaning(tables, table.project, name);
  const bool plainClass = outer.kind == MeaningKind::kModule && tables.modules[outer.module].classLike &&
                          !tables.modules[outer.module].predeclared;
  if (outer.kind != MeaningKind::kUnknown && !plainClass) return outer;
  const Meaning exported = ExportedMeaning(tables, table.project, name, module, false);
  if (exported.kind == MeaningKind::kSeveral || exported.kind == MeaningKind::kGroup) {
    // An inactive name of the own module still goes before an inactive one of another.
    if (own == kNone || exported.kind == MeaningKind::kSeveral ||
        HasActive(tables.modules[exported.module], exported.local)) {
      return exported;
    }
  }
  if (own != kNone) return ownMeaning;
  const library::Global global = library::FindGlobal(name);
  if ((global.hosts & project.hosts) != 0)
    return LibraryMeaning(global, global.hosts == library::kAll || project.hostKnown);
  if (library::IsScope(name)) return {kNone, kNone, MeaningKind::kLibraryScope};
  for (const Index reference : project.references) {
    const Index referred = tables.FindModule(reference, name);
    if (referred != kNone && tables.modules[referred].exported) return {referred, kNone, MeaningKind::kModule};
    const Meaning shown = ExportedMeaning(tables, reference, name, kNone, true);
    if (shown.kind != MeaningKind::kUnknown) return shown;
  }
  return plainClass ? outer : Meaning{kNone, kNone, MeaningKind::kUnknown};
}

Meaning QualifierMeaning(const Tables& tables, Index module, NameHash name) {
  const Index project = tables.modules[module].project;
  const ProjectTable& own = tables.projects[project];
  if (own.nameHash == name) return {project, kNone, MeaningKind::kProject};
  const Meaning outer = ProjectMeaning(tables, project, name);
  // A library that nobody knows is a library all the same.
  return outer.kind != MeaningKind::kUnknown ? outer : Meaning{kNone, kNone, MeaningKind::kLibraryScope};
}

Meaning TypeMeaning(const Tables& tables, Index module, NameHash name) {
  const ModuleTable& table = tables.modules[module];
  const Local own = table.FindType(name);
  const Meaning ownMeaning{module, own, MeaningKind::kType};
  if (own != kNone && !table.IsInactive(own)) return ownMeaning;
  const Index named = tables.FindModule(table.project, name);
  if (named != kNone && tables.modules[named].classLike) return {named, kNone, MeaningKind::kModule};
  const Meaning exported = ExportedType(tables, table.project, name, module);
  if (exported.kind != MeaningKind::kUnknown) return exported;
  if (own != kNone) return ownMeaning;
  for (const Index reference : tables.projects[table.project].references) {
    const Index referred = tables.FindModule(reference, name);
    if (referred != kNone && tables.modules[referred].classLike) return {referred, kNone, MeaningKind::kModule};
    const Meaning shown = ExportedType(tables, reference, name, kNone);
    if (shown.kind != MeaningKind::kUnknown) return shown;
  }
  const library::Class known = library::FindClass(name);
  if (known.known) return {kNone, static_cast<Index>(known.result), MeaningKind::kLibrary};
  return {kNone, kNone, MeaningKind::kUnknown};
}

Meaning AddressMeaning(const Tables& tables, Index module, NameHash name) {
  const ModuleTable& table = tables.modules[module];
  const Local own = table.Find(name);
  if (own != kNone && HasRoutine(table, own, false)) return {module, own, MeaningKind::kGroup};
  const auto routines = [&](Index project, Index except) {
    return Gather(tables, tables.projects[project].exportNames.Find(name),
                  [&](const ModuleTable& shown, const Exported& group) {
                    return group.module != except && HasRoutine(shown, group.first, true);
                  });
  };
  Meaning found = routines(table.project, module);
  for (const Index reference : tables.projects[table.project].references) {
    if (found.kind == MeaningKind::kUnknown) found = routines(reference, kNone);
  }
  return found;
}

TypeRef TypeOfMeaning(const Tables& tables, const Meaning& meaning) {
  switch (meaning.kind) {
    case MeaningKind::kModule:
      // Of several classes of one name nobody knows which is meant.
      if (tables.modules[meaning.module].classLike && tables.nextModule[meaning.module] != kNone) {
        return TypeRef::Of(TypeKind::kObject);
      }
      return tables.modules[meaning.module].classLike ? TypeRef::Class(meaning.module)
                                                      : TypeRef{meaning.module, kNone, TypeKind::kModuleScope, false};
    case MeaningKind::kProject:
      return {meaning.module, kNone, TypeKind::kProjectScope, false};
    case MeaningKind::kType: {
      const bool record = KindOf(tables.modules[meaning.module], meaning.local) == SymbolKind::kType;
      return {meaning.module, meaning.local, record ? TypeKind::kRecord : TypeKind::kScalar, false};
    }
    case MeaningKind::kLibrary:
      return library::TypeOf(static_cast<library::Result>(meaning.local));
    case MeaningKind::kLibraryScope:
      return TypeRef::Of(TypeKind::kLibraryScope);
    default:
      return {};
  }
}

Meaning TypeStep(const Tables& tables, Index module, NameHash name, bool first, bool qualifier, const TypeRef& before) {
  constexpr Meaning kUnknownMeaning{kNone, kNone, MeaningKind::kUnknown};
  if (first) return qualifier ? QualifierMeaning(tables, module, name) : TypeMeaning(tables, module, name);
  switch (before.kind) {
    case TypeKind::kProjectScope: {
      const Index named = tables.FindModule(before.module, name);
      if (named != kNone) return {named, kNone, MeaningKind::kModule};
      return ExportedType(tables, before.module, name, kNone);
    }
    case TypeKind::kModuleScope:
    case TypeKind::kClass: {
      const ModuleTable& table = tables.modules[before.module];
      const Local local = table.FindType(name);
      if (local == kNone) return kUnknownMeaning;
      if (before.module != module && VisibilityOf(table, local) == Visibility::kPrivate) return kUnknownMeaning;
      return {before.module, local, MeaningKind::kType};
    }
    case TypeKind::kLibraryScope: {
      // Where nobody knows what the project is called, an unknown library with a module of it is the project.
      const Index project = tables.modules[module].project;
      const Index named = qualifier && tables.projects[project].nameAssumed ? tables.FindModule(project, name) : kNone;
      if (named != kNone) return {named, kNone, MeaningKind::kModule};
      const library::Class known = library::FindClass(name);
      const library::Result result = known.known ? known.result : library::Result::kPlain;
      return {kNone, static_cast<Index>(result), MeaningKind::kLibrary};
    }
    default:
      return kUnknownMeaning;
  }
}

void Pick(const ModuleTable& table, Local first, Form form, bool outside, bool otherProject, bool routines,
          std::vector<Local>& picked) {
  const std::size_t begin = picked.size();
  bool active = false, enumeration = false;
  for (Local local = first; local != kNone; local = table.next[local]) {
    const SymbolKind kind = KindOf(table, local);
    if (routines && !IsCallable(kind)) continue;
    const Visibility visibility = VisibilityOf(table, local);
    if (outside && visibility == Visibility::kPrivate) continue;
    if (otherProject && visibility == Visibility::kFriend) continue;
    const bool counts = !table.IsInactive(local);
    if (kind == SymbolKind::kEnum && (counts || !active)) enumeration = true;
    if (counts && !active) enumeration = kind == SymbolKind::kEnum;
    active = active || counts;
    picked.push_back(local);
  }
  const auto keep = [&](auto wanted) {
    const auto from = picked.begin() + static_cast<std::ptrdiff_t>(begin);
    picked.erase(std::remove_if(from, picked.end(), [&](Local local) { return !wanted(local); }), picked.end());
  };
  if (picked.size() - begin < 2) return;
  if (active) keep([&](Local local) { return !table.IsInactive(local); });
  if (enumeration) keep([&](Local local) { return KindOf(table, local) == SymbolKind::kEnum; });
  if (picked.size() - begin < 2) return;
  constexpr std::uint8_t kGet = 1, kLet = 2, kSet = 4;
  const auto bit = [&](Local local) -> std::uint8_t {
    switch (KindOf(table, local)) {
      case SymbolKind::kPropertyGet:
        return kGet;
      case SymbolKind::kPropertyLet:
        return kLet;
      case SymbolKind::kPropertySet:
        return kSet;
      default:
        return 0;
    }
  };
  std::uint8_t there = 0;
  for (std::size_t at = begin; at < picked.size(); ++at) there |= bit(picked[at]);
  if (there == 0) return;
  std::uint8_t wanted = 0;
  const std::uint8_t orders[3][3] = {{kGet, kLet, kSet}, {kLet, kGet, kSet}, {kSet, kLet, kGet}};
  const std::size_t row = form == Form::kSet ? 2 : form == Form::kLet ? 1 : 0;
  for (const std::uint8_t choice : orders[row]) {
    if (wanted == 0 && (there & choice) != 0) wanted = choice;
  }
  keep([&](Local local) { return bit(local) == 0 || bit(local) == wanted; });
}

}  // namespace quillmate::symbols
