#include <memory>
#include <string_view>

#include <windows.h>

#include "folder_walk_p.h"

namespace quillmate::inventory {
namespace {

std::uint64_t Joined(DWORD high, DWORD low) noexcept { return std::uint64_t{high} << 32U | low; }

/// Steps of 100 ns since 1601.
std::int64_t TimeOf(const FILETIME& time) noexcept {
  constexpr std::int64_t kEpoch = 116444736000000000;
  return (static_cast<std::int64_t>(Joined(time.dwHighDateTime, time.dwLowDateTime)) - kEpoch) * 100;
}

struct CloseFind {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const noexcept { FindClose(handle); }
};

}  // namespace

std::vector<WalkEntry> ListFolder(const std::filesystem::path& folder, std::error_code& error) {
  std::vector<WalkEntry> entries;
  error.clear();
  const auto fail = [&] { error.assign(static_cast<int>(GetLastError()), std::system_category()); };
  WIN32_FIND_DATAW found = {};
  HANDLE handle = FindFirstFileExW((folder / L"*").c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr,
                                   FIND_FIRST_EX_LARGE_FETCH);
  if (handle == INVALID_HANDLE_VALUE) {
    // A drive may have nothing in it, not even itself.
    if (GetLastError() != ERROR_FILE_NOT_FOUND) fail();
    return entries;
  }
  const std::unique_ptr<HANDLE, CloseFind> search(handle);
  do {
    const std::wstring_view name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    // Links and junctions; files that a service fetches when they are read are files.
    const bool isLink =
        (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
        (found.dwReserved0 == IO_REPARSE_TAG_SYMLINK || found.dwReserved0 == IO_REPARSE_TAG_MOUNT_POINT);
    if (isLink) continue;
    entries.push_back({std::wstring(name), isFolder, {}});
    if (!isFolder) {
      entries.back().stamp = {Joined(found.nFileSizeHigh, found.nFileSizeLow), TimeOf(found.ftLastWriteTime)};
    }
  } while (FindNextFileW(handle, &found) != 0);
  if (GetLastError() != ERROR_NO_MORE_FILES) fail();
  return entries;
}

bool StampOf(const std::filesystem::path& file, Stamp& stamp) noexcept {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  if (GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data) == 0) return false;
  if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  stamp = {Joined(data.nFileSizeHigh, data.nFileSizeLow), TimeOf(data.ftLastWriteTime)};
  return true;
}

}  // namespace quillmate::inventory
