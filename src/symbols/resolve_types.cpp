#include <algorithm>
#include <vector>

#include "binder_p.h"

namespace quillmate::symbols {
namespace {

using language::BuiltinType;
using language::Declaration;
namespace declaration_flag = language::declaration_flag;

TypeRef OfBuiltin(BuiltinType type) {
  switch (type) {
    case BuiltinType::kUndeclared:
    case BuiltinType::kVariant:
    case BuiltinType::kAny:
    case BuiltinType::kNamed:
      return {};
    case BuiltinType::kObject:
      return TypeRef::Of(TypeKind::kObject);
    default:
      return TypeRef::Of(TypeKind::kScalar);
  }
}

/// The meaning of a qualified name from its last use backwards. Each is walked once, whatever its length.
Meaning MeaningOfChain(const Tables& tables, Index module, Index last, std::vector<Index>& parts) {
  const language::Module& code = *tables.modules[module].code;
  parts.clear();
  for (Index part = last; part != kNone; part = code.uses[part].previous) parts.push_back(part);
  Meaning meaning;
  TypeRef before;
  for (std::size_t at = parts.size(); at-- > 0;) {
    const bool first = at + 1 == parts.size();
    meaning = TypeStep(tables, module, code.NameHash(code.uses[parts[at]].name), first, at > 0, before);
    before = TypeOfMeaning(tables, meaning);
  }
  return meaning;
}

TypeRef TypeOfControl(const Tables& tables, Index module, const ControlTable& control) {
  TypeRef type = TypeRef::Library();
  const std::size_t dot = control.type.rfind('.');
  const std::string name = dot == std::string::npos ? control.type : control.type.substr(dot + 1);
  if (!name.empty()) {
    const NameHash hash = language::HashName(language::FoldName(name));
    const Index project = tables.modules[module].project;
    const std::string_view library = std::string_view(control.type).substr(0, dot == std::string::npos ? 0 : dot);
    const ProjectTable& owner = tables.projects[project];
    const bool own = library.empty() || language::HashName(language::FoldName(library)) == owner.nameHash;
    Index named = own || owner.nameAssumed ? tables.FindModule(project, hash) : kNone;
    if (named != kNone && !own && tables.modules[named].code->facts.kind != language::ModuleKind::kUserControl) {
      named = kNone;
    }
    if (named != kNone && named != module && tables.modules[named].classLike) type = TypeRef::Class(named);
  }
  type.array = control.array;
  return type;
}

/// `Unknown.CKunde` where nobody knows what the project is called and it has a class of that name.
bool MayBeOwnClass(const Tables& tables, Index module, Index last) {
  const ModuleTable& table = tables.modules[module];
  const ProjectTable& project = tables.projects[table.project];
  const language::NameUse& use = table.code->uses[last];
  if (!project.nameAssumed || use.access == language::Access::kSimple) return false;
  const language::NameUse& before = table.code->uses[last - 1];
  const NameHash qualifier = table.code->NameHash(before.name);
  if (before.access != language::Access::kSimple || library::IsScope(qualifier)) return false;
  if (qualifier == project.nameHash || tables.FindModule(table.project, qualifier) != kNone) return false;
  const Index named = tables.FindModule(table.project, table.code->NameHash(use.name));
  return named != kNone && tables.modules[named].classLike;
}

}  // namespace

void ResolveTypes(Tables& tables, Index module) {
  ModuleTable& table = tables.modules[module];
  const language::Module& code = *table.code;
  std::vector<Index> parts;
  table.types.assign(table.LocalCount(), TypeRef{});
  for (std::size_t number = 0; number < code.declarations.size(); ++number) {
    const Declaration& declared = code.declarations[number];
    TypeRef& type = table.types[number + 1];
    if (declared.kind == language::DeclarationKind::kEnumMember) {
      type = TypeRef::Of(TypeKind::kScalar);
    } else if (declared.type == BuiltinType::kNamed && declared.typeUse != kNone) {
      type = TypeOfMeaning(tables, MeaningOfChain(tables, module, declared.typeUse, parts));
      if (type.kind != TypeKind::kClass && type.kind != TypeKind::kRecord && type.kind != TypeKind::kLibrary &&
          type.kind != TypeKind::kScalar && type.kind != TypeKind::kObject) {
        type = TypeRef::Of(TypeKind::kObject);
      }
      if (MayBeOwnClass(tables, module, declared.typeUse)) type = TypeRef::Of(TypeKind::kObject);
    } else {
      type = OfBuiltin(declared.type);
      if (declared.typeUse != kNone) {
        const Meaning own = MeaningOfChain(tables, module, declared.typeUse, parts);
        if (own.kind == MeaningKind::kType && !tables.modules[own.module].IsInactive(own.local)) {
          type = TypeOfMeaning(tables, own);
        }
      }
    }
    type.array = (declared.flags & (declaration_flag::kArray | declaration_flag::kParamArray)) != 0 ||
                 declared.kind == language::DeclarationKind::kReDim;
  }
  for (std::size_t control = 0; control < table.controls.size(); ++control) {
    table.types[1 + code.declarations.size() + control] = TypeOfControl(tables, module, table.controls[control]);
  }
  table.interfaceNames.Reserve(table.interfaceUses.size());
  for (const Index use : table.interfaceUses) {
    Index& number = table.interfaceNames[code.NameHash(code.uses[use].name)];
    if (number == kNone) number = static_cast<Index>(table.interfaces.size());
    const Meaning meaning = MeaningOfChain(tables, module, use, parts);
    const bool known = meaning.kind == MeaningKind::kModule && tables.nextModule[meaning.module] == kNone;
    table.interfaces.push_back(known ? meaning.module : kNone);
  }
}

}  // namespace quillmate::symbols
