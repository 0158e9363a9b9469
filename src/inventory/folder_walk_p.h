#pragma once

#include <cstdint>
#include <filesystem>
#include <system_error>
#include <vector>

namespace quillmate::inventory {

/// What tells one state of a file from the next.
struct Stamp {
  std::uint64_t size = 0;
  /// Nanoseconds since 1970, UTC.
  std::int64_t time = 0;
  bool operator==(const Stamp&) const = default;
};

/// One name in a folder. Links, devices and pipes are left out.
struct WalkEntry {
  std::filesystem::path::string_type name;
  bool isFolder = false;
  Stamp stamp;
};

/// What is in a folder, in no order, with sizes and times. With an error what could be listed before it.
std::vector<WalkEntry> ListFolder(const std::filesystem::path& folder, std::error_code& error);

/// Of a regular file that is no link; nothing else has one.
bool StampOf(const std::filesystem::path& file, Stamp& stamp) noexcept;

}  // namespace quillmate::inventory
