#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include <quillmate/analysis/unused.h>
#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/records.h>
#include <quillmate/text/operations.h>

#include "unused_events_p.h"
#include "unused_names_p.h"
#include "unused_order_p.h"
#include "unused_scan_p.h"
#include "unused_text_p.h"

namespace quillmate::analysis {
namespace {

/// A name that nothing but the query knew, with the routine that bears it.
struct Candidate {
  const codedb::RoutineRecord* routine = nullptr;
  /// What the module of the routine says about it.
  bool hooked = false;
  bool inOtherSpelling = false;
};

/// Candidates and their turns side by side, in the order of the query.
struct CandidateList {
  std::vector<Candidate> candidates;
  std::vector<Turn> turns;
};

bool IsCandidate(const codedb::RoutineRecord& routine) {
  return !routine.name.empty() && (routine.kind < codedb::kLet || codedb::IsDeclare(routine.kind));
}

/// Whether the host or another class calls the routine for something that is in its module's code.
bool IsHooked(const codedb::RoutineRecord& routine, const ReferenceText& text) {
  if (routine.kind != codedb::kSub && routine.kind != codedb::kFunction) return false;
  const auto isEventOf = [&](const std::string& source) {
    return routine.name.size() > source.size() && routine.name[source.size()] == '_' &&
           text::StartsWithIgnoreCase(routine.name, source);
  };
  return std::ranges::any_of(text.eventSources, isEventOf) ||
         (routine.start && std::ranges::find(text.ribbonLines, *routine.start) != text.ribbonLines.end());
}

class UnusedReport {
 public:
  UnusedReport(codedb::CodeDatabase& database, const std::filesystem::path& folder)
      : database_(database), folder_(folder), modules_(database.ReadIndex()), privates_(modules_.size()) {
    ReadPublics();
    for (std::size_t i = 0; i < modules_.size(); ++i) ReadPrivates(modules_[i], privates_[i]);
  }

  std::vector<UnusedRoutine> Run() {
    NameScan scan(names_);
    SearchOrder turns(names_, publics_.turns);
    for (std::size_t i = 0; i < modules_.size(); ++i) ScanModule(i, scan, turns);
    return List();
  }

 private:
  void ReadPublics() {
    std::unordered_map<std::string_view, std::pair<const codedb::RoutineRecord*, std::size_t>> routines;
    for (std::size_t i = 0; i < modules_.size(); ++i) {
      for (const codedb::RoutineRecord& routine : modules_[i].routines) {
        if (IsCandidate(routine) && routine.visibility == codedb::kPublic) routines[routine.name] = {&routine, i};
      }
    }
    publicsOf_.resize(modules_.size());
    for (const std::string& name : database_.PublicCandidates()) {
      const auto found = routines.find(name);
      if (found == routines.end()) continue;
      publicsOf_[found->second.second].push_back(publics_.candidates.size());
      Add(publics_, *found->second.first);
    }
  }

  void ReadPrivates(const codedb::ModuleRecord& module, CandidateList& list) {
    std::multimap<std::string_view, const codedb::RoutineRecord*> routines;
    for (const codedb::RoutineRecord& routine : module.routines) {
      if (IsCandidate(routine) && routine.visibility > codedb::kPublic) routines.emplace(routine.name, &routine);
    }
    for (const std::string& name : database_.PrivateCandidates(module.number)) {
      const auto found = routines.lower_bound(name);  // of several the first that is left
      if (found == routines.end() || found->first != name) continue;
      Add(list, *found->second);
      routines.erase(found);
    }
  }

  void Add(CandidateList& list, const codedb::RoutineRecord& routine) {
    list.candidates.push_back({.routine = &routine});
    list.turns.push_back({.name = names_.Add(routine.name)});
  }

  void ScanModule(std::size_t index, NameScan& scan, SearchOrder& turns) {
    const codedb::ModuleNumber number = modules_[index].number;
    const std::string marked = codedb::ReadModuleText(folder_, number);
    const ReferenceText text = PrepareReferenceText(marked);
    CandidateList& list = privates_[index];
    turns.Take(text.code, scan.Scan(text, number), list.turns);
    for (const std::size_t i : publicsOf_[index]) {
      publics_.candidates[i].hooked = IsHooked(*publics_.candidates[i].routine, text);
    }
    for (std::size_t i = 0; i < list.turns.size(); ++i) {
      const CandidateNames::Group* const group = names_.GroupOf(list.turns[i].name);
      list.candidates[i].hooked = IsHooked(*list.candidates[i].routine, text);
      list.candidates[i].inOtherSpelling = group != nullptr && group->lastModule == number;
    }
  }

  UnusedClass ClassOf(const Candidate& candidate, const Turn& turn, int moduleKind) {
    const codedb::RoutineRecord& routine = *candidate.routine;
    const bool called = routine.kind == codedb::kSub && IsCalledByHost(routine.name, moduleKind);
    if (called || candidate.hooked) return UnusedClass::kHost;
    const CandidateNames::Group* const group = names_.GroupOf(turn.name);
    // Friend routines are looked for in their own module alone, but others may call them.
    const bool seenElsewhere =
        routine.visibility != codedb::kPrivate && group != nullptr && group->lastModule.value != 0;
    const bool named = candidate.inOtherSpelling || seenElsewhere || (group != nullptr && group->inLiteral);
    return named ? UnusedClass::kText : UnusedClass::kCertain;
  }

  void Append(std::vector<UnusedRoutine>& unused, const codedb::ModuleRecord& module, const CandidateList& list,
              std::size_t i) {
    if (list.turns[i].referenced) return;
    const codedb::RoutineRecord& routine = *list.candidates[i].routine;
    unused.push_back({module.number, routine.number, module.name, routine.name,
                      ClassOf(list.candidates[i], list.turns[i], module.kind)});
  }

  std::vector<UnusedRoutine> List() {
    std::vector<UnusedRoutine> unused;
    for (std::size_t m = 0; m < modules_.size(); ++m) {
      for (const std::size_t i : publicsOf_[m]) Append(unused, modules_[m], publics_, i);
      for (std::size_t i = 0; i < privates_[m].turns.size(); ++i) Append(unused, modules_[m], privates_[m], i);
    }
    return unused;
  }

  codedb::CodeDatabase& database_;
  std::filesystem::path folder_;
  std::vector<codedb::ModuleRecord> modules_;
  CandidateNames names_;
  CandidateList publics_;
  std::vector<std::vector<std::size_t>> publicsOf_;  // by module: indices in publics_
  std::vector<CandidateList> privates_;              // by module
};

}  // namespace

std::string_view UnusedClassName(UnusedClass unused) noexcept {
  switch (unused) {
    case UnusedClass::kCertain:
      return "sicher";
    case UnusedClass::kHost:
      return "host";
    default:
      return "text";
  }
}

std::vector<UnusedRoutine> FindUnusedRoutines(codedb::CodeDatabase& database, const std::filesystem::path& folder) {
  return UnusedReport(database, folder).Run();
}

}  // namespace quillmate::analysis
