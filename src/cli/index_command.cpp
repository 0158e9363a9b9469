#include <quillmate/codedb/project_folder.h>
#include <quillmate/files/paths.h>

#include "commands.h"
#include "messages.h"
#include "project_input.h"
#include "read_files.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

/// Copies a saved project or reads sources; false when anything was left out.
bool WriteIndex(const Invocation& invocation, const fs::path& folder) {
  if (IsSavedProject(invocation)) {
    codedb::CopyAllFiles(files::PathFromText(invocation.inputs.front()), folder);
    return true;
  }
  codedb::CodeDatabase database;
  return ReadSources(invocation, RunOptions(invocation), folder, database);
}

}  // namespace

void RunIndex(const Invocation& invocation) {
  if (!invocation.output || *invocation.output == "-") {
    throw UsageError("Es fehlt der Ordner hinter -o");
  }
  CheckOutput(invocation);
  const fs::path place = files::PathFromText(*invocation.output);
  const codedb::FolderState before = codedb::LookAtFolder(place);
  if (!invocation.force && (before == codedb::FolderState::kProject || before == codedb::FolderState::kEmpty ||
                            before == codedb::FolderState::kOther)) {
    throw CommandFailure(files::PathText(files::RealPath(place)) +
                         ": Der Ordner existiert schon; --force überschreibt ein Projekt");
  }
  codedb::ProjectReplacement project(files::RealPath(place));
  const bool whole = WriteIndex(invocation, project.Path());
  CheckNotRead(*invocation.output, project.Replaced());
  if (!whole && !invocation.partial && before == codedb::FolderState::kProject) {
    throw CommandFailure("Nicht alles konnte gelesen werden; das Projekt in " + *invocation.output +
                         " bleibt, wie es war (--partial ersetzt es trotzdem)");
  }
  project.Commit();
}

}  // namespace quillmate::cli
