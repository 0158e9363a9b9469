#include <algorithm>
#include <limits>
#include <span>

#include <quillmate/symbols/reference_index.h>
#include <quillmate/text/utf8.h>

#include "index_data_p.h"

/// Who uses a symbol, what a place means, and how many uses there are.
namespace quillmate::symbols {
namespace {

using Data = ReferenceIndex::Data;

/// Byte offset of a column in a text, or its length after the end.
std::size_t OffsetOfColumn(std::string_view line, std::uint32_t column) noexcept {
  std::size_t offset = 0;
  for (std::uint32_t at = 1; at < column && offset < line.size(); ++at) {
    offset += std::max<std::size_t>(1, text::ReadUtf8(line.substr(offset)).length);
  }
  return offset;
}

bool SamePlace(const Reference& a, const Reference& b) {
  return a.module == b.module && a.offset == b.offset && a.use == b.use && a.certainty == b.certainty &&
         a.implicit == b.implicit;
}

bool Before(const Reference& a, const Reference& b) {
  if (a.module != b.module) return a.module < b.module;
  if (a.offset != b.offset) return a.offset < b.offset;
  if (a.implicit != b.implicit) return b.implicit;
  return a.use < b.use;
}

void AddTargets(Occurrence& occurrence, const std::vector<SymbolId>& targets) {
  occurrence.targets.insert(occurrence.targets.end(), targets.begin(), targets.end());
  std::sort(occurrence.targets.begin(), occurrence.targets.end());
  occurrence.targets.erase(std::unique(occurrence.targets.begin(), occurrence.targets.end()), occurrence.targets.end());
}

Occurrence OccurrenceOf(const Data& data, Index module, const StoredReference& stored) {
  Reference place{};
  data.Place(module, stored, place);
  Occurrence occurrence{place.offset, place.line, place.column, place.length, false, Use::kRead, stored.certainty, {}};
  if ((stored.flags & reference_flag::kSet) != 0) {
    const auto members = data.sets.Row(stored.target);
    occurrence.targets.assign(members.begin(), members.end());
  } else {
    occurrence.targets.push_back(stored.target);
  }
  if (!occurrence.targets.empty()) occurrence.use = data.UseOf(stored, occurrence.targets.front());
  return occurrence;
}

}  // namespace

std::vector<Reference> ReferenceIndex::ReferencesTo(SymbolId symbol) const {
  return ListReferences(symbol, std::numeric_limits<std::size_t>::max()).references;
}

ReferenceList ReferenceIndex::ListReferences(SymbolId symbol, std::size_t most) const {
  ReferenceList list;
  const auto add = [&](std::span<const Index> numbers, std::size_t candidates) {
    for (const Index number : numbers) {
      list.references.push_back(data_->At(number, symbol));
      list.references.back().candidates = static_cast<Index>(candidates);
    }
  };
  add(data_->uses.Row(symbol), 1);
  for (const Index set : data_->memberships.Row(symbol)) {
    const std::span<const Index> members = data_->sets.Row(set);
    const std::span<const Index> numbers = data_->uses.Row(static_cast<Index>(data_->symbols.size()) + set);
    const std::span<const Index> first = members.first(std::min(members.size(), most));
    if (first.size() < members.size() && std::find(first.begin(), first.end(), symbol) == first.end()) {
      list.omitted += numbers.size();
    } else {
      add(numbers, members.size());
    }
  }
  std::sort(list.references.begin(), list.references.end(), Before);
  const auto repeated = std::unique(list.references.begin(), list.references.end(), SamePlace);
  list.references.erase(repeated, list.references.end());
  return list;
}

std::optional<Occurrence> ReferenceIndex::NameAt(Index module, std::uint32_t line, std::uint32_t column) const {
  const language::Module& code = data_->code[module];
  if (line == 0 || line > code.lines.size() || column == 0) return std::nullopt;
  const auto offset =
      static_cast<std::uint32_t>(code.lines[line - 1].offset + OffsetOfColumn(code.LineText(line), column));
  std::optional<Occurrence> best;
  // A caret right after a name still means it, unless another one begins there.
  const auto offer = [&](Occurrence occurrence) {
    if (occurrence.offset > offset || offset > occurrence.offset + occurrence.length) return;
    if (!best || occurrence.offset > best->offset) {
      best = std::move(occurrence);
    } else if (occurrence.offset == best->offset && !best->declares) {
      AddTargets(*best, occurrence.targets);
    }
  };
  const ModuleInfo& info = data_->modules[module];
  const auto symbolsEnd = data_->symbols.begin() + info.endSymbol;
  const auto first = std::find_if(data_->symbols.begin() + info.symbol, symbolsEnd,
                                  [](const Symbol& symbol) { return symbol.line > 0; });
  const auto next = std::upper_bound(first, symbolsEnd, offset,
                                     [](std::uint32_t o, const Symbol& symbol) { return o < symbol.offset; });
  for (auto symbol = next; symbol != first && next - symbol < 2;) {
    --symbol;
    offer({symbol->offset,
           symbol->line,
           symbol->column,
           symbol->length,
           true,
           Use::kRead,
           Certainty::kSure,
           {static_cast<SymbolId>(symbol - data_->symbols.begin())}});
  }
  const auto nextUse = std::upper_bound(code.uses.begin(), code.uses.end(), offset,
                                        [](std::uint32_t o, const language::NameUse& use) { return o < use.offset; });
  const auto useNumber = static_cast<Index>(nextUse - code.uses.begin());
  for (const StoredReference& stored : data_->references[module].references) {
    constexpr std::uint16_t kNot = reference_flag::kImplicit | reference_flag::kDeclaration;
    if ((stored.flags & kNot) != 0 || stored.target == kNone) continue;
    const bool near = stored.place + 2 >= useNumber && stored.place < useNumber;
    if (near || (stored.flags & reference_flag::kString) != 0) offer(OccurrenceOf(*data_, module, stored));
  }
  if (best && best->targets.empty()) best.reset();
  return best;
}

std::vector<Occurrence> ReferenceIndex::Occurrences(Index module) const {
  std::vector<Occurrence> all;
  const ModuleInfo& info = data_->modules[module];
  for (SymbolId symbol = info.symbol; symbol < info.endSymbol; ++symbol) {
    const Symbol& found = data_->symbols[symbol];
    if (found.line == 0) continue;
    all.push_back({found.offset, found.line, found.column, found.length, true, Use::kRead, Certainty::kSure, {symbol}});
  }
  for (const StoredReference& stored : data_->references[module].references) {
    constexpr std::uint16_t kNot = reference_flag::kImplicit | reference_flag::kDeclaration;
    if ((stored.flags & kNot) != 0 || stored.target == kNone) continue;
    Occurrence occurrence = OccurrenceOf(*data_, module, stored);
    if (!occurrence.targets.empty()) all.push_back(std::move(occurrence));
  }
  std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.offset < b.offset; });
  // One place may have several meanings: a module, or the routine of its name.
  std::size_t kept = 0;
  for (std::size_t at = 0; at < all.size(); ++at) {
    if (kept > 0 && all[kept - 1].offset == all[at].offset) {
      if (!all[kept - 1].declares) AddTargets(all[kept - 1], all[at].targets);
      continue;
    }
    if (kept != at) all[kept] = std::move(all[at]);
    ++kept;
  }
  all.resize(kept);
  return all;
}

