#pragma once

#include <cstdint>
#include <vector>

#include <quillmate/symbols/kinds.h>

#include "meanings_p.h"

/// What binding one module yields, before all of it is put together.
namespace quillmate::symbols {

/// Bits of StoredReference::flags.
namespace reference_flag {
inline constexpr std::uint16_t kDeclaration = 1;  ///< `place` is a declaration: a header's name; else a use
inline constexpr std::uint16_t kString = 2;       ///< `place` is a StringUse
inline constexpr std::uint16_t kSet = 4;          ///< `target` is the number of a set of symbols
inline constexpr std::uint16_t kImplicit = 8;     ///< a default member without its name
inline constexpr std::uint16_t kMayWrite = 16;
inline constexpr std::uint16_t kResult = 32;       ///< the routine's own result, read or written like a variable
inline constexpr std::uint16_t kTypeUse = 64;      ///< a module as a type or a qualifier
inline constexpr std::uint16_t kPending = 128;     ///< `target` is a name that may declare an implicit variable
inline constexpr std::uint16_t kUndeclared = 256;  ///< `target` is the number of an implicit variable of the module
}  // namespace reference_flag

/// A name of a module that means something of the sources. While a module is bound `target` is a raw number:
/// Binder::Raw; afterwards a SymbolId.
struct StoredReference {
  Index place;
  Index target;
  Form form;
  Certainty certainty;
  std::uint16_t flags;
};
static_assert(sizeof(StoredReference) == 12);

/// Several things that a name may mean. Those of equal requests are worked out once for all modules.
enum class SetKind : std::uint8_t {
  kMembers,           ///< public members of class-like modules by name: late bound
  kDocumentMembers,   ///< those of sheets and documents
  kMemberParameters,  ///< parameters of those
  kExports,           ///< public names of several standard modules
  kExportParameters,
  kExportedTypes,
  kExportedRoutines,  ///< for AddressOf
  kGroup,             ///< several of one name in `module`
  kGroupParameters,
  kModules,  ///< modules of one name in `project`
  kMacros,   ///< what a host runs under a name; `module` goes before others
};

struct SetRequest {
  SetKind kind;
  Form form;      ///< kRead, kLet, kSet
  bool outside;   ///< kGroup: private ones don't count
  Index project;  ///< whose names
  Index module;   ///< kGroup
  NameHash name;  ///< kGroup: the first local number
  NameHash argument;

  bool operator==(const SetRequest&) const = default;
  NameHash Key() const noexcept {
    const std::uint64_t small = static_cast<std::uint64_t>(kind) | static_cast<std::uint64_t>(form) << 8U |
                                (outside ? std::uint64_t{1} << 16U : 0U);
    return Within(Within(name ^ (argument * 3), project), Within(module, small));
  }
};

/// A variable that nothing declares: its first use does.
struct ImplicitVariable {
  Index use;
  Index routine;
  Form form;  ///< of the first use
};

enum class HandlerKind : std::uint8_t {
  kInterface,         ///< implements a member of a class of the sources
  kLibraryInterface,  ///< ... of something else
  kEvent,             ///< handles an event of a class of the sources, of a variable or a control
  kLibraryEvent,      ///< ... of something else
  kHostObject,        ///< Form_Load, Class_Initialize ...
};

/// A routine that is called through its name.
struct Handler {
  Index declaration;
  Index module = kNone;  ///< kInterface, kEvent: where the member or event is declared
  Local local = kNone;   ///< ... and its local number
  Local object = kNone;  ///< the control or variable in the own module
  std::uint32_t prefix;  ///< length of the part before "_" in the folded name
  HandlerKind kind;
};

/// A literal that may name a routine.
struct TextMention {
  NameHash name;
  Index string;
  Index routine;
};

/// A Type whose values are handed over as a whole to what may look at all of its members.
struct WholeRecord {
  Index module;
  Local local;
};

struct ModuleReferences {
  std::vector<StoredReference> references;
  std::vector<Index>
      routineEnds;  ///< by routine: after its last reference; those between two routines go with the later
  std::vector<SetRequest> sets;
  std::vector<ImplicitVariable> implicits;
  std::vector<Index> implicitSymbols;  ///< their symbols, once these have numbers
  std::vector<Index> redims;           ///< declarations of kind kReDim that declare
  std::vector<Handler> handlers;
  std::vector<TextMention> mentions;
  std::uint32_t callsByName = 0;  ///< of members whose names the code does not tell
  std::vector<WholeRecord> records;
};

}  // namespace quillmate::symbols
