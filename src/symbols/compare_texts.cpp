#include <algorithm>

#include <quillmate/symbols/workers.h>

#include "compare_forms_p.h"
#include "compare_p.h"

/// The pieces of the modules, and how they differ.
namespace quillmate::symbols {
namespace {

using language::LineClass;
using language::Module;

bool IsHidden(const Module& module, std::uint32_t line) noexcept {
  const LineClass lineClass = module.lines[line - 1].lineClass;
  return lineClass == LineClass::kAttribute || lineClass == LineClass::kHeader;
}

/// The first line of a routine's piece, hidden ones included; after the last one of the routine before it.
std::uint32_t FirstLineOf(const Module& module, Index number) noexcept {
  const language::Routine& routine = module.routines[number];
  const std::uint32_t free = number == 0 ? 1 : module.routines[number - 1].lastLine + 1;
  std::uint32_t first = routine.descriptionFirst != 0 ? routine.descriptionFirst : routine.firstLine;
  first = std::max(first, free);
  while (first > free && module.lines[first - 2].lineClass == LineClass::kBlank) --first;
  return first;
}

/// Edits between two texts that are both there.
PieceChange Compared(const Module& oldCode, const PieceLines& oldLines, const Module& newCode,
                     const PieceLines& newLines, std::uint8_t ignore) {
  return ComparePieces(TextsOf(oldCode, oldLines), TextsOf(newCode, newLines), ignore);
}

PieceChange AllNew(std::size_t oldLines, std::size_t newLines) {
  PieceChange change;
  change.changed = true;
  if (oldLines + newLines > 0) {
    change.edits.push_back({0, static_cast<std::uint32_t>(oldLines), 0, static_cast<std::uint32_t>(newLines)});
  }
  return change;
}

class TextComparer {
 public:
  TextComparer(const ComparisonWork& work, ModuleChange& change) : work_(work), change_(change) {}

  void Run() {
    if (change_.newModule == kNone) {
      const auto& partners = work_.partnersOfOld[change_.oldModule];
      for (Index routine = 0; routine < partners.size(); ++routine) AddOld(routine);
      change_.outside = AllNew(OutsideLines(OldCode()).size(), 0);
      return;
    }
    const bool same = change_.oldModule != kNone && SameText(OldCode(), NewCode());
    PlaceOldRoutines();
    for (const Index routine : oldBehind_[0]) AddOld(routine);
    for (Index routine = 0; routine < NewCode().routines.size(); ++routine) {
      AddNew(routine, same);
      for (const Index gone : oldBehind_[routine + 1]) AddOld(gone);
    }
    if (same) return;
    change_.outside = change_.oldModule == kNone
                          ? AllNew(0, OutsideLines(NewCode()).size())
                          : Compared(OldCode(), OutsideLines(OldCode()), NewCode(), OutsideLines(NewCode()), Ignored());
  }

 private:
  const Module& OldCode() const { return work_.oldState.index.Code(change_.oldModule); }
  const Module& NewCode() const { return work_.newState.index.Code(change_.newModule); }
  std::uint8_t Ignored() const noexcept { return work_.result.options.ignore; }

  /// Routines that this module has no more, after the one that stood before them.
  void PlaceOldRoutines() {
    oldBehind_.resize(NewCode().routines.size() + 1);
    if (change_.oldModule == kNone) return;
    const auto& partners = work_.partnersOfOld[change_.oldModule];
    std::size_t last = 0;
    for (Index routine = 0; routine < partners.size(); ++routine) {
      if (partners[routine].module == change_.newModule) {
        last = partners[routine].routine + std::size_t{1};
      } else {
        oldBehind_[last].push_back(routine);
      }
    }
  }

  void AddOld(Index number) {
    const RoutinePlace oldPlace{change_.oldModule, number};
    const RoutinePlace partner = work_.partnersOfOld[change_.oldModule][number];
    if (partner.IsKnown()) {
      change_.departures.push_back({oldPlace, partner});
      return;
    }
    RoutineChange& routine = change_.routines.emplace_back();
    routine.state = ChangeState::kGone;
    routine.oldPlace = oldPlace;
    routine.text = AllNew(RoutineLines(OldCode(), number).size(), 0);
  }

  void AddNew(Index number, bool same) {
    RoutineChange& routine = change_.routines.emplace_back();
    routine.newPlace = {change_.newModule, number};
    routine.oldPlace = work_.partnersOfNew[change_.newModule][number];
    if (!routine.oldPlace.IsKnown()) {
      routine.state = ChangeState::kNew;
      routine.text = AllNew(0, RoutineLines(NewCode(), number).size());
      return;
    }
    if (same && routine.oldPlace.module == change_.oldModule) return;
    const Module& oldCode = work_.oldState.index.Code(routine.oldPlace.module);
    routine.text = Compared(oldCode, RoutineLines(oldCode, routine.oldPlace.routine), NewCode(),
                            RoutineLines(NewCode(), number), Ignored());
    const auto nameHash = [](const Module& code, Index r) {
      return code.NameHash(code.declarations[code.routines[r].declaration].name);
    };
    routine.nameChanged = nameHash(oldCode, routine.oldPlace.routine) != nameHash(NewCode(), number);
    if (routine.oldPlace.module != change_.oldModule) {
      routine.state = ChangeState::kMoved;
    } else if (routine.nameChanged) {
      routine.state = ChangeState::kRenamed;
    } else if (!routine.text.IsSame()) {
      routine.state = routine.text.changed ? ChangeState::kChanged : ChangeState::kLayout;
    }
  }

