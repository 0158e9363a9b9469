#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// "Notizen.db": what the user has noted in a saved project, in the project's folder. It belongs to the user, not to
/// the index: a project that is saved over, or read anew, keeps it.
///
/// SQLite, one table: notiz(projekt, modul, routine, zeile, folge, text, lesezeichen).
namespace quillmate::codedb {

inline constexpr std::string_view kNotesFile = "Notizen.db";

/// A note or a bookmark beside a line. UTF-8. It keeps to the text of its line, not to its number, so that it is found
/// again when the code has changed elsewhere.
struct Note {
  std::string project;  ///< name of the VBA project
  std::string module;
  std::string routine;  ///< as written; empty for a line outside of all
  std::string line;     ///< without blanks at both ends
  int occurrence = 0;   ///< which one of several such lines in the routine, 0-based
  std::string text;     ///< line breaks are LF; empty for a bookmark alone
  bool isBookmark = false;

  bool SamePlace(const Note& other) const;
};

/// Empty where the folder has no such file. Throws files::Failure when it can't be read, or is no regular file.
std::vector<Note> LoadNotes(const std::filesystem::path& folder);

/// Replaces the file as a whole; without notes it goes. Throws files::Failure, and the file is what
/// it was.
void SaveNotes(const std::filesystem::path& folder, const std::vector<Note>& notes);

/// The notes of both; where both have a place those of `own` count.
std::vector<Note> JoinNotes(std::vector<Note> own, const std::vector<Note>& other);

}  // namespace quillmate::codedb
