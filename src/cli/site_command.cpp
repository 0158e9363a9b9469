#include <string>
#include <vector>

#include <quillmate/analysis/unused.h>
#include <quillmate/codedb/records.h>
#include <quillmate/export/site.h>
#include <quillmate/files/paths.h>

#include "commands.h"
#include "messages.h"
#include "progress_line.h"
#include "project_input.h"
#include "read_files.h"
#include "run_options.h"
#include "title.h"

namespace quillmate::cli {
namespace {

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
  project.title = TitleOf(invocation);
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
  CheckOutput(invocation);
  output::SiteFolder target(files::PathFromText(*invocation.output), invocation.force);
  const settings::Options options = RunOptions(invocation);
  ProjectInput input(invocation, options);
  const output::SiteProject project = ReadSiteProject(invocation, input);
  ProgressLine progress;
  output::WriteSite(project, settings::LookOf(options), target.Path(), [&](std::size_t done, std::size_t total) {
    progress.Show("Schreibe Seite " + std::to_string(done) + " von " + std::to_string(total));
  });
  CheckNotRead(*invocation.output, target.Replaced());
  target.Commit();
}

}  // namespace quillmate::cli
