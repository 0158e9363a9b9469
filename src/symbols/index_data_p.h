#pragma once

#include <string>
#include <utility>
#include <vector>

#include <quillmate/symbols/reference_index.h>

#include "references_p.h"

namespace quillmate::symbols {

/// A binding outside the code that calls a routine.
struct HostCall {
  SymbolId routine;
  bool indirect;  ///< something uses the routine, but not this
  std::string place;

  auto operator<=>(const HostCall&) const = default;
};

/// A literal that may name routines: `key` is Within(name, project).
struct Mention {
  NameHash key;
  Index module;
  Index string;
  Index routine;
};

/// A name in dead code: `key` is Within(name, project).
struct DeadMention {
  NameHash key;
  Index module;
  Index routine;
  std::uint32_t line;

  auto operator<=>(const DeadMention&) const = default;
};

/// Numbers in rows: row n is numbers[offsets[n]] to numbers[offsets[n + 1]].
struct Rows {
  std::vector<Index> offsets;
  std::vector<Index> numbers;

  std::span<const Index> Row(Index row) const noexcept {
    if (row + 1 >= offsets.size()) return {};
    return std::span(numbers).subspan(offsets[row], offsets[row + 1] - offsets[row]);
  }
};

struct ReferenceIndex::Data {
  std::vector<ProjectInfo> projects;
  std::vector<ModuleInfo> modules;
  std::vector<Omission> omissions;
  std::vector<std::string> texts;  ///< never moved: the modules of the front end refer to them
  std::vector<language::Module> code;
  Tables tables;

  std::vector<Symbol> symbols;
  std::vector<SymbolId> rawSymbols;          ///< by raw number; kNone for what is no symbol
  std::vector<ModuleReferences> references;  ///< by module; targets are symbols or sets
  std::vector<Index> referenceBases;         ///< by module: number of its first reference among all
  Rows sets;                                 ///< the symbols of a set
  Rows memberships;                          ///< the sets of a symbol
  Rows uses;                                 ///< the references to a symbol; to set n: row symbols.size() + n

  /// Handlers sorted by routine, and the same as pairs of target and routine, sorted.
  struct Handled {
    SymbolId routine;
    SymbolId target;  ///< event or member, kNone for a library's
    SymbolId object;  ///< control or variable, else kNone
    std::uint32_t prefix;
    HandlerKind kind;
  };
  std::vector<Handled> handlers;
  std::vector<std::pair<SymbolId, SymbolId>> handledBy;
  std::vector<HostCall> hostCalls;  ///< sorted by routine
  /// Buttons and the like of a project's own routines that it does not have.
  std::vector<ExternalBinding> looseBindings;
  std::vector<Mention> mentions;          ///< sorted by key
  std::vector<DeadMention> deadMentions;  ///< sorted
  std::vector<bool> callsByName;          ///< by project: calls members whose names the code does not tell
  std::vector<bool> wholeTypes;           ///< by symbol: types whose members something outside may look at
  std::vector<bool> addressTaken;         ///< by symbol: routines that AddressOf hands out
  std::vector<bool> eventObjects;         ///< by symbol: variables and controls whose events are handled

  SymbolId SymbolOf(Index module, Local local) const noexcept { return rawSymbols[tables.rawBases[module] + local]; }
  const Handled* HandlerOf(SymbolId routine) const noexcept;
  Index ModuleOfReference(Index number) const noexcept;
  Reference At(Index number, SymbolId target) const;
  /// Where a reference is.
  void Place(Index module, const StoredReference& stored, Reference& reference) const;
  Use UseOf(const StoredReference& stored, SymbolId target) const noexcept;
  /// Calls visit(number) for every reference that means the symbol, in no order.
  template <typename Visit>
  void ForEachReference(SymbolId symbol, Visit visit) const {
    for (const Index number : uses.Row(symbol)) visit(number);
    for (const Index set : memberships.Row(symbol)) {
      for (const Index number : uses.Row(static_cast<Index>(symbols.size()) + set)) visit(number);
    }
  }
  /// The same until `visit` gives true; whether it did.
  template <typename Visit>
  bool AnyReference(SymbolId symbol, Visit visit) const {
    for (const Index number : uses.Row(symbol)) {
      if (visit(number)) return true;
    }
    for (const Index set : memberships.Row(symbol)) {
      for (const Index number : uses.Row(static_cast<Index>(symbols.size()) + set)) {
        if (visit(number)) return true;
      }
    }
    return false;
  }
  const StoredReference& Stored(Index number, Index module) const noexcept {
    return references[module].references[number - referenceBases[module]];
  }
};

/// The numbers of a table of rows from pairs (row, number) in the order of the numbers.
class RowsBuilder {
 public:
  explicit RowsBuilder(Rows& rows, std::size_t count) : rows_(rows) { rows_.offsets.assign(count + 1, 0); }
  void Count(Index row) noexcept { ++rows_.offsets[row + 1]; }
  void Start() {
    for (std::size_t row = 1; row < rows_.offsets.size(); ++row) rows_.offsets[row] += rows_.offsets[row - 1];
    rows_.numbers.resize(rows_.offsets.back());
    next_.assign(rows_.offsets.begin(), rows_.offsets.end() - 1);
  }
  void Add(Index row, Index number) noexcept { rows_.numbers[next_[row]++] = number; }

 private:
  Rows& rows_;
  std::vector<Index> next_;
};

/// The steps of Build after the binding of the modules.
void NumberSymbols(ReferenceIndex::Data& data);
void JoinReferences(ReferenceIndex::Data& data, unsigned workers);
void JoinHandlers(ReferenceIndex::Data& data);
void JoinBindings(ReferenceIndex::Data& data, const std::vector<ExternalBinding>& bindings);

void JoinRecords(ReferenceIndex::Data& data);

/// The name of a routine cut after its handler's prefix: "cmdOk" and "Click".
std::pair<std::string_view, std::string_view> HandlerParts(const ReferenceIndex& index,
                                                           const ReferenceIndex::Data::Handled& handler);
/// "Ereignis Click von cmdOk": who calls a handler that the host or a library calls.
std::string HandlerPlace(const ReferenceIndex& index, const ReferenceIndex::Data::Handled& handler);

}  // namespace quillmate::symbols
