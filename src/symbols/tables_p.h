#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/language/module.h>
#include <quillmate/symbols/reference_index.h>

#include "hash_table_p.h"
#include "types_p.h"

/// What each module declares and what projects show of it: everything that binding looks names up in.
///
/// Inside a module things have local numbers: 0 the module itself, then its declarations (number + 1), then its
/// controls.
namespace quillmate::symbols {

using Local = Index;

/// Spaces of names beside the ordinary one, as owners for Within().
namespace space {
inline constexpr std::uint64_t kTypes = std::uint64_t{1} << 40;
inline constexpr std::uint64_t kEvents = std::uint64_t{2} << 40;
}  // namespace space

/// Parameters of longer lists have names of their own in the module's table.
inline constexpr std::uint32_t kFewParameters = 16;

struct ControlTable {
  std::string name;
  std::string type;
  std::string eventPrefix;  ///< what its handlers' names begin with, where that is not its name
  NameHash hash = 0;
  bool array = false;
};

/// Bits of ModuleTable::status, one byte for each declaration.
namespace status {
inline constexpr std::uint8_t kNone = 1;        ///< no symbol: doubled headers, their parameters, #Const, dead code
inline constexpr std::uint8_t kDeclares = 2;    ///< a ReDim that declares (found when its routine is bound)
inline constexpr std::uint8_t kDefault = 4;     ///< VB_UserMemId 0
inline constexpr std::uint8_t kEnumerator = 8;  ///< VB_UserMemId -4
inline constexpr std::uint8_t kShortcut = 16;   ///< a key runs it
}  // namespace status

struct ModuleTable {
  const language::Module* code = nullptr;
  Index project = 0;
  SymbolKind kind = SymbolKind::kModule;
  bool classLike = false;    ///< members hang on objects, not on the module
  bool predeclared = false;  ///< its name is an object
  bool exported = true;      ///< other projects see it
  std::uint16_t bases = 0;   ///< library::base
  NameHash nameHash = 0;
  std::vector<ControlTable> controls;
  HashTable eventPrefixes;           ///< to the local numbers of those controls that have one
  std::vector<std::uint8_t> status;  ///< by declaration
  std::vector<TypeRef> types;        ///< by local number
  std::vector<Local> next;           ///< by local number: the next one of the same name and space
  HashTable names;                   ///< to the first local number
  Local defaultMember = language::kNone;
  Local enumerator = language::kNone;
  std::vector<Index> interfaceUses;  ///< uses after Implements, last names
  std::vector<Index> interfaces;     ///< ... the modules that they mean, kNone for others
  HashTable interfaceNames;          ///< to the numbers of both

  std::size_t LocalCount() const noexcept { return 1 + code->declarations.size() + controls.size(); }
  bool IsDeclaration(Local local) const noexcept { return local - 1 < code->declarations.size(); }
  bool IsControl(Local local) const noexcept { return local > code->declarations.size(); }
  const language::Declaration& Declared(Local local) const noexcept { return code->declarations[local - 1]; }
  const ControlTable& ControlOf(Local local) const noexcept { return controls[local - 1 - code->declarations.size()]; }
  NameHash NameOf(Local local) const noexcept {
    return IsControl(local) ? ControlOf(local).hash : code->NameHash(Declared(local).name);
  }
  bool IsInactive(Local local) const noexcept {
    return IsDeclaration(local) && (Declared(local).flags & language::declaration_flag::kInactive) != 0;
  }
  Local Find(NameHash name) const noexcept { return names.Find(name); }
  Local FindType(NameHash name) const noexcept { return names.Find(Within(name, space::kTypes)); }
  Local FindEvent(NameHash name) const noexcept { return names.Find(Within(name, space::kEvents)); }
  /// Member of a type or an enum; parameter of something that has many.
  Local FindNested(NameHash name, Local owner) const noexcept { return names.Find(Within(name, owner)); }
  /// What events are handled of under that name: a value's or a control's group.
  Local FindEventObject(NameHash prefix) const noexcept {
    const Local aliased = eventPrefixes.Find(prefix);
    return aliased != language::kNone ? aliased : Find(prefix);
  }
  Local FindParameter(Local routine, NameHash name) const noexcept;
};

/// The kind of a symbol from its local number.
SymbolKind KindOf(const ModuleTable& table, Local local) noexcept;
/// Public, Global or (inside its project) Friend; members of an enum as their enum.
Visibility VisibilityOf(const ModuleTable& table, Local local) noexcept;

/// One module's group of equal names, seen from outside.
struct Exported {
  Index module;
  Local first;
  Index next;   ///< into the same list
  bool active;  ///< something of it counts
};

struct ProjectTable {
  NameHash nameHash = 0;
  bool nameAssumed = false;  ///< see ProjectSource
  std::uint8_t hosts = 0;    ///< library bits
  Host host = Host::kUnknown;
  bool hostKnown = false;  ///< and no mere assumption
  bool outsideKnown = false;
  std::string fileName;  ///< of a book; empty for folders and VB projects
  std::vector<Index> references;

  // Each project has tables of its own: a module's names are looked up in few of many, which stay in the cache. All but
  // the first lead to Tables::exports.
  HashTable moduleNames;    ///< first module
  HashTable exportNames;    ///< public names of standard modules, public enums
  HashTable exportTypes;    ///< public types and enums
  HashTable memberNames;    ///< public members of class-like modules, controls
  HashTable documentNames;  ///< the same of documents alone
  HashTable macroNames;     ///< Subs and Functions of all modules, private ones too
};

/// Everything together; filled step by step, then only read.
struct Tables {
  std::vector<ProjectTable> projects;
  std::vector<ModuleTable> modules;
  std::vector<Index> nextModule;  ///< the next one of that name and project
  std::vector<Exported> exports;  ///< of all projects
  std::vector<Index> rawBases;    ///< by module: what turns its local numbers into numbers of all modules

  Index FindModule(Index project, NameHash name) const noexcept { return projects[project].moduleNames.Find(name); }
};

/// Step 1, for each module on its own: names, controls, attributes.
void DeclareModule(ModuleTable& table, const ModuleSource& source, const language::Module& code, Host host);
/// Step 2: what modules show each other.
void DeclareProjects(Tables& tables);

}  // namespace quillmate::symbols
