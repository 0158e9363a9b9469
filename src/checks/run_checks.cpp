#include <algorithm>
#include <atomic>
#include <memory>
#include <tuple>

#include <quillmate/symbols/workers.h>
#include <quillmate/text/operations.h>

#include "check_list_p.h"
#include "duplicates_p.h"
#include "silenced_p.h"

namespace quillmate::checks {
namespace {

/// A check of modules or of routines, and what it can find.
template <typename View>
struct Step {
  void (*run)(View);
  CheckId first, last;
};

constexpr Step<ModuleView&> kModuleSteps[] = {
    {CheckDeclares, CheckId::kPtrSafe, CheckId::kPointerAsLong},
    {CheckCallbacks, CheckId::kPointerAsLong, CheckId::kCallbackAsLong},
    {CheckPointers, CheckId::kPointerInLong, CheckId::kPointerInLong},
    {CheckLibraries, CheckId::kLibrary32, CheckId::kLibrary32},
    {CheckNames, CheckId::kOptionExplicit, CheckId::kImplicitByRef},
    {CheckShadows, CheckId::kHiddenName, CheckId::kHiddenName},
    {CheckAmbiguity, CheckId::kAmbiguousCall, CheckId::kAmbiguousCall},
    {CheckUnused, CheckId::kUnusedRoutine, CheckId::kUnusedLabel},
    {CheckResults, CheckId::kMissingResult, CheckId::kMissingResult},
    {CheckSelection, CheckId::kSelection, CheckId::kSelection},
    {CheckActiveSheet, CheckId::kActiveSheet, CheckId::kForeignCells},
    {CheckRowNumbers, CheckId::kIntegerRow, CheckId::kIntegerRow},
    {CheckMissingSet, CheckId::kMissingSet, CheckId::kMissingSet},
    {CheckOutsideNames, CheckId::kAutoRun, CheckId::kCodeAccess},
    {CheckOutsideTexts, CheckId::kDatabase, CheckId::kExternalLink},
};

constexpr Step<const RoutineView&> kRoutineSteps[] = {
    {CheckErrorHandling, CheckId::kResumeNext, CheckId::kErrorLabel},
    {CheckReachability, CheckId::kUnreachable, CheckId::kEndStatement},
    {CheckDeadStores, CheckId::kUnreadAssignment, CheckId::kUnreadAssignment},
    {CheckLoops, CheckId::kLoopVariable, CheckId::kGoToIntoLoop},
    {CheckSelects, CheckId::kMissingCaseElse, CheckId::kMissingCaseElse},
    {CheckSwitches, CheckId::kSwitchOff, CheckId::kScreenOff},
};

template <typename View>
bool Wants(const Selection& selection, const Step<View>& step) {
  for (auto id = static_cast<unsigned>(step.first); id <= static_cast<unsigned>(step.last); ++id) {
    if (selection.Has(static_cast<CheckId>(id))) return true;
  }
  return false;
}

/// Ends of blocks that only its younger relatives have.
bool IsForeignEnd(std::string_view line) {
  constexpr std::string_view kBlanks = " \t", kEnd = "end ";
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  if (line.size() < kEnd.size() || !text::EqualsIgnoreCase(line.substr(0, kEnd.size()), kEnd)) return false;
  line.remove_prefix(std::min(line.find_first_not_of(kBlanks, kEnd.size()), line.size()));
  constexpr std::string_view kBlocks[] = {"class", "namespace", "module",    "try",
                                          "using", "structure", "interface", "get"};
  return std::ranges::any_of(kBlocks, [=](std::string_view block) {
    return line.size() >= block.size() && text::EqualsIgnoreCase(line.substr(0, block.size()), block);
  });
}

/// Text of another language: nothing can be said of code that can't be read.
bool IsForeign(const language::Module& code) {
  std::size_t unreadable = 0, ends = 0;
  for (const language::Problem& problem : code.problems) {
    if (problem.kind != language::ProblemKind::kUnreadable) continue;
    ++unreadable;
    ends += IsForeignEnd(code.LineText(problem.line));
  }
  return ends > 0 || (unreadable >= 5 && unreadable > code.counts.code / 50);
}

/// What one thread works with.
struct Worker {
  explicit Worker(const ReferenceIndex& index, const Selection& s) : view(index), selection(s) {
    view.selection = &selection;
  }

  void Run(Index module) {
    view.Open(module, workspace);
    if (IsForeign(view.code)) return;
    const std::size_t before = view.findings.size();
    for (const auto& step : kModuleSteps) {
      const bool declares = step.run == CheckDeclares && selection.Has(CheckId::kDeclare);
      if (declares || Wants(selection, step)) step.run(view);
    }
    RunRoutines();
    const bool bodies = selection.Has(CheckId::kDuplicate) || selection.Has(CheckId::kNearDuplicate);
    if (bodies) PrintBodies(view, prints);
    // A step may find more than was asked for.
    const auto first = view.findings.begin() + static_cast<std::ptrdiff_t>(before);
    view.findings.erase(
        std::remove_if(first, view.findings.end(), [&](const Finding& f) { return !selection.Has(f.check); }),
        view.findings.end());
  }

  void RunRoutines() {
    Index cursor = 0;
    for (Index routine = 0; routine < view.code.routines.size(); ++routine) {
      if (view.code.routines[routine].activity != language::Activity::kActive) continue;
      if (!flow.Build(view.code, routine, cursor)) continue;
      const RoutineView found{view, routine, flow, reached};
      for (const auto& step : kRoutineSteps) {
        if (Wants(selection, step)) step.run(found);
      }
    }
  }

  ModuleView view;
  const Selection selection;
  language::Workspace workspace;
  FlowGraph flow;
  std::vector<char> reached;
  std::vector<BodyPrint> prints;
};

bool Before(const Finding& a, const Finding& b) {
  return std::tie(a.module, a.line, a.column, a.check, a.text) < std::tie(b.module, b.line, b.column, b.check, b.text);
}

/// What has no place in the code (line 0: a reference, a button) is told apart by its words.
bool SamePlace(const Finding& a, const Finding& b) {
  return std::tie(a.module, a.line, a.column, a.check) == std::tie(b.module, b.line, b.column, b.check) &&
         (a.line > 0 || a.text == b.text);
}

}  // namespace

std::vector<Finding> RunChecks(const ReferenceIndex& index, const Selection& selection, unsigned threads,
                               const std::atomic<bool>* cancelled) {
  const auto isCancelled = [cancelled] { return cancelled != nullptr && *cancelled; };
  const std::size_t count = index.Modules().size();
  const unsigned workers = symbols::WorkerCount(threads, count);
  std::vector<std::unique_ptr<Worker>> all;
  for (unsigned worker = 0; worker < workers; ++worker) all.push_back(std::make_unique<Worker>(index, selection));
  symbols::ForEachPiece(workers, count, [&](unsigned worker, std::size_t module) {
    if (!isCancelled()) all[worker]->Run(static_cast<Index>(module));
  });
  if (isCancelled()) return {};
  std::vector<Finding> findings;
  std::vector<BodyPrint> prints;
  for (const auto& worker : all) {
    std::ranges::move(worker->view.findings, std::back_inserter(findings));
    std::ranges::move(worker->prints, std::back_inserter(prints));
  }
  CompareBodies(index, prints, selection, findings);
  CheckLooseEnds(index, selection, findings);
  std::ranges::sort(findings, Before);
  findings.erase(std::unique(findings.begin(), findings.end(), SamePlace), findings.end());
  RemoveSilenced(index, findings);
  return findings;
}

}  // namespace quillmate::checks
