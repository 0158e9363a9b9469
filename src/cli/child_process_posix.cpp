#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>

#include "child_process.h"
#include "messages.h"

extern char** environ;

namespace quillmate::cli {
namespace {

constexpr std::size_t kMostErrors = std::size_t{1} << 16U;

[[noreturn]] void FailStart(const std::filesystem::path& program, int code) {
  throw CommandFailure(files::PathText(program) + " lässt sich nicht starten: " + files::ReasonText(code));
}

/// A pipe whose ends are closed when nobody needs them any more.
class Pipe {
 public:
  explicit Pipe(const std::filesystem::path& program) {
    if (pipe2(ends_.data(), O_CLOEXEC) != 0) FailStart(program, errno);
  }
  ~Pipe() {
    CloseWriter();
    if (ends_[0] >= 0) close(ends_[0]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  int Reader() const noexcept { return ends_[0]; }
  int Writer() const noexcept { return ends_[1]; }
  void CloseWriter() noexcept {
    if (ends_[1] >= 0) close(ends_[1]);
    ends_[1] = -1;
  }

 private:
  std::array<int, 2> ends_{-1, -1};
};

/// The child gets signals as if a shell had started it: nothing ignored, nothing blocked.
class StartAttributes {
 public:
  StartAttributes() {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&actions_);
    sigset_t none, usual;
    sigemptyset(&none);
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE);
    sigaddset(&usual, SIGXFSZ);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &usual);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~StartAttributes() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  StartAttributes(const StartAttributes&) = delete;
  StartAttributes& operator=(const StartAttributes&) = delete;
  posix_spawnattr_t& Attributes() noexcept { return attributes_; }
  posix_spawn_file_actions_t& Actions() noexcept { return actions_; }

 private:
  posix_spawnattr_t attributes_;
  posix_spawn_file_actions_t actions_;
};

/// What is there to be read, handed on; false at the end.
template <typename Take>
bool ReadSome(int from, Take take) {
  std::array<char, std::size_t{1} << 16U> buffer;
  const ssize_t count = read(from, buffer.data(), buffer.size());
  if (count < 0) return errno == EINTR || errno == EAGAIN;
  if (count > 0) take(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
  return count > 0;
}

int WaitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

std::optional<std::filesystem::path> FindProgram(std::string_view name) {
  const char* const variable = std::getenv("PATH");
  std::string_view rest = variable == nullptr ? "/usr/bin:/bin" : variable;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    const std::filesystem::path folder(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (!folder.is_absolute()) continue;
    std::filesystem::path program = folder / name;
    std::error_code ignored;
    if (std::filesystem::is_regular_file(program, ignored) && access(program.c_str(), X_OK) == 0) return program;
  }
  return std::nullopt;
}

ChildEnd RunChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                  const std::filesystem::path& input, const std::function<void(std::string_view)>& take) {
  Pipe out(program), err(program);
  StartAttributes start;
  posix_spawn_file_actions_addopen(&start.Actions(), STDIN_FILENO, input.empty() ? "/dev/null" : input.c_str(),
                                   O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&start.Actions(), out.Writer(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&start.Actions(), err.Writer(), STDERR_FILENO);
  std::vector<std::string> words{program.native()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t child = 0;
  const int code =
      posix_spawn(&child, program.c_str(), &start.Actions(), &start.Attributes(), pointers.data(), environ);
  if (code != 0) FailStart(program, code);
  out.CloseWriter();
  err.CloseWriter();

  ChildEnd end;
  std::exception_ptr failure;
  const auto takeOutput = [&](std::string_view bytes) {
    try {
      if (!failure) take(bytes);
    } catch (...) {
      failure = std::current_exception();
    }
  };
  const auto takeErrors = [&](std::string_view bytes) {
    end.errors += bytes.substr(0, kMostErrors - std::min(kMostErrors, end.errors.size()));
  };
  std::array<pollfd, 2> open{pollfd{out.Reader(), POLLIN, 0}, pollfd{err.Reader(), POLLIN, 0}};
  while (open[0].fd >= 0 || open[1].fd >= 0) {
    if (poll(open.data(), open.size(), -1) < 0 && errno != EINTR) break;
    if (open[0].revents != 0 && !ReadSome(open[0].fd, takeOutput)) open[0].fd = -1;
    if (open[1].revents != 0 && !ReadSome(open[1].fd, takeErrors)) open[1].fd = -1;
    open[0].revents = open[1].revents = 0;
  }
  end.status = WaitFor(child);
  if (failure) std::rethrow_exception(failure);
  return end;
}

}  // namespace quillmate::cli
