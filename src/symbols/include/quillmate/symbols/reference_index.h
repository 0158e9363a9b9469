#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/language/module.h>
#include <quillmate/language/parse.h>
#include <quillmate/symbols/kinds.h>
#include <quillmate/symbols/sources.h>

/// All modules together: what every name means, everywhere. The one answer to "who uses X".
///
/// Built once, then immutable: any number of threads may ask. The answers are the same for every number of threads that
/// built it. Lines are physical lines of a module's text, 1-based, unless a name says `editorLine`; columns count
/// characters, 1-based; offsets and lengths count bytes of the module's UTF-8 text.
namespace quillmate::symbols {

/// Number of a symbol: 0 to SymbolCount() - 1, in the order in which everything lists them: by module, in a module
/// itself, its controls, then its declarations by place.
using SymbolId = Index;

struct ProjectInfo {
  std::string name;  ///< UTF-8
  std::string file;
  Host host = Host::kUnknown;
  bool hostAssumed = false;  ///< see ProjectSource
  language::Dialect dialect = language::Dialect::kVba;
  std::vector<language::ConditionalConstant> constants;
  std::vector<std::string> libraries;
  std::vector<DocumentProperty> properties;
};

struct ModuleInfo {
  std::string name;
  std::string file;
  std::string outsideName;
  Index project = 0;
  SymbolId symbol = kNone;  ///< of the module; those of its contents follow up to `endSymbol`
  SymbolId endSymbol = kNone;
  language::ModuleKind kind = language::ModuleKind::kStandard;
  bool predeclared = false;
  bool exposed = false;
  bool controlsKnown = false;
  bool kindKnown = false;  ///< told by its source or its header; else only the likeliest one
  bool linesOfFile = false;
};

/// Bits of Symbol::flags.
namespace symbol_flag {
inline constexpr std::uint16_t kImplicit = 1;       ///< declared by its first use
inline constexpr std::uint16_t kReDim = 2;          ///< declared by a ReDim
inline constexpr std::uint16_t kInactive = 4;       ///< in a branch that conditional compilation leaves out
inline constexpr std::uint16_t kDefaultMember = 8;  ///< VB_UserMemId 0
inline constexpr std::uint16_t kEnumerator = 16;    ///< VB_UserMemId -4
inline constexpr std::uint16_t kControlArray = 32;
inline constexpr std::uint16_t kLineNumber = 64;     ///< a label that is a number
inline constexpr std::uint16_t kFirstWritten = 128;  ///< implicit: its first use writes it
}  // namespace symbol_flag

/// One declaration. Modules and controls have no place: `line` and `column` are 0.
struct Symbol {
  SymbolKind kind;
  Visibility visibility;
  std::uint16_t flags;  ///< symbol_flag
  Index module;
  SymbolId parent;    ///< enclosing routine, Declare, event, type or enum, else kNone
  Index declaration;  ///< into Module::declarations; kNone for modules, controls and implicit variables
  Index routine;      ///< routines: into Module::routines; what is in one: that one
  std::uint32_t offset, line, column, length;  ///< of the name as written
};

struct Reference {
  Index module;
  Index routine;       ///< around it, into Module::routines; kNone outside of all
  SymbolId inRoutine;  ///< the symbol of that routine
  std::uint32_t offset, line, column, length;
  Use use;
  Certainty certainty;
  bool implicit;         ///< a default member, used without its name
  bool mayWrite;         ///< handed over by reference: perhaps written too
  Index candidates = 1;  ///< so many symbols may be meant, this one included
};

/// References to a symbol in the order of their places.
struct ReferenceList {
  std::vector<Reference> references;
  std::size_t omitted = 0;  ///< so many uses were left out
};

/// A name in the code and what it means.
struct Occurrence {
  std::uint32_t offset, line, column, length;
  bool declares = false;  ///< the name of the declaration itself; then `targets` is that symbol
  Use use = Use::kRead;
  Certainty certainty = Certainty::kSure;
  std::vector<SymbolId> targets;  ///< one when sure; implicit uses of default members are left out
};

/// What one name in the code means.
struct BoundUse {
  SymbolId target = kNone;  ///< kNone: nothing of the sources, or one of several things
  Use use = Use::kRead;
  Certainty certainty = Certainty::kSure;  ///< kAmbiguous or kByName without a target: one of several
  bool mayWrite = false;                   ///< handed over by reference
  bool result = false;                     ///< the routine's own result, read or written like a variable
};

/// References by certainty and by use; a use that means one of several counts for each.
struct ReferenceCounts {
  std::uint64_t symbols[kSymbolKindCount] = {};     ///< by SymbolKind
  std::uint64_t uses[kUseCount] = {};               ///< by Use
  std::uint64_t certainties[kCertaintyCount] = {};  ///< by Certainty
};

struct BuildOptions {
  /// 0: as many as the machine has cores. Where none can be started the caller's thread does all.
  unsigned threads = 0;
  /// Set from another thread: Build ends soon and returns an empty index.
  const std::atomic<bool>* cancelled = nullptr;
  /// Counts up to twice the number of modules.
  std::atomic<std::size_t>* progress = nullptr;
};

class ReferenceIndex {
 public:
  /// Reads and binds everything. Never fails: what is no code is no symbol.
  static ReferenceIndex Build(Sources sources, const BuildOptions& options = {});

