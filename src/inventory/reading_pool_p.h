#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <quillmate/inventory/scan.h>

#include "folder_walk_p.h"
#include "store_p.h"
#include "worker_process_p.h"

namespace quillmate::inventory {

/// A file that is to be looked at.
struct Job {
  std::int64_t folder = 0;
  std::string name;
  std::filesystem::path path;
  /// Its row, where it has one.
  std::optional<KnownFile> known;
  /// By which the time for fetching it is measured.
  std::uint64_t size = 0;
};

/// Threads that each let one process read, and put into the store what comes of it. The store belongs to whoever holds
/// `StoreLock`.
class ReadingPool {
 public:
  ReadingPool(Store& store, const ScanOptions& options, unsigned jobs);
  /// Ends all processes; files that are being read are left as they were.
  ~ReadingPool();
  ReadingPool(const ReadingPool&) = delete;
  ReadingPool& operator=(const ReadingPool&) = delete;

  std::unique_lock<std::mutex> StoreLock() { return std::unique_lock(storeMutex_); }

  /// False while there is no room; `waited` has passed then.
  bool Put(Job& job, std::chrono::milliseconds waited);
  /// False while files are left; `waited` has passed then.
  bool WaitForEnd(std::chrono::milliseconds waited);
  /// No thread can go on; Rethrow tells why.
  bool Failed() const noexcept { return failed_; }
  void Rethrow();

  std::int64_t Read() const noexcept { return read_; }
  std::int64_t Unread() const noexcept { return unread_; }
  std::int64_t Vanished() const noexcept { return vanished_; }
  std::int64_t Waiting() const noexcept { return waiting_; }

 private:
  /// A process and the time at which it has to be done.
  struct Slot {
    std::mutex mutex;
    std::unique_ptr<WorkerProcess> process;
    std::optional<std::chrono::steady_clock::time_point> deadline;
    bool timedOut = false;
  };
  using Key = std::pair<std::string, std::string>;  // hash, reading

  void RunThread(Slot& slot);
  void WatchTimes();
  bool Take(Job& job);
  void Process(Slot& slot, const Job& job);
  void ProcessContent(Slot& slot, const Job& job, const Message& found);
  void PutContent(const Key& key, FileRow row, const Content& content);
  void GiveBack(const Key& key);
  void PutRow(const Job& job, const Stamp& stamp, State state, std::string reason = {});
  void PutVanished(const Job& job);
  void Count(State state) noexcept;

  void Start(Slot& slot);
  std::optional<Message> Ask(Slot& slot, char kind, std::string_view bytes, std::uint64_t size);
  /// What became of a process that gave no answer.
  Content EndOf(Slot& slot);
  void Done();

  Store& store_;
  const ScanOptions& options_;
  std::mutex storeMutex_;
  /// Contents that are being read, with the files that wait for them. Belongs to the store's lock.
  std::map<Key, std::vector<std::pair<Job, FileRow>>> reading_;

  std::mutex queueMutex_;
  std::condition_variable room_, work_, end_;
  std::deque<Job> queue_;
  std::atomic<std::int64_t> waiting_ = 0, read_ = 0, unread_ = 0, vanished_ = 0;
  std::atomic<bool> stopping_ = false, failed_ = false;
  std::exception_ptr failure_;

  std::vector<std::unique_ptr<Slot>> slots_;
  std::vector<std::thread> threads_;
  std::thread watch_;
};

}  // namespace quillmate::inventory
