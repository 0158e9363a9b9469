#include "project_input.h"

#include <string>
#include <utility>
#include <vector>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/host/project_reader.h>
#include <quillmate/startup/session.h>

#include "messages.h"
#include "platform.h"
#include "progress_line.h"
#include "project_folder.h"
#include "run_options.h"
#include "sources.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void FailRead(const host::ReadReport& report) {
  if (report.outcome == host::ReadOutcome::kFailed && !report.detail.empty()) {
    throw CommandFailure("Fehler beim Einlesen: " + report.detail);
  }
  throw CommandFailure(report.message.empty() ? "Fehler beim Einlesen" : report.message);
}

}  // namespace

void CheckOutputIsNoInput(const Invocation& invocation) {
  if (!invocation.output) {
    return;
  }
  const fs::path output = files::PathFromText(*invocation.output);
  for (const std::string& input : invocation.inputs) {
    std::error_code none;
    const fs::path source = files::PathFromText(input);
    if (fs::equivalent(output, source, none) ||
        (IsProjectFile(output.filename()) && fs::equivalent(output, source / output.filename(), none))) {
      throw UsageError("Die Ausgabe " + *invocation.output + " gehört zur Eingabe");
    }
  }
}

bool IsSavedProject(const Invocation& invocation) {
  for (const std::string& input : invocation.inputs) {
    std::error_code ignored;
    if (fs::exists(codedb::CodeDbPath(files::PathFromText(input)), ignored)) {
      if (invocation.inputs.size() > 1 || invocation.host) {
        throw UsageError(input + " ist ein gespeichertes Projekt und muss die einzige Eingabe sein");
      }
      return true;
    }
  }
  return false;
}

void ReadSources(const Invocation& invocation, const settings::Options& options, const fs::path& folder,
                 codedb::CodeDatabase& database) {
  Sources sources(invocation);
  const host::HostTree tree = sources.List();
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
}

void OpenIndex(codedb::CodeDatabase& database, const fs::path& folder) try {
  database.OpenCodeDatabase(folder);
} catch (const codedb::DatabaseError& error) {
  throw CommandFailure(codedb::BrokenProjectMessage(folder) + ": " + error.what());
}

ProjectInput::ProjectInput(const Invocation& invocation, const settings::Options& options) {
  CheckOutputIsNoInput(invocation);
  if (IsSavedProject(invocation)) {
    folder_ = files::PathFromText(invocation.inputs.front());
  } else {
    scratch_.emplace();
    folder_ = scratch_->Path();
    ReadSources(invocation, options, folder_, database_);
  }
  OpenIndex(database_, folder_);
}

}  // namespace quillmate::cli
