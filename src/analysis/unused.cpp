#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include <quillmate/analysis/unused.h>
#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/records.h>

#include "unused_names_p.h"
#include "unused_order_p.h"
#include "unused_scan_p.h"
#include "unused_text_p.h"

namespace quillmate::analysis {
namespace {

/// Routines whose names nothing but the query knew and their turns side by side, in the order of the query.
struct CandidateList {
  std::vector<const codedb::RoutineRecord*> routines;
  std::vector<Turn> turns;
};

bool IsCandidate(const codedb::RoutineRecord& routine) {
  return !routine.name.empty() && (routine.kind < codedb::kLet || codedb::IsDeclare(routine.kind));
}

class UnusedReport {
 public:
  UnusedReport(codedb::CodeDatabase& database, const std::filesystem::path& folder)
      : database_(database), folder_(folder), modules_(database.ReadIndex()), privates_(modules_.size()) {
    ReadPublics();
    for (std::size_t i = 0; i < modules_.size(); ++i) ReadPrivates(modules_[i], privates_[i]);
  }

  std::vector<UnusedRoutine> Run(const std::atomic<bool>* cancelled) {
    NameScan scan(names_);
    SearchOrder turns(names_, publics_.turns);
    for (std::size_t i = 0; i < modules_.size(); ++i) {
      if (cancelled != nullptr && *cancelled) return {};
      ScanModule(i, scan, turns);
    }
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
      publicsOf_[found->second.second].push_back(publics_.routines.size());
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
    list.routines.push_back(&routine);
    list.turns.push_back({.name = names_.Add(routine.name)});
  }

  void ScanModule(std::size_t index, NameScan& scan, SearchOrder& turns) {
    const std::string code = PrepareReferenceText(codedb::ReadModuleText(folder_, modules_[index].number));
    turns.Take(code, scan.Scan(code), privates_[index].turns);
  }

  void Append(std::vector<UnusedRoutine>& unused, const codedb::ModuleRecord& module, const CandidateList& list,
              std::size_t i) {
    if (list.turns[i].referenced) return;
    const codedb::RoutineRecord& routine = *list.routines[i];
    unused.push_back({module.number, routine.number, module.name, routine.name});
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

std::vector<UnusedRoutine> FindUnusedRoutines(codedb::CodeDatabase& database, const std::filesystem::path& folder,
                                              const std::atomic<bool>* cancelled) {
  return UnusedReport(database, folder).Run(cancelled);
}

}  // namespace quillmate::analysis
