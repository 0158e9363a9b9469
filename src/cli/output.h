#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "interruption.h"

namespace quillmate::cli {

/// The reader of standard output has had enough. Ends the program quietly.
class ReaderGone : public std::exception {};

/// What a command writes: UTF-8, or code in Windows-1252.
enum class Encoding { kUtf8, kCode };

/// Where the result of a command goes: standard output, or a file.
///
/// A file is written under a temporary name beside its target and takes the target's place in Finish; until then, and
/// whenever something fails, a file that was there stays as it was. A target that is no plain file (a device, a pipe)
/// is written to directly. Failures throw CommandFailure, which names the file.
///
/// Files and pipes get the bytes as they are, a terminal gets UTF-8 without anything that it would obey
/// (terminal_text.h).
class Output {
 public:
  /// `target` is a UTF-8 path; none or "-" is standard output.
  explicit Output(const std::optional<std::string>& target, Encoding encoding = Encoding::kUtf8);
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  void Write(std::string_view bytes);
  /// Writes what is still held back and puts the file in place. Without it a file is dropped.
  void Finish();

 private:
  void OpenFile(const std::string& target);
  void WriteBytes(std::string_view bytes);
  void Show(std::string_view bytes, bool last);
  void CheckWritable() const;
  void OpenTemporary();
  void PutInPlace();
  /// `code` is an errno value.
  [[noreturn]] void Fail(int code) const;
  [[noreturn]] void Fail(const std::error_code& error) const;

  /// As messages name it.
  std::string name_;
  std::filesystem::path target_;
  std::FILE* stream_ = nullptr;
  Encoding encoding_;
  bool isTerminal_ = false;
  /// Bytes for the terminal that only the next ones explain.
  std::string held_;
  /// Set while the file has its temporary name.
  std::unique_ptr<Leftover> temporary_;
};

/// Writes the whole result of a command to its target.
void WriteWhole(const std::optional<std::string>& target, std::string_view bytes);

}  // namespace quillmate::cli
