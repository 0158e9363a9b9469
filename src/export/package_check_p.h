#pragma once

#include <filesystem>

namespace quillmate::output {

/// True when every part of a packed document ends as it should: the library that writes spreadsheets does not tell when
/// the disk was full on the way.
bool IsWholePackage(const std::filesystem::path& file);

}  // namespace quillmate::output
