#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

/// Paths as the system takes them. On Windows the standard library knows neither shared folders of the network
/// (\\server\folder) nor links between folders, and has little to say about why a file can't be moved.
namespace quillmate::files {

/// A name without the characters that no file name may hold: / \ : * ? < > | and the double quote. Empty when only dots
/// and blanks are left: they name the folder itself or the one above. UTF-8.
std::string CleanName(std::string_view name);

/// A path as UTF-8 text, for messages, and the way back.
std::string PathText(const std::filesystem::path& path);
std::filesystem::path PathFromText(std::string_view utf8);

/// True for a path that does not depend on the current folder or drive.
bool IsAbsolutePath(const std::filesystem::path& path);

/// A path as it is meant in a file that is in `folder`: one that is absolute stays as it is.
std::filesystem::path PathSeenFrom(const std::filesystem::path& folder, const std::filesystem::path& path);

/// The path made absolute. Nothing is looked up. An empty path stays empty.
std::filesystem::path AbsolutePath(const std::filesystem::path& path);

/// An absolute path without "." and "..", which goes up by name, also after a link.
std::filesystem::path NormalPath(const std::filesystem::path& path);

/// The absolute path with all links resolved, as far as it exists; what does not exist yet follows by name.
std::filesystem::path RealPath(const std::filesystem::path& path, std::error_code& error);
/// The same; throws std::filesystem::filesystem_error.
std::filesystem::path RealPath(const std::filesystem::path& path);

/// The path with each name as the folder above it has it, on a system that takes names without regard to case;
/// elsewhere, and for a path that does not exist, the path itself.
std::filesystem::path PathAsNamed(const std::filesystem::path& path);

/// True for a symbolic link, and for a junction on Windows; false for what does not exist.
bool IsLink(const std::filesystem::path& path) noexcept;

/// True for what is written to directly and never replaced: a device, a pipe.
bool IsDevice(const std::filesystem::path& path) noexcept;

/// The user's folder for temporary files, or the system's. Elsewhere than on Windows an environment variable that is
/// empty counts as none. It need not exist.
std::filesystem::path TemporaryFolder();

/// Makes a folder for its owner alone, and none above it; fails when the name is taken.
std::error_code MakePrivateFolder(const std::filesystem::path& folder) noexcept;

struct FolderEntry {
  /// The folder's path and the name.
  std::filesystem::path path;
  /// Also for a link to a folder.
  bool isFolder = false;
  bool isLink = false;
};

/// What is in a folder, in no order, without "." and "..". With an error what could be listed before it.
std::vector<FolderEntry> FolderEntries(const std::filesystem::path& folder, std::error_code& error);

/// Gives a file or folder another name on the same file system; a file replaces one that bears the name. Throws
/// std::filesystem::filesystem_error.
void RenamePath(const std::filesystem::path& from, const std::filesystem::path& to);

/// Removes a file, a link or an empty folder, write-protected ones too where the folder they are in may be changed.
/// False when there is none, or with an error.
bool RemovePath(const std::filesystem::path& path, std::error_code& error) noexcept;

/// Removes a folder with all that is in it; links are removed, not followed. Goes on after a failure and reports the
/// last one. A folder that does not exist is no error.
void RemoveFolder(const std::filesystem::path& folder, std::error_code& error);

}  // namespace quillmate::files
