#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/analysis/module_indexer.h>
#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/host/project_reader.h>
#include <quillmate/workers/ordered_work.h>

#include "facts_collector_p.h"

namespace quillmate::host {

/// A module before its turn.
struct ReadModule {
  /// `mod_typ`.
  int kind = 0;
  analysis::ScannedModule scan;
  /// But for the number.
  codedb::ModuleFacts facts;
};

/// The index while it is being written. Modules are read, scanned and stored on all cores; what depends on their order
/// is done in it, on this thread: rows, numbers, messages.
class IndexBuild {
 public:
  using Reading = std::function<ReadModule()>;

  /// The database is open, and both outlive this.
  IndexBuild(codedb::CodeDatabase& database, const ReadRequest& request);

  FactsCollector& Facts() noexcept { return facts_; }

  /// Reads the next module: `start` on this thread at once, what it hands back on any. A files::Failure of either
  /// costs the module. `host` is the project's, if it comes from one. May throw for earlier modules.
  void Add(const Ticked& ticked, std::string name, HostAutomation* host, const std::function<Reading()>& start);
  /// Waits for all modules. Throws files::Failure when none could be read.
  void Finish();
  /// Nothing is written any more.
  void Stop() noexcept { work_.Stop(); }

  /// How many modules the index holds.
  int Modules() const noexcept { return modules_; }
  std::vector<std::string>& LeftOut() noexcept { return leftOut_; }
  /// What went wrong, with the file or module that it is about in front.
  std::string Detail(std::string_view reason) const;

 private:
  struct Pending;

  void Take(Pending& pending, const std::exception_ptr& failure);
  void LeaveOut(const Pending& pending, std::string_view reason);
  void Insert(Pending& pending);
  void Store(Pending& pending);

  codedb::CodeDatabase& database_;
  const ReadRequest& request_;
  analysis::ReadState state_;
  int modules_ = 0;
  std::vector<std::string> leftOut_;
  /// The file or module that an error from here on is about, UTF-8.
  std::string subject_;
  FactsCollector facts_;
  workers::OrderedWork work_;
};

}  // namespace quillmate::host
