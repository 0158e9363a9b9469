#include <cerrno>
#include <csignal>
#include <cstdio>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform.h"

namespace quillmate::cli {

void PrepareStandardStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  // A place holder that can only be read: writing to a closed stream stays an error.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
      static_cast<void>(open("/dev/null", O_RDONLY));  // takes the lowest free number, which is this one
    }
  }
}

std::filesystem::path ExecutableFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::filesystem::path() : executable.parent_path();
}

bool ErrorStreamIsTerminal() noexcept { return isatty(STDERR_FILENO) == 1; }

std::size_t TerminalColumns() noexcept {
  winsize size = {};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::FILE* OpenStream(const std::filesystem::path& file, const char* mode) noexcept {
  return std::fopen(file.c_str(), mode);
}

long ProcessNumber() noexcept { return getpid(); }

std::filesystem::path MakePrivateFolder(const std::filesystem::path& parent, const char* prefix) {
  std::string name = (parent / (std::string(prefix) + "XXXXXX")).string();
  if (mkdtemp(name.data()) == nullptr) {
    throw std::filesystem::filesystem_error("mkdtemp", parent, std::error_code(errno, std::generic_category()));
  }
  return name;
}

bool ExchangeFolders(const std::filesystem::path& a, const std::filesystem::path& b) noexcept {
#ifdef RENAME_EXCHANGE
  return renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
#else
  static_cast<void>(a), static_cast<void>(b);
  return false;
#endif
}

}  // namespace quillmate::cli
