#include "compare_state.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include <quillmate/files/paths.h>
#include <quillmate/host/collect_facts.h>
#include <quillmate/host/document_host.h>
#include <quillmate/office/module_file.h>
#include <quillmate/symbols/project_sources.h>

#include "git_input.h"
#include "messages.h"
#include "project_input.h"
#include "read_files.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

/// How the user knows the paths of a side.
using Shown = std::function<std::string(std::string)>;

symbols::ComparedState Understood(codedb::Facts facts, int edition) {
  // The texts go to the index, everything else is needed twice.
  std::vector<std::optional<std::string>> texts;
  for (codedb::ModuleFacts& module : facts.modules) texts.push_back(std::exchange(module.code, std::nullopt));
  codedb::Facts whole = facts;
  for (std::size_t i = 0; i < texts.size(); ++i) whole.modules[i].code = std::move(texts[i]);
  symbols::ComparedState state;
  state.index = symbols::ReferenceIndex::Build(symbols::SourcesFrom(std::move(whole), HostOfEdition(edition)));
  state.facts = std::move(facts);
  state.hasFacts = true;
  return state;
}

/// Takes what could not be read for what it is: a gap, not a change.
class Gaps {
 public:
  Gaps(host::DocumentHost& documents, const codedb::Facts& facts, int projects, const Shown& shown)
      : facts_(facts), partial_(facts.projects.size()) {
    for (const host::SourceProblem& problem : documents.Problems()) {
      Complain(shown(problem.source + ": " + problem.reason));
      Note(problem.source);
    }
    std::size_t number = 0;
    for (int project = 1; project <= projects; ++project) {
      const host::HostProject info = documents.Project(project);
      if (info.locked) {
        Complain(shown(info.fileName.value_or(std::string()) + ": " + host::kProjectIsLocked));
        lacksProjects_ = true;
        continue;
      }
      const auto read = std::ranges::count(facts.modules, static_cast<int>(number), &codedb::ModuleFacts::project);
      if (read != documents.ComponentCount(project)) partial_[number] = true;
      ++number;
    }
  }

  bool Any() const { return lacksProjects_ || std::ranges::find(partial_, true) != partial_.end(); }
  void Tell(symbols::ComparedState& state) {
    state.lacksProjects = lacksProjects_;
    state.partial = std::move(partial_);
  }

 private:
  /// A file that is a project of its own, or one of a folder's modules.
  void Note(const std::string& source) {
    bool known = false;
    const bool isModule = office::IsModuleFileExtension(files::PathText(files::PathFromText(source).extension()));
    for (std::size_t project = 0; project < partial_.size(); ++project) {
      const std::string& file = facts_.projects[project].file;
      const bool holds = isModule && !file.empty() && source.size() > file.size() && source.starts_with(file);
      if (file != source && !holds) continue;
      partial_[project] = true;
      known = true;
    }
    if (!known) lacksProjects_ = true;
  }

  const codedb::Facts& facts_;
  std::vector<bool> partial_;
  bool lacksProjects_ = false;
};

ReadState ReadSource(const Invocation& invocation, const std::string& input, const fs::path& path, const Shown& shown) {
  host::DocumentHost documents;
  documents.SetSources({path});
  const int projects = documents.AttachHost() ? documents.ProjectCount() : 0;
  for (const fs::path& file : documents.Files()) NoteRead(file);
  if (projects == 0) {
    const auto& problems = documents.Problems();
    throw CommandFailure(problems.empty() ? input + ": enthält kein lesbares Modul"
                                          : shown(problems.back().source + ": " + problems.back().reason));
  }
  std::vector<std::string> problems;
  codedb::Facts facts = host::CollectFacts(documents, projects, problems);
  Gaps gaps(documents, facts, projects, shown);
  for (const std::string& problem : problems) Complain(shown(problem));
  documents.Release();
  if (facts.modules.empty()) throw CommandFailure(input + ": enthält kein lesbares Modul");
  for (codedb::ProjectFacts& project : facts.projects) project.file = shown(std::move(project.file));
  for (codedb::ModuleFacts& module : facts.modules) module.file = shown(std::move(module.file));
  ReadState read{Understood(std::move(facts), invocation.edition), !gaps.Any() && problems.empty()};
  gaps.Tell(read.state);
  return read;
}

ReadState ReadSaved(const Invocation& invocation, const fs::path& folder) {
  codedb::CodeDatabase database;
  OpenIndex(database, folder);
  ReadState read;
  read.state.index =
      symbols::ReferenceIndex::Build(symbols::LoadSources(database, folder, HostOfEdition(invocation.edition)).sources);
  try {
    if (auto facts = codedb::ReadFacts(folder)) {
      for (codedb::ModuleFacts& module : facts->modules) module.code.reset();
      read.state.facts = *std::move(facts);
      read.state.hasFacts = true;
    }
  } catch (const codedb::DatabaseError&) {
    // The index was asked instead.
  }
  if (read.state.index.Modules().empty()) {
    throw CommandFailure(files::PathText(folder) + ": enthält kein lesbares Modul");
  }
  return read;
}

std::string FullText(const fs::path& path) { return files::PathText(files::NormalPath(files::AbsolutePath(path))); }

}  // namespace

ReadState ReadComparedState(const Invocation& invocation, const std::string& input) {
  if (const std::optional<GitInput> git = ParseGitInput(input)) {
    const GitFiles taken(*git);
    for (const std::string& problem : taken.Problems()) Complain(problem);
    ReadState read =
        ReadSource(invocation, input, taken.Path(), [&](std::string text) { return taken.Shown(std::move(text)); });
    read.state.root = taken.Shown(files::PathText(taken.Path()));
    if (!taken.Problems().empty()) {
      read.isWhole = false;
      // Which project lacks what is not known.
      read.state.lacksProjects = true;
      read.state.partial.assign(read.state.index.Projects().size(), true);
    }
    return read;
  }
  Invocation alone = invocation;
  alone.inputs = {input};
  const fs::path path = files::PathFromText(input);
  ReadState read = IsSavedProject(alone) ? ReadSaved(invocation, path)
                                         : ReadSource(invocation, input, path, [](std::string text) { return text; });
  read.state.root = FullText(path);
  return read;
}

}  // namespace quillmate::cli
