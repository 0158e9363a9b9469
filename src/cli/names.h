#pragma once

#include <optional>
#include <string>

#include <quillmate/codedb/code_database.h>
#include <quillmate/symbols/reference_index.h>

#include "project_input.h"

/// Names from the command line and what they mean in the index.
namespace quillmate::cli {

/// A text from the command line as Windows-1252; nothing when no code can hold it.
std::optional<std::string> CodeName(const std::string& name);

/// `mod_num` of the module of a name, "Modul" or "Projekt.Modul" ("Datei.Modul" where projects have one name, the end
/// of its file's path where one project has both), compared as the database does; one in just that spelling comes
/// first. Throws CommandFailure when there is none, or several.
codedb::ModuleNumber FindModule(ProjectInput& input, const std::string& name);
/// The same in the understanding.
symbols::Index FindModule(const symbols::ReferenceIndex& index, const std::string& name);

/// `mod_name` of a module, Windows-1252; empty when there is no such module.
std::string ModuleName(codedb::CodeDatabase& database, codedb::ModuleNumber number);

}  // namespace quillmate::cli
