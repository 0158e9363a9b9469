#include <algorithm>

#include <quillmate/export/plain_text.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "declaration_text_p.h"
#include "site_links_p.h"
#include "site_text_p.h"
#include "site_walk_p.h"

namespace quillmate::output {
namespace {

/// Columns of a longer line that was laid out anew are not worth looking for.
constexpr std::size_t kLongLine = 10'000;

/// The columns of the code in the lines that are shown; asked for line by line.
class ShownColumns {
 public:
  ShownColumns(const language::Module& code, std::string_view markedText)
      : code_(code), plain_(PlainText(markedText)), lines_(text::Split(plain_, text::kLineBreak)) {}

  /// 0 when it can't be told.
  std::uint32_t Find(std::uint32_t line, std::uint32_t shownLine, std::uint32_t column) {
    if (shownLine != shownLine_) Enter(line, shownLine);
    if (isSame_) return column;
    return isLong_ ? 0 : symbols::MapColumn(code_.LineText(line), shown_, column);
  }

 private:
  void Enter(std::uint32_t line, std::uint32_t shownLine) {
    shownLine_ = shownLine;
    shown_ = shownLine <= lines_.size() ? text::Utf8FromCode(lines_[shownLine - 1]) : std::string();
    isSame_ = shown_ == code_.LineText(line);
    isLong_ = shown_.size() > kLongLine;
  }

  const language::Module& code_;
  const std::string plain_;
  const std::vector<std::string_view> lines_;
  std::uint32_t shownLine_ = 0;
  std::string shown_;
  bool isSame_ = false;
  bool isLong_ = false;
};

/// What a name leads to: the first routine of the index, or else the first thing.
symbols::SymbolId Meaning(const SiteModel& model, const symbols::Occurrence& name) {
  for (const symbols::SymbolId target : name.targets) {
    if (IsCallable(model.known.SymbolAt(target).kind) && model.RoutineOf(target) != kNoRoutine) return target;
  }
  return name.targets.empty() ? symbols::kNone : name.targets.front();
}

/// Words before a declaration that does not say itself what it is.
std::string KindWords(const symbols::ReferenceIndex& known, const symbols::Symbol& symbol) {
  using symbols::SymbolKind;
  switch (symbol.kind) {
    case SymbolKind::kParameter:
    case SymbolKind::kLabel:
    case SymbolKind::kControl:
      return std::string(GermanWord(symbol.kind)) + " ";
    case SymbolKind::kTypeMember:
    case SymbolKind::kEnumMember: {
      const std::string_view parent = symbol.parent == symbols::kNone ? "" : known.Name(symbol.parent);
      return (symbol.kind == SymbolKind::kTypeMember ? "Type " : "Enum ") + std::string(parent) + ": ";
    }
    default:
      return {};
  }
}

class AnchorFinder {
 public:
  AnchorFinder(SiteModel& model, int module) : model_(model), starts_(model, module) {}

  void Identifier(std::string_view) noexcept {}
  void Text(std::string_view) noexcept {}
  void Mark(text::Marker marker) {
    const int routine = marker == text::Marker::kHeaderLineOpen ? starts_.Here() : kNoRoutine;
    if (routine != kNoRoutine) model_.routines[static_cast<std::size_t>(routine)].hasCode = true;
  }
  void LineBreak() { starts_.NextLine(); }

 private:
  SiteModel& model_;
  RoutineStarts starts_;
};

}  // namespace

std::vector<SiteLink> FindLinks(const SiteModel& model, int module, std::string_view markedText) {
  std::vector<SiteLink> links;
  const symbols::Index number = model.Module(module).number;
  if (number == symbols::kNone) return links;
  ShownColumns columns(model.known.Code(number), markedText);
  for (const symbols::Occurrence& name : model.known.Occurrences(number)) {
    const symbols::SymbolId symbol = Meaning(model, name);
    if (symbol == symbols::kNone) continue;
    const std::uint32_t line = model.ShownLine(number, name.line);
    const std::uint32_t column = line == 0 ? 0 : columns.Find(name.line, line, name.column);
    const bool possible = name.certainty != symbols::Certainty::kSure || name.targets.size() > 1;
    if (column > 0) links.push_back({line, column, name.length, symbol, name.declares, possible});
  }
  std::ranges::stable_sort(links, {}, [](const SiteLink& link) { return std::pair(link.line, link.column); });
  return links;
}

const std::string& LinkTags::Of(const SiteLink& link) {
  const std::uint64_t key =
      std::uint64_t{link.symbol} * 4 + (link.isDefinition ? 2U : 0U) + (link.isPossible ? 1U : 0U);
  const auto [found, isNew] = made_.try_emplace(key);
  if (isNew) found->second = Make(link);
  return found->second;
}

std::string LinkTags::Make(const SiteLink& link) const {
  const std::string address = Address(link);
  if (address.empty()) return {};
  const std::string title = EscapeUtf8(Title(link));
  return "<a href=\"" + address + (title.empty() ? "" : "\" title=\"" + title) + "\">";
}

std::string LinkTags::Address(const SiteLink& link) const {
  const SiteModel& model = site_.model;
  const symbols::Symbol& symbol = model.known.SymbolAt(link.symbol);
  const int page = model.ModuleOf(symbol.module);
  const std::string before = page < 0 || page == module_ ? std::string() : model.Module(page).page;
  if (IsModule(symbol.kind)) return page < 0 ? std::string() : model.Module(page).page;
  const int routine = model.RoutineOf(link.symbol);
  if (routine != kNoRoutine) {
    const SiteRoutine& found = model.Routine(routine);
    return before + (link.isDefinition || !found.hasCode ? "#r-" : "#c-") + found.anchor;
  }
  std::string entry;
  if (site_.declarations.Has(link.symbol)) site_.declarations.AppendAddress(entry, link.symbol);
  const std::uint32_t line = page < 0 || symbol.line == 0 ? 0 : model.ShownLine(symbol.module, symbol.line);
  return link.isDefinition || line == 0 ? entry : before + "#z" + std::to_string(line);
}

std::string LinkTags::Title(const SiteLink& link) const {
  const symbols::ReferenceIndex& known = site_.model.known;
  const symbols::Symbol& symbol = known.SymbolAt(link.symbol);
  if (link.isDefinition) return site_.declarations.Has(link.symbol) ? site_.declarations.UseCount(link.symbol) : "";
  const bool elsewhere = site_.model.ModuleOf(symbol.module) != module_ && !IsModule(symbol.kind);
  std::string title = elsewhere ? known.Modules()[symbol.module].name + ": " : std::string();
  if (IsModule(symbol.kind)) {
    title.append(GermanWord(symbol.kind)).append(" ").append(known.Name(link.symbol));
  } else {
    title.append(KindWords(known, symbol)).append(DeclarationText(known, link.symbol));
  }
  return link.isPossible ? title + " (möglich)" : title;
}

RoutineStarts::RoutineStarts(const SiteModel& model, int module)
    : model_(model), last_(model.Module(module).last), next_(model.Module(module).first) {
  NextLine();
}

void RoutineStarts::NextLine() noexcept {
  ++line_.value;
  while (next_ < last_ && IsBegun(*model_.Routine(next_).record)) current_ = next_++;
}

int RoutineStarts::Here() const noexcept {
  return current_ != kNoRoutine && model_.Routine(current_).record->start == line_ ? current_ : kNoRoutine;
}

void FindAnchors(std::string_view markedText, int module, SiteModel& model) {
  AnchorFinder finder(model, module);
  WalkCode(markedText, finder);
}

}  // namespace quillmate::output
