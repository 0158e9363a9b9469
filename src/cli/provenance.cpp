#include "provenance.h"

#include <quillmate/codedb/code_database.h>

#include "outline_text.h"

namespace quillmate::cli {
namespace {

void AppendText(JsonObject& object, std::string& json, std::string_view key, std::string_view utf8) {
  object.Key(key);
  utf8.empty() ? void(json += "null") : AppendJsonUtf8(json, utf8);
}

}  // namespace

Provenance::Provenance(const std::filesystem::path& folder) {
  try {
    facts_ = codedb::ReadFacts(folder);
  } catch (const codedb::DatabaseError&) {
    return;
  }
  if (!facts_) return;
  for (const codedb::ModuleFacts& module : facts_->modules) {
    if (module.number > 0) modules_.try_emplace(module.number, Module{&module, symbols::ModulePlaces(module)});
  }
}

void Provenance::Append(JsonObject& object, std::string& json, codedb::ModuleNumber module) const {
  const auto found = modules_.find(module.value);
  if (found == modules_.end()) {
    AppendText(object, json, "file", {});
    AppendText(object, json, "project", {});
    return;
  }
  const codedb::ModuleFacts& facts = *found->second.facts;
  const codedb::ProjectFacts& project = facts_->projects[static_cast<std::size_t>(facts.project)];
  AppendText(object, json, "file", facts.file.empty() ? project.file : facts.file);
  AppendText(object, json, "project", project.name);
}

std::string Provenance::Heading(codedb::ModuleNumber module) const {
  const auto found = modules_.find(module.value);
  if (found == modules_.end()) return {};
  const codedb::ModuleFacts& facts = *found->second.facts;
  const codedb::ProjectFacts& project = facts_->projects[static_cast<std::size_t>(facts.project)];
  return ProjectHeading(project.name, project.file, facts.file);
}

std::optional<std::int64_t> Provenance::SourceLine(codedb::ModuleNumber module,
                                                   std::optional<codedb::Line> line) const {
  const auto found = modules_.find(module.value);
  const bool known = found != modules_.end() && found->second.facts->linesOfFile && line && line->value > 0;
  if (!known) return std::nullopt;
  const std::uint32_t source = found->second.places.TextLineOfShown(static_cast<std::uint32_t>(line->value));
  return source == 0 ? std::nullopt : std::optional(std::int64_t{source});
}

}  // namespace quillmate::cli
