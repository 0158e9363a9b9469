#include <array>
#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "places.h"
#include "process.h"

namespace quillmate::cli {
namespace {

/// A shell gives the program its surroundings.
std::vector<std::string> InShell(const fs::path& program, const std::vector<std::string>& arguments,
                                 const Environment& around) {
  std::vector<std::string> command{
      "/bin/sh", "-c",
      "export TMPDIR='" + around.temporary.string() + "'; " + around.before + " exec \"$0\" \"$@\" " + around.behind,
      program.string()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return command;
}

/// The program's alone afterwards.
struct Streams {
  fs::path in;
  int out;
  int err;
};

/// Signals end the program whatever the caller of the tests lets pass: nohup ignores one, a job in the background
/// another.
class DefaultSignals {
 public:
  DefaultSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const Interruption& interruption : Interruptions()) sigaddset(&signals, interruption.kind);
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
  }
  DefaultSignals(const DefaultSignals&) = delete;
  DefaultSignals& operator=(const DefaultSignals&) = delete;
  ~DefaultSignals() { posix_spawnattr_destroy(&attributes_); }

  const posix_spawnattr_t* Attributes() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

pid_t Spawn(std::vector<std::string> command, const fs::path& folder, const Streams& streams) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, streams.in.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, streams.out, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, streams.err, STDERR_FILENO);
  std::vector<char*> words;
  words.reserve(command.size() + 1);
  for (std::string& word : command) words.push_back(word.data());
  words.push_back(nullptr);
  pid_t process = -1;
  const int failed = posix_spawn(&process, words[0], &actions, DefaultSignals().Attributes(), words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) throw std::runtime_error("posix_spawn " + command[0]);
  close(streams.out);
  close(streams.err);
  return process;
}

int WaitFor(pid_t process) {
  int status = 0;
  waitpid(process, &status, 0);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

std::array<int, 2> NewPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe2");
  return ends;
}

}  // namespace

struct StartedProgram::Handles {
  pid_t process = -1;
  int out = -1;
  int err = -1;

  ~Handles() {
    close(out);
    close(err);
  }
};

void StartedProgram::AwaitOutput() {
  pollfd written{handles_->out, POLLIN, 0};
  poll(&written, 1, -1);
}

void StartedProgram::Interrupt(int kind) { kill(handles_->process, kind); }

int StartedProgram::Wait() { return WaitFor(handles_->process); }

std::string StartedProgram::Errors() {
  std::string text(4096, '\0');
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(read(handles_->err, text.data(), text.size()), 0)));
  return text;
}

std::vector<Interruption> Interruptions() {
  return {{SIGINT, 128 + SIGINT}, {SIGTERM, 128 + SIGTERM}, {SIGHUP, 128 + SIGHUP}};
}

int RunWithFiles(const fs::path& program, const std::vector<std::string>& arguments, const Environment& around,
                 const fs::path& folder, const fs::path& out, const fs::path& err) {
  const auto created = [](const fs::path& file) {
    return open(file.c_str(), O_CREAT | O_RDWR | O_TRUNC | O_CLOEXEC, 0600);
  };
  return WaitFor(Spawn(InShell(program, arguments, around), folder,
                       {around.input.empty() ? "/dev/null" : around.input, created(out), created(err)}));
}

StartedProgram CliTest::Start(const std::string& line, bool hasReader) const {
  auto handles = std::make_shared<StartedProgram::Handles>();
  const auto [out, writeOut] = NewPipe();
  const auto [err, writeErr] = NewPipe();
  handles->err = err;
  if (hasReader) {
    handles->out = out;
  } else {
    close(out);
  }
  handles->process =
      Spawn(InShell(Program(), Words(line), {.temporary = Scratch()}), Folder(), {"/dev/null", writeOut, writeErr});
  return StartedProgram(std::move(handles));
}

fs::path Program() { return tests::ProgramFolder() / "quillmate-cli"; }

}  // namespace quillmate::cli
