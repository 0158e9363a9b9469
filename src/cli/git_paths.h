#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Paths in the tree of a repository: from its top, with "/".
namespace quillmate::cli {

/// What can hold macros, by the extension.
bool IsModuleFile(std::string_view path);
bool IsVbProject(std::string_view path);
bool IsWanted(std::string_view path);

/// A name that a folder here can hold and that leads nowhere else, whatever the tree's author made of it.
bool IsPlainName(std::string_view name);
bool IsBelow(std::string_view path, std::string_view folder);
/// "a/./b/../c" from a folder of the tree; nothing when it leads out of the tree.
std::optional<std::string> Resolved(std::string_view folder, std::string_view path);
std::string_view FolderOf(std::string_view path);

}  // namespace quillmate::cli
