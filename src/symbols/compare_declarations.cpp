#include <algorithm>
#include <map>
#include <utility>

#include "compare_forms_p.h"
#include "compare_p.h"

/// Declarations outside of routines.
namespace quillmate::symbols {
namespace {

using language::Declaration;
using language::Module;

bool IsCompared(const Symbol& symbol) noexcept {
  switch (symbol.kind) {
    case SymbolKind::kVariable:
    case SymbolKind::kConstant:
    case SymbolKind::kDeclare:
    case SymbolKind::kEvent:
    case SymbolKind::kType:
    case SymbolKind::kEnum:
      return symbol.parent == kNone && symbol.routine == kNone && symbol.declaration != kNone;
    default:
      return false;
  }
}

/// Lines of code in one, in the form that is compared and, with its own case, shown.
std::string OneLine(std::span<const std::string_view> lines, bool foldCase) {
  std::string text = CanonicalCode(lines, foldCase);
  while (!text.empty() && text.back() == '\n') text.pop_back();
  std::string line;
  for (const char c : text) c == '\n' ? void(line += "; ") : void(line += c);
  return line;
}

std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

/// "Public Const " and, of the names in the statement, the declaration's own part.
std::string OwnStatement(const Module& code, Index number, bool foldCase) {
  const Declaration& own = code.declarations[number];
  const std::uint32_t begin = code.lines[own.firstLine - 1].offset;
  const auto end =
      own.lastLine < code.lines.size() ? code.lines[own.lastLine].offset : static_cast<std::uint32_t>(code.text.size());
  const auto isSibling = [&](const Declaration& other) {
    return other.parent == kNone && other.kind == own.kind && other.firstLine == own.firstLine;
  };
  std::uint32_t firstName = own.offset, ownEnd = end;
  for (Index before = number; before-- > 0 && isSibling(code.declarations[before]);) {
    firstName = code.declarations[before].offset;
  }
  for (Index behind = number + 1; behind < code.declarations.size(); ++behind) {
    if (isSibling(code.declarations[behind])) {
      ownEnd = code.declarations[behind].offset;
      break;
    }
    if (code.declarations[behind].parent == kNone) break;
  }
  std::string_view head = code.text.substr(begin, firstName - begin);
  if (const std::size_t colon = head.rfind(':'); colon != std::string_view::npos) head.remove_prefix(colon + 1);
  const std::string text = std::string(head).append(code.text.substr(own.offset, ownEnd - own.offset));
  std::string line = OneLine(LinesOf(text), foldCase);
  while (!line.empty() && (line.back() == ',' || line.back() == ' ')) line.pop_back();
  return line;
}

std::string TextOf(const ReferenceIndex& index, SymbolId id, bool foldCase) {
  const Symbol& symbol = index.SymbolAt(id);
  const Module& code = index.Code(symbol.module);
  if (symbol.kind != SymbolKind::kType && symbol.kind != SymbolKind::kEnum) {
    return OwnStatement(code, symbol.declaration, foldCase);
  }
  std::vector<std::string_view> lines;
  const auto [first, last] = index.Extent(id);
  for (std::uint32_t line = first; line <= last; ++line) lines.push_back(code.LineText(line));
  return OneLine(lines, foldCase);
}

struct Declared {
  SymbolId symbol;
  std::string name, text;
};

std::vector<Declared> DeclarationsOf(const ReferenceIndex& index, Index module) {
  std::vector<Declared> declared;
  if (module == kNone) return declared;
  const ModuleInfo& info = index.Modules()[module];
  for (SymbolId id = info.symbol; id < info.endSymbol; ++id) {
    if (IsCompared(index.SymbolAt(id))) declared.push_back({id, Folded(index.Name(id)), TextOf(index, id, true)});
  }
  return declared;
}

/// One that found no partner in its own module.
struct LooseDeclaration {
  SymbolId symbol;
  ModuleChange* module;
};

class DeclarationComparer {
 public:
  explicit DeclarationComparer(ComparisonWork& work) : work_(work) {}

  void Run() {
    for (ModuleChange& change : work_.result.modules) {
      const bool both = change.oldModule != kNone && change.newModule != kNone;
      if (both && change.outside.IsSame()) continue;
      CompareModule(change);
    }
    JoinMoved();
    for (const auto& [key, loose] : news_) {
      for (const LooseDeclaration& one : loose) Add(one.module, ChangeState::kNew, kNone, one.symbol);
    }
    for (const auto& [key, loose] : olds_) {
      for (const LooseDeclaration& one : loose) Add(one.module, ChangeState::kGone, one.symbol, kNone);
    }
    for (ModuleChange& change : work_.result.modules) {
      std::sort(change.declarations.begin(), change.declarations.end(), [](const auto& a, const auto& b) {
        return std::pair(a.newSymbol, a.oldSymbol) < std::pair(b.newSymbol, b.oldSymbol);
      });
    }
  }

 private:
  void CompareModule(ModuleChange& change) {
    std::multimap<std::string, Declared> olds;
    for (Declared& one : DeclarationsOf(work_.oldState.index, change.oldModule)) {
      std::string name = one.name;
      olds.emplace(std::move(name), std::move(one));
    }
    for (const Declared& one : DeclarationsOf(work_.newState.index, change.newModule)) {
      const auto found = olds.find(one.name);
      if (found == olds.end()) {
        news_[one.text].push_back({one.symbol, &change});
        continue;
      }
      if (found->second.text != one.text) Add(&change, ChangeState::kChanged, found->second.symbol, one.symbol);
      olds.erase(found);
    }
    for (const auto& [name, one] : olds) olds_[one.text].push_back({one.symbol, &change});
  }

  void JoinMoved() {
    for (auto& [text, news] : news_) {
      const auto olds = olds_.find(text);
      if (olds == olds_.end()) continue;
      while (!news.empty() && !olds->second.empty()) {
        Add(news.back().module, ChangeState::kMoved, olds->second.back().symbol, news.back().symbol);
        news.pop_back();
        olds->second.pop_back();
      }
    }
  }

  void Add(ModuleChange* module, ChangeState state, SymbolId oldSymbol, SymbolId newSymbol) {
    DeclarationChange& change = module->declarations.emplace_back();
    change.state = state;
    change.oldSymbol = oldSymbol;
    change.newSymbol = newSymbol;
    if (oldSymbol != kNone) change.oldText = TextOf(work_.oldState.index, oldSymbol, false);
    if (newSymbol != kNone) change.newText = TextOf(work_.newState.index, newSymbol, false);
  }

  ComparisonWork& work_;
  std::map<std::string, std::vector<LooseDeclaration>> olds_, news_;
};

}  // namespace

void CompareDeclarations(ComparisonWork& work) { DeclarationComparer(work).Run(); }

}  // namespace quillmate::symbols
