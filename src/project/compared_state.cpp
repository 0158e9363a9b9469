#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/project_folder.h>
#include <quillmate/files/paths.h>
#include <quillmate/host/collect_facts.h>
#include <quillmate/host/document_host.h>
#include <quillmate/office/module_file.h>
#include <quillmate/project/compared_state.h>
#include <quillmate/project/saved_projects.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/text/operations.h>

namespace quillmate::project {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void FailEmpty(const std::string& shown) { throw files::Failure(ProjectReason::kNoModule, {}, {shown}); }

std::string Shown(const StateRequest& request, std::string text) {
  return request.shown ? request.shown(std::move(text)) : text;
}

void Complain(const StateRequest& request, std::string line) {
  if (request.complain) request.complain(Shown(request, std::move(line)));
}

std::string ExtensionOf(const std::string& file) { return files::PathText(files::PathFromText(file).extension()); }

symbols::BuildOptions OptionsOf(const StateRequest& request) { return {.cancelled = request.cancelled}; }

symbols::ComparedState Understood(codedb::Facts facts, const StateRequest& request) {
  // The texts go to the index, everything else is needed twice.
  std::vector<std::optional<std::string>> texts;
  for (codedb::ModuleFacts& module : facts.modules) texts.push_back(std::exchange(module.code, std::nullopt));
  codedb::Facts whole = facts;
  for (std::size_t i = 0; i < texts.size(); ++i) whole.modules[i].code = std::move(texts[i]);
  symbols::ComparedState state;
  state.index =
      symbols::ReferenceIndex::Build(symbols::SourcesFrom(std::move(whole), request.assumed), OptionsOf(request));
  state.facts = std::move(facts);
  state.hasFacts = true;
  return state;
}

/// Takes what could not be read for what it is: a gap, not a change.
class Gaps {
 public:
  Gaps(host::DocumentHost& documents, const codedb::Facts& facts, int projects, const StateRequest& request)
      : facts_(facts), partial_(facts.projects.size()) {
    for (const host::SourceProblem& problem : documents.Problems()) {
      Complain(request, problem.source + ": " + problem.Text());
      Note(problem);
    }
    std::size_t number = 0;
    for (int project = 1; project <= projects; ++project) {
      const host::HostProject info = documents.Project(project);
      if (info.locked) {
        Complain(request,
                 info.fileName.value_or(std::string()) + ": " + files::ReasonText(host::HostReason::kProjectLocked));
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
  /// A file that is a project of its own, or a module of one.
  void Note(const host::SourceProblem& problem) {
    bool known = false;
    for (std::size_t project = 0; project < partial_.size(); ++project) {
      const std::string& file = facts_.projects[project].file;
      if (file != problem.source && (file.empty() || file != problem.project)) continue;
      partial_[project] = true;
      known = true;
    }
    if (!known) lacksProjects_ = true;
  }

  const codedb::Facts& facts_;
  std::vector<bool> partial_;
  bool lacksProjects_ = false;
};

ReadState ReadSource(const StateRequest& request) {
  const std::string input = Shown(request, files::PathText(request.path));
  host::DocumentHost documents;
  documents.SetSources({request.path});
  const int projects = documents.AttachHost() ? documents.ProjectCount() : 0;
  if (request.opened) std::ranges::for_each(documents.Files(), request.opened);
  if (projects == 0) {
    const auto& problems = documents.Problems();
    if (problems.empty()) FailEmpty(input);
    throw files::Failure(ProjectReason::kNotRead, {},
                         {Shown(request, problems.back().source + ": " + problems.back().Text())});
  }
  std::vector<std::string> problems;
  codedb::Facts facts = host::CollectFacts(documents, projects, problems, request.step);
  Gaps gaps(documents, facts, projects, request);
  for (std::string& problem : problems) Complain(request, std::move(problem));
  documents.Release();
  if (facts.modules.empty()) FailEmpty(input);
  for (codedb::ProjectFacts& project : facts.projects) project.file = Shown(request, std::move(project.file));
  for (codedb::ModuleFacts& module : facts.modules) module.file = Shown(request, std::move(module.file));
  ReadState read{Understood(std::move(facts), request), !gaps.Any() && problems.empty()};
  gaps.Tell(read.state);
  return read;
}

/// What a saved project lacks: the sources gave it not, or its own files don't.
class SavedGaps {
 public:
  SavedGaps(const StateRequest& request, symbols::ProjectSources& loaded, ReadState& read)
      : request_(request), loaded_(loaded), read_(read), partial_(loaded.sources.projects.size()) {}

  void Find() {
    for (const codedb::OmissionFact& omission : read_.state.facts.omissions) NoteOmission(omission);
    DropUnreadable();
    read_.state.partial = std::move(partial_);
  }

 private:
  void NoteOmission(const codedb::OmissionFact& omission) {
    read_.isWhole = false;
    std::string line = omission.file.empty() ? omission.project : omission.file;
    if (!omission.module.empty()) line += ": " + omission.module;
    Complain(request_, line + ": " + omission.reason);
    bool known = false;
    // Which VB projects name a file nobody has kept.
    const bool isModule = office::IsModuleFileExtension(ExtensionOf(omission.file));
    for (std::size_t project = 0; project < partial_.size(); ++project) {
      const symbols::ProjectSource& source = loaded_.sources.projects[project];
      const bool mayName = isModule && text::EqualsIgnoreCase(ExtensionOf(source.file), ".vbp");
      const bool isIt = !omission.module.empty() && !omission.project.empty() && omission.project == source.name;
      const bool holds = !source.file.empty() && omission.file.starts_with(source.file);
      if (!isIt && !holds && !mayName) continue;
      partial_[project] = true;
      known = true;
    }
    if (!known) read_.state.lacksProjects = true;
  }

  void DropUnreadable() {
    auto& modules = loaded_.sources.modules;
    for (std::size_t n = loaded_.unreadable.size(); n-- > 0;) {
      const symbols::Index i = loaded_.unreadable[n];
      Complain(request_, files::PathText(request_.path) + ": " + modules[i].name + ": Der Text ist nicht lesbar");
      read_.isWhole = read_.hasAllModules = false;
      partial_[modules[i].project] = true;
      const auto at = static_cast<std::ptrdiff_t>(i);
      modules.erase(modules.begin() + at);
      if (read_.state.hasFacts) read_.state.facts.modules.erase(read_.state.facts.modules.begin() + at);
    }
  }

  const StateRequest& request_;
  symbols::ProjectSources& loaded_;
  ReadState& read_;
  std::vector<bool> partial_;
};

ReadState ReadSaved(const StateRequest& request) {
  const fs::path& folder = request.path;
  if (request.opened) {
    for (const fs::path& name : codedb::ProjectFiles(folder)) request.opened(folder / name);
  }
  codedb::CodeDatabase database;
  try {
    database.OpenCodeDatabase(folder);
  } catch (const files::Failure& error) {
    throw codedb::BrokenProject(folder, error);
  }
  symbols::ProjectSources loaded = symbols::LoadSources(database, folder, request.assumed);
  ReadState read;
  try {
    if (auto facts = codedb::ReadFacts(folder)) {
      for (codedb::ModuleFacts& module : facts->modules) module.code.reset();
      read.state.facts = *std::move(facts);
      read.state.hasFacts = true;
    }
  } catch (const files::Failure& error) {
    // The index was asked instead; what was left out of the project nobody knows then.
    Complain(request, error.what());
    read.isWhole = false;
  }
  SavedGaps(request, loaded, read).Find();
  read.state.index = symbols::ReferenceIndex::Build(std::move(loaded.sources), OptionsOf(request));
  const bool gaveUp = request.cancelled != nullptr && *request.cancelled;
  if (read.state.index.Modules().empty() && !gaveUp) FailEmpty(files::PathText(folder));
  return read;
}

}  // namespace

ReadState ReadComparedState(const StateRequest& request) {
  ReadState read = IsProjectFolder(request.path) ? ReadSaved(request) : ReadSource(request);
  read.state.root = Shown(request, files::PathText(files::NormalPath(files::AbsolutePath(request.path))));
  return read;
}

namespace {

/// Ends the reading from within a step.
struct GivenUp {};

ReadState ReadSide(const CompareRequest& request, const fs::path& path, CompareProgress& progress,
                   std::vector<std::string>& problems, std::vector<fs::path>& files) {
  progress.modules = 0;
  return ReadComparedState({.path = path,
                            .assumed = request.assumed,
                            .complain = [&](const std::string& line) { problems.push_back(line); },
                            .opened = [&](const fs::path& file) { files.push_back(file); },
                            .step =
                                [&](std::size_t module) {
                                  progress.modules = module;
                                  if (progress.cancelled) throw GivenUp();
                                },
                            .cancelled = &progress.cancelled});
}

}  // namespace

bool CompareProjects(const CompareRequest& request, CompareProgress& progress, ComparedProjects& result) {
  const auto enter = [&](CompareProgress::Stage stage) {
    progress.stage = stage;
    progress.stage.notify_all();
    return !progress.cancelled;
  };
  // However it ends.
  const std::unique_ptr<CompareProgress, void (*)(CompareProgress*)> end(&progress, [](CompareProgress* ended) {
    ended->stage = CompareProgress::kDone;
    ended->stage.notify_all();
  });
  try {
    enter(CompareProgress::kReadsOld);
    result.oldSide = ReadSide(request, request.oldPath, progress, result.oldProblems, result.files);
    if (!enter(CompareProgress::kReadsNew)) return false;
    result.newSide = ReadSide(request, request.newPath, progress, result.newProblems, result.files);
  } catch (const GivenUp&) {
    return false;
  }
  if (!enter(CompareProgress::kCompares)) return false;
  result.comparison = symbols::Compare(result.oldSide.state, result.newSide.state, request.options);
  return !progress.cancelled;
}

}  // namespace quillmate::project
