#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <unordered_set>

#include <quillmate/files/failure.h>
#include <quillmate/files/identity.h>
#include <quillmate/files/paths.h>
#include <quillmate/inventory/scan.h>

#include "folder_walk_p.h"
#include "name_pattern_p.h"
#include "path_text_p.h"
#include "reading_pool_p.h"
#include "store_p.h"

namespace quillmate::inventory {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kStep{100};

/// The scans of this process, so that a signal can end them in order.
struct Running {
  std::mutex mutex;
  std::condition_variable ended;
  int scans = 0;
  std::atomic<bool> stopped = false;
};
Running& TheRunning() {
  static Running running;
  return running;
}

class RunningMark {
 public:
  RunningMark() {
    const std::lock_guard lock(TheRunning().mutex);
    ++TheRunning().scans;
  }
  ~RunningMark() {
    const std::lock_guard lock(TheRunning().mutex);
    --TheRunning().scans;
    TheRunning().ended.notify_all();
  }
  RunningMark(const RunningMark&) = delete;
  RunningMark& operator=(const RunningMark&) = delete;
};

unsigned JobsOf(const ScanOptions& options) {
  return options.jobs > 0 ? options.jobs : std::max(1U, std::thread::hardware_concurrency());
}

class Scanner {
 public:
  Scanner(const fs::path& database, const ScanOptions& options)
      : options_(options),
        own_(files::AbsolutePath(database)),
        store_(database, options.retry),
        pool_(store_, options, JobsOf(options)) {
    progress_.expected = store_.LastCount();
  }

  ScanResult Run() {
    {
      const auto lock = pool_.StoreLock();
      store_.BeginRun(RootsText(), ShardText(), Lines(options_.exclude), options_.program);
    }
    for (const fs::path& root : options_.roots) TakeRoot(root);
    progress_.listed = true;
    while (!Stopped() && !pool_.WaitForEnd(kStep)) Tell();
    if (pool_.Failed()) pool_.Rethrow();
    return Finish();
  }

 private:
  bool Stopped() const {
    return TheRunning().stopped || pool_.Failed() || (options_.cancelled != nullptr && *options_.cancelled);
  }

  std::string RootsText() const {
    std::string text;
    for (const fs::path& root : options_.roots) {
      constexpr std::size_t kMost = 4000;
      if (text.size() > kMost) return text + "\n...";
      text.append(text.empty() ? "" : "\n").append(StoredText(root));
    }
    return text;
  }
  static std::string Lines(const std::vector<std::string>& patterns) {
    std::string text;
    for (const std::string& each : patterns) text.append(text.empty() ? "" : "\n").append(each);
    return text;
  }
  std::string ShardText() const {
    return options_.shards > 1 ? std::to_string(options_.shard) + "/" + std::to_string(options_.shards) : "";
  }

  ScanResult Finish() {
    Tell(true);
    ScanResult result;
    result.cancelled = Stopped();
    result.found = progress_.found;
    result.unchanged = progress_.unchanged;
    result.read = pool_.Read();
    result.unread = pool_.Unread();
    result.vanished = vanished_ + pool_.Vanished();
    result.problems = std::move(problems_);
    const auto lock = pool_.StoreLock();
    store_.EndRun({result.found, result.read, result.unchanged, result.vanished},
                  result.cancelled ? "abgebrochen" : "fertig");
    return result;
  }

  void Tell(bool last = false) {
    const auto now = Clock::now();
    if (!options_.progress || (!last && now - told_ < kStep)) return;
    told_ = now;
    progress_.read = pool_.Read();
    progress_.waiting = pool_.Waiting();
    progress_.time = std::chrono::duration_cast<std::chrono::milliseconds>(now - start_);
    options_.progress(progress_);
  }

  void TakeRoot(const fs::path& given) {
    std::error_code error;
    // A root that is a link means what it leads to.
    fs::path root = files::NormalPath(files::AbsolutePath(given));
    if (!root.has_filename() && root.has_parent_path() && root != root.root_path()) root = root.parent_path();
    if (files::IsLink(root)) root = files::RealPath(root, error);
    Stamp stamp;
    if (fs::is_directory(root, error)) {
      TakeTree(root);
    } else if (StampOf(root, stamp)) {
      TakeSingle(root, stamp);
    } else {
      TakeMissing(root, given);
    }
  }

  /// A file by itself: nothing is said about the others in its folder.
  void TakeSingle(const fs::path& file, const Stamp& stamp) {
    const std::string folder = StoredText(file.parent_path());
    std::vector<Job> jobs;
    {
      const auto lock = pool_.StoreLock();
      const std::string name = StoredText(file.filename());
      if (!IsWanted(folder, name, file)) return;
      const std::int64_t number = store_.PutFolder(folder, {}, false);
      TakeFile({number, name, file, store_.FindFile(number, name), stamp.size}, stamp, jobs);
    }
    Queue(jobs);
  }

  void TakeMissing(const fs::path& file, const fs::path& given) {
    problems_.push_back(StoredText(given) + ": Datei oder Ordner ist nicht vorhanden oder nicht lesbar");
    const auto lock = pool_.StoreLock();
    const std::int64_t number = store_.PutFolder(StoredText(file.parent_path()), {}, false);
    if (const auto known = store_.FindFile(number, StoredText(file.filename())); known && !known->vanished) {
      store_.MarkVanished(known->number);
      ++vanished_;
    }
  }

