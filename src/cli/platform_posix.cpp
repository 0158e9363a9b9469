#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>

#include <fcntl.h>
#ifdef __GLIBC__
#include <malloc.h>
#endif
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
  std::signal(SIGXFSZ, SIG_IGN);
  // A place holder that can only be read: writing to a closed stream stays an error.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
      static_cast<void>(open("/dev/null", O_RDONLY));  // takes the lowest free number, which is this one
    }
  }
}

void ReturnLargeBlocks() noexcept {
#ifdef __GLIBC__
  constexpr int kLarge = 1 << 20;
  mallopt(M_MMAP_THRESHOLD, kLarge);
#endif
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

std::filesystem::path ExecutableFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::filesystem::path() : executable.parent_path();
}

bool IsTerminal(std::FILE* stream) noexcept { return isatty(fileno(stream)) == 1; }

bool TakesColours(std::FILE* /*terminal*/) noexcept {
  const char* const kind = std::getenv("TERM");
  return kind != nullptr && *kind != '\0' && std::string_view(kind) != "dumb";
}

std::size_t TerminalColumns() noexcept {
  winsize size = {};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

int WriteError() noexcept { return errno; }

std::filesystem::path MemoryFolder() { return "/dev/shm"; }

bool HostsCanRun() noexcept { return false; }

std::vector<std::string> ExpandWildcards(const std::vector<std::string>& inputs) { return inputs; }

}  // namespace quillmate::cli
