#include "project_input.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/project_folder.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>
#include <quillmate/host/project_reader.h>
#include <quillmate/startup/session.h>

#include "input_list.h"
#include "messages.h"
#include "platform.h"
#include "progress_line.h"
#include "read_files.h"
#include "run_options.h"
#include "scratch_folder.h"
#include "sources.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

/// The facts tell where modules came from.
void NameStandardInputIn(const fs::path& folder) {
  std::optional<codedb::Facts> facts = codedb::ReadFacts(folder);
  if (!facts) return;
  for (codedb::ProjectFacts& project : facts->projects) NameStandardInput(project.file);
  for (codedb::ModuleFacts& module : facts->modules) NameStandardInput(module.file);
  codedb::WriteFacts(folder, *facts);
}

[[noreturn]] void FailRead(const host::ReadReport& report) {
  if (report.message.empty() || report.outcome == host::ReadOutcome::kFailed) {
    throw CommandFailure("Fehler beim Einlesen" + (report.detail.empty() ? "" : ": " + report.detail));
  }
  throw CommandFailure(report.message);
}

}  // namespace

void CheckOutput(const Invocation& invocation) {
  if (!invocation.output || *invocation.output == "-") {
    return;
  }
  for (const std::string& input : invocation.inputs) {
    NoteRead(files::PathFromText(input));
  }
  CheckNotRead(*invocation.output, {files::PathFromText(*invocation.output)});
}

bool IsSavedProject(const Invocation& invocation) {
  for (const std::string& input : invocation.inputs) {
    const fs::path folder = files::PathFromText(input);
    if (codedb::LookAtFolder(folder) == codedb::FolderState::kProject) {
      if (invocation.inputs.size() > 1 || invocation.host) {
        throw UsageError(input + " ist ein gespeichertes Projekt und muss die einzige Eingabe sein");
      }
      NoteProjectRead(folder);
      CheckOutput(invocation);
      return true;
    }
  }
  return false;
}

bool ReadSources(const Invocation& invocation, const settings::Options& options, const fs::path& folder,
                 codedb::CodeDatabase& database) {
  Sources sources(invocation);
  const host::HostTree tree = sources.List();
  CheckOutput(invocation);
  ProgressLine progress;
  const host::ReadRequest request{.folder = folder,
                                  .templateFile = startup::FindProgramPlaces(ExecutableFolder()).templateFile,
                                  .options = settings::LayoutOf(options),
                                  .progress = [&](const std::string& text) { progress.Show(text); }};
  const host::ReadReport report = host::ReadCheckedModules(sources.Host(), tree, database, request);
  progress.Clear();
  const bool nothingRead = report.outcome != host::ReadOutcome::kDone;
  for (const std::string& module : report.leftOut) {
    if (!nothingRead || module != report.detail) Complain(module);
  }
  if (nothingRead) {
    FailRead(report);
  }
  for (const std::string& line : report.replacedCharacters) {
    Complain(line);
  }
  if (invocation.strict && !report.leftOut.empty()) MarkIncomplete();
  if (ReadsStandardInput()) NameStandardInputIn(folder);
  return sources.AreWhole();
}

void OpenIndex(codedb::CodeDatabase& database, const fs::path& folder) try {
  database.OpenCodeDatabase(folder);
} catch (const files::Failure& error) {
  throw codedb::BrokenProject(folder, error);
}

ProjectInput::ProjectInput(const Invocation& invocation, const settings::Options& options) {
  CheckOutput(invocation);
  if (IsSavedProject(invocation)) {
    folder_ = files::PathFromText(invocation.inputs.front());
    OpenIndex(database_, folder_);
  } else {
    scratch_ = MakeScratchFolder();
    folder_ = scratch_->Path();
    ReadSources(invocation, options, folder_, database_);
    database_.OpenOwnCodeDatabase(folder_);
  }
}

}  // namespace quillmate::cli
