#include <string>
#include <vector>

#include <quillmate/codedb/records.h>
#include <quillmate/export/site.h>
#include <quillmate/files/paths.h>

#include "commands.h"
#include "messages.h"
#include "progress_line.h"
#include "project_input.h"
#include "read_files.h"
#include "run_options.h"
#include "site_notes.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

output::SiteProject ReadSiteProject(const Invocation& invocation, ProjectInput& input,
                                    const IndexUnderstanding& understanding) {
  output::SiteProject project;
  project.title = TitleOf(invocation);
  project.indexFolder = input.Folder();
  project.modules = input.Database().ReadIndex();
  project.understanding = &understanding.index;
  project.places = understanding.places;
  project.notes = ReadSiteNotes(input.Folder(), project.modules, understanding);
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
  const IndexUnderstanding understanding = UnderstandIndex(input, invocation.edition);
  const output::SiteProject project = ReadSiteProject(invocation, input, understanding);
  ProgressLine progress;
  output::WriteSite(project, settings::LookOf(options), target.Path(), [&](std::size_t done, std::size_t total) {
    progress.Show("Schreibe Seite " + std::to_string(done) + " von " + std::to_string(total));
  });
  CheckNotRead(*invocation.output, target.Replaced());
  target.Commit();
}

}  // namespace quillmate::cli
