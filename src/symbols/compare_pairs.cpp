#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include <quillmate/language/parse.h>

#include "compare_forms_p.h"
#include "compare_p.h"

/// Which projects and modules belong together.
namespace quillmate::symbols {
namespace {

constexpr std::uint8_t kAllTrivial = trivial::kLayout | trivial::kComment | trivial::kCase;

/// A path in the form in which those of two states are compared, without what is before them.
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

}  // namespace quillmate::symbols
