#include <algorithm>

#include <quillmate/language/parse.h>
#include <quillmate/symbols/reference_index.h>
#include <quillmate/text/utf8.h>

#include "index_data_p.h"
#include "macro_name_p.h"

namespace quillmate::symbols {
namespace {

using Data = ReferenceIndex::Data;

constexpr std::string_view kSuffixes = "%&^!#@$";

/// A name without its brackets or its suffix.
std::string_view Bare(std::string_view spelling) noexcept {
  if (spelling.starts_with('[')) {
    const std::size_t end = spelling.rfind(']');
    return spelling.substr(1, (end == std::string_view::npos || end == 0 ? spelling.size() : end) - 1);
  }
  if (!spelling.empty() && kSuffixes.find(spelling.back()) != std::string_view::npos) spelling.remove_suffix(1);
  return spelling;
}

std::uint32_t CharactersIn(std::string_view text) noexcept {
  std::uint32_t count = 0;
  while (!text.empty()) {
    text.remove_prefix(std::max<std::size_t>(1, text::ReadUtf8(text).length));
    ++count;
  }
  return count;
}

/// Byte offset of a column in a text, or its length after the end.
std::size_t OffsetOfColumn(std::string_view line, std::uint32_t column) noexcept {
  std::size_t offset = 0;
  for (std::uint32_t at = 1; at < column && offset < line.size(); ++at) {
    offset += std::max<std::size_t>(1, text::ReadUtf8(line.substr(offset)).length);
  }
  return offset;
}

bool IsChange(Form form) { return form == Form::kLet || form == Form::kSet || form == Form::kChange; }

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

std::string FoldedName(const ModuleInfo& module) { return language::FoldName(module.name); }

}  // namespace

// -------------------------------------------------------------------------------------------------------- records

Use Data::UseOf(const StoredReference& stored, SymbolId target) const noexcept {
  switch (stored.form) {
    case Form::kType:
      return Use::kType;
    case Form::kAddress:
      return IsCallable(symbols[target].kind) ? Use::kAddress : Use::kType;
    case Form::kImplements:
      return Use::kImplements;
    case Form::kRaise:
      return Use::kRaise;
    case Form::kWithEvents:
      return Use::kWithEvents;
    case Form::kLabel:
      return Use::kLabel;
    case Form::kNamedArgument:
      return Use::kNamedArgument;
    default:
      break;
  }
  const SymbolKind kind = symbols[target].kind;
  if (IsModule(kind)) return (stored.flags & reference_flag::kTypeUse) != 0 ? Use::kType : Use::kRead;
  if (kind == SymbolKind::kEnum || kind == SymbolKind::kType) return Use::kType;
  if (IsCallable(kind) && (stored.flags & reference_flag::kResult) == 0) return Use::kCall;
  return IsChange(stored.form) ? Use::kWrite : Use::kRead;
}

void Data::Place(Index module, const StoredReference& stored, Reference& reference) const {
  const language::Module& from = code[module];
  reference.module = module;
  if ((stored.flags & reference_flag::kString) != 0) {
    const language::StringUse& string = from.strings[stored.place];
    const std::string_view literal = from.text.substr(string.offset, string.length);
    const auto [offset, length] = PlaceOfMacroName(literal);
    reference.routine = string.routine;
    reference.offset = string.offset + offset;
    reference.line = string.line;
    reference.column = string.column + CharactersIn(literal.substr(0, offset));
    reference.length = length;
  } else if ((stored.flags & reference_flag::kDeclaration) != 0) {
    const language::Declaration& declared = from.declarations[stored.place];
    reference.routine = declared.routine;
    reference.offset = declared.offset;
    reference.line = declared.line;
    reference.column = declared.column;
    reference.length = declared.length;
  } else {
    const language::NameUse& use = from.uses[stored.place];
    reference.routine = use.routine;
    reference.offset = use.offset;
    reference.line = use.line;
    reference.column = use.column;
    reference.length = use.length;
  }
  reference.inRoutine = kNone;
  if (reference.routine != kNone)
    reference.inRoutine = SymbolOf(module, from.routines[reference.routine].declaration + 1);
}

Index Data::ModuleOfReference(Index number) const noexcept {
  const auto next = std::upper_bound(referenceBases.begin(), referenceBases.end(), number);
  return static_cast<Index>(next - referenceBases.begin() - 1);
}

Reference Data::At(Index number, SymbolId target) const {
  const Index module = ModuleOfReference(number);
  const StoredReference& stored = Stored(number, module);
  Reference reference{};
  Place(module, stored, reference);
  reference.use = UseOf(stored, target);
  reference.certainty = stored.certainty;
  reference.implicit = (stored.flags & reference_flag::kImplicit) != 0;
  reference.mayWrite = (stored.flags & reference_flag::kMayWrite) != 0;
  return reference;
}

const Data::Handled* Data::HandlerOf(SymbolId routine) const noexcept {
  const auto found = std::lower_bound(handlers.begin(), handlers.end(), routine,
                                      [](const Handled& handled, SymbolId id) { return handled.routine < id; });
  return found == handlers.end() || found->routine != routine ? nullptr : &*found;
}

// ---------------------------------------------------------------------------------------------------------- index

ReferenceIndex::ReferenceIndex() : data_(std::make_unique<Data>()) {}
ReferenceIndex::ReferenceIndex(std::unique_ptr<Data> data) : data_(std::move(data)) {}
ReferenceIndex::~ReferenceIndex() = default;
ReferenceIndex::ReferenceIndex(ReferenceIndex&&) noexcept = default;
ReferenceIndex& ReferenceIndex::operator=(ReferenceIndex&&) noexcept = default;

std::span<const ProjectInfo> ReferenceIndex::Projects() const noexcept { return data_->projects; }
std::span<const ModuleInfo> ReferenceIndex::Modules() const noexcept { return data_->modules; }
std::span<const Omission> ReferenceIndex::Omissions() const noexcept { return data_->omissions; }
const language::Module& ReferenceIndex::Code(Index module) const noexcept { return data_->code[module]; }

std::vector<Index> ReferenceIndex::FindModules(std::string_view name) const {
  std::vector<Index> found;
  const std::string folded = language::FoldName(name);
  for (Index module = 0; module < data_->modules.size(); ++module) {
    if (FoldedName(data_->modules[module]) == folded) found.push_back(module);
  }
  if (!found.empty()) return found;
  for (Index module = 0; module < data_->modules.size(); ++module) {
    const ModuleInfo& info = data_->modules[module];
    if (language::FoldName(data_->projects[info.project].name + "." + info.name) == folded) found.push_back(module);
  }
  return found;
}

std::size_t ReferenceIndex::SymbolCount() const noexcept { return data_->symbols.size(); }
const Symbol& ReferenceIndex::SymbolAt(SymbolId symbol) const noexcept { return data_->symbols[symbol]; }

std::string_view ReferenceIndex::Name(SymbolId symbol) const noexcept {
  const Symbol& found = data_->symbols[symbol];
  if (IsModule(found.kind)) return data_->modules[found.module].name;
  if (found.kind == SymbolKind::kControl) return data_->tables.modules[found.module].controls[found.declaration].name;
  return Bare(data_->code[found.module].text.substr(found.offset, found.length));
}

std::string ReferenceIndex::DeclaredType(SymbolId symbol) const {
  const Symbol& found = data_->symbols[symbol];
  if (IsModule(found.kind)) return {};
  if (found.kind == SymbolKind::kControl) return data_->tables.modules[found.module].controls[found.declaration].type;
  const language::Module& code = data_->code[found.module];
  if (found.declaration != kNone) return code.DeclaredType(code.declarations[found.declaration]);
  if (found.length == 0) return {};
  static constexpr std::string_view kNames[] = {"Integer", "Long",     "LongLong", "Single",
                                                "Double",  "Currency", "String"};
  const std::size_t suffix = kSuffixes.find(code.text[found.offset + found.length - 1]);
  return suffix == std::string_view::npos ? std::string() : std::string(kNames[suffix]);
}

std::pair<std::uint32_t, std::uint32_t> ReferenceIndex::Extent(SymbolId symbol) const noexcept {
  const Symbol& found = data_->symbols[symbol];
  const language::Module& code = data_->code[found.module];
  if (IsRoutine(found.kind)) return {code.routines[found.routine].firstLine, code.routines[found.routine].lastLine};
  if (found.kind == SymbolKind::kType || found.kind == SymbolKind::kEnum) {
    const language::Declaration& declared = code.declarations[found.declaration];
    return {declared.firstLine, declared.lastLine};
  }
  return {0, 0};
}

std::vector<SymbolId> ReferenceIndex::FindSymbols(Index module, std::string_view name) const {
  std::vector<SymbolId> found;
  const std::string folded = language::FoldName(name);
  const ModuleInfo& info = data_->modules[module];
  for (SymbolId symbol = info.symbol; symbol < info.endSymbol; ++symbol) {
    const std::string_view other = Name(symbol);
    // Folding keeps the length of ASCII names; others are compared in full.
    const bool ascii = std::all_of(other.begin(), other.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
    if (ascii && other.size() != folded.size()) continue;
    if (language::FoldName(other) == folded) found.push_back(symbol);
  }
  return found;
}

SymbolId ReferenceIndex::RoutineSymbol(Index module, Index routine) const noexcept {
  return DeclarationSymbol(module, data_->code[module].routines[routine].declaration);
}

SymbolId ReferenceIndex::DeclarationSymbol(Index module, Index declaration) const noexcept {
  return data_->SymbolOf(module, declaration + 1);
}

void ReferenceIndex::ParseAgain(Index module, language::Workspace& workspace, language::Module& code) const {
  const ProjectInfo& project = data_->projects[data_->modules[module].project];
  language::ParseOptions options;
  options.dialect = project.dialect;
  options.constants = project.constants;
  options.kind = data_->modules[module].kind;
  options.keepTokens = options.keepStatements = true;
  language::ParseModule(data_->texts[module], options, workspace, code);
}

void ReferenceIndex::BindUses(Index module, std::vector<BoundUse>& uses) const {
  uses.assign(data_->code[module].uses.size(), {});
  constexpr std::uint16_t kNoUse = reference_flag::kImplicit | reference_flag::kDeclaration | reference_flag::kString;
  for (const StoredReference& stored : data_->references[module].references) {
    if ((stored.flags & kNoUse) != 0 || stored.target == kNone) continue;
    BoundUse& use = uses[stored.place];
    const bool several = (stored.flags & reference_flag::kSet) != 0;
    // A second meaning of one place: a module, or the routine of its name.
    const bool second = use.target != kNone || use.certainty != Certainty::kSure;
    use.mayWrite = use.mayWrite || (stored.flags & reference_flag::kMayWrite) != 0;
    use.result = (stored.flags & reference_flag::kResult) != 0;
    use.certainty = stored.certainty;
    if (several || second) {
      use.target = kNone;
      if (use.certainty == Certainty::kSure) use.certainty = Certainty::kAmbiguous;
      continue;
    }
    use.target = stored.target;
    use.use = data_->UseOf(stored, stored.target);
  }
}

std::uint32_t ReferenceIndex::EditorLine(Index module, std::uint32_t line) const noexcept {
  return line == 0 ? 0 : data_->code[module].EditorLine(line);
}

std::uint32_t ReferenceIndex::SourceLine(Index module, std::uint32_t line) const noexcept {
  return data_->modules[module].linesOfFile ? line : 0;
}

std::vector<Reference> ReferenceIndex::ReferencesTo(SymbolId symbol) const {
  std::vector<Reference> references;
  data_->ForEachReference(symbol, [&](Index number) { references.push_back(data_->At(number, symbol)); });
  std::sort(references.begin(), references.end(), Before);
  references.erase(std::unique(references.begin(), references.end(), SamePlace), references.end());
  return references;
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

std::vector<SymbolId> ReferenceIndex::ImplementationsOf(SymbolId symbol) const {
  std::vector<SymbolId> found;
  auto at =
      std::lower_bound(data_->handledBy.begin(), data_->handledBy.end(), std::pair<SymbolId, SymbolId>(symbol, 0));
  for (; at != data_->handledBy.end() && at->first == symbol; ++at) found.push_back(at->second);
  return found;
}

std::optional<SymbolId> ReferenceIndex::ImplementedBy(SymbolId routine) const {
  const Data::Handled* handled = data_->HandlerOf(routine);
  if (handled == nullptr || handled->target == kNone) return std::nullopt;
  return handled->target;
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
