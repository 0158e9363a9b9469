#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/language/parse.h>

#include "site_contents_p.h"

namespace quillmate::output {

SiteContents::SiteContents(const SiteProject& project)
    : model(project),
      uses(model),
      declarations(model, uses),
      calls(model),
      findings(checks::RunChecks(model.known)),
      metrics(checks::Measure(model.known)) {
  ReadCaptions();
}

void SiteContents::ReadCaptions() try {
  const std::optional<codedb::Facts> facts = codedb::ReadFacts(model.project.indexFolder);
  if (!facts) return;
  for (const codedb::ModuleFacts& module : facts->modules) {
    for (const codedb::ControlFact& control : module.controls) {
      if (control.caption.empty()) continue;
      captions_.try_emplace(std::to_string(module.number) + "." + language::FoldName(control.name), control.caption);
    }
  }
} catch (const files::Failure&) {
  // Nothing is known of captions then.
}

std::string_view SiteContents::Caption(symbols::Index module, std::string_view control) const {
  if (captions_.empty() || module >= model.project.places.size()) return {};
  const auto found =
      captions_.find(std::to_string(model.project.places[module].Number()) + "." + language::FoldName(control));
  return found == captions_.end() ? std::string_view() : found->second;
}

}  // namespace quillmate::output
