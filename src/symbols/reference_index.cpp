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

bool IsChange(Form form) { return form == Form::kLet || form == Form::kSet || form == Form::kChange; }

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

}  // namespace quillmate::symbols
