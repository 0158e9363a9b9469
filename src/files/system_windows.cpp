#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>

// The other headers need what this one declares.
// clang-format off
#include <windows.h>
#include <aclapi.h>
#include <fcntl.h>
#include <io.h>
#include <sddl.h>
#include <sys/stat.h>
// clang-format on

#include <quillmate/files/identity.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/stamp.h>

#include "errors_windows_p.h"
#include "system_p.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
/// The owner, the system and its administrators, for the folder and all that will be in it; nothing is inherited.
constexpr const wchar_t* kPrivate = L"D:P(A;OICI;FA;;;OW)(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";

/// Longest path of the system, in characters.
constexpr std::size_t kLongestPath = 32767;
/// The system numbers the handles of a process from 4 in steps of 4; this program never has anywhere near as many.
constexpr long kHandleStep = 4;
constexpr long kHandlesEnd = 0x4000;

struct FreeLocal {
  void operator()(void* memory) const noexcept { LocalFree(memory); }
};
using LocalMemory = std::unique_ptr<void, FreeLocal>;

std::error_code Outcome(BOOL done) noexcept { return done != 0 ? std::error_code() : LastError(); }

/// The C library's reason for the call that has just failed: it knows only one of the system's two for a pipe's end.
std::error_code LibraryError() noexcept {
  if (_doserrno == ERROR_NO_DATA || _doserrno == ERROR_BROKEN_PIPE) return {EPIPE, std::generic_category()};
  return _doserrno != 0 ? ErrorOf(_doserrno) : std::error_code(errno, std::generic_category());
}

/// Since the year 1970, so that they fit.
std::int64_t Nanoseconds(const FILETIME& time) noexcept {
  constexpr std::int64_t kStepsTo1970 = 116'444'736'000'000'000;
  const std::int64_t high = time.dwHighDateTime;
  return ((high << 32U | time.dwLowDateTime) - kStepsTo1970) * 100;
}

OpenFile Opened(const fs::path& file, int flags, std::error_code& error) noexcept {
  _doserrno = 0;
  OpenFile opened(_wopen(file.c_str(), flags | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE));
  error = opened.IsOpen() ? std::error_code() : LibraryError();
  return opened;
}

std::error_code FlushAt(const fs::path& path, DWORD flags) noexcept {
  const HANDLE handle = CreateFileW(path.c_str(), GENERIC_WRITE, kShared, nullptr, OPEN_EXISTING, flags, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return LastError();
  const std::error_code error = Outcome(FlushFileBuffers(handle));
  CloseHandle(handle);
  return error;
}

/// The full path of the file that a handle stands for, in the system's own form; empty for a handle of another kind.
std::wstring PathOfHandle(HANDLE handle) {
  if (GetFileType(handle) != FILE_TYPE_DISK) return {};
  std::wstring path(kLongestPath + 1, L'\0');
  const DWORD length = GetFinalPathNameByHandleW(handle, path.data(), static_cast<DWORD>(path.size()), 0);
  path.resize(length <= kLongestPath ? length : 0);
  return path;
}

/// Asking after a pipe that somebody is just waiting for would mean waiting with him.
bool IsStandardStream(HANDLE handle) noexcept {
  return handle == GetStdHandle(STD_INPUT_HANDLE) || handle == GetStdHandle(STD_OUTPUT_HANDLE) ||
         handle == GetStdHandle(STD_ERROR_HANDLE);
}

std::wstring FinalPath(const fs::path& path) {
  const HANDLE handle = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShared, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return {};
  std::wstring final = PathOfHandle(handle);
  CloseHandle(handle);
  return final;
}

}  // namespace

std::optional<std::size_t> OpenFile::PlainSize() const noexcept {
  struct _stat64 status {};
  if (_fstat64(descriptor_, &status) != 0 || (status.st_mode & _S_IFMT) != _S_IFREG) return std::nullopt;
  return static_cast<std::size_t>(std::max<std::int64_t>(_filelengthi64(descriptor_), 0));
}

std::size_t OpenFile::Read(char* to, std::size_t count, std::error_code& error) noexcept {
  constexpr std::size_t kMost = std::numeric_limits<int>::max();
  const int got = _read(descriptor_, to, static_cast<unsigned>(std::min(count, kMost)));
  error = got < 0 ? LibraryError() : std::error_code();
  return got < 0 ? 0 : static_cast<std::size_t>(got);
}

