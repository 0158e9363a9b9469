#pragma once

#include <filesystem>

namespace quillmate::files {

/// Puts the folder `fresh` where the folder `old` is and gives the path at which the old one lies then. Both lie on one
/// file system. In one step where the system can exchange folders, and `fresh` is the path then; otherwise in two
/// renames, the old one to `aside` first, which is the path then. When the second rename fails the first is taken back.
/// A folder that Windows does not rename because a program has it as its current one keeps its place; its files are
/// swapped one by one then. Throws std::filesystem::filesystem_error; the old folder is in its place then.
std::filesystem::path SwapFolders(const std::filesystem::path& fresh, const std::filesystem::path& old,
                                  const std::filesystem::path& aside);

}  // namespace quillmate::files
