#pragma once

#include <cstdint>
#include <filesystem>

/// Whether a file is still as it was.
namespace quillmate::files {

/// What tells one state of a file from the next: its size and when it was last changed.
struct FileStamp {
  std::uintmax_t size = 0;
  /// Nanoseconds, counted as the system's clock does.
  std::int64_t changed = 0;
  /// False when it was changed so shortly before that another change would not show, and when it can't be looked at.
  bool settled = false;
};

/// Links are followed.
FileStamp StampOf(const std::filesystem::path& file) noexcept;
/// True when the file is as it was when `stamp` was taken.
bool IsUnchanged(const std::filesystem::path& file, const FileStamp& stamp) noexcept;

}  // namespace quillmate::files
