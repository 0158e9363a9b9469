#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

/// The folder of a saved project: the index database and the module texts, nothing else of the program's.
namespace quillmate::ui {

/// A project name without the characters that no file name may hold: / \ : * ? < > | and the double quote. Empty when
/// only dots and blanks are left: they name the folder itself or the one above. UTF-8.
std::string CleanName(std::string_view name);

/// Puts a copy of all files of `source` in the place of `target`'s files; sub-folders of an earlier `target` stay. The
/// copy is made beside the target first and takes its place in one step when it is whole (in two steps where the file
/// system can't exchange folders), so that a full disk or a killed program leaves the old project or the new one. Where
/// `target` is a link, the folder behind it is the one that is replaced. `step` is called before each file operation;
/// what it throws fails the save like an error of that operation. Gives the folder beside the target where something of
/// the earlier project lies that could neither be moved nor removed, an empty path when nothing does. Throws
/// std::runtime_error or std::filesystem::filesystem_error; the target is as before then.
std::filesystem::path ReplaceProjectFolder(
    const std::filesystem::path& source, const std::filesystem::path& target,
    const std::function<void()>& step = [] {});

}  // namespace quillmate::ui
