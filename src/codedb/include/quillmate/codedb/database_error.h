#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

struct sqlite3;

namespace quillmate::codedb {

/// What a database refuses, or what is wrong with its file.
enum class DatabaseReason {
  kMissing,  // no such file
  kCannotOpen,
  kNoDatabase,  // a file of another kind
  kDamaged,     // or something else than the tables it should hold
  kNewer,       // written by a later version of the program
  kReplaced,    // written anew by another program since it was opened
  kBusy,        // another program, or another query, is using it
  kReadOnly,
  kNoAccess,
  kFull,
  kInputOutput,
  kOutOfMemory,
  kBadValue,      // does not fit its column
  kTaken,         // the key of another record
  kBadStatement,  // not understood
  kMisuse,        // a mistake of the program: closed, no record, no such field
  kOther
};

/// A database, or one of its statements, that failed: why, and in which file where that is known. what() is German,
/// UTF-8, and may hold several lines (CR LF).
class DatabaseError : public std::runtime_error {
 public:
  DatabaseError(DatabaseReason reason, const std::string& text, std::filesystem::path file = {});

  DatabaseReason Reason() const noexcept { return reason_; }
  const std::filesystem::path& File() const noexcept { return file_; }

 private:
  DatabaseReason reason_;
  std::filesystem::path file_;
};

/// What the engine said last of a database; a null one could not even be made.
DatabaseReason EngineReason(sqlite3* database);
/// The same in words: German, UTF-8, one line without a full stop.
std::string EngineText(sqlite3* database);

}  // namespace quillmate::codedb
