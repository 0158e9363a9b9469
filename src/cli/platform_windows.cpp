#ifdef _WIN32

#include <random>
#include <system_error>

// The other headers need what this one declares.
// clang-format off
#include <windows.h>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <sys/stat.h>
// clang-format on

#include <quillmate/codedb/index_files.h>

#include "platform.h"

namespace quillmate::cli {
namespace {

void (*cleanUpAtEnd)() = nullptr;

/// The console calls it in a thread of its own; what follows a false answer is the end of the process.
BOOL WINAPI EndByConsole(DWORD /*event*/) {
  cleanUpAtEnd();
  return FALSE;
}

}  // namespace

void PrepareStandardStreams() {
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    _setmode(_fileno(stream), _O_BINARY);
  }
  SetConsoleOutputCP(CP_UTF8);
}

std::vector<std::string> Arguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    arguments.push_back(codedb::PathText(words[i]));
  }
  LocalFree(words);
  return arguments;
}

void OnEndingSignal(void (*cleanUp)()) {
  cleanUpAtEnd = cleanUp;
  SetConsoleCtrlHandler(EndByConsole, TRUE);
}

std::filesystem::path ExecutableFolder() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return std::filesystem::path(path).parent_path();
}

bool ErrorStreamIsTerminal() noexcept { return _isatty(_fileno(stderr)) != 0; }

std::size_t TerminalColumns() noexcept {
  CONSOLE_SCREEN_BUFFER_INFO info;
  const bool known = GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) != 0;
  return known && info.dwSize.X > 0 ? static_cast<std::size_t>(info.dwSize.X) : 80;
}

std::FILE* OpenStream(const std::filesystem::path& file, OpenMode mode) noexcept {
  const int flags = _O_WRONLY | _O_BINARY | (mode == OpenMode::kNew ? _O_CREAT | _O_EXCL : 0);
  const int descriptor = _wopen(file.c_str(), flags, _S_IREAD | _S_IWRITE);
  return descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
}

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

}  // namespace quillmate::cli

#endif