std::error_code OpenFile::Write(std::string_view bytes) noexcept {
  constexpr std::size_t kMost = std::size_t{1} << 30U;
  while (!bytes.empty()) {
    const int written = _write(descriptor_, bytes.data(), static_cast<unsigned>(std::min(bytes.size(), kMost)));
    if (written < 0) return LibraryError();
    if (written == 0) return std::make_error_code(std::errc::no_space_on_device);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

std::error_code OpenFile::CutHere() noexcept {
  return _chsize_s(descriptor_, _telli64(descriptor_)) == 0 ? std::error_code() : LibraryError();
}

std::error_code OpenFile::Flush() noexcept { return _commit(descriptor_) == 0 ? std::error_code() : LibraryError(); }

std::error_code OpenFile::Close() noexcept {
  const int descriptor = std::exchange(descriptor_, -1);
  return descriptor < 0 || _close(descriptor) == 0 ? std::error_code() : LibraryError();
}

OpenFile OpenToRead(const fs::path& file, std::error_code& error) noexcept { return Opened(file, _O_RDONLY, error); }

OpenFile OpenToWrite(const fs::path& file, WriteMode mode, std::error_code& error) noexcept {
  const int flags = mode == WriteMode::kNew       ? _O_CREAT | _O_EXCL
                    : mode == WriteMode::kReplace ? _O_CREAT | _O_TRUNC
                                                  : 0;
  return Opened(file, _O_WRONLY | flags, error);
}

std::error_code FlushFile(const fs::path& file) noexcept { return FlushAt(file, FILE_FLAG_OPEN_REPARSE_POINT); }

// Where the system does not open folders for that, it writes their names in time by itself.
std::error_code FlushFolder(const fs::path& folder) noexcept {
  static_cast<void>(FlushAt(folder, FILE_FLAG_BACKUP_SEMANTICS));
  return {};
}

// Only administrators may flush a volume.
bool FlushFileSystem(const fs::path& /*folder*/, std::error_code& /*error*/) noexcept { return false; }

std::error_code MakeFolder(const fs::path& folder) noexcept {
  return Outcome(CreateDirectoryW(folder.c_str(), nullptr));
}

std::error_code MakePrivateFolder(const fs::path& folder) noexcept {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ConvertStringSecurityDescriptorToSecurityDescriptorW(kPrivate, SDDL_REVISION_1, &descriptor, nullptr);
  const LocalMemory owner(descriptor);
  SECURITY_ATTRIBUTES attributes{sizeof attributes, descriptor, FALSE};
  return Outcome(CreateDirectoryW(folder.c_str(), descriptor == nullptr ? nullptr : &attributes));
}

void Hide(const fs::path& folder) noexcept { SetFileAttributesW(folder.c_str(), FILE_ATTRIBUTE_HIDDEN); }

// The folders in which it is asked for are those of one user, or of users who share the rights to all that is in them.
bool IsOwn(const fs::path& /*path*/) noexcept { return true; }

std::error_code AddName(const fs::path& /*file*/, const fs::path& /*second*/) noexcept {
  return std::make_error_code(std::errc::not_supported);
}

std::error_code Rename(const fs::path& from, const fs::path& to, NewName name) noexcept {
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (name == NewName::kReplaced ? MOVEFILE_REPLACE_EXISTING : 0);
  return Outcome(MoveFileExW(from.c_str(), to.c_str(), flags));
}

std::error_code TakeRights(const fs::path& from, const fs::path& to) noexcept {
  PACL list = nullptr;
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  std::wstring source = from.native();
  std::wstring target = to.native();
  DWORD refused = ERROR_SUCCESS;
  if (GetNamedSecurityInfoW(source.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                            &descriptor) == ERROR_SUCCESS) {
    const LocalMemory owner(descriptor);
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    GetSecurityDescriptorControl(descriptor, &control, &revision);
    const DWORD inherits = (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                              : UNPROTECTED_DACL_SECURITY_INFORMATION;
    refused = SetNamedSecurityInfoW(target.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inherits, nullptr,
                                    nullptr, list, nullptr);
  }
  // Some file systems have no rights.
  if (refused != ERROR_SUCCESS && refused != ERROR_NOT_SUPPORTED && refused != ERROR_INVALID_FUNCTION) {
    return ErrorOf(refused);
  }
  constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  const DWORD attributes = GetFileAttributesW(from.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kKept) != 0) {
    SetFileAttributesW(to.c_str(), (attributes & kKept) | FILE_ATTRIBUTE_ARCHIVE);
  }
  return {};
}

std::optional<FileIdentity> IdentityOf(const fs::path& path) noexcept {
  const HANDLE handle =
      CreateFileW(path.c_str(), 0, kShared, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return std::nullopt;
  FILE_ID_INFO info{};
  BY_HANDLE_FILE_INFORMATION older{};
  std::optional<FileIdentity> identity;
  if (GetFileInformationByHandleEx(handle, FileIdInfo, &info, sizeof info) != 0) {
    identity.emplace();
    identity->volume = info.VolumeSerialNumber;
    std::memcpy(identity->number.data(), info.FileId.Identifier, sizeof identity->number);
  } else if (GetFileInformationByHandle(handle, &older) != 0) {
    const std::uint64_t high = older.nFileIndexHigh;
    identity = FileIdentity{older.dwVolumeSerialNumber, {high << 32U | older.nFileIndexLow, 0}};
  }
  CloseHandle(handle);
  return identity;
}

FileStamp StampOf(const fs::path& file) noexcept {
  WIN32_FILE_ATTRIBUTE_DATA found{};
  if (GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &found) == 0) return {};
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  const std::uint64_t sizeHigh = found.nFileSizeHigh;
  const std::int64_t changed = Nanoseconds(found.ftLastWriteTime);
  return {sizeHigh << 32U | found.nFileSizeLow, changed, changed + kStampStep < Nanoseconds(now)};
}

bool IsDevice(const fs::path& path) noexcept try {
  return AbsolutePath(path).native().starts_with(L"\\\\.\\");
} catch (const std::exception&) {
  return false;
}

fs::path TemporaryFolder() {
  std::wstring folder(MAX_PATH + 1, L'\0');
  folder.resize(GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()));
  return folder;
}

// A new file inherits the rights of its folder.
void CommonRights::Add(const fs::path& /*file*/) { mode_ = 0; }
std::error_code CommonRights::Limit(const fs::path& /*file*/) const noexcept { return {}; }

void CloseFilesIn(const fs::path& path) noexcept try {
  const std::wstring root = FinalPath(path);
  if (root.empty()) {
    return;
  }
  for (long number = kHandleStep; number < kHandlesEnd; number += kHandleStep) {
    const HANDLE handle = LongToHandle(number);
    const std::wstring file = IsStandardStream(handle) ? std::wstring() : PathOfHandle(handle);
    if (file.starts_with(root) && (file.size() == root.size() || file[root.size()] == L'\\')) {
      CloseHandle(handle);
    }
  }
} catch (const std::exception&) {
  // What stays open stays in its place.
}

}  // namespace quillmate::files