  void TakeTree(const fs::path& root) {
    std::vector<fs::path> open{root};
    std::vector<std::string> failed;
    while (!open.empty() && !Stopped()) {
      const fs::path folder = std::move(open.back());
      open.pop_back();
      if (IsNewFolder(folder)) TakeFolder(folder, open, failed);
    }
    if (!Stopped()) MarkVanishedBelow(root, failed);
  }

  bool IsNewFolder(const fs::path& folder) {
    const auto identity = files::IdentityOf(folder);
    if (!identity) return true;
    std::uint64_t hash = identity->volume;
    for (const std::uint64_t part : identity->number) {
      hash = (hash ^ part) * 0x9E3779B97F4A7C15U;
      hash ^= hash >> 29U;
    }
    return entered_.insert(hash).second;
  }

  void TakeFolder(const fs::path& folder, std::vector<fs::path>& open, std::vector<std::string>& failed) {
    std::error_code error;
    const std::vector<WalkEntry> entries = ListFolder(folder, error);
    const std::string stored = StoredText(folder);
    if (error) {
      problems_.push_back(stored + ": Ordner kann nicht gelesen werden: " + files::ReasonText(error));
      failed.push_back(stored);
    }
    std::vector<Job> jobs;
    {
      const auto lock = pool_.StoreLock();
      const std::string reason = error ? "Ordner kann nicht gelesen werden: " + files::ReasonText(error) : "";
      const std::int64_t number = store_.PutFolder(stored, reason, !error);
      auto known = store_.FilesIn(number);
      for (const WalkEntry& entry : entries) {
        fs::path path = folder / entry.name;
        const std::string name = StoredText(entry.name);
        if (entry.isFolder) {
          // What is left out is not gone.
          if (patterns_.Match(name, stored)) {
            failed.push_back(StoredText(path));
          } else {
            open.push_back(std::move(path));
          }
          continue;
        }
        if (!IsWanted(stored, name, path)) {
          known.erase(name);
          continue;
        }
        Job job{number, name, std::move(path), std::nullopt, entry.stamp.size};
        if (const auto found = known.find(name); found != known.end()) {
          job.known = found->second;
          known.erase(found);
        }
        TakeFile(std::move(job), entry.stamp, jobs);
      }
      for (const auto& [name, file] : known) {
        if (error || file.vanished) continue;
        store_.MarkVanished(file.number);
        ++vanished_;
      }
      store_.CommitIfLarge();
    }
    Queue(jobs);
    Tell();
  }

  bool IsWanted(const std::string& folder, const std::string& name, const fs::path& path) const {
    if (options_.shards > 1 && PathHash(folder + '/' + name) % options_.shards != options_.shard - 1) return false;
    if (path == own_ || path.native() == own_.native() + fs::path("-journal").native()) return false;
    return !patterns_.Match(name, folder);
  }

  void TakeFile(Job job, const Stamp& stamp, std::vector<Job>& jobs) {
    ++progress_.found;
    if (job.known && job.known->stamp == stamp && !job.known->stale) {
      ++progress_.unchanged;
      if (job.known->vanished) store_.MarkBack(job.known->number);
      return;
    }
    jobs.push_back(std::move(job));
  }

  void Queue(std::vector<Job>& jobs) {
    for (Job& job : jobs) {
      while (!Stopped() && !pool_.Put(job, kStep)) Tell();
      if (Stopped()) return;
    }
  }

  void MarkVanishedBelow(const fs::path& root, const std::vector<std::string>& failed) {
    const auto lock = pool_.StoreLock();
    for (const auto& [number, path] : store_.MissedFolders(StoredText(root))) {
      // What is below a folder that could not be listed may be there all the same.
      const bool unknown = std::any_of(failed.begin(), failed.end(), [&path = path](const std::string& each) {
        return path.starts_with(each) && (path.size() == each.size() || path[each.size()] == '/' ||
                                          path[each.size()] == '\\' || each.ends_with('/'));
      });
      if (!unknown) vanished_ += store_.MarkFolderVanished(number);
    }
    store_.CommitIfLarge();
  }

  const RunningMark mark_;
  const ScanOptions& options_;
  const fs::path own_;
  const NamePatterns patterns_{options_.exclude};
  Store store_;
  ReadingPool pool_;
  ScanProgress progress_;
  std::unordered_set<std::uint64_t> entered_;
  std::vector<std::string> problems_;
  std::int64_t vanished_ = 0;
  const Clock::time_point start_ = Clock::now();
  Clock::time_point told_{};
};

}  // namespace

ScanResult Scan(const fs::path& database, const ScanOptions& options) { return Scanner(database, options).Run(); }

void StopScans() noexcept {
  constexpr std::chrono::seconds kPatience{10};
  Running& running = TheRunning();
  running.stopped = true;
  std::unique_lock lock(running.mutex);
  running.ended.wait_for(lock, kPatience, [&] { return running.scans == 0; });
}

std::vector<std::string> ReaderCommand(const fs::path& programFolder) {
#ifdef _WIN32
  const fs::path program = programFolder / L"quillmate-cli.exe";
#else
  const fs::path program = programFolder / "quillmate-cli";
#endif
  return {files::PathText(program), kReaderArgument};
}

}  // namespace quillmate::inventory
