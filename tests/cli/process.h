#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace quillmate::cli {

/// What the program finds around it.
struct Surroundings {
  /// The file that standard input comes from; none: there is nothing to read.
  std::string input{};
  /// Folder for temporary files instead of the test's own.
  std::string temporary{};
#ifndef _WIN32
  /// What stands around the program in the shell line that runs it: "ulimit -f 8;", ">/dev/full".
  std::string before{};
  std::string behind{};
#endif
};

struct Result {
  /// The exit status; 128 + number when a signal ended the program.
  int status = -1;
  std::string out;
  std::string err;
};

/// A program that runs beside the test, its standard output and error in pipes.
class StartedProgram {
 public:
  struct Handles;
  explicit StartedProgram(std::unique_ptr<Handles> handles);
  ~StartedProgram();
  StartedProgram(StartedProgram&&) noexcept;

  /// Waits until something was written to standard output, and leaves it there.
  void AwaitOutput();
  /// Sends what ends a program early: a signal, on Windows an event of the console.
  void Interrupt(int kind);
  /// Waits for its end; the status as in Result.
  int Wait();
  /// What was written to standard error; to be asked when the program has ended.
  std::string Errors();

 private:
  std::unique_ptr<Handles> handles_;
};

/// A way to end a program early, and the status that it leaves.
struct Interruption {
  int kind;
  int status;
};
std::vector<Interruption> Interruptions();

/// A test with a folder of its own for what it makes, and another one for the program's scratch files, which has to be
/// empty whenever the program has ended.
class CliTest : public testing::Test {
 protected:
  CliTest();
  ~CliTest() override;

  /// Runs quillmate-cli in the test's folder and waits for it.
  Result Run(const std::vector<std::string>& arguments, const Surroundings& around = {}) const;
  /// The same for another program, such as a copy elsewhere.
  Result RunAt(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const Surroundings& around = {}) const;
  /// Starts it and does not wait. With `hasReader` false nobody will ever read its standard output.
  StartedProgram Start(const std::vector<std::string>& arguments, bool hasReader = true) const;

  /// Writes a file below the test's folder, its folders too; gives its path. Names are UTF-8.
  std::filesystem::path Write(const std::string& name, std::string_view bytes) const;
  std::string Read(const std::string& name) const;
  /// The names in a folder below the test's folder, sorted, with blanks between them.
  std::string Names(const std::string& folder) const;
  /// The full path of something below the test's folder as messages show it.
  std::string Full(const std::string& name) const;
  const std::filesystem::path& Folder() const { return folder_; }
  const std::filesystem::path& Scratch() const { return scratch_; }

 private:
  std::filesystem::path folder_;
  std::filesystem::path scratch_;
};

/// The program under test.
std::filesystem::path Program();

/// "quillmate-cli: " + text + LF for each text.
std::string Messages(const std::vector<std::string>& texts);

}  // namespace quillmate::cli
