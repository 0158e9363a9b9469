#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/analysis/unused.h>
#include <quillmate/codedb/records.h>
#include <quillmate/export/site.h>
#include <quillmate/files/paths.h>

#include "commands.h"
#include "interruption.h"
#include "messages.h"
#include "progress_line.h"
#include "project_input.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

/// The folder beside the target in which the site is made; a signal removes it.
class GuardedSiteFolder {
 public:
  explicit GuardedSiteFolder(const Invocation& invocation)
      : leftover_([&] {
          folder_.emplace(files::PathFromText(*invocation.output), invocation.force);
          return folder_->Path();
        }) {}

  const fs::path& Path() const noexcept { return leftover_.Path(); }

  void Finish() {
    {
      const RunLock lock;
      folder_->PutInPlace();
      leftover_.Release(lock);
    }
    folder_->RemoveOld();
  }

 private:
  std::optional<output::SiteFolder> folder_;
  Leftover leftover_;
};

/// The name of the only input without its ending.
std::string TitleOf(const Invocation& invocation) {
  if (invocation.host || invocation.inputs.size() > 1) {
    return "Makroprojekt";
  }
  const fs::path input = files::RealPath(files::PathFromText(invocation.inputs.front()));
  return files::PathText(fs::is_directory(input) ? input.filename() : input.stem());
}

output::SiteJudgement JudgementOf(analysis::UnusedClass unused) {
  switch (unused) {
    case analysis::UnusedClass::kHost:
      return output::SiteJudgement::kHost;
    case analysis::UnusedClass::kText:
      return output::SiteJudgement::kText;
    default:
      return output::SiteJudgement::kCertain;
  }
}

output::SiteProject ReadSiteProject(const Invocation& invocation, ProjectInput& input) {
  output::SiteProject project;
  project.title = invocation.title.value_or(TitleOf(invocation));
  project.indexFolder = input.Folder();
  project.modules = input.Database().ReadIndex();
  for (const analysis::UnusedRoutine& routine : analysis::FindUnusedRoutines(input.Database(), input.Folder())) {
    project.unused.push_back({routine.routineNumber, JudgementOf(routine.unused)});
  }
  return project;
}

}  // namespace

void RunSite(const Invocation& invocation) {
  if (!invocation.output || *invocation.output == "-") {
    throw UsageError("Es fehlt der Ordner hinter -o");
  }
  CheckOutputIsNoInput(invocation);
  GuardedSiteFolder target(invocation);
  const settings::Options options = RunOptions(invocation);
  ProjectInput input(invocation, options);
  const output::SiteProject project = ReadSiteProject(invocation, input);
  ProgressLine progress;
  output::WriteSite(project, settings::LookOf(options), target.Path(), [&](std::size_t done, std::size_t total) {
    progress.Show("Schreibe Seite " + std::to_string(done) + " von " + std::to_string(total));
  });
  target.Finish();
}

}  // namespace quillmate::cli