ReferenceCounts ReferenceIndex::Count() const {
  ReferenceCounts counts;
  for (const Symbol& symbol : data_->symbols) ++counts.symbols[static_cast<std::size_t>(symbol.kind)];
  struct Kinds {
    std::uint32_t count[kSymbolKindCount] = {};
    SymbolId example[kSymbolKindCount] = {};
  };
  std::vector<Kinds> sets(data_->sets.offsets.empty() ? 0 : data_->sets.offsets.size() - 1);
  for (Index set = 0; set < sets.size(); ++set) {
    for (const SymbolId symbol : data_->sets.Row(set)) {
      const auto kind = static_cast<std::size_t>(data_->symbols[symbol].kind);
      ++sets[set].count[kind];
      sets[set].example[kind] = symbol;
    }
  }
  for (const ModuleReferences& found : data_->references) {
    for (const StoredReference& stored : found.references) {
      if (stored.target == kNone) continue;
      const auto add = [&](std::uint64_t times, SymbolId symbol) {
        counts.uses[static_cast<std::size_t>(data_->UseOf(stored, symbol))] += times;
        counts.certainties[static_cast<std::size_t>(stored.certainty)] += times;
      };
      if ((stored.flags & reference_flag::kSet) == 0) {
        add(1, stored.target);
        continue;
      }
      const Kinds& kinds = sets[stored.target];
      for (std::size_t kind = 0; kind < kSymbolKindCount; ++kind) {
        if (kinds.count[kind] > 0) add(kinds.count[kind], kinds.example[kind]);
      }
    }
  }
  return counts;
}

}  // namespace quillmate::symbols
