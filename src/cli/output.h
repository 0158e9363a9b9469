#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <quillmate/files/replacement.h>

namespace quillmate::cli {

/// The reader of standard output has had enough. Ends the program quietly.
class ReaderGone : public std::exception {};

/// What a command writes: UTF-8, or code in Windows-1252.
enum class Encoding { kUtf8, kCode };

/// Where the result of a command goes: standard output, or a file, which is replaced as a whole (files/replacement.h)
/// and must be none that the run has read. Failures throw CommandFailure or Failure, which name the file, and
/// UsageError.
///
/// Files and pipes get the bytes as they are, a terminal gets UTF-8 without anything that it would obey
/// (terminal_text.h).
class Output {
 public:
  /// `target` is a UTF-8 path; none or "-" is standard output.
  explicit Output(const std::optional<std::string>& target, Encoding encoding = Encoding::kUtf8);

  void Write(std::string_view bytes);
  /// Shows what follows in a style, as the numbers of an SGR sequence ("1;31", "0" for the usual one): on a terminal
  /// that takes them, unless NO_COLOR is set. Anywhere else it does nothing.
  void Paint(std::string_view style);
  /// Writes what is still held back and puts the file in place. Without it a file is dropped.
  void Finish();

 private:
  void CheckTarget() const;
  void WriteBytes(std::string_view bytes);
  void Show(std::string_view bytes, bool last);

  std::string name_;
  Encoding encoding_;
  bool isTerminal_ = false;
  bool paints_ = false;
  /// Bytes for the terminal that only the next ones explain.
  std::string held_;
  /// Nothing for standard output.
  std::optional<files::FileReplacement> file_;
};

/// Writes the whole result of a command to its target.
void WriteWhole(const std::optional<std::string>& target, std::string_view bytes);

}  // namespace quillmate::cli
