#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>

#include <quillmate/language/parse.h>

#include "compare_forms_p.h"
#include "compare_p.h"

/// What belongs together: projects, modules, routines.
namespace quillmate::symbols {
namespace {

constexpr std::uint8_t kAllTrivial = trivial::kLayout | trivial::kComment | trivial::kCase;

/// A path in the form in which those of two states are compared, without what stands before them.
std::string PathWithin(std::string_view root, std::string_view file) {
  if (!root.empty() && file.starts_with(root)) file.remove_prefix(root.size());
  std::string path = Folded(file);
  std::replace(path.begin(), path.end(), '\\', '/');
  while (!path.empty() && path.front() == '/') path.erase(0, 1);
  return path;
}

std::string FileName(std::string_view file) {
  const std::size_t separator = file.find_last_of("\\/");
  return Folded(separator == std::string_view::npos ? file : file.substr(separator + 1));
}

/// Pairs what has the same key, if only one on each side has it.
template <typename OldKey, typename NewKey>
void PairByKey(std::vector<Index>& newOf, std::vector<Index>& oldOf, OldKey oldKey, NewKey newKey) {
  constexpr Index kSeveral = kNone - 1;
  std::map<std::string, std::pair<Index, Index>> found;
  const auto note = [&](const std::vector<Index>& partners, auto key, auto member) {
    for (Index number = 0; number < partners.size(); ++number) {
      if (partners[number] != kNone) continue;
      const std::string name = key(number);
      if (name.empty()) continue;
      Index& slot = found.try_emplace(name, kNone, kNone).first->second.*member;
      slot = slot == kNone ? number : kSeveral;
    }
  };
  note(newOf, oldKey, &std::pair<Index, Index>::first);
  note(oldOf, newKey, &std::pair<Index, Index>::second);
  for (const auto& [name, pair] : found) {
    if (pair.first >= kSeveral || pair.second >= kSeveral) continue;
    newOf[pair.first] = pair.second;
    oldOf[pair.second] = pair.first;
  }
}

void PairTheOnlyOnes(std::vector<Index>& newOf, std::vector<Index>& oldOf) {
  if (std::count(newOf.begin(), newOf.end(), kNone) != 1 || std::count(oldOf.begin(), oldOf.end(), kNone) != 1) return;
  const auto oldOne = static_cast<Index>(std::find(newOf.begin(), newOf.end(), kNone) - newOf.begin());
  const auto newOne = static_cast<Index>(std::find(oldOf.begin(), oldOf.end(), kNone) - oldOf.begin());
  newOf[oldOne] = newOne;
  oldOf[newOne] = oldOne;
}

/// Numbers of modules by project and name, several of one name in their order.
class ModuleNames {
 public:
  explicit ModuleNames(const ReferenceIndex& index) {
    const auto modules = index.Modules();
    for (Index module = 0; module < modules.size(); ++module) {
      byName_[{modules[module].project, Folded(modules[module].name)}].push_back(module);
    }
  }
  /// The next one of that name that was not taken yet.
  Index Take(Index project, const std::string& name) {
    const auto found = byName_.find({project, name});
    if (found == byName_.end() || found->second.empty()) return kNone;
    const Index module = found->second.front();
    found->second.erase(found->second.begin());
    return module;
  }

