#pragma once

#include <filesystem>
#include <string>

#include "sqlite_p.h"

namespace quillmate::inventory {

/// Takes the file for this program alone, makes the tables and views of an empty database, or sees that they are there,
/// and bounds the memory for its pages: 32 MB, however much is written. Throws files::Failure for a file of
/// another kind or of a newer version.
void PrepareSchema(Database& database);
/// The same for a database that is only read, or merged from: it must be an inventory.
void CheckSchema(Database& database);

/// The file itself. Throws files::Failure where there is an empty file that has the name of a module or
/// document: it is somebody's, and could not be told from a database that nothing was written to yet.
const std::filesystem::path& NoSource(const std::filesystem::path& file);

/// Takes away the indexes that only make answers fast, and makes those that are missing; PrepareSchema does that too.
void DropIndexes(Database& database);
void MakeIndexes(Database& database);

/// The tables whose rows belong to a content, by `inhalt` and `folge`, and their columns after these two.
struct ContentTable {
  const char* name;
  const char* columns;
};
extern const ContentTable kContentTables[8];
/// The columns of `inhalt` after its number.
extern const char* const kContentColumns;

}  // namespace quillmate::inventory