  const ComparisonWork& work_;
  ModuleChange& change_;
  std::vector<std::vector<Index>> oldBehind_;
};

/// The routines that stayed have another order.
bool IsReordered(const ModuleChange& change) {
  Index last = 0;
  for (const RoutineChange& routine : change.routines) {
    if (!routine.newPlace.IsKnown() || routine.oldPlace.module != change.oldModule) continue;
    if (routine.oldPlace.routine < last) return true;
    last = routine.oldPlace.routine;
  }
  return false;
}

/// Takes one difference into account: bits of what is trivial, or more.
struct Judgement {
  bool changed = false;
  std::uint8_t trivial = 0;
  void Add(const PieceChange& piece) {
    changed = changed || piece.changed;
    trivial |= piece.trivial;
  }
};

Judgement JudgeContents(const ModuleChange& change, std::uint8_t ignore) {
  Judgement judgement;
  judgement.Add(change.outside);
  for (const RoutineChange& routine : change.routines) {
    if (routine.state == ChangeState::kLayout || routine.state == ChangeState::kSame) {
      judgement.Add(routine.text);
    } else {
      judgement.changed = true;
    }
  }
  judgement.changed = judgement.changed || !change.departures.empty() || !change.declarations.empty();
  for (const FactChange& fact : change.facts) {
    if (!fact.counts) continue;
    fact.state == ChangeState::kLayout ? void(judgement.trivial |= trivial::kLayout) : void(judgement.changed = true);
  }
  if ((ignore & trivial::kLayout) == 0 && IsReordered(change)) judgement.trivial |= trivial::kLayout;
  return judgement;
}

ChangeState StateOf(const ComparisonWork& work, const ModuleChange& change, const Judgement& judgement) {
  if (change.oldModule == kNone) return ChangeState::kNew;
  if (change.newModule == kNone) return ChangeState::kGone;
  const ModuleInfo& oldInfo = work.oldState.index.Modules()[change.oldModule];
  const ModuleInfo& newInfo = work.newState.index.Modules()[change.newModule];
  if (work.newProjectOf[oldInfo.project] != newInfo.project) return ChangeState::kMoved;
  if (Folded(oldInfo.name) != Folded(newInfo.name)) return ChangeState::kRenamed;
  if (judgement.changed) return ChangeState::kChanged;
  return judgement.trivial != 0 ? ChangeState::kLayout : ChangeState::kSame;
}

}  // namespace

PieceLines RoutineLines(const Module& module, Index routine) {
  PieceLines lines;
  const std::uint32_t last = module.routines[routine].lastLine;
  for (std::uint32_t line = FirstLineOf(module, routine); line <= last; ++line) {
    if (!IsHidden(module, line)) lines.push_back(line);
  }
  return lines;
}

PieceLines OutsideLines(const Module& module) {
  PieceLines lines;
  std::uint32_t line = 1;
  const auto takeTo = [&](std::uint32_t end) {
    for (; line < end; ++line) {
      if (!IsHidden(module, line)) lines.push_back(line);
    }
  };
  for (Index routine = 0; routine < module.routines.size(); ++routine) {
    takeTo(FirstLineOf(module, routine));
    line = std::max(line, module.routines[routine].lastLine + 1);
  }
  takeTo(static_cast<std::uint32_t>(module.lines.size()) + 1);
  return lines;
}

std::vector<std::string_view> TextsOf(const Module& module, const PieceLines& lines) {
  std::vector<std::string_view> texts;
  texts.reserve(lines.size());
  for (const std::uint32_t line : lines) texts.push_back(module.LineText(line));
  return texts;
}

void CompareTexts(ComparisonWork& work) {
  std::vector<ModuleChange>& modules = work.result.modules;
  ForEachPiece(WorkerCount(0, modules.size()), modules.size(),
               [&](unsigned, std::size_t entry) { TextComparer(work, modules[entry]).Run(); });
}

void JudgeModules(ComparisonWork& work) {
  Comparison& result = work.result;
  for (ModuleChange& change : result.modules) {
    const Judgement judgement = JudgeContents(change, result.options.ignore);
    change.state = StateOf(work, change, judgement);
    if (change.state == ChangeState::kLayout) change.trivial = judgement.trivial;
    if (change.state != ChangeState::kSame) result.equal = false;
  }
  for (ProjectChange& change : result.projects) {
    const bool counts = std::any_of(change.facts.begin(), change.facts.end(), [](const auto& f) { return f.counts; });
    const bool both = change.oldProject != kNone && change.newProject != kNone;
    if (both && counts) change.state = ChangeState::kChanged;
    if (change.state != ChangeState::kSame) result.equal = false;
  }
}

ChangeCounts CountChanges(const Comparison& comparison) {
  ChangeCounts counts;
  const auto addLines = [&](const PieceChange& piece) {
    for (const Edit& edit : piece.edits) {
      counts.addedLines += edit.newCount;
      counts.removedLines += edit.oldCount;
    }
  };
  for (const ModuleChange& module : comparison.modules) {
    ++counts.modules[static_cast<std::size_t>(module.state)];
    addLines(module.outside);
    for (const RoutineChange& routine : module.routines) {
      ++counts.routines[static_cast<std::size_t>(routine.state)];
      addLines(routine.text);
    }
  }
  return counts;
}

}  // namespace quillmate::symbols
