#include <array>
#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <quillmate/codedb/index_files.h>

#include "process.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) {
    pointers.push_back(text.data());
  }
  pointers.push_back(nullptr);
  return pointers;
}

/// This process's environment with one variable changed.
std::vector<std::string> EnvironmentWith(const std::string& name, const std::string& value) {
  std::vector<std::string> variables{name + "=" + value};
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (!std::string_view(*entry).starts_with(name + "=")) {
      variables.emplace_back(*entry);
    }
  }
  return variables;
}

struct Streams {
  std::string in;
  int out;
  int err;
};

pid_t Spawn(std::vector<std::string> command, const fs::path& folder, const fs::path& scratch, const Streams& streams) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, streams.in.c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, streams.out, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, streams.err, STDERR_FILENO);
  std::vector<std::string> environment = EnvironmentWith("TMPDIR", scratch.string());
  pid_t process = -1;
  const int failed = posix_spawn(&process, command[0].c_str(), &actions, nullptr, Pointers(command).data(),
                                 Pointers(environment).data());
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) {
    throw std::runtime_error("posix_spawn " + command[0]);
  }
  return process;
}

int WaitFor(pid_t process) {
  int status = 0;
  waitpid(process, &status, 0);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

std::array<int, 2> NewPipe() {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("pipe2");
  }
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

StartedProgram::StartedProgram(std::unique_ptr<Handles> handles) : handles_(std::move(handles)) {}
StartedProgram::StartedProgram(StartedProgram&&) noexcept = default;
StartedProgram::~StartedProgram() = default;

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

Result CliTest::RunAt(const fs::path& program, const std::vector<std::string>& arguments,
                      const Surroundings& around) const {
  const fs::path out = scratch_ / "out";
  const fs::path err = scratch_ / "err";
  const Streams streams{around.input.empty() ? "/dev/null" : around.input,
                        open(out.c_str(), O_CREAT | O_RDWR | O_TRUNC | O_CLOEXEC, 0600),
                        open(err.c_str(), O_CREAT | O_RDWR | O_TRUNC | O_CLOEXEC, 0600)};
  std::vector<std::string> command{"/bin/sh", "-c", around.before + " exec \"$0\" \"$@\" " + around.behind,
                                   program.string()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  Result result;
  const fs::path temporary = around.temporary.empty() ? scratch_ : folder_ / around.temporary;
  result.status = WaitFor(Spawn(std::move(command), folder_, temporary, streams));
  close(streams.out);
  close(streams.err);
  result.out = codedb::ReadWholeFile(out);
  result.err = codedb::ReadWholeFile(err);
  fs::remove(out);
  fs::remove(err);
  return result;
}

StartedProgram CliTest::Start(const std::vector<std::string>& arguments, bool hasReader) const {
  std::vector<std::string> command{Program().string()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  auto handles = std::make_unique<StartedProgram::Handles>();
  const std::array<int, 2> out = NewPipe();
  const std::array<int, 2> err = NewPipe();
  if (hasReader) {
    handles->out = out[0];
  } else {
    close(out[0]);
  }
  handles->err = err[0];
  handles->process = Spawn(std::move(command), folder_, scratch_, {"/dev/null", out[1], err[1]});
  close(out[1]);
  close(err[1]);
  return StartedProgram(std::move(handles));
}

fs::path Program() { return QUILLMATE_BIN_DIR "/quillmate-cli"; }

}  // namespace quillmate::cli
