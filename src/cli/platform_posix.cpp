#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform.h"

namespace quillmate::cli {
namespace {

bool IsIgnored(int signal) {
  struct sigaction action = {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

[[noreturn]] void EndBySignal(int signal) {
  std::signal(signal, SIG_DFL);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  kill(getpid(), signal);
  _exit(128 + signal);
}

}  // namespace

void PrepareStandardStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  // A place holder that can only be read: writing to a closed stream stays an error.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
      static_cast<void>(open("/dev/null", O_RDONLY));  // takes the lowest free number, which is this one
    }
  }
}

std::vector<std::string> Arguments(int argc, char** argv) { return {argv + (argc > 0 ? 1 : 0), argv + argc}; }

void OnEndingSignal(void (*cleanUp)()) {
  sigset_t watched;
  sigemptyset(&watched);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (!IsIgnored(signal)) {
      sigaddset(&watched, signal);
    }
  }
  sigset_t before;
  pthread_sigmask(SIG_BLOCK, &watched, &before);
  try {
    std::thread([watched, cleanUp] {
      int signal = 0;
      while (sigwait(&watched, &signal) != 0) {
      }
      cleanUp();
      EndBySignal(signal);
    }).detach();
  } catch (const std::system_error&) {
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }
}

void CloseFilesIn(const std::filesystem::path& /*path*/) {}

std::filesystem::path ExecutableFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::filesystem::path() : executable.parent_path();
}

bool IsTerminal(std::FILE* stream) noexcept { return isatty(fileno(stream)) == 1; }

std::size_t TerminalColumns() noexcept {
  winsize size = {};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

bool IsDevice(const std::filesystem::path& path) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(path, ignored);
  return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status) &&
         !std::filesystem::is_directory(status);
}

std::FILE* OpenStream(const std::filesystem::path& file, OpenMode mode) noexcept {
  const int flags = O_WRONLY | O_CLOEXEC | (mode == OpenMode::kNew ? O_CREAT | O_EXCL : 0);
  const int descriptor = open(file.c_str(), flags, 0666);
  return descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
}

int WriteError() noexcept { return errno; }

long ProcessNumber() noexcept { return getpid(); }

std::filesystem::path FolderForScratch() {
  constexpr const char* kMemoryFolder = "/dev/shm";
  constexpr std::uintmax_t kPlenty = std::uintmax_t{2} << 30U;
  if (std::getenv("TMPDIR") == nullptr && access(kMemoryFolder, W_OK) == 0) {
    std::error_code ignored;
    const std::filesystem::space_info space = std::filesystem::space(kMemoryFolder, ignored);
    if (!ignored && space.available >= kPlenty) return kMemoryFolder;
  }
  return std::filesystem::temp_directory_path();
}

std::filesystem::path MakePrivateFolder(const std::filesystem::path& parent, const char* prefix) {
  std::string name = (parent / (std::string(prefix) + "XXXXXX")).string();
  if (mkdtemp(name.data()) == nullptr) {
    throw std::filesystem::filesystem_error("mkdtemp", parent, std::error_code(errno, std::generic_category()));
  }
  return name;
}

bool HostsCanRun() noexcept { return false; }

}  // namespace quillmate::cli