  ReferenceIndex();
  ~ReferenceIndex();
  ReferenceIndex(ReferenceIndex&&) noexcept;
  ReferenceIndex& operator=(ReferenceIndex&&) noexcept;

  std::span<const ProjectInfo> Projects() const noexcept;
  std::span<const ModuleInfo> Modules() const noexcept;
  /// What the sources hold beside the modules and could not be read.
  std::span<const Omission> Omissions() const noexcept;
  /// The front end's records of a module, text included.
  const language::Module& Code(Index module) const noexcept;

  /// Parses a module again, with its tokens and its statements. All other records are those of Code, number by number.
  void ParseAgain(Index module, language::Workspace& workspace, language::Module& code) const;
  /// What each use of a module means: one for each of Code(module).uses. Default members that are used without their
  /// names are left out.
  void BindUses(Index module, std::vector<BoundUse>& uses) const;

  /// Modules by name, without regard to case: "Modul" or "Projekt.Modul". More than one when several projects have it.
  std::vector<Index> FindModules(std::string_view name) const;

  std::size_t SymbolCount() const noexcept;
  const Symbol& SymbolAt(SymbolId symbol) const noexcept;
  /// As its declaration writes it, without brackets and suffix.
  std::string_view Name(SymbolId symbol) const noexcept;
  /// "As declared", a suffix as the name of its type; empty when none is told. Controls: the type of their source.
  std::string DeclaredType(SymbolId symbol) const;
  /// Routines, types, enums: first and last line; else 0, 0.
  std::pair<std::uint32_t, std::uint32_t> Extent(SymbolId symbol) const noexcept;
  /// Symbols of a module with a name, regardless of case.
  std::vector<SymbolId> FindSymbols(Index module, std::string_view name) const;
  /// The symbol of a routine, by its number in the module.
  SymbolId RoutineSymbol(Index module, Index routine) const noexcept;
  /// The symbol of a declaration of the front end. A doubled header under #If, its parameters and a ReDim of something
  /// known have none of their own: kNone.
  SymbolId DeclarationSymbol(Index module, Index declaration) const noexcept;

  /// Line as the host's editor counts it, 0 for one that it hides; line of the file, 0 when it came from none.
  std::uint32_t EditorLine(Index module, std::uint32_t line) const noexcept;
  std::uint32_t SourceLine(Index module, std::uint32_t line) const noexcept;

  /// Every use, by module, then place. The declaration itself is none.
  std::vector<Reference> ReferencesTo(SymbolId symbol) const;
  /// The same, so that the lists of all symbols together stay linear in the code: a use that may mean more than `most`
  /// symbols is listed with the first `most` of them only.
  ReferenceList ListReferences(SymbolId symbol, std::size_t most) const;
  /// The name that covers a place: a declaration's or a use. Nothing where there is no name of the project.
  std::optional<Occurrence> NameAt(Index module, std::uint32_t line, std::uint32_t column) const;
  /// Every name of a module that means something, by place; declarations included.
  std::vector<Occurrence> Occurrences(Index module) const;
  /// Implementations of an interface's member, handlers of an event.
  std::vector<SymbolId> ImplementationsOf(SymbolId symbol) const;
  /// The interface's member that a routine implements, the event (of a class of the sources) that it handles.
  std::optional<SymbolId> ImplementedBy(SymbolId routine) const;
  /// What outside the code calls a routine, in German words: places of bindings, "Ereignis Click von cmdOk",
  /// "Tastenkürzel Strg+K". Empty when nothing is known.
  std::vector<std::string> HostPlaces(SymbolId routine) const;

  ReferenceCounts Count() const;

  struct Data;
  const Data& data() const noexcept { return *data_; }

 private:
  explicit ReferenceIndex(std::unique_ptr<Data> data);
  std::unique_ptr<Data> data_;
};

}  // namespace quillmate::symbols