 private:
  std::map<std::pair<Index, std::string>, std::vector<Index>> byName_;
};

LineBag BagOfModule(const language::Module& code) {
  LineBag bag;
  for (std::uint32_t line = 1; line <= code.lines.size(); ++line) {
    const language::LineClass lineClass = code.lines[line - 1].lineClass;
    if (lineClass != language::LineClass::kCode && lineClass != language::LineClass::kDirective) continue;
    const std::string form = LineForm(code.LineText(line), false, kAllTrivial);
    if (!form.empty()) bag.Add(form);
  }
  bag.Finish();
  return bag;
}

/// Modules without a partner by now, likest first.
void PairLikeModules(const ComparisonWork& work, std::vector<Index>& newOf, std::vector<Index>& oldOf) {
  constexpr std::size_t kFewLines = 3;
  std::vector<Index> olds, news;
  std::vector<LineBag> oldBags, newBags;
  const auto collect = [](const ReferenceIndex& index, const std::vector<Index>& partners, std::vector<Index>& numbers,
                          std::vector<LineBag>& bags) {
    for (Index module = 0; module < partners.size(); ++module) {
      if (partners[module] != kNone) continue;
      numbers.push_back(module);
      bags.push_back(BagOfModule(index.Code(module)));
    }
  };
  if (std::count(newOf.begin(), newOf.end(), kNone) == 0 || std::count(oldOf.begin(), oldOf.end(), kNone) == 0) return;
  collect(work.oldState.index, newOf, olds, oldBags);
  collect(work.newState.index, oldOf, news, newBags);
  const std::vector<std::uint64_t> oldSalts(olds.size()), newSalts(news.size());
  for (const LikePair& pair : LikePairs(oldBags, newBags, oldSalts, newSalts, kRenamedLikeness)) {
    Index& newModule = newOf[olds[pair.oldNumber]];
    Index& oldModule = oldOf[news[pair.newNumber]];
    if (newModule != kNone || oldModule != kNone || oldBags[pair.oldNumber].lines.size() < kFewLines) continue;
    newModule = news[pair.newNumber];
    oldModule = olds[pair.oldNumber];
  }
}

/// Which modules belong together, both ways.
std::pair<std::vector<Index>, std::vector<Index>> ModulePartners(const ComparisonWork& work) {
  const ReferenceIndex& oldIndex = work.oldState.index;
  const ReferenceIndex& newIndex = work.newState.index;
  std::vector<Index> newOf(oldIndex.Modules().size(), kNone), oldOf(newIndex.Modules().size(), kNone);
  ModuleNames names(oldIndex);
  for (Index module = 0; module < oldOf.size(); ++module) {
    const ModuleInfo& info = newIndex.Modules()[module];
    const Index project = work.oldProjectOf[info.project];
    const Index partner = project == kNone ? kNone : names.Take(project, Folded(info.name));
    if (partner == kNone) continue;
    newOf[partner] = module;
    oldOf[module] = partner;
  }
  PairLikeModules(work, newOf, oldOf);
  return {std::move(newOf), std::move(oldOf)};
}

/// A module of a side whose project is not whole on the other one says nothing by standing alone.
bool IsUnknown(const ComparedState& other, const std::vector<Index>& partners, Index project) {
  const Index partner = partners[project];
  if (partner == kNone) return other.lacksProjects;
  return partner < other.partial.size() && other.partial[partner];
}

bool IsEmpty(const language::Module& code) { return code.lines.empty(); }

// ------------------------------------------------------------------------------------------------------- routines

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

std::string Folded(std::string_view name) {
  std::string folded = language::FoldName(name);
  return folded.empty() ? std::string(name) : folded;
}

bool SameText(const language::Module& a, const language::Module& b) noexcept {
  if (a.text == b.text) return true;
  if (a.lines.size() != b.lines.size()) return false;
  for (std::uint32_t line = 1; line <= a.lines.size(); ++line) {
    if (a.LineText(line) != b.LineText(line)) return false;
  }
  return true;
}

void PairProjects(ComparisonWork& work) {
  const auto olds = work.oldState.index.Projects();
  const auto news = work.newState.index.Projects();
  work.newProjectOf.assign(olds.size(), kNone);
  work.oldProjectOf.assign(news.size(), kNone);
  const auto pair = [&](auto key) {
    PairByKey(
        work.newProjectOf, work.oldProjectOf, [&](Index project) { return key(olds[project], work.oldState.root); },
        [&](Index project) { return key(news[project], work.newState.root); });
  };
  if (olds.size() == 1) PairTheOnlyOnes(work.newProjectOf, work.oldProjectOf);
  pair([](const ProjectInfo& info, const std::string& root) {
    // The input itself has an empty path within it, and is one of a kind.
    const std::string path = PathWithin(root, info.file);
    return info.file.empty() ? std::string() : "/" + path;
  });
  pair([](const ProjectInfo& info, const std::string&) { return FileName(info.file); });
  pair([](const ProjectInfo& info, const std::string&) { return Folded(info.name); });
  PairTheOnlyOnes(work.newProjectOf, work.oldProjectOf);
}

void PairModules(ComparisonWork& work) {
  const auto [newOf, oldOf] = ModulePartners(work);
  const ReferenceIndex& oldIndex = work.oldState.index;
  const ReferenceIndex& newIndex = work.newState.index;
  Comparison& result = work.result;
  work.entryOfOld.assign(newOf.size(), kNone);
  work.entryOfNew.assign(oldOf.size(), kNone);
  const auto add = [&](Index oldModule, Index newModule) {
    const auto entry = static_cast<Index>(result.modules.size());
    if (oldModule != kNone) work.entryOfOld[oldModule] = entry;
    if (newModule != kNone) work.entryOfNew[newModule] = entry;
    ModuleChange& change = result.modules.emplace_back();
    change.oldModule = oldModule;
    change.newModule = newModule;
  };
  const auto addGone = [&](Index oldModule) {
    const Index project = oldIndex.Modules()[oldModule].project;
    if (IsUnknown(work.newState, work.newProjectOf, project)) {
      result.notCompared.oldModules.push_back(oldModule);
    } else {
      add(oldModule, kNone);
    }
  };
  // Gone modules follow the one that stood before them.
  std::vector<std::vector<Index>> goneBehind(newOf.size() + 1);
  for (Index module = 0, last = 0; module < newOf.size(); ++module) {
    newOf[module] == kNone ? goneBehind[last].push_back(module) : void(last = module + 1);
  }
  for (const Index module : goneBehind[0]) addGone(module);
  for (Index module = 0; module < oldOf.size(); ++module) {
    const Index partner = oldOf[module];
    const ModuleInfo& info = newIndex.Modules()[module];
    const bool unknown = partner == kNone
                             ? IsUnknown(work.oldState, work.oldProjectOf, info.project)
                             : (IsEmpty(newIndex.Code(module)) && !IsEmpty(oldIndex.Code(partner)) &&
                                IsUnknown(work.newState, work.newProjectOf, oldIndex.Modules()[partner].project)) ||
                                   (IsEmpty(oldIndex.Code(partner)) && !IsEmpty(newIndex.Code(module)) &&
                                    IsUnknown(work.oldState, work.oldProjectOf, info.project));
    unknown ? result.notCompared.newModules.push_back(module) : add(partner, module);
    if (partner == kNone) continue;
    for (const Index gone : goneBehind[partner + 1]) addGone(gone);
  }
}

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
