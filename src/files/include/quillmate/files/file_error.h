#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

/// Why the system refused something: a code and the file or folder that it is about. The words for it are chosen here
/// and nowhere else.
namespace quillmate::files {

/// What was refused.
enum class FileAction { kRead, kWrite, kMakeFolder, kList, kRemove };

/// The reason in German, UTF-8, without a full stop: "Der Datenträger ist voll".
std::string ReasonText(const std::error_code& code);
/// The same for an `errno` value.
std::string ReasonText(int code);

/// what() is one German line, UTF-8: the path, what can't be done and the reason, without a full stop.
class FileError : public std::runtime_error {
 public:
  FileError(FileAction action, std::filesystem::path path, const std::error_code& code);
  /// The same for an `errno` value.
  FileError(FileAction action, std::filesystem::path path, int code);

  const std::filesystem::path& Path() const noexcept { return path_; }
  const std::error_code& Code() const noexcept { return code_; }

 private:
  std::filesystem::path path_;
  std::error_code code_;
};

/// The reason of any failure, German, UTF-8: of FileError and std::filesystem::filesystem_error with the path in front
/// and `separator` between, of std::bad_alloc that memory is short, of others what().
std::string FailureText(const std::exception& failure, const char* separator = ": ");

}  // namespace quillmate::files
