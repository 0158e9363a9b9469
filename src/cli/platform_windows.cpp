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

/// The console's code pages and mode as the caller had them.
UINT outputPage = 0;
UINT inputPage = 0;
HANDLE paintedConsole = nullptr;
DWORD consoleMode = 0;

void RestoreConsole() {
  if (outputPage != 0) SetConsoleOutputCP(outputPage);
  if (inputPage != 0) SetConsoleCP(inputPage);
  if (paintedConsole != nullptr) SetConsoleMode(paintedConsole, consoleMode);
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

}  // namespace

void PrepareStandardStreams() {
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    _setmode(_fileno(stream), _O_BINARY);
  }
  // A console shows only those characters whose bytes come together.
  std::setvbuf(stderr, nullptr, _IOFBF, BUFSIZ);
  PrepareConsole();
}

void ReturnLargeBlocks() noexcept {}

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

std::filesystem::path ExecutableFolder() {
  std::wstring path(kLongestPath + 1, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return std::filesystem::path(path).parent_path();
}

bool IsTerminal(std::FILE* stream) noexcept {
  DWORD mode = 0;
  return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream))), &mode) != 0;
}

bool TakesColours(std::FILE* terminal) noexcept {
  const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(terminal)));
  if (GetConsoleMode(console, &consoleMode) == 0) return false;
  if (SetConsoleMode(console, consoleMode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) == 0) return false;
  paintedConsole = console;
  return true;
}

std::size_t TerminalColumns() noexcept {
  CONSOLE_SCREEN_BUFFER_INFO info;
  const bool known = GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) != 0;
  return known && info.dwSize.X > 0 ? static_cast<std::size_t>(info.dwSize.X) : 80;
}

bool IsDevice(const std::filesystem::path& path) { return files::AbsolutePath(path).native().starts_with(L"\\\\.\\"); }

// The library knows only one of the system's two reasons for a pipe's end.
int WriteError() noexcept { return _doserrno == ERROR_NO_DATA || _doserrno == ERROR_BROKEN_PIPE ? EPIPE : errno; }

// Temporary files stay in memory there as long as there is room.
std::filesystem::path MemoryFolder() { return {}; }

bool HostsCanRun() noexcept { return true; }

}  // namespace quillmate::cli
