#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// What the program says on standard error, and the failures that end a command. Texts are German, UTF-8.
namespace quillmate::cli {

inline constexpr std::string_view kProgramName = "quillmate-cli";

/// Exit statuses of the program.
enum ExitStatus : int {
  kExitDone = 0,
  kExitFailed = 1,  // the input can't be read, the output can't be written, something asked for by name is not there
  kExitUsage = 2,
  // compare: 0 the same, 1 different, 2, and for every failure:
  kExitDifferent = 1,
  kExitNotCompared = 3
};

/// Ends the program with a status of the command's own; what there is to say has been said.
struct CommandEnd {
  int status;
};

/// Ends the command with status 1.
class CommandFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Ends the program with status 2, before anything was read or written.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Text on one line: each line break and each other control character becomes a blank (a run of them one blank).
std::string OneLine(std::string_view text);
/// Text on one line as a message shows it: line breaks and tabs become blanks, everything else that a terminal would
/// obey is told apart by an escape (terminal_text.h), wherever the message goes.
std::string MessageLine(std::string_view text);

/// Writes "quillmate-cli: " + MessageLine(text) to standard error. Errors in doing so are ignored. Says nothing any
/// more once a signal is ending the run.
void Complain(std::string_view text) noexcept;

/// From now on the run ends with status 1 at best: something that was asked for is missing from the result.
void MarkIncomplete() noexcept;
bool IsIncomplete() noexcept;

/// Messages show `name` where a text holds `path`.
void ShowPathAs(std::string path, std::string name);

/// A name in quotation marks as messages show it.
std::string Quoted(std::string_view name);

}  // namespace quillmate::cli
