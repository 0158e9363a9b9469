#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <quillmate/files/failure.h>
#include <quillmate/inventory/content.h>

#include "folder_walk_p.h"
#include "sqlite_p.h"

namespace quillmate::inventory {

/// What the database knows of a file.
struct KnownFile {
  std::int64_t number = 0;
  Stamp stamp;
  /// It is to be read again though it has not changed.
  bool stale = false;
  bool vanished = false;
};

struct FileRow {
  std::int64_t folder = 0;
  std::string name;
  Stamp stamp;
  State state = State::kForeign;
  std::string reason;
  std::optional<std::int64_t> content;
};

struct RunCounts {
  std::int64_t files = 0, read = 0, unchanged = 0, vanished = 0;
};

/// The database of a running scan. Nobody else can open it meanwhile; used by one thread at a time. What was put in is
/// safe after Commit; a failure, or the end of the process, takes back what came after the last one.
class Store {
 public:
  /// Makes the database where there is none. `retry`: files that took too long or ended their reader are stale too.
  Store(const std::filesystem::path& file, bool retry);
  ~Store();
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  /// `exclude`: its patterns, one on each line.
  void BeginRun(const std::string& roots, const std::string& shard, const std::string& exclude,
                const std::string& program);
  /// "fertig", "abgebrochen"
  void EndRun(const RunCounts& counts, std::string_view state);

  /// The folder's number; `reason` why it could not be listed. With `entered` this run has been in it.
  std::int64_t PutFolder(std::string_view path, std::string_view reason, bool entered);
  std::unordered_map<std::string, KnownFile> FilesIn(std::int64_t folder);
  std::optional<KnownFile> FindFile(std::int64_t folder, std::string_view name);
  /// Folders below a path, itself included, that this run has not entered.
  std::vector<std::pair<std::int64_t, std::string>> MissedFolders(std::string_view root);
  /// How many of a folder's files have vanished by that.
  std::int64_t MarkFolderVanished(std::int64_t folder);
  void MarkVanished(std::int64_t file);
  void MarkBack(std::int64_t file);

  struct FoundContent {
    std::int64_t number;
    State state;
  };
  std::optional<FoundContent> FindContent(std::string_view hash, std::string_view reading);
  std::int64_t PutContent(std::string_view hash, std::string_view reading, std::uint64_t size, const Content& content);
  void PutFile(const FileRow& file);

  /// Ends the step when it has grown large enough, or in any case.
  void CommitIfLarge();
  void Commit();
  /// How many files the last run has found; 0 for the first one.
  std::int64_t LastCount();

 private:
  struct Statements;
  void PutRows(std::int64_t number, const Content& content);
  void Touched();

  Database database_;
  std::unique_ptr<Statements> statements_;
  bool retry_;
  std::int64_t run_ = 0;
  /// What is known of the targets of links may not be true any more.
  bool changed_ = false;
  std::int64_t pending_ = 0;
};

}  // namespace quillmate::inventory
