#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "compare_forms_p.h"
#include "compare_p.h"

/// Which routines belong together: by their names, and what is left over by likeness.
namespace quillmate::symbols {
namespace {

using language::DeclarationKind;

/// Sub and Function may become each other, the kinds of a property may not.
int KindClass(DeclarationKind kind) noexcept {
  return kind == DeclarationKind::kFunction ? static_cast<int>(DeclarationKind::kSub) : static_cast<int>(kind);
}

std::uint64_t NameHashOf(const language::Module& code, Index routine) {
  return code.NameHash(code.declarations[code.routines[routine].declaration].name);
}

/// Takes routines of one name together in their order.
class RoutineNames {
 public:
  RoutineNames(const language::Module& code, bool byKind) : byKind_(byKind) {
    numbers_.reserve(code.routines.size());
    for (Index routine = static_cast<Index>(code.routines.size()); routine-- > 0;) {
      numbers_[Key(code, routine)].push_back(routine);
    }
  }
  template <typename IsFree>
  Index Take(const language::Module& code, Index routine, IsFree isFree) {
    const auto found = numbers_.find(Key(code, routine));
    while (found != numbers_.end() && !found->second.empty()) {
      const Index number = found->second.back();
      found->second.pop_back();
      if (isFree(number)) return number;
    }
    return kNone;
  }

