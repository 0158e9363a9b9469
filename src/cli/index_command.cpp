#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/records.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "commands.h"
#include "messages.h"
#include "project_folder.h"
#include "project_input.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

void CopyFile(const fs::path& from, const fs::path& to) { files::WriteWholeFile(to, files::ReadWholeFile(from)); }

/// The database, the facts and the texts of the modules that it lists.
void CopyProject(const fs::path& from, const fs::path& to) {
  codedb::CodeDatabase database;
  OpenIndex(database, from);
  for (const codedb::ModuleRecord& module : database.ReadIndex()) {
    CopyFile(codedb::ModuleTextPath(from, module.number), codedb::ModuleTextPath(to, module.number));
  }
  CopyFile(codedb::CodeDbPath(from), codedb::CodeDbPath(to));
  std::error_code ignored;
  if (fs::is_regular_file(codedb::FactsPath(from), ignored)) {
    CopyFile(codedb::FactsPath(from), codedb::FactsPath(to));
  }
}

}  // namespace

void RunIndex(const Invocation& invocation) {
  if (!invocation.output || *invocation.output == "-") {
    throw UsageError("Es fehlt der Ordner hinter -o");
  }
  const bool saved = IsSavedProject(invocation);
  NewProjectFolder target(*invocation.output, invocation.force);
  if (saved) {
    CopyProject(files::PathFromText(invocation.inputs.front()), target.Path());
  } else {
    codedb::CodeDatabase database;
    ReadSources(invocation, RunOptions(invocation), target.Path(), database);
  }
  target.Finish();
}

}  // namespace quillmate::cli
