#include "project_input.h"

#include <string>
#include <utility>
#include <vector>

#include <quillmate/codedb/index_files.h>
#include <quillmate/host/document_host.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/host/project_reader.h>
#include <quillmate/startup/edition.h>
#include <quillmate/startup/session.h>
#include <quillmate/text/windows1252.h>

#include "messages.h"
#include "platform.h"
#include "progress_line.h"
#include "project_folder.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> SourcePaths(const std::vector<std::string>& inputs) {
  std::vector<fs::path> paths;
  paths.reserve(inputs.size());
  for (const std::string& input : inputs) {
    paths.push_back(codedb::PathFromText(input));
  }
  return paths;
}

void TickAll(host::HostTree& tree) {
  for (host::HostProjectNode& project : tree.projects) {
    project.checked = true;
    for (host::HostModuleNode& module : project.modules) {
      module.checked = true;
    }
  }
}

bool HasModules(const host::HostTree& tree) {
  for (const host::HostProjectNode& project : tree.projects) {
    if (!project.modules.empty()) {
      return true;
    }
  }
  return false;
}

/// A locked project can't be read and is not in the tree.
void AddLockedProjects(host::HostAutomation& host, const host::HostTree& tree, std::vector<std::string>& complaints) {
  const int projects = static_cast<int>(tree.projects.size()) + tree.lockedProjects;
  for (int i = 1; i <= projects; ++i) {
    const host::HostProject project = host.Project(i);
    if (project.locked) {
      complaints.push_back(project.fileName.value_or(text::Utf8FromCode(project.name)) + ": Das Projekt ist gesperrt");
    }
  }
}

/// Names what could not be read. With no module left, the last complaint is the reason why the command fails.
void NameProblems(std::vector<std::string> complaints, bool hasModules) {
  std::string reason;
  if (!hasModules) {
    reason =
        complaints.empty() ? "Die Eingabe enthält kein lesbares Modul mit mehr als zwei Zeilen" : complaints.back();
    if (!complaints.empty()) {
      complaints.pop_back();
    }
  }
  for (const std::string& complaint : complaints) {
    Complain(complaint);
  }
  if (!hasModules) {
    throw CommandFailure(reason);
  }
}

host::HostTree ListSources(host::DocumentHost& host, bool accessEdition) {
  host::HostTree tree;
  host::ListHostProjects(host, accessEdition, tree);
  std::vector<std::string> complaints;
  for (const host::SourceProblem& problem : host.Problems()) {
    complaints.push_back(problem.source + ": " + problem.reason);
  }
  if (tree.lockedProjects > 0) {
    AddLockedProjects(host, tree, complaints);
  }
  NameProblems(std::move(complaints), HasModules(tree));
  TickAll(tree);
  return tree;
}

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
  const fs::path output = codedb::PathFromText(*invocation.output);
  for (const std::string& input : invocation.inputs) {
    std::error_code none;
    const fs::path source = codedb::PathFromText(input);
    if (fs::equivalent(output, source, none) ||
        (IsProjectFile(output.filename()) && fs::equivalent(output, source / output.filename(), none))) {
      throw UsageError("Die Ausgabe " + *invocation.output + " gehört zur Eingabe");
    }
  }
}

bool IsSavedProject(const std::vector<std::string>& inputs) {
  for (const std::string& input : inputs) {
    std::error_code ignored;
    if (fs::exists(codedb::DatabasePath(codedb::PathFromText(input)), ignored)) {
      if (inputs.size() > 1) {
        throw UsageError(input + " ist ein gespeichertes Projekt und muss die einzige Eingabe sein");
      }
      return true;
    }
  }
  return false;
}

void ReadSources(const Invocation& invocation, const settings::Options& options, const fs::path& folder,
                 codedb::CodeDatabase& database) {
  host::DocumentHost host;
  host.SetSources(SourcePaths(invocation.inputs));
  const host::HostTree tree = ListSources(host, invocation.edition == startup::kAccess);
  ProgressLine progress;
  const host::ReadRequest request{.folder = folder,
                                  .templateFile = startup::FindProgramPlaces(ExecutableFolder()).templateFile,
                                  .options = ScanOptionsOf(options),
                                  .progress = [&](const std::string& text) { progress.Show(text); }};
  const host::ReadReport report = host::ReadCheckedModules(host, tree, database, request);
  if (report.outcome != host::ReadOutcome::kDone) {
    FailRead(report);
  }
}

void OpenIndex(codedb::CodeDatabase& database, const fs::path& folder) try {
  database.Open(codedb::DatabasePath(folder));
} catch (const codedb::DatabaseError& error) {
  throw CommandFailure(codedb::BrokenProjectMessage(folder) + ": " + error.what());
}

ProjectInput::ProjectInput(const Invocation& invocation, const settings::Options& options) {
  CheckOutputIsNoInput(invocation);
  if (IsSavedProject(invocation.inputs)) {
    folder_ = codedb::PathFromText(invocation.inputs.front());
  } else {
    scratch_.emplace();
    folder_ = scratch_->Path();
    ReadSources(invocation, options, folder_, database_);
  }
  OpenIndex(database_, folder_);
}

}  // namespace quillmate::cli
