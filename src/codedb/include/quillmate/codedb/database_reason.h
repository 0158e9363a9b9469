#pragma once

#include <filesystem>
#include <system_error>

#include <quillmate/files/failure.h>

struct sqlite3;

namespace quillmate::codedb {

/// What is wrong with a database or a project, or what they refuse. A full disk, missing rights and short memory have
/// the system's codes.
enum class DatabaseReason {
  kMissing = 1,  // no such file
  kCannotOpen,
  kNoDatabase,  // a file of another kind
  kDamaged,
  kNoTable,  // %1
  kBadNumbers,
  kNoModule,  // %1
  kReplaced,  // written anew by another program since it was opened
  kDamagedFacts,
  kNewerFacts,  // written by a later version of the program
  kBusy,        // another program is writing
  kQueryOpen,
  kReadOnly,
  kInputOutput,  // %1
  kOutOfRange,   // %1, the field
  kNoWholeNumber,
  kTaken,  // the key of another record
  kNoNumberKey,
  kNoSorting,
  kOther,  // %1, the engine's words
  // Statements.
  kBadStatement,  // %1
  kOpenText,      // %1, from here on
  kOpenName,
  kBadName,
  kBadNumber,
  kBadCharacter,
  kManyStatements,
  kExtraBracket,
  kDeepBrackets,
  kOpenBracket,
  kNoStatement,
  // Mistakes of the program.
  kClosed,
  kNotOpen,
  kNoRecord,
  kNoColumn,  // %1
  kNoField,   // %1
  kIsQuery,
  kNoQuery,
  kBegun,
  kNotBegun,
  // A project's folder.
  kOccupied,
  kForeignFile,
  // What failed because of something else.
  kNotOpened,
  kStatement,     // %1
  kBrokenProject  // %1
};
std::error_code make_error_code(DatabaseReason reason) noexcept;

/// What the engine said last of a database, as a failure of that file where one is named; a null database could not
/// even be made.
files::Failure EngineFailure(sqlite3* database, const std::filesystem::path& file = {});

/// "The project in this folder is not intact any more", with the cause where there is one.
files::Failure BrokenProject(const std::filesystem::path& folder);
files::Failure BrokenProject(const std::filesystem::path& folder, const files::Failure& cause);

}  // namespace quillmate::codedb

template <>
struct std::is_error_code_enum<quillmate::codedb::DatabaseReason> : std::true_type {};
