#pragma once

#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>

/// Whole files as bytes. Failures are std::runtime_error: German, UTF-8, with the file and the reason.
namespace quillmate::files {

/// More than any text or index of a project takes; what is larger is somebody's trap.
inline constexpr std::size_t kLargestWholeFile = std::size_t{1} << 30U;

/// Reads plain files only: a pipe would make the program wait for ever, a device might never end. A file of more than
/// `most` bytes is a failure, too.
std::string ReadWholeFile(const std::filesystem::path& file, std::size_t most = kLargestWholeFile);

/// A file that can't be written whole (full disk) is removed: half a file would pass for a whole one.
void WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);
/// The pieces one behind the other.
void WriteWholeFile(const std::filesystem::path& file, std::initializer_list<std::string_view> pieces);

/// Throws what the functions above throw when a file can't be written; `code` is the system's error number, 0 when it
/// told none.
[[noreturn]] void FailToWrite(const std::filesystem::path& file, int code);

}  // namespace quillmate::files
