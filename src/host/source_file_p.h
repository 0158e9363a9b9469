#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <quillmate/office/reason.h>

namespace quillmate::host {

/// A source file's bytes, or why there are none.
struct SourceBytes {
  /// Points into the buffer of the call.
  std::string_view bytes;
  /// kNone when the file could be read.
  office::Reason problem = office::Reason::kNone;
};

/// Reads a file that should hold text. Empty files, files of other contents and files far beyond what a module can hold
/// are problems too. NUL characters at the end are cut, a few elsewhere become blanks. Only regular files are read: a
/// pipe would make the program wait for ever. `codePage` is that of bytes that tell none (office/code_pages.h).
SourceBytes ReadSourceFile(const std::filesystem::path& file, std::string& buffer, int codePage = 0);
/// The same for the bytes of a file that are in `buffer` already.
SourceBytes DecodeSourceBytes(std::string& buffer, int codePage);

/// The editor takes 65,534 lines of 1,023 characters.
inline constexpr std::size_t kLargestSourceFile = std::size_t{128} << 20U;
inline constexpr std::size_t kMostSourceLines = 5'000'000;

}  // namespace quillmate::host
