#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "references_p.h"

/// Binds the names of one module. Reads the tables of all modules, writes nothing but its result.
namespace quillmate::symbols {

/// Steps between declaring and binding: declared types, then interfaces.
void ResolveTypes(Tables& tables, Index module);

/// Names of types that code may declare where the language lacks them.
constexpr bool MayBeBuiltin(language::NameId name) noexcept {
  return name == language::kWordObject || name == language::kWordLongPtr || name == language::kWordLongLong;
}

/// What a use turned out to be, for those that hang on it.
struct Bound {
  enum class State : std::uint8_t {
    kUnknown,
    kOwn,      ///< `module`, `local`: something of the sources
    kSeveral,  ///< `local`: number of a set of the module
    kLibrary,
    kLate,  ///< like kSeveral, or kNone: member of an object that nothing tells
  };
  TypeRef type;
  Index module = kNone;
  Local local = kNone;
  State state = State::kUnknown;
};

/// Memory of one worker.
struct Scratch {
  std::vector<NameHash> wordHashes;
  std::vector<Meaning> values, types;  ///< by NameId
  std::vector<Bound> bound;            ///< by use
  std::vector<std::uint32_t> localStamps, labelStamps, pendingStamps;
  std::vector<Index> locals, labels, pendings;
  std::vector<Local> picked;
  /// What was picked from long groups: to numbers of `picks`.
  HashTable pickNumbers;
  std::vector<Local> picks;  ///< kNone: several
};

constexpr bool IsFunction(language::DeclarationKind kind) noexcept {
  return kind == language::DeclarationKind::kFunction || kind == language::DeclarationKind::kPropertyGet;
}

class Binder {
 public:
  Binder(const Tables& tables, Index module, Scratch& scratch, ModuleReferences& result);
  void Run();

 private:
  using NameUse = language::NameUse;

  struct Pending {
    Index use = kNone;  ///< the first one that may declare
    Form form = Form::kRead;
    bool written = false;
    bool value = false;     ///< used other than as the left part of a chain
    bool constant = false;  ///< looks like a constant of a library
    bool doubtful = false;  ///< a host that is not known to be this one has the name
    Index implicit = kNone;
  };

  // routines (binder.cpp)
  void EnterRoutine(Index routine);
  void LeaveRoutine();
  void EnterLocal(Index declaration);
  void EnterReDims(const language::Routine& routine);
  bool MeansVariable(const NameUse& use);
  void SettlePendings();

  // uses (binder.cpp)
  void BindUse(Index number);
  void BindValue(Index number);
  void BindSimple(Index number);
  bool IsStatementWord(const NameUse& use);
  bool BindLocal(Index number);
  bool BindResult(Index number);
  void BindMeaning(Index number, const Meaning& meaning);
  void BindModuleName(Index number, Index module);
  void BindLibrary(Index number, library::Result result);
  bool BindAssumedProject(Index number);
  void BindUnknown(Index number, const Meaning& meaning);
  void BindType(Index number);
  void BindAddress(Index number);
  void BindEvent(Index number);
  void BindLabel(Index number);
  void BindNamedArgument(Index number);

  // members (binder_members.cpp)
  void BindMember(Index number);
  std::pair<Index, Local> FindControl(Index collection, NameHash name) const;
  void BindKey(Index number);
  void BindClassMember(Index number, Index module);
  void BindProjectMember(Index number, Index project);
  void BindLate(Index number);
  void BindLibraryMember(Index number);
  Index EmitLate(Index number, SetKind kind);

  // targets (binder_targets.cpp)
  void BindGroup(Index number, Index module, Local first, bool routines = false);
  void BindTo(Index number, Index module, Local local, bool inactive, std::uint16_t flags = 0);
  void BindSeveral(Index number, const SetRequest& request);
  TypeRef Follow(Index number, TypeRef type, unsigned lists, Form last);
  TypeRef CallDefault(Index place, Index module, Local member, Form form);
  bool MayWrite(const NameUse& use) const;
  Local PickOne(const ModuleTable& table, Index module, Local first, Form form, bool routines);
  bool IsGivenByValue(const NameUse& use) const;
  void NoteRecord(const NameUse& use, const TypeRef& type);

  // headers and strings (binder_headers.cpp)
  void BindHeader(Index routine);
  bool BindInterfaceMember(Index declaration, const std::string& prefix, NameHash member);
  bool BindHandler(Index declaration, const std::string& prefix, NameHash member);
  void BindString(Index string);
  void BindMacroName(Index string, std::string_view text);
  void BindBracketed(Index number);
  void MentionNames(Index string, std::string_view literal);

  // emitting (binder_targets.cpp)
  void Emit(Index place, Index target, Form form, Certainty certainty, std::uint16_t flags);
  Index SetNumber(const SetRequest& request);
  Index Raw(Index module, Local local) const noexcept { return tables_.rawBases[module] + local; }

  NameHash HashOf(language::NameId name) const noexcept {
    return name < language::kWordCount ? scratch_.wordHashes[name] : code_.names[name - language::kWordCount].hash;
  }
  bool IsInactive(const NameUse& use) const noexcept { return (use.flags & language::use_flag::kInactive) != 0; }
  const NameUse& Use(Index number) const noexcept { return code_.uses[number]; }
  const Meaning& ValueOf(language::NameId name);
  static Form FormOf(language::Role role) noexcept;

  const Tables& tables_;
  const Index module_;
  const ModuleTable& table_;
  const language::Module& code_;
  Scratch& scratch_;
  ModuleReferences& result_;
  const Index project_;

  Index routine_ = kNone;
  Index nextRoutine_ = 0;
  Index nextString_ = 0;
  std::uint32_t stamp_ = 0;
  std::size_t routineFirst_ = 0;  ///< its first reference
  std::vector<Pending> pendings_;
  HashTable setNumbers_;
  Index lastArgumentName_ = kNone;
};

}  // namespace quillmate::symbols
