#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>

#include "duplicates_p.h"

namespace quillmate::checks {
namespace {

using language::Statement;
using language::StatementKind;
using language::Token;
using language::TokenKind;

/// Smaller bodies are equal by chance.
constexpr std::uint32_t kStatements = 6;
constexpr std::uint32_t kTokens = 40;
/// For near copies, whose likeness has to mean something.
constexpr std::uint32_t kNearStatements = 10;
constexpr double kLikeness = 0.85;
/// A statement that is in more routines than this tells nothing of where they come from.
constexpr std::size_t kCommon = 40;
/// So many statements of a routine are looked up, the rarest first, and so many candidates compared with it.
constexpr std::size_t kLookedUp = 48;
constexpr std::size_t kCandidates = 8;

constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
std::uint64_t Mix(std::uint64_t hash, std::uint64_t value) {
  hash = (hash ^ value) * kFactor;
  return hash ^ (hash >> 29U);
}

std::uint64_t HashText(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  return hash;
}

class Printer {
 public:
  explicit Printer(const ModuleView& view) : view_(view), ordinals_(view.code.NameCount(), 0) {}

  /// False when the body is too small. `cursor`: as in FlowGraph::Build.
  bool Print(Index number, Index& cursor, BodyPrint& print) {
    const language::Module& code = view_.code;
    const language::Routine& routine = code.routines[number];
    while (cursor < code.statements.size() && code.statements[cursor].offset < routine.firstOffset) ++cursor;
    Index end = cursor;
    while (end < code.statements.size() && code.statements[end].offset < routine.endOffset) ++end;
    const Index first = std::exchange(cursor, end);
    if (routine.metrics.statements < kStatements) return false;
    Name(routine);
    print = {view_.module, number, 0, routine.metrics.statements, 0, kFactor, {}};
    for (Index at = first; at < end; ++at) Add(code.statements[at], print);
    Forget(routine);
    std::ranges::sort(print.features);
    return print.tokens >= kTokens;
  }

 private:
  static constexpr std::uint32_t kOwn = 1, kLocal = 2;

  /// Marks the routine's own names.
  void Name(const language::Routine& routine) {
    for (Index at = routine.firstDeclaration; at < routine.endDeclaration; ++at) {
      const language::Declaration& declared = view_.code.declarations[at];
      if (declared.kind > language::DeclarationKind::kPropertySet) ordinals_[declared.name] = kLocal;
    }
    std::uint32_t& own = ordinals_[view_.code.declarations[routine.declaration].name];
    if (own == 0) own = kOwn;
    next_ = kLocal;
  }
  void Forget(const language::Routine& routine) {
    for (Index at = routine.firstDeclaration; at < routine.endDeclaration; ++at) {
      ordinals_[view_.code.declarations[at].name] = 0;
    }
  }

  void Add(const Statement& statement, BodyPrint& print) {
    if (statement.kind == StatementKind::kHeader || statement.kind == StatementKind::kAttribute) return;
    if (statement.kind == StatementKind::kRoutineEnd || statement.kind == StatementKind::kDeclaration) return;
    std::uint64_t feature = static_cast<std::uint64_t>(statement.kind) + 1;
    bool member = false;
    for (const Token& token : view_.Tokens(statement)) {
      if (token.kind == TokenKind::kComment) continue;
      ++print.tokens;
      const auto [exact, loose] = Values(token, member);
      print.hash = Mix(print.hash, exact);
      print.check = Mix(print.check, exact + 0x51ED27);
      feature = Mix(feature, loose);
      member =
          token.kind == TokenKind::kOperator && (token.detail == static_cast<std::uint8_t>(language::Operator::kDot) ||
                                                 token.detail == static_cast<std::uint8_t>(language::Operator::kBang));
    }
    print.hash = Mix(print.hash, 7);
    print.features.push_back(feature);
  }

