#include <memory>
#include <string>
#include <string_view>

#include <windows.h>

#include <quillmate/files/paths.h>

#include "errors_windows_p.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

bool IsSeparator(wchar_t c) noexcept { return c == L'\\' || c == L'/'; }

/// What a function of the system writes that first tells how much room it needs.
template <typename Write>
std::wstring Written(Write write) {
  std::wstring text(MAX_PATH, L'\0');
  while (true) {
    const DWORD size = write(text.data(), static_cast<DWORD>(text.size()));
    const bool fits = size < text.size();
    text.resize(size);
    if (fits) return text;
  }
}

struct CloseObject {
  void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using Object = std::unique_ptr<void, CloseObject>;

/// The file or folder at the end of all links; nothing when it does not exist or nobody may look at it.
Object OpenForLook(const fs::path& path) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE handle =
      CreateFileW(path.c_str(), 0, kShared, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  return Object(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

/// The path in the system's longest form as people write it.
std::wstring Plain(const std::wstring& path) {
  constexpr std::wstring_view kLong = L"\\\\?\\";
  constexpr std::wstring_view kLongNetwork = L"\\\\?\\UNC\\";
  if (path.starts_with(kLongNetwork)) return L"\\\\" + path.substr(kLongNetwork.size());
  return path.starts_with(kLong) ? path.substr(kLong.size()) : path;
}

/// Empty when the path does not exist.
fs::path Resolved(const fs::path& path) {
  const Object object = OpenForLook(path);
  if (object == nullptr) return {};
  return Plain(Written([&](wchar_t* text, DWORD size) {
    return GetFinalPathNameByHandleW(object.get(), text, size, FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
  }));
}

struct CloseSearch {
  void operator()(HANDLE handle) const noexcept { FindClose(handle); }
};
using Search = std::unique_ptr<void, CloseSearch>;

/// Files that are kept elsewhere and fetched on demand are no links though they are marked in the same way.
bool IsLink(const WIN32_FIND_DATAW& found) noexcept {
  return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsReparseTagNameSurrogate(found.dwReserved0);
}

Search Find(const fs::path& pattern, WIN32_FIND_DATAW& found) {
  const HANDLE handle = FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr, 0);
  return Search(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

}  // namespace

bool IsAbsolutePath(const fs::path& path) {
  const std::wstring& text = path.native();
  if (text.size() > 2 && text[1] == L':' && IsSeparator(text[2])) return true;
  return text.size() > 2 && IsSeparator(text[0]) && IsSeparator(text[1]);
}

fs::path AbsolutePath(const fs::path& path) {
  return Written([&](wchar_t* text, DWORD size) { return GetFullPathNameW(path.c_str(), size, text, nullptr); });
}

// The system itself goes by name where others look up what is above a link, so the path is normal already.
fs::path NormalPath(const fs::path& path) { return AbsolutePath(path); }

fs::path RealPath(const fs::path& path, std::error_code& error) {
  error.clear();
  fs::path full = AbsolutePath(path);
  fs::path missing;
  for (fs::path existing = full; existing.has_relative_path(); existing = existing.parent_path()) {
    const fs::path real = Resolved(existing);
    if (!real.empty()) return missing.empty() ? real : real / missing;
    missing = missing.empty() ? existing.filename() : existing.filename() / missing;
  }
  return full;
}

fs::path PathAsNamed(const fs::path& path) {
  WIN32_FIND_DATAW found{};
  const bool isPattern = path.native().find_first_of(L"*?<>\"") != std::wstring::npos;
  if (isPattern || !path.has_filename() || Find(path, found) == nullptr) return path;
  return PathAsNamed(path.parent_path()) / found.cFileName;
}

bool IsLink(const fs::path& path) noexcept {
  WIN32_FIND_DATAW found{};
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
  return Find(path, found) != nullptr && IsLink(found);
}

std::vector<FolderEntry> FolderEntries(const fs::path& folder, std::error_code& error) {
  error.clear();
  std::vector<FolderEntry> entries;
  WIN32_FIND_DATAW found{};
  const Search search = Find(folder / L"*", found);
  // The root of an empty drive has nothing, not even itself.
  if (search == nullptr && GetLastError() != ERROR_FILE_NOT_FOUND) error = LastError();
  if (search == nullptr) return entries;
  do {
    const std::wstring_view name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    entries.push_back({folder / name, isFolder, IsLink(found)});
  } while (FindNextFileW(search.get(), &found) != 0);
  if (GetLastError() != ERROR_NO_MORE_FILES) error = LastError();
  return entries;
}

void RenamePath(const fs::path& from, const fs::path& to) {
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) == 0) {
    throw fs::filesystem_error("rename", from, to, LastError());
  }
}

bool RemovePath(const fs::path& path, std::error_code& error) noexcept {
  error.clear();
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  const bool isProtected = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  if (isProtected) SetFileAttributesW(path.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
  const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  if ((isFolder ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str())) != 0) return true;
  error = LastError();
  if (isProtected) SetFileAttributesW(path.c_str(), attributes);
  return false;
}

}  // namespace quillmate::files
