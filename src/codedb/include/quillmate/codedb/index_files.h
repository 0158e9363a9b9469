#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <quillmate/codedb/numbers.h>

/// The files of an index: the database and one marked-up text per module, all in the current project folder.
namespace quillmate::codedb {

inline constexpr std::string_view kDatabaseFile = "Quillmate.mdb";
inline constexpr std::string_view kTemplateFile = "mask_Quillmate.mdb";

struct PrepareResult {
  bool ok = false;
  /// What the user is told when the template is missing: German (UTF-8, CR LF); else empty.
  std::string message;
  /// Any other reason, German, UTF-8, one line.
  std::string reason{};
};

/// Copies the template over `folder`/Quillmate.mdb, replacing an earlier file or link (and what the database engine
/// left beside it). The copy can be written even when the template can't. False with a message when the template is
/// missing, with a reason on any other error.
PrepareResult PrepareCodeDatabase(const std::filesystem::path& folder, const std::filesystem::path& templateFile);

/// The folder's database file.
std::filesystem::path CodeDbPath(const std::filesystem::path& folder);
/// `folder` + the module's key + ".txt".
std::filesystem::path ModuleTextPath(const std::filesystem::path& folder, ModuleNumber module);

/// Writes a module's marked-up text as a line-printing write does: the text and one CR LF. Throws
/// files::Failure when the file can't be written whole.
void WriteModuleText(const std::filesystem::path& folder, ModuleNumber module, std::string_view markedText);
/// The file's bytes. Throws files::Failure.
std::string ReadModuleText(const std::filesystem::path& folder, ModuleNumber module);

/// The code that was scanned, out of a module's marked-up text as the file holds it: without markers, and without the
/// two line breaks that scan and write put at its end. Laid out as the display options had it.
std::string StoredCode(std::string_view fileText);

/// Deletes the files directly in `folder`, provided that a part of its path is the scratch root "TempDateien", as it is
/// written and with all links and ".." followed, and that `folder` itself is no link. Errors are ignored, symbolic
/// links in it are removed, never followed; sub-folders stay.
void DeleteAllFiles(const std::filesystem::path& folder) noexcept;

}  // namespace quillmate::codedb
