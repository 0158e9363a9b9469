#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <quillmate/inventory/reason.h>

/// Brings an inventory up to date with the files below some roots.
///
/// Every file is looked at that is new, or has another size or time than before; each distinct content is read once.
/// Files that are gone are marked and stay. Reading is done in processes of their own: what crashes them, takes too
/// long or too much memory, gets a state, and the next file a new process.
namespace quillmate::inventory {

struct ScanProgress {
  /// Files met so far, those of them that needed no look, and those that have been looked at.
  std::int64_t found = 0, unchanged = 0, read = 0;
  /// Files that wait to be read, or are being read.
  std::int64_t waiting = 0;
  /// Files that the last whole run has met; 0 when there was none.
  std::int64_t expected = 0;
  /// All folders have been listed: nothing is added to `waiting` any more.
  bool listed = false;
  std::chrono::milliseconds time{0};
};

struct ScanOptions {
  /// Folders, and single files. Links are not followed, but for a root that is one.
  std::vector<std::filesystem::path> roots;
  /// Patterns of files and folders to leave out: "*" and "?" stand for any characters; with a separator in it a pattern
  /// is held against the whole path, else against the name. Without regard to the case of ASCII letters.
  std::vector<std::string> exclude;
  /// Only files whose paths fall into this one of so many parts; 1-based.
  unsigned shard = 1, shards = 1;
  /// Processes that read; 0: one for each core.
  unsigned jobs = 0;
  /// For one file; what must be fetched first of a large one comes on top.
  std::chrono::milliseconds timeLimit{60000};
  /// For one process, in bytes; 0: none.
  std::uint64_t memoryLimit = std::uint64_t{2} << 30U;
  /// Files that took too long, or ended their reader, are tried again even if they have not changed.
  bool retry = false;
  /// The program that reads, with its arguments: one that calls RunReader.
  std::vector<std::string> readerCommand;
  /// What the run is said to have been made with: "Quillmate 1.0".
  std::string program;
  /// Called from the scanning thread, ten times a second at most.
  std::function<void(const ScanProgress&)> progress;
  /// Set from anywhere: the scan ends soon, and the next one goes on from there.
  const std::atomic<bool>* cancelled = nullptr;
};

struct ScanResult {
  std::int64_t found = 0, unchanged = 0, read = 0, vanished = 0;
  /// Files that nobody could look into, by their own fault or the folder's.
  std::int64_t unread = 0;
  bool cancelled = false;
  /// German, one line each: roots that are missing, folders that can't be listed.
  std::vector<std::string> problems;
};

/// Makes the database where there is none. Throws files::Failure; what was read up to then is kept.
ScanResult Scan(const std::filesystem::path& database, const ScanOptions& options);

/// Ends all scans of this process and waits until their databases are in order, ten seconds at most: for a thread that
/// is about to end the process.
void StopScans() noexcept;

/// The command by which the command line program in that folder reads for a scan.
std::vector<std::string> ReaderCommand(const std::filesystem::path& programFolder);
/// The only argument of such a reader.
inline constexpr const char* kReaderArgument = "inventory-reader";

/// The reader: speaks with the scan that has started it until that ends, and gives the process's exit status. To be
/// called before anything else uses standard input and output.
int RunReader();
/// `before` is called with each path: for tests of what readers may do.
int RunReader(const std::function<void(const std::filesystem::path&)>& before);

}  // namespace quillmate::inventory
