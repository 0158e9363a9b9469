#pragma once

#include <optional>
#include <string>

#include <quillmate/codedb/code_database.h>

/// Names from the command line and what they stand for in the index.
namespace quillmate::cli {

/// A text from the command line as Windows-1252; nothing when no code can hold it.
std::optional<std::string> CodeName(const std::string& name);

/// `mod_num` of the module of that name, compared as the database does: of several the first in just that spelling,
/// else the first. Throws CommandFailure.
codedb::ModuleNumber FindModule(codedb::CodeDatabase& database, const std::string& name);

/// `mod_name` of a module, Windows-1252; empty when there is no such module.
std::string ModuleName(codedb::CodeDatabase& database, codedb::ModuleNumber number);

}  // namespace quillmate::cli
