#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "codedb/scratch.h"

namespace quillmate::cli {

namespace fs = std::filesystem;

/// What the program finds around it.
struct Environment {
  /// The file that standard input comes from; none: there is nothing to read.
  fs::path input{};
  /// Folder for temporary files; none: the test's own.
  fs::path temporary{};
#ifndef _WIN32
  /// What stands around the program in the shell line that runs it: "ulimit -f 8;", ">/dev/full".
  std::string before{};
  std::string behind{};
#endif
};

struct Result {
  /// The exit status; 128 + number when a signal ended the program.
  int status = -1;
  std::string out{};
  std::string err{};
  bool operator==(const Result&) const = default;
};
void PrintTo(const Result& result, std::ostream* stream);

/// "quillmate-cli: " + text + LF for each text.
std::string Messages(const std::vector<std::string>& texts);
/// What a run gives that goes well, and one that only complains.
inline Result Success(const std::string& out = "") { return {0, out}; }
inline Result Refusal(int status, const std::vector<std::string>& texts) { return {status, "", Messages(texts)}; }

/// A program that runs beside the test, its standard output and error in pipes.
class StartedProgram {
 public:
  struct Handles;
  explicit StartedProgram(std::shared_ptr<Handles> handles) : handles_(std::move(handles)) {}

  /// Waits until something was written to standard output, and leaves it there.
  void AwaitOutput();
  /// Sends what ends a program early: a signal, on Windows an event of the console.
  void Interrupt(int kind);
  /// Waits for its end; the status as in Result.
  int Wait();
  /// What was written to standard error; to be asked when the program has ended.
  std::string Errors();

 private:
  std::shared_ptr<Handles> handles_;
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
  ~CliTest() override;

  /// Runs quillmate-cli in the test's folder and waits for it. In a line of arguments blanks part the words; a word
  /// that begins with "'" goes on up to the next one.
  Result Run(const std::string& line, const Environment& around = {}) const;
  /// The same with another program, such as a copy elsewhere, and arguments of any characters.
  Result RunAt(const fs::path& program, const std::vector<std::string>& arguments,
               const Environment& around = {}) const;
  /// Starts it and does not wait. With `hasReader` false nobody will ever read its standard output.
  StartedProgram Start(const std::string& line, bool hasReader = true) const;

  /// Writes a file below the test's folder, its folders too; gives its path. Names are UTF-8.
  fs::path Write(const std::string& name, std::string_view bytes) const;
  std::string Read(const std::string& name) const;
  /// The names in a folder below the test's folder, sorted, with blanks between them.
  std::string Names(const std::string& folder) const;
  /// The full path of something below the test's folder as messages show it.
  std::string Full(const std::string& name) const;
  /// What the JSON of a module tells of where it came from: a file below the test's folder, and its project.
  std::string Origin(const std::string& file, const std::string& project) const;
  const fs::path& Folder() const { return folder_.Path(); }
  const fs::path& Scratch() const { return scratch_.Path(); }

 private:
  files::ScratchFolder folder_{"cli"};
  files::ScratchFolder scratch_;
};

/// The program under test.
fs::path Program();

/// The words of a line of arguments.
std::vector<std::string> Words(const std::string& line);
/// Runs a program with its standard streams in files; the status as in Result.
int RunWithFiles(const fs::path& program, const std::vector<std::string>& arguments, const Environment& around,
                 const fs::path& folder, const fs::path& out, const fs::path& err);

}  // namespace quillmate::cli