  /// A token with its local's number, and without.
  std::pair<std::uint64_t, std::uint64_t> Values(const Token& token, bool member) {
    const auto kind = static_cast<std::uint64_t>(token.kind);
    if (token.kind == TokenKind::kName) {
      std::uint32_t& ordinal = ordinals_[token.name];
      if (ordinal == 0 || member) {
        const std::uint64_t value = Mix(kind, view_.code.NameHash(token.name));
        return {value, value};
      }
      if (ordinal == kLocal) ordinal = ++next_;
      return {Mix(kind + 100, ordinal), Mix(kind + 100, ordinal == kOwn ? kOwn : kLocal)};
    }
    const std::uint64_t value = token.kind == TokenKind::kOperator
                                    ? Mix(kind, token.detail)
                                    : Mix(kind, HashText(view_.code.text.substr(token.offset, token.length)));
    return {value, value};
  }

  const ModuleView& view_;
  std::vector<std::uint32_t> ordinals_;  ///< by name: 0 none of the routine's, kOwn, kLocal, else its number
  std::uint32_t next_ = kLocal;
};

// -------------------------------------------------------------------------------------------------------- comparing

class Comparer {
 public:
  Comparer(const ReferenceIndex& index, std::vector<BodyPrint>& prints, const Selection& selection,
           std::vector<Finding>& findings)
      : index_(index), prints_(prints), selection_(selection), findings_(findings), copies_(prints.size(), false) {}

  void Run() {
    FindCopies();
    if (selection_.Has(CheckId::kNearDuplicate)) FindNear();
  }

 private:
  std::string PlaceOf(const BodyPrint& print) const {
    const language::Module& code = index_.Code(print.module);
    const language::Declaration& declared = code.declarations[code.routines[print.routine].declaration];
    const symbols::ModuleInfo& info = index_.Modules()[print.module];
    std::string place;
    if (index_.Projects().size() > 1) place = index_.Projects()[info.project].name + ".";
    place += info.name + "." + std::string(code.Spelling(declared));
    return InQuotes(place) + " (Zeile " + std::to_string(index_.EditorLine(print.module, declared.line)) + ")";
  }

  void Report(CheckId check, const BodyPrint& print, std::string text) {
    if (!selection_.Has(check)) return;
    const language::Module& code = index_.Code(print.module);
    const language::Declaration& declared = code.declarations[code.routines[print.routine].declaration];
    findings_.push_back({check, print.module, print.routine, declared.line, declared.column, std::move(text),
                         std::string(InfoOf(check).advice), std::string(code.Spelling(declared))});
  }

  std::string NameOf(const BodyPrint& print) const {
    const language::Module& code = index_.Code(print.module);
    return InQuotes(code.Spelling(code.declarations[code.routines[print.routine].declaration]));
  }

  /// Each but the first of a group names the first one.
  void FindCopies() {
    std::vector<std::uint32_t> order(prints_.size());
    for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
    std::ranges::sort(order, [&](std::uint32_t a, std::uint32_t b) {
      const BodyPrint &x = prints_[a], &y = prints_[b];
      return std::tuple(x.hash, x.check, x.tokens, a) < std::tuple(y.hash, y.check, y.tokens, b);
    });
    for (std::size_t first = 0; first < order.size();) {
      std::size_t end = first + 1;
      const BodyPrint& original = prints_[order[first]];
      const auto same = [&](const BodyPrint& other) {
        return other.hash == original.hash && other.check == original.check && other.tokens == original.tokens;
      };
      while (end < order.size() && same(prints_[order[end]])) ++end;
      for (std::size_t at = first + 1; at < end; ++at) {
        copies_[order[at]] = true;
        const BodyPrint& copy = prints_[order[at]];
        Report(CheckId::kDuplicate, copy,
               NameOf(copy) + " tut dasselbe wie " + PlaceOf(original) + ": " + std::to_string(copy.statements) +
                   " Anweisungen" +
                   (end - first > 2 ? ", insgesamt " + std::to_string(end - first) + "-mal vorhanden." : "."));
      }
      first = end;
    }
  }

