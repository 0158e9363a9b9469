#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/numbers.h>

namespace quillmate::navigation {

/// When the index in a folder was written; the least of all times when there is none.
std::filesystem::file_time_type TimeOfIndex(const std::filesystem::path& folder);

/// The marked-up texts of a project's modules, kept in memory so that one question after the other runs over them. A
/// module's file is read when its text is first asked for; a million lines of code take about 50 MB. A folder that has
/// got another index since it was loaded holds another project: no text is taken from there any more.
class ProjectTexts {
 public:
  /// Turns to the project in `folder` and drops the texts of the one before. To be called after every read, too, since
  /// it writes the files anew.
  void Load(const std::filesystem::path& folder, int moduleCount);

  /// The same project is in another folder now: what has been read stays.
  void MoveTo(const std::filesystem::path& folder);
  /// When the index was written that the texts belong to.
  std::filesystem::file_time_type Time() const noexcept { return time_; }
  /// Throws files::Failure (DatabaseReason::kReplaced) when the folder holds another project by now.
  void CheckFolder() const;

  /// Reads texts that nobody has asked for yet, in the order of their numbers, until `bytes` or more have been read.
  /// False when there is nothing more to read: all are there, or `most` bytes are kept. A file that can't be read is
  /// left to whoever asks for its text.
  bool ReadAhead(std::size_t bytes, std::size_t most);

  const std::filesystem::path& Folder() const noexcept { return folder_; }
  int Count() const noexcept { return static_cast<int>(texts_.size()); }
  /// Text of the module with that `mod_num`, 1 to Count(). Valid until the next Load. Throws files::Failure
  /// when the file can't be read, or belongs to another project by now (DatabaseReason::kReplaced).
  std::string_view Text(codedb::ModuleNumber module);

 private:
  std::filesystem::path folder_;
  std::filesystem::file_time_type time_;
  std::vector<std::optional<std::string>> texts_;
  std::size_t kept_ = 0;   // bytes of all texts read
  std::size_t ahead_ = 0;  // texts before this one have been read ahead
};

}  // namespace quillmate::navigation
