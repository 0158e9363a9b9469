#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <sys/types.h>

namespace quillmate::cli {

/// What stands around the program in the shell line that runs it.
struct ShellParts {
  /// Before the program, for instance "ulimit -f 8;".
  std::string before{};
  /// Behind its arguments, for instance ">/dev/full".
  std::string behind{};
};

struct Result {
  /// The exit status; 128 + number when a signal ended the program.
  int status = -1;
  std::string out;
  std::string err;
};

/// A test with a folder of its own for what it makes, and another one for the program's scratch files, which has to be
/// empty whenever the program has ended.
class CliTest : public testing::Test {
 protected:
  CliTest();
  ~CliTest() override;

  /// Runs quillmate-cli in the test's folder and waits for it.
  Result Run(const std::vector<std::string>& arguments, const ShellParts& shell = {}) const;
  /// The same for a copy of the program elsewhere.
  Result RunAt(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const ShellParts& shell = {}) const;
  /// Starts it with standard output and error on the given descriptors and does not wait.
  pid_t Start(const std::vector<std::string>& arguments, int out, int err) const;
  /// Waits for a program that Start has started; its status as in Result.
  static int Wait(pid_t process);

  /// Writes a file below the test's folder, its folders too; gives its path.
  std::filesystem::path Write(const std::string& name, std::string_view bytes) const;
  std::string Read(const std::string& name) const;
  /// The names in a folder below the test's folder, sorted, with blanks between them.
  std::string Names(const std::string& folder) const;
  const std::filesystem::path& Folder() const { return folder_; }
  const std::filesystem::path& Scratch() const { return scratch_; }

 private:
  std::filesystem::path folder_;
  std::filesystem::path scratch_;
};

/// "quillmate-cli: " + text + LF for each text.
std::string Messages(const std::vector<std::string>& texts);

}  // namespace quillmate::cli