  void FindNear() {
    std::unordered_map<std::uint64_t, std::vector<std::uint32_t>> holders;
    std::vector<std::uint32_t> wanted;
    for (std::uint32_t i = 0; i < prints_.size(); ++i) {
      if (!copies_[i] && prints_[i].statements >= kNearStatements) wanted.push_back(i);
    }
    for (const std::uint32_t i : wanted) {
      std::uint64_t last = 0;
      for (const std::uint64_t feature : prints_[i].features) {
        if (feature == std::exchange(last, feature)) continue;
        std::vector<std::uint32_t>& list = holders[feature];
        if (list.size() <= kCommon) list.push_back(i);
      }
    }
    std::vector<const std::vector<std::uint32_t>*> lists;
    std::vector<std::uint32_t> earlier;
    for (const std::uint32_t i : wanted) {
      lists.clear();
      for (const std::uint64_t feature : prints_[i].features) {
        const std::vector<std::uint32_t>& list = holders[feature];
        if (list.size() > 1 && list.size() <= kCommon && (lists.empty() || lists.back() != &list))
          lists.push_back(&list);
      }
      std::ranges::sort(lists, {}, [](const auto* list) { return list->size(); });
      if (lists.size() > kLookedUp) lists.resize(kLookedUp);
      earlier.clear();
      for (const auto* const list : lists) {
        for (const std::uint32_t other : *list) {
          if (other < i) earlier.push_back(other);
        }
      }
      CompareWithEarlier(i, earlier);
    }
  }

  /// `earlier`: routines that share statements, once for each.
  void CompareWithEarlier(std::uint32_t i, std::vector<std::uint32_t>& earlier) {
    std::ranges::sort(earlier);
    std::vector<std::pair<std::uint32_t, std::uint32_t>> shared;  // how often, which
    for (std::size_t at = 0; at < earlier.size();) {
      std::size_t end = at;
      while (end < earlier.size() && earlier[end] == earlier[at]) ++end;
      shared.emplace_back(static_cast<std::uint32_t>(end - at), earlier[at]);
      at = end;
    }
    std::ranges::sort(shared, [](const auto& a, const auto& b) {
      return std::pair(b.first, a.second) < std::pair(a.first, b.second);
    });
    if (shared.size() > kCandidates) shared.resize(kCandidates);
    double best = kLikeness;
    std::uint32_t partner = i;
    for (const auto& [count, other] : shared) {
      const double likeness = Likeness(prints_[i], prints_[other]);
      if (likeness < best || (partner != i && likeness <= best)) continue;
      best = likeness;
      partner = other;
    }
    if (partner == i) return;
    Report(CheckId::kNearDuplicate, prints_[i],
           NameOf(prints_[i]) + " gleicht zu " + std::to_string(static_cast<int>(best * 100)) + " % " +
               PlaceOf(prints_[partner]) + ": " + std::to_string(prints_[i].statements) + " Anweisungen.");
  }

  /// Statements in common, of those of both.
  static double Likeness(const BodyPrint& a, const BodyPrint& b) {
    std::size_t common = 0;
    auto x = a.features.begin(), y = b.features.begin();
    while (x != a.features.end() && y != b.features.end()) {
      if (*x == *y) {
        ++common, ++x, ++y;
      } else {
        *x < *y ? ++x : ++y;
      }
    }
    return 2.0 * static_cast<double>(common) / static_cast<double>(a.features.size() + b.features.size());
  }

  const ReferenceIndex& index_;
  std::vector<BodyPrint>& prints_;
  const Selection& selection_;
  std::vector<Finding>& findings_;
  std::vector<bool> copies_;  ///< of an earlier one
};

}  // namespace

void PrintBodies(const ModuleView& view, std::vector<BodyPrint>& prints) {
  Printer printer(view);
  Index cursor = 0;
  for (Index routine = 0; routine < view.code.routines.size(); ++routine) {
    if (view.code.routines[routine].activity != language::Activity::kActive) continue;
    BodyPrint print;
    if (printer.Print(routine, cursor, print)) prints.push_back(std::move(print));
  }
}

void CompareBodies(const ReferenceIndex& index, std::vector<BodyPrint>& prints, const Selection& selection,
                   std::vector<Finding>& findings) {
  std::ranges::sort(prints, [](const BodyPrint& a, const BodyPrint& b) {
    return std::pair(a.module, a.routine) < std::pair(b.module, b.routine);
  });
  Comparer(index, prints, selection, findings).Run();
}

}  // namespace quillmate::checks
