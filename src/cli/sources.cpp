#include "sources.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include <quillmate/files/paths.h>
#include <quillmate/startup/edition.h>
#include <quillmate/text/windows1252.h>

#include "messages.h"
#include "platform.h"
#include "read_files.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> SourcePaths(const std::vector<std::string>& inputs) {
  std::vector<fs::path> paths;
  paths.reserve(inputs.size());
  for (const std::string& input : inputs) {
    paths.push_back(files::PathFromText(input));
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

}  // namespace

Sources::Sources(const Invocation& invocation)
    : edition_(startup::EditionOf(invocation.edition).hostName),
      accessEdition_(invocation.edition == startup::kAccess),
      withOffice_(invocation.host),
      withSmall_(invocation.everyModule),
      strict_(invocation.strict),
      office_(edition_),
      joined_({&office_, &documents_}) {
  const std::vector<fs::path> paths = SourcePaths(invocation.inputs);
  for (const fs::path& path : paths) names_.push_back(files::PathText(files::NormalPath(files::AbsolutePath(path))));
  documents_.SetSources(paths);
  documents_.SetExcel4(invocation.excel4);
  documents_.SetCodePage(invocation.codePage);
}

host::HostAutomation& Sources::Host() noexcept {
  return withOffice_ ? static_cast<host::HostAutomation&>(joined_) : documents_;
}

void Sources::NameProblems(std::vector<std::string> complaints, bool hasModules) {
  whole_ = complaints.empty();
  MarkMissing(!whole_);
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

/// A locked project can't be read and is not in the tree.
void Sources::AddLockedProjects(int projects, std::vector<std::string>& complaints) {
  for (int i = 1; i <= projects; ++i) {
    const host::HostProject project = Host().Project(i);
    if (!project.locked) continue;
    if (IsNamed(project.fileName.value_or(std::string()))) MarkIncomplete();
    complaints.push_back(project.fileName.value_or(text::Utf8FromCode(project.name)) + ": " +
                         files::ReasonText(host::HostReason::kProjectLocked));
  }
}

bool Sources::IsNamed(const std::string& file) const { return std::ranges::find(names_, file) != names_.end(); }

void Sources::MarkMissing(bool anyComplaint) {
  const std::vector<host::SourceProblem>& problems = documents_.Problems();
  const bool missing = std::ranges::any_of(problems, &host::SourceProblem::isWholeSource);
  if (missing || (strict_ && anyComplaint)) MarkIncomplete();
}

/// A document that is open in a host is a file that is read, too.
void Sources::NoteFiles(int projects) {
  for (const auto& file : documents_.Files()) NoteRead(file);
  for (int i = 1; withOffice_ && i <= projects; ++i) {
    const std::optional<std::string> file = Host().Project(i).fileName;
    if (file) {
      NoteRead(files::PathFromText(*file));
    }
  }
}

host::HostTree Sources::List() {
  std::vector<std::string> complaints;
  host::HostTree tree;
  if (withOffice_) {
    ListWithOffice(tree, complaints);
  } else {
    host::ListHostProjects(documents_, accessEdition_, tree, withSmall_);
  }
  for (const host::SourceProblem& problem : documents_.Problems()) {
    complaints.push_back(problem.source + ": " + problem.Text());
  }
  const int projects = static_cast<int>(tree.projects.size()) + tree.lockedProjects;
  if (tree.lockedProjects > 0) AddLockedProjects(projects, complaints);
  NoteFiles(projects);
  NameProblems(std::move(complaints), HasModules(tree));
  TickAll(tree);
  return tree;
}

int Sources::ListAll() {
  std::vector<std::string> complaints;
  if (withOffice_ && !HostsCanRun()) {
    throw CommandFailure("Ein laufendes Office-Programm kann nur unter Windows gelesen werden");
  }
  const int projects = Host().AttachHost() ? Host().ProjectCount() : 0;
  for (const host::SourceProblem& problem : documents_.Problems()) {
    complaints.push_back(problem.source + ": " + problem.Text());
  }
  AddLockedProjects(projects, complaints);
  NoteFiles(projects);
  NameProblems(std::move(complaints), projects > 0);
  return projects;
}

bool Sources::ListsOffice(const host::HostTree& tree) const {
  return std::ranges::any_of(tree.projects, [this](const host::HostProjectNode& project) {
    return joined_.IndexIn(office_, project.index).has_value();
  });
}

/// A running host that gives nothing is named like a source that can't be read.
void Sources::ListWithOffice(host::HostTree& tree, std::vector<std::string>& complaints) {
  if (!HostsCanRun()) {
    throw CommandFailure("Ein laufendes Office-Programm kann nur unter Windows gelesen werden");
  }
  const bool attached = office_.AttachHost();
  const host::ListResult alone{.attached = attached, .version = office_.HostVersion()};
  office_.Release();
  const std::string problem = host::ListHostProjects(joined_, accessEdition_, tree, withSmall_).problem;
  if (!problem.empty()) {
    complaints.push_back(problem);
  }
  const bool refused = !attached && alone.version > 0;
  if (!ListsOffice(tree) && (problem.empty() || refused)) {
    complaints.push_back(host::RefreshMessage(alone, {}, edition_));
  }
}

}  // namespace quillmate::cli
