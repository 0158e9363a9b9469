#include <algorithm>

#include <quillmate/language/parse.h>
#include <quillmate/text/utf8.h>

#include "library_p.h"
#include "tables_p.h"

namespace quillmate::symbols {
namespace {

using language::Declaration;
using language::DeclarationKind;
namespace declaration_flag = language::declaration_flag;

NameHash HashOf(std::string_view name) { return language::HashName(language::FoldName(name)); }

std::uint16_t BasesOf(language::ModuleKind kind, const language::Module& code, Host host) {
  using language::ModuleKind;
  namespace base = library::base;
  switch (kind) {
    case ModuleKind::kStandard:
    case ModuleKind::kClass:
    case ModuleKind::kDesigner:
      return kind == ModuleKind::kDesigner ? base::kVbControl : 0;
    case ModuleKind::kUserControl:
    case ModuleKind::kPropertyPage:
    case ModuleKind::kUserDocument:
      return base::kVbControl;
    case ModuleKind::kForm:
      if (code.facts.accessExport || host == Host::kAccess) return base::kAccessForm;
      if (host == Host::kVb6) return base::kVbForm;
      if (!code.controls.empty() && code.Text(code.controls.front().type).starts_with("VB.")) return base::kVbForm;
      return host == Host::kUnknown && !code.facts.hasHeader ? base::kUserForm | base::kVbForm : base::kUserForm;
    case ModuleKind::kDocument:
      if (code.facts.accessExport || host == Host::kAccess) return base::kAccessForm;
      if (host == Host::kExcel) return base::kExcelDocument;
      if (host == Host::kWord) return base::kWordDocument;
      if (code.facts.base.find("00020906") != std::string::npos) return base::kWordDocument;
      if (code.facts.base.find("000208") != std::string::npos) return base::kExcelDocument;
      return base::kExcelDocument | base::kWordDocument | base::kAccessForm;
  }
  return 0;
}

void AddControl(ModuleTable& table, HashTable& known, ControlTable control) {
  if (control.name.empty()) return;
  control.hash = HashOf(control.name);
  if (control.hash == table.nameHash) return;  // the form itself
  Index& number = known.Grow(control.hash);
  if (number != kNone) {
    ControlTable& first = table.controls[number];
    first.array = first.array || control.array;
    if (first.type.empty()) first.type = std::move(control.type);
    return;
  }
  number = static_cast<Index>(table.controls.size());
  table.controls.push_back(std::move(control));
}

/// Access makes a name of what is none: blanks and special characters become "_", a digit in front gets "Ctl".
std::string EventPrefixOf(std::string_view name) {
  std::string prefix;
  for (const char c : name) {
    const bool letter = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
                        static_cast<unsigned char>(c) >= 0x80;
    prefix += letter ? c : '_';
  }
  if (prefix[0] >= '0' && prefix[0] <= '9') prefix.insert(0, "Ctl");
  return prefix == name ? std::string() : prefix;
}

void EnterEventPrefixes(ModuleTable& table) {
  std::size_t count = 0;
  for (ControlTable& control : table.controls) {
    if (control.eventPrefix.empty()) control.eventPrefix = EventPrefixOf(control.name);
    count += control.eventPrefix.empty() ? 0 : 1;
  }
  if (count == 0) return;
  table.eventPrefixes.Reserve(count);
  const std::size_t first = 1 + table.code->declarations.size();
  for (std::size_t control = 0; control < table.controls.size(); ++control) {
    if (table.controls[control].eventPrefix.empty()) continue;
    table.eventPrefixes[HashOf(table.controls[control].eventPrefix)] = static_cast<Local>(first + control);
  }
}

/// "MSForms, CommandButton", as an Attribute line has it, as code would write it.
std::string ControlType(std::string_view type) {
  std::string name(type);
  if (const std::size_t comma = name.find(','); comma != std::string::npos) {
    const std::size_t next = name.find_first_not_of(", ", comma);
    name.replace(comma, std::min(next, name.size()) - comma, ".");
  }
  return name;
}

void CollectControls(ModuleTable& table, const ModuleSource& source) {
  HashTable known;
  const language::Module& code = *table.code;
  for (const language::Control& control : code.controls) {
    AddControl(table, known,
               {std::string(code.Text(control.nameText)), ControlType(code.Text(control.type)),
                std::string(code.Text(control.eventPrefix)), 0, control.index >= 0});
  }
  for (const ControlSource& control : source.controls) {
    AddControl(table, known, {control.name, control.type, {}, 0, control.array});
  }
  EnterEventPrefixes(table);
}

bool IsTrulyDeclared(const language::Module& code, const Declaration& declared) {
  constexpr std::uint32_t kNot = declaration_flag::kVariant | declaration_flag::kDead;
  if ((declared.flags & kNot) != 0 || declared.kind == DeclarationKind::kConditionalConstant) return false;
  if (declared.parent == kNone) return true;
  return (code.declarations[declared.parent].flags & kNot) == 0;
}

void ReadAttributes(ModuleTable& table) {
  const language::Module& code = *table.code;
  for (const language::Attribute& attribute : code.attributes) {
    if (attribute.declaration == kNone) continue;
    std::string_view value = code.Text(attribute.value);
    std::uint8_t& status = table.status[attribute.declaration];
    if (attribute.name == language::kWordVB_UserMemId || attribute.name == language::kWordVB_VarUserMemId) {
      if (value == "0") status |= status::kDefault;
      if (value == "-4") status |= status::kEnumerator;
    } else if (attribute.name == language::kWordVB_Invoke_Func) {
      // "k\n14": one character, a blank for no key. Other hosts put names there.
      if (value.size() < 2 || value[0] != '"' || value[1] == ' ' || value[1] == '\\') continue;
      const std::size_t length = text::ReadUtf8(value.substr(1)).length;
      if (length > 0 && value.substr(1 + length).starts_with("\\n")) status |= status::kShortcut;
    }
  }
}

bool IsValueName(const Declaration& declared) {
  switch (declared.kind) {
    case DeclarationKind::kVariable:
    case DeclarationKind::kConstant:
      return declared.routine == kNone;
    case DeclarationKind::kSub:
    case DeclarationKind::kFunction:
    case DeclarationKind::kPropertyGet:
    case DeclarationKind::kPropertyLet:
    case DeclarationKind::kPropertySet:
    case DeclarationKind::kDeclareSub:
    case DeclarationKind::kDeclareFunction:
    case DeclarationKind::kEnum:
    case DeclarationKind::kEnumMember:
      return true;
    default:
      return false;
  }
}

/// The key of what has a space of its own, where a name has one meaning only; 0 for none.
NameHash OwnKey(const language::Module& code, const Declaration& declared) {
  switch (declared.kind) {
    case DeclarationKind::kType:
    case DeclarationKind::kEnum:
      return Within(code.NameHash(declared.name), space::kTypes);
    case DeclarationKind::kEvent:
      return Within(code.NameHash(declared.name), space::kEvents);
    case DeclarationKind::kTypeMember:
    case DeclarationKind::kEnumMember:
      break;
    case DeclarationKind::kParameter:
      if (declared.parent == kNone || code.declarations[declared.parent].childCount <= kFewParameters) return 0;
      break;
    default:
      return 0;
  }
  return declared.parent == kNone ? 0 : Within(code.NameHash(declared.name), declared.parent + 1);
}

/// Enters all names of the module, the first of several equal ones first.
void EnterNames(ModuleTable& table) {
  const language::Module& code = *table.code;
  std::size_t names = table.controls.size();
  for (const Declaration& declared : code.declarations) {
    names += (IsValueName(declared) ? 1U : 0U) + (OwnKey(code, declared) != 0 ? 1U : 0U);
  }
  table.names.Reserve(names);
  table.next.assign(table.LocalCount(), kNone);
  const auto enterValue = [&](NameHash name, std::size_t local) {
    Index& first = table.names[name];
    table.next[local] = first;
    first = static_cast<Local>(local);
  };
  for (std::size_t control = table.controls.size(); control-- > 0;) {
    enterValue(table.controls[control].hash, 1 + code.declarations.size() + control);
  }
  for (std::size_t number = code.declarations.size(); number-- > 0;) {
    if ((table.status[number] & status::kNone) != 0) continue;
    const Declaration& declared = code.declarations[number];
    if (IsValueName(declared)) enterValue(code.NameHash(declared.name), number + 1);
    const NameHash key = OwnKey(code, declared);
    if (key == 0) continue;
    Index& known = table.names[key];
    const bool inactive = (declared.flags & declaration_flag::kInactive) != 0;
    if (known == kNone || !inactive || table.IsInactive(known)) known = static_cast<Local>(number + 1);
  }
}

}  // namespace

SymbolKind KindOf(const ModuleTable& table, Local local) noexcept {
  if (local == 0) return table.kind;
  if (table.IsControl(local)) return SymbolKind::kControl;
  switch (table.Declared(local).kind) {
    case DeclarationKind::kSub:
      return SymbolKind::kSub;
    case DeclarationKind::kFunction:
      return SymbolKind::kFunction;
    case DeclarationKind::kPropertyGet:
      return SymbolKind::kPropertyGet;
    case DeclarationKind::kPropertyLet:
      return SymbolKind::kPropertyLet;
    case DeclarationKind::kPropertySet:
      return SymbolKind::kPropertySet;
    case DeclarationKind::kDeclareSub:
    case DeclarationKind::kDeclareFunction:
      return SymbolKind::kDeclare;
    case DeclarationKind::kEvent:
      return SymbolKind::kEvent;
    case DeclarationKind::kVariable:
    case DeclarationKind::kReDim:
      return SymbolKind::kVariable;
    case DeclarationKind::kConstant:
    case DeclarationKind::kConditionalConstant:
      return SymbolKind::kConstant;
    case DeclarationKind::kParameter:
      return SymbolKind::kParameter;
    case DeclarationKind::kType:
      return SymbolKind::kType;
    case DeclarationKind::kTypeMember:
      return SymbolKind::kTypeMember;
    case DeclarationKind::kEnum:
      return SymbolKind::kEnum;
    case DeclarationKind::kEnumMember:
      return SymbolKind::kEnumMember;
    case DeclarationKind::kLabel:
      return SymbolKind::kLabel;
  }
  return SymbolKind::kVariable;
}

Visibility VisibilityOf(const ModuleTable& table, Local local) noexcept {
  if (!table.IsDeclaration(local)) return Visibility::kPublic;
  const Declaration& declared = table.Declared(local);
  if ((declared.kind == DeclarationKind::kEnumMember || declared.kind == DeclarationKind::kTypeMember) &&
      declared.parent != kNone) {
    return table.code->declarations[declared.parent].visibility;
  }
  return declared.visibility;
}

void DeclareModule(ModuleTable& table, const ModuleSource& source, const language::Module& code, Host host) {
  table.code = &code;
  table.bases = BasesOf(code.facts.kind, code, host);
  CollectControls(table, source);
  const std::size_t count = code.declarations.size();
  table.status.assign(count, 0);
  ReadAttributes(table);
  for (std::size_t number = 0; number < count; ++number) {
    const Declaration& declared = code.declarations[number];
    std::uint8_t& status = table.status[number];
    if (!IsTrulyDeclared(code, declared) || declared.kind == DeclarationKind::kReDim) status |= status::kNone;
    if ((status & status::kNone) != 0) continue;
    if ((status & status::kDefault) != 0 && table.defaultMember == kNone)
      table.defaultMember = static_cast<Local>(number + 1);
    if ((status & status::kEnumerator) != 0) table.enumerator = static_cast<Local>(number + 1);
  }
  EnterNames(table);
  if (!table.classLike) return;
  for (std::size_t use = 0; use < code.uses.size(); ++use) {
    if (code.uses[use].role == language::Role::kImplements &&
        (code.uses[use].flags & (language::use_flag::kQualifier | language::use_flag::kInactive)) == 0) {
      table.interfaceUses.push_back(static_cast<Index>(use));
    }
  }
}

Local ModuleTable::FindParameter(Local routine, NameHash name) const noexcept {
  const Declaration& header = Declared(routine);
  if (header.childCount > kFewParameters) return FindNested(name, routine);
  for (std::uint32_t child = 0; child < header.childCount; ++child) {
    const Index number = header.firstChild + child;
    if (code->NameHash(code->declarations[number].name) == name) return number + 1;
  }
  return language::kNone;
}

namespace {

/// Adds a module's group to what a project shows under a name.
void Export(Tables& tables, HashTable& names, NameHash name, Exported group) {
  Index& first = names.Grow(name);
  group.next = first;
  first = static_cast<Index>(tables.exports.size());
  tables.exports.push_back(group);
}

bool IsShown(const ModuleTable& table, Local local) { return VisibilityOf(table, local) != Visibility::kPrivate; }

bool IsOfClass(SymbolKind kind) {
  return IsRoutine(kind) || kind == SymbolKind::kVariable || kind == SymbolKind::kControl;
}

/// What a class-like module shows without an object: its enums.
bool IsOfProject(SymbolKind kind, bool classLike) {
  if (classLike) return kind == SymbolKind::kEnum || kind == SymbolKind::kEnumMember;
  return kind != SymbolKind::kControl;
}

}  // namespace

void DeclareProjects(Tables& tables) {
  const std::size_t count = tables.modules.size();
  tables.nextModule.assign(count, kNone);
  tables.rawBases.assign(count + 1, 0);
  for (std::size_t number = 0; number < count; ++number) {
    tables.rawBases[number + 1] = tables.rawBases[number] + static_cast<Index>(tables.modules[number].LocalCount());
  }
  // From the last module to the first: lists then begin with the first one.
  for (std::size_t number = count; number-- > 0;) {
    const ModuleTable& table = tables.modules[number];
    const auto module = static_cast<Index>(number);
    ProjectTable& project = tables.projects[table.project];
    Index& first = project.moduleNames.Grow(table.nameHash);
    tables.nextModule[number] = first;
    first = module;
    table.names.ForEach([&](NameHash key, Local head) {
      bool toProject = false, toLate = false, toMacros = false, active = false;
      if (key != table.NameOf(head)) {
        const language::DeclarationKind kind = table.Declared(head).kind;
        if ((kind == DeclarationKind::kType || kind == DeclarationKind::kEnum) && IsShown(table, head)) {
          Export(tables, project.exportTypes, table.NameOf(head), {module, head, kNone, !table.IsInactive(head)});
        }
        return;
      }
      for (Local local = head; local != kNone; local = table.next[local]) {
        const SymbolKind kind = KindOf(table, local);
        active = active || !table.IsInactive(local);
        toMacros = toMacros || kind == SymbolKind::kSub || kind == SymbolKind::kFunction;
        if (!IsShown(table, local)) continue;
        toProject = toProject || IsOfProject(kind, table.classLike);
        toLate = toLate || (table.classLike && IsOfClass(kind));
      }
      if (toProject) Export(tables, project.exportNames, key, {module, head, kNone, active});
      if (toMacros) Export(tables, project.macroNames, key, {module, head, kNone, active});
      if (toLate) Export(tables, project.memberNames, key, {module, head, kNone, active});
      if (toLate && table.kind == SymbolKind::kDocument) {
        Export(tables, project.documentNames, key, {module, head, kNone, active});
      }
    });
  }
}

}  // namespace quillmate::symbols