 private:
  std::uint64_t Key(const language::Module& code, Index routine) const {
    const std::uint64_t kind = byKind_ ? static_cast<std::uint64_t>(code.routines[routine].kind) + 1 : 0;
    return NameHashOf(code, routine) ^ kind * 0x9E3779B97F4A7C15ULL;
  }
  bool byKind_;
  std::unordered_map<std::uint64_t, std::vector<Index>> numbers_;
};

void Join(ComparisonWork& work, RoutinePlace oldPlace, RoutinePlace newPlace) {
  work.partnersOfOld[oldPlace.module][oldPlace.routine] = newPlace;
  work.partnersOfNew[newPlace.module][newPlace.routine] = oldPlace;
}

/// By name and kind, then by name alone.
void PairByName(ComparisonWork& work, Index oldModule, Index newModule) {
  const language::Module& oldCode = work.oldState.index.Code(oldModule);
  const language::Module& newCode = work.newState.index.Code(newModule);
  std::size_t joined = 0;
  for (const bool byKind : {true, false}) {
    if (joined == oldCode.routines.size() || joined == newCode.routines.size()) return;
    RoutineNames names(oldCode, byKind);
    for (Index routine = 0; routine < newCode.routines.size(); ++routine) {
      if (work.partnersOfNew[newModule][routine].IsKnown()) continue;
      const Index partner =
          names.Take(newCode, routine, [&](Index number) { return !work.partnersOfOld[oldModule][number].IsKnown(); });
      if (partner == kNone) continue;
      ++joined;
      Join(work, {oldModule, partner}, {newModule, routine});
    }
  }
}

/// A routine without a partner.
struct Loose {
  RoutinePlace place;
  Index entry;  ///< of its module in the result
  std::uint64_t name;
  int kindClass;
  LineBag body;
};

LineBag BodyOf(const language::Module& code, Index number) {
  const language::Routine& routine = code.routines[number];
  const std::string name(code.NameText(code.declarations[routine.declaration].name));
  std::vector<std::string_view> lines;
  const std::uint32_t first = routine.oneLine ? routine.firstLine : routine.headerLastLine + 1;
  const std::uint32_t last = routine.hasEnd && !routine.oneLine ? routine.lastLine - 1 : routine.lastLine;
  for (std::uint32_t line = first; line <= last; ++line) {
    if (code.lines[line - 1].lineClass != language::LineClass::kAttribute) lines.push_back(code.LineText(line));
  }
  const std::string canonical = CanonicalCode(lines, true, name);
  LineBag bag;
  for (std::string_view rest = canonical; !rest.empty();) {
    const std::size_t end = rest.find('\n');
    if (end > 0) bag.Add(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  bag.Finish();
  return bag;
}

std::vector<Loose> LooseRoutines(const ReferenceIndex& index, const std::vector<std::vector<RoutinePlace>>& partners,
                                 const std::vector<Index>& entries) {
  std::vector<Loose> loose;
  for (Index module = 0; module < partners.size(); ++module) {
    if (entries[module] == kNone) continue;
    const language::Module& code = index.Code(module);
    for (Index routine = 0; routine < partners[module].size(); ++routine) {
      if (partners[module][routine].IsKnown()) continue;
      loose.push_back({{module, routine},
                       entries[module],
                       NameHashOf(code, routine),
                       KindClass(code.routines[routine].kind),
                       BodyOf(code, routine)});
    }
  }
  return loose;
}

/// Joins what is left over on both sides.
class LooseJoiner {
 public:
  explicit LooseJoiner(ComparisonWork& work)
      : work_(work),
        olds_(LooseRoutines(work.oldState.index, work.partnersOfOld, work.entryOfOld)),
        news_(LooseRoutines(work.newState.index, work.partnersOfNew, work.entryOfNew)) {}

  void Run() {
    if (olds_.empty() || news_.empty()) return;
    constexpr std::size_t kFewLines = 3;
    // The same name and body elsewhere, the same body under another name here, then elsewhere.
    JoinEqual([](const Loose& l) { return std::tuple(l.name, l.kindClass, l.body.whole, Index{0}); }, 0);
    JoinLike([](const Loose& l) { return l.name * 31 + static_cast<std::uint64_t>(l.kindClass); }, kMovedLikeness);
    JoinEqual([](const Loose& l) { return std::tuple(std::uint64_t{0}, l.kindClass, l.body.whole, l.entry); }, 1);
    JoinEqual([](const Loose& l) { return std::tuple(std::uint64_t{0}, l.kindClass, l.body.whole, Index{0}); },
              kFewLines);
    JoinLike([](const Loose& l) { return (std::uint64_t{l.entry} << 8U) + static_cast<std::uint64_t>(l.kindClass); },
             kRenamedLikeness);
    JoinLike([](const Loose& l) { return static_cast<std::uint64_t>(l.kindClass); }, kRenamedLikeness);
  }

 private:
  bool IsFree(const Loose& loose, const std::vector<std::vector<RoutinePlace>>& partners) const {
    return !partners[loose.place.module][loose.place.routine].IsKnown();
  }
  bool IsFreeOld(const Loose& loose) const { return IsFree(loose, work_.partnersOfOld); }
  bool IsFreeNew(const Loose& loose) const { return IsFree(loose, work_.partnersOfNew); }

  template <typename Key>
  void JoinEqual(Key key, std::size_t leastLines) {
    std::map<decltype(key(olds_.front())), std::vector<const Loose*>> byKey;
    for (auto loose = olds_.rbegin(); loose != olds_.rend(); ++loose) {
      if (loose->body.lines.size() >= leastLines && IsFreeOld(*loose)) byKey[key(*loose)].push_back(&*loose);
    }
    for (const Loose& loose : news_) {
      const auto found = IsFreeNew(loose) ? byKey.find(key(loose)) : byKey.end();
      if (found == byKey.end() || found->second.empty()) continue;
      Join(work_, found->second.back()->place, loose.place);
      found->second.pop_back();
    }
  }

  template <typename Salt>
  void JoinLike(Salt salt, double least) {
    std::vector<const Loose*> olds, news;
    for (const Loose& loose : olds_) {
      if (IsFreeOld(loose)) olds.push_back(&loose);
    }
    for (const Loose& loose : news_) {
      if (IsFreeNew(loose)) news.push_back(&loose);
    }
    if (olds.empty() || news.empty()) return;
    std::vector<LineBag> oldBags, newBags;
    std::vector<std::uint64_t> oldSalts, newSalts;
    for (const Loose* loose : olds) oldBags.push_back(loose->body), oldSalts.push_back(salt(*loose));
    for (const Loose* loose : news) newBags.push_back(loose->body), newSalts.push_back(salt(*loose));
    for (const LikePair& pair : LikePairs(oldBags, newBags, oldSalts, newSalts, least)) {
      const Loose& oldOne = *olds[pair.oldNumber];
      const Loose& newOne = *news[pair.newNumber];
      if (IsFreeOld(oldOne) && IsFreeNew(newOne)) Join(work_, oldOne.place, newOne.place);
    }
  }

  ComparisonWork& work_;
  std::vector<Loose> olds_, news_;
};

}  // namespace

void PairRoutines(ComparisonWork& work) {
  const auto prepare = [](const ReferenceIndex& index, std::vector<std::vector<RoutinePlace>>& partners) {
    partners.resize(index.Modules().size());
    for (Index module = 0; module < partners.size(); ++module) {
      partners[module].resize(index.Code(module).routines.size());
    }
  };
  prepare(work.oldState.index, work.partnersOfOld);
  prepare(work.newState.index, work.partnersOfNew);
  for (const ModuleChange& change : work.result.modules) {
    if (change.oldModule == kNone || change.newModule == kNone) continue;
    const language::Module& oldCode = work.oldState.index.Code(change.oldModule);
    const language::Module& newCode = work.newState.index.Code(change.newModule);
    if (oldCode.routines.size() == newCode.routines.size() && SameText(oldCode, newCode)) {
      for (Index routine = 0; routine < newCode.routines.size(); ++routine) {
        Join(work, {change.oldModule, routine}, {change.newModule, routine});
      }
    } else {
      PairByName(work, change.oldModule, change.newModule);
    }
  }
  LooseJoiner(work).Run();
}

}  // namespace quillmate::symbols
