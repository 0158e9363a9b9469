#include "understanding.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <quillmate/files/paths.h>
#include <quillmate/host/collect_facts.h>
#include <quillmate/startup/edition.h>
#include <quillmate/symbols/project_sources.h>

#include "input_list.h"
#include "messages.h"
#include "sources.h"

namespace quillmate::cli {
namespace {

symbols::ProjectSources Told(symbols::ProjectSources loaded) {
  if (!loaded.damage.empty()) Complain(loaded.damage);
  return loaded;
}

symbols::Sources SavedSources(const Invocation& invocation) {
  const std::filesystem::path folder = files::PathFromText(invocation.inputs.front());
  codedb::CodeDatabase database;
  OpenIndex(database, folder);
  return Told(symbols::LoadSources(database, folder, HostOfEdition(invocation.edition))).sources;
}

symbols::Sources ReadSources(const Invocation& invocation) {
  Sources inputs(invocation);
  std::vector<std::string> problems;
  codedb::Facts facts = host::CollectFacts(inputs.Host(), inputs.ListAll(), problems);
  inputs.Host().Release();
  for (const std::string& problem : problems) Complain(problem);
  if (invocation.strict && !problems.empty()) MarkIncomplete();
  for (codedb::ProjectFacts& project : facts.projects) NameStandardInput(project.file);
  for (codedb::ModuleFacts& module : facts.modules) NameStandardInput(module.file);
  return symbols::SourcesFrom(std::move(facts), HostOfEdition(invocation.edition));
}

}  // namespace

symbols::Host HostOfEdition(int edition) { return symbols::HostOfProgram(startup::EditionOf(edition).hostName); }

symbols::ReferenceIndex ReadUnderstanding(const Invocation& invocation) {
  symbols::Sources sources = IsSavedProject(invocation) ? SavedSources(invocation) : ReadSources(invocation);
  if (sources.modules.empty()) throw CommandFailure("Die Eingabe enthält kein lesbares Modul");
  return symbols::ReferenceIndex::Build(std::move(sources));
}

IndexUnderstanding UnderstandIndex(ProjectInput& input, int edition) {
  symbols::ProjectSources loaded = Told(symbols::LoadSources(input.Database(), input.Folder(), HostOfEdition(edition)));
  return {symbols::ReferenceIndex::Build(std::move(loaded.sources)), std::move(loaded.places)};
}

}  // namespace quillmate::cli
