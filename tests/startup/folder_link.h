#pragma once

#include <filesystem>

namespace quillmate::testing {

/// Makes `link` another way to a folder: a symbolic link, on Windows a junction, which every user may make. False when
/// the file system knows none. `target` is absolute and need not exist.
bool MakeFolderLink(const std::filesystem::path& target, const std::filesystem::path& link);

}  // namespace quillmate::testing
