#include <algorithm>
#include <utility>

#include <quillmate/symbols/calls.h>
#include <quillmate/symbols/workers.h>

#include "site_calls_p.h"

namespace quillmate::output {
namespace {

std::vector<int> CalleesOf(const SiteModel& model, symbols::SymbolId routine) {
  std::vector<std::pair<std::uint32_t, int>> found;
  for (const symbols::CallEdge& edge : symbols::CalleesOf(model.known, routine)) {
    const int called = edge.certainty == symbols::Certainty::kSure ? model.RoutineOf(edge.routine) : kNoRoutine;
    if (called != kNoRoutine) found.emplace_back(edge.lines.front(), called);
  }
  std::sort(found.begin(), found.end());
  std::vector<int> callees;
  for (const auto& [line, called] : found) {
    if (std::find(callees.begin(), callees.end(), called) == callees.end()) callees.push_back(called);
  }
  return callees;
}

}  // namespace

SiteCalls::SiteCalls(const SiteModel& model) : callees_(model.routines.size()), callers_(model.routines.size()) {
  const std::size_t modules = model.modules.size();
  symbols::ForEachPiece(symbols::WorkerCount(0, modules), modules, [&](unsigned, std::size_t module) {
    for (int i = model.modules[module].first; i < model.modules[module].last; ++i) {
      const symbols::SymbolId symbol = model.Routine(i).symbol;
      if (symbol != symbols::kNone) callees_[static_cast<std::size_t>(i)] = CalleesOf(model, symbol);
    }
  });
  for (std::size_t caller = 0; caller < callees_.size(); ++caller) {
    for (const int called : callees_[caller]) {
      callers_[static_cast<std::size_t>(called)].push_back(static_cast<int>(caller));
    }
  }
}

}  // namespace quillmate::output
