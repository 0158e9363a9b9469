#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif
#include <cerrno>
#include <cstdlib>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "worker_process_p.h"

extern char** environ;

namespace quillmate::inventory {
namespace {

constexpr const char* kMemoryVariable = "QUILLMATE_READER_MEMORY";
constexpr const char* kParentVariable = "QUILLMATE_READER_PARENT";

void CloseEnds(const int (&ends)[2]) noexcept {
  for (const int end : ends) {
    if (end >= 0) close(end);
  }
}

/// The environment with what the reader has to know.
std::vector<std::string> ReaderEnvironment(std::uint64_t memory) {
  std::vector<std::string> variables;
  for (char** each = environ; *each != nullptr; ++each) {
    const std::string_view variable = *each;
    if (!variable.starts_with("QUILLMATE_READER_")) variables.emplace_back(variable);
  }
  if (memory > 0) variables.push_back(std::string(kMemoryVariable) + "=" + std::to_string(memory));
  variables.push_back(std::string(kParentVariable) + "=" + std::to_string(getpid()));
  return variables;
}

std::vector<char*> Pointers(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

std::uint64_t NumberIn(const char* variable) noexcept {
  const char* const text = std::getenv(variable);
  return text == nullptr ? 0 : std::strtoull(text, nullptr, 10);
}

}  // namespace

Pipes::~Pipes() {
  close(out_);
  if (in_ != out_) close(in_);
}

bool Pipes::Write(const char* bytes, std::size_t count) noexcept {
  while (count > 0) {
    const ssize_t written = write(out_, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

bool Pipes::Read(char* bytes, std::size_t count) noexcept {
  while (count > 0) {
    const ssize_t got = read(in_, bytes, count);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return false;
    bytes += got;
    count -= static_cast<std::size_t>(got);
  }
  return true;
}

std::unique_ptr<WorkerProcess> WorkerProcess::Start(const std::vector<std::string>& command, std::uint64_t memory) {
  int to[2] = {-1, -1}, from[2] = {-1, -1};
  if (pipe2(to, O_CLOEXEC) != 0 || pipe2(from, O_CLOEXEC) != 0) {
    CloseEnds(to);
    CloseEnds(from);
    return nullptr;
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, to[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, from[1], STDOUT_FILENO);
  std::vector<std::string> words = command, variables = ReaderEnvironment(memory);
  pid_t child = 0;
  const int code = posix_spawn(&child, command.front().c_str(), &actions, nullptr, Pointers(words).data(),
                               Pointers(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  close(to[0]);
  close(from[1]);
  if (code != 0) {
    close(to[1]);
    close(from[0]);
    return nullptr;
  }
  std::unique_ptr<WorkerProcess> worker(new WorkerProcess);
  worker->process_ = child;
  worker->pipes_ = std::make_unique<Pipes>(from[0], to[1]);
  return worker;
}

WorkerProcess::~WorkerProcess() {
  Kill();
  EndReason();
}

void WorkerProcess::Kill() noexcept {
  if (!waited_) kill(process_, SIGKILL);
}

std::string WorkerProcess::EndReason() noexcept {
  while (!waited_ && waitpid(process_, &status_, 0) < 0 && errno == EINTR) {
  }
  waited_ = true;
  if (WIFSIGNALED(status_)) return "Signal " + std::to_string(WTERMSIG(status_));
  return "Rückgabewert " + std::to_string(WEXITSTATUS(status_));
}

std::unique_ptr<Pipes> ReaderPipes() {
  // Ctrl+C and the end of a job go to all processes: the scan alone decides.
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) ::signal(signal, SIG_IGN);
#ifdef __linux__
  // A reader that hangs would outlive a scan that was killed.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const std::uint64_t parent = NumberIn(kParentVariable);
  if (parent != 0 && static_cast<std::uint64_t>(getppid()) != parent) _exit(1);
#endif
  const rlimit noCore = {0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
#ifndef __SANITIZE_ADDRESS__  // which takes terabytes of addresses for itself
  if (const std::uint64_t memory = NumberIn(kMemoryVariable); memory != 0) {
    const rlimit limit = {memory, memory};
    setrlimit(RLIMIT_AS, &limit);
  }
#endif
  const int in = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
  const int out = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  // What somebody prints by mistake must not get between the messages.
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  if (nowhere >= 0) {
    dup2(nowhere, STDIN_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    close(nowhere);
  }
  return std::make_unique<Pipes>(in, out);
}

}  // namespace quillmate::inventory
