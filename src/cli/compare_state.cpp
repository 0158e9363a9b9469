#include "compare_state.h"

#include <optional>
#include <utility>

#include <quillmate/files/paths.h>

#include "git_input.h"
#include "messages.h"
#include "project_input.h"
#include "read_files.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

project::StateRequest RequestOf(const Invocation& invocation, std::filesystem::path path) {
  return {.path = std::move(path),
          .assumed = HostOfEdition(invocation.edition),
          .complain = [](const std::string& line) { Complain(line); },
          .opened = [](const std::filesystem::path& file) { NoteRead(file); }};
}

project::ReadState ReadGit(const Invocation& invocation, const GitInput& input) {
  const GitFiles taken(input);
  for (const std::string& problem : taken.Problems()) Complain(problem);
  project::StateRequest request = RequestOf(invocation, taken.Path());
  request.shown = [&](std::string text) { return taken.Shown(std::move(text)); };
  project::ReadState read = project::ReadComparedState(request);
  if (taken.Problems().empty()) return read;
  read.isWhole = false;
  // Which project lacks what is not known.
  read.state.lacksProjects = true;
  read.state.partial.assign(read.state.index.Projects().size(), true);
  return read;
}

}  // namespace

project::ReadState ReadComparedState(const Invocation& invocation, const std::string& input) {
  if (const std::optional<GitInput> git = ParseGitInput(input)) return ReadGit(invocation, *git);
  // Looks at the output too, where the input is a saved project.
  Invocation alone = invocation;
  alone.inputs = {input};
  IsSavedProject(alone);
  return project::ReadComparedState(RequestOf(invocation, files::PathFromText(input)));
}

}  // namespace quillmate::cli
