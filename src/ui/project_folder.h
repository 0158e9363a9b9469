#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// The folder of a saved project: the index database and the module texts, nothing else of the program's.
namespace quillmate::ui {

/// A project name without the characters that no file name may hold: / \ : * ? < > | and the double quote. UTF-8.
std::string CleanName(std::string_view name);

/// Puts a copy of all files of `source` in the place of `target`'s files; sub-folders of an earlier `target` stay. The
/// copy is made beside the target first and takes its place when it is whole, so that whatever happens, one of the two
/// projects is there. Throws std::runtime_error or std::filesystem::filesystem_error; the target is as before then.
void ReplaceProjectFolder(const std::filesystem::path& source, const std::filesystem::path& target);

}  // namespace quillmate::ui
