#include <cerrno>
#include <cstdlib>
#include <random>
#include <string_view>
#include <system_error>

// The other headers need what this one declares.
// clang-format off
#include <windows.h>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <sys/stat.h>
// clang-format on

#include <quillmate/files/paths.h>
#include <quillmate/text/wide.h>

#include "platform.h"

namespace quillmate::cli {
namespace {

/// What the system's own handler of Ctrl+C ends a process with (STATUS_CONTROL_C_EXIT).
constexpr UINT kEndedByConsole = 0xC000013A;
/// Longest path of the system, in characters.
constexpr std::size_t kLongestPath = 32767;
/// The system numbers the handles of a process from 4 in steps of 4; this program never has anywhere near as many.
constexpr long kHandleStep = 4;
constexpr long kHandlesEnd = 0x4000;

/// The console's code pages as the caller had them.
UINT outputPage = 0;
UINT inputPage = 0;

void RestoreConsole() {
  if (outputPage != 0) SetConsoleOutputCP(outputPage);
  if (inputPage != 0) SetConsoleCP(inputPage);
}

/// Messages and lists are UTF-8; what is typed as code is Windows-1252, as code from a file would be.
void PrepareConsole() {
  outputPage = GetConsoleOutputCP();
  inputPage = GetConsoleCP();
  SetConsoleOutputCP(CP_UTF8);
  SetConsoleCP(1252);
  std::atexit(RestoreConsole);
}

void (*cleanUpAtEnd)() = nullptr;

/// The console calls it in a thread of its own.
BOOL WINAPI EndByConsole(DWORD /*event*/) {
  cleanUpAtEnd();
  RestoreConsole();
  TerminateProcess(GetCurrentProcess(), kEndedByConsole);
  return TRUE;
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

std::wstring FinalPath(const std::filesystem::path& path) {
  const HANDLE handle =
      CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return {};
  std::wstring final = PathOfHandle(handle);
  CloseHandle(handle);
  return final;
}

}  // namespace

void PrepareStandardStreams() {
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    _setmode(_fileno(stream), _O_BINARY);
  }
  // A console shows only those characters whose bytes come together.
  std::setvbuf(stderr, nullptr, _IOFBF, BUFSIZ);
  PrepareConsole();
}

std::vector<std::string> Arguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    // A word that is no proper UTF-16 can only name what isn't there.
    arguments.push_back(text::Utf8FromWide(words[i]));
  }
  LocalFree(words);
  return arguments;
}

void OnEndingSignal(void (*cleanUp)()) {
  cleanUpAtEnd = cleanUp;
  SetConsoleCtrlHandler(EndByConsole, TRUE);
}

void CloseFilesIn(const std::filesystem::path& path) {
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
}

std::filesystem::path ExecutableFolder() {
  std::wstring path(kLongestPath + 1, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return std::filesystem::path(path).parent_path();
}

bool IsTerminal(std::FILE* stream) noexcept {
  DWORD mode = 0;
  return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream))), &mode) != 0;
}

std::size_t TerminalColumns() noexcept {
  CONSOLE_SCREEN_BUFFER_INFO info;
  const bool known = GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) != 0;
  return known && info.dwSize.X > 0 ? static_cast<std::size_t>(info.dwSize.X) : 80;
}

bool IsDevice(const std::filesystem::path& path) { return files::AbsolutePath(path).native().starts_with(L"\\\\.\\"); }

std::FILE* OpenStream(const std::filesystem::path& file, OpenMode mode) noexcept {
  const int flags = _O_WRONLY | _O_BINARY | _O_NOINHERIT | (mode == OpenMode::kNew ? _O_CREAT | _O_EXCL : 0);
  const int descriptor = _wopen(file.c_str(), flags, _S_IREAD | _S_IWRITE);
  return descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
}

// The library knows only one of the system's two reasons for a pipe's end.
int WriteError() noexcept { return _doserrno == ERROR_NO_DATA || _doserrno == ERROR_BROKEN_PIPE ? EPIPE : errno; }

long ProcessNumber() noexcept { return static_cast<long>(GetCurrentProcessId()); }

// The folder for temporary files belongs to the user already.
std::filesystem::path FolderForScratch() { return std::filesystem::temp_directory_path(); }

std::filesystem::path MakePrivateFolder(const std::filesystem::path& parent, const char* prefix) {
  std::random_device random;
  for (;;) {
    std::filesystem::path folder = parent / (prefix + std::to_string(random()));
    if (std::filesystem::create_directory(folder)) {
      return folder;
    }
  }
}

bool HostsCanRun() noexcept { return true; }

}  // namespace quillmate::cli
