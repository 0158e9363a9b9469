#include "process.h"

#include <algorithm>
#include <cstdlib>
#include <map>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <quillmate/codedb/index_files.h>
#include <quillmate/text/operations.h>

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

const char* const kProgram = QUILLMATE_BIN_DIR "/quillmate-cli";

fs::path NewFolder() {
  std::string name = (fs::path(testing::TempDir()) / "quillmate-cli-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("mkdtemp " + name);
  }
  return fs::canonical(name);
}

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
  int out;
  int err;
};

pid_t Spawn(std::vector<std::string> command, const fs::path& folder, const fs::path& scratch, Streams streams) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, streams.out, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, streams.err, STDERR_FILENO);
  posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
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

}  // namespace

CliTest::CliTest() : folder_(NewFolder()), scratch_(NewFolder()) {}

CliTest::~CliTest() {
  EXPECT_TRUE(fs::is_empty(scratch_)) << "The program left something in its folder for temporary files";
  fs::remove_all(folder_);
  fs::remove_all(scratch_);
}

Result CliTest::Run(const std::vector<std::string>& arguments, const ShellParts& shell) const {
  return RunAt(kProgram, arguments, shell);
}

Result CliTest::RunAt(const fs::path& program, const std::vector<std::string>& arguments,
                      const ShellParts& shell) const {
  const fs::path out = scratch_ / "out";
  const fs::path err = scratch_ / "err";
  const Streams streams{open(out.c_str(), O_CREAT | O_RDWR | O_TRUNC | O_CLOEXEC, 0600),
                        open(err.c_str(), O_CREAT | O_RDWR | O_TRUNC | O_CLOEXEC, 0600)};
  std::vector<std::string> command{"/bin/sh", "-c", shell.before + " exec \"$0\" \"$@\" " + shell.behind,
                                   program.string()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  Result result;
  result.status = Wait(Spawn(std::move(command), folder_, scratch_, streams));
  close(streams.out);
  close(streams.err);
  result.out = codedb::ReadWholeFile(out);
  result.err = codedb::ReadWholeFile(err);
  fs::remove(out);
  fs::remove(err);
  return result;
}

pid_t CliTest::Start(const std::vector<std::string>& arguments, int out, int err) const {
  std::vector<std::string> command{kProgram};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return Spawn(std::move(command), folder_, scratch_, {out, err});
}

int CliTest::Wait(pid_t process) {
  int status = 0;
  waitpid(process, &status, 0);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

fs::path CliTest::Write(const std::string& name, std::string_view bytes) const {
  fs::path file = folder_ / name;
  fs::create_directories(file.parent_path());
  codedb::WriteWholeFile(file, bytes);
  return file;
}

std::string CliTest::Read(const std::string& name) const { return codedb::ReadWholeFile(folder_ / name); }

std::string CliTest::Names(const std::string& folder) const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_ / folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return text::Join(names, " ");
}

std::string Messages(const std::vector<std::string>& texts) {
  std::string lines;
  for (const std::string& text : texts) {
    lines += "quillmate-cli: " + text + "\n";
  }
  return lines;
}

}  // namespace quillmate::cli
