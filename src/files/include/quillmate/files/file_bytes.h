#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

/// Whole files as bytes. Failures are Failure.
namespace quillmate::files {

/// More than any text or index of a project takes; what is larger is somebody's trap.
inline constexpr std::size_t kLargestWholeFile = std::size_t{1} << 30U;

/// The bytes of a plain file; a pipe or device, which may have no end, is refused (not_supported), and so is a file of
/// more than `most` bytes (file_too_large).
std::string ReadWholeFile(const std::filesystem::path& file, std::size_t most = kLargestWholeFile);

/// The same for a file of any size: its bytes in pieces, one after the other. What `take` throws ends the reading.
void ReadInPieces(const std::filesystem::path& file, const std::function<void(std::string_view piece)>& take);

/// Makes the file, or writes over it, where nothing has to be kept: in folders of the program's own. A file that can't
/// be written whole (full disk) is removed: half a file would pass for a whole one. What users keep is written as
/// replacement.h tells.
void WriteWholeFile(const std::filesystem::path& file, std::string_view bytes);
/// The pieces one after the other.
void WriteWholeFile(const std::filesystem::path& file, std::initializer_list<std::string_view> pieces);

}  // namespace quillmate::files
