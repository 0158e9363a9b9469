#include "provenance.h"

#include <algorithm>
#include <vector>

#include <quillmate/codedb/code_database.h>

#include "outline_text.h"

namespace quillmate::cli {
namespace {

constexpr const char* kTooShort = "Das Modul hat höchstens zwei Zeilen";

void AppendText(JsonObject& object, std::string& json, std::string_view key, std::string_view utf8) {
  object.Key(key);
  utf8.empty() ? void(json += "null") : AppendJsonUtf8(json, utf8);
}

void AppendProject(std::string& json, const symbols::ProjectInfo& project) {
  JsonObject object(json);
  AppendText(object, json, "project", project.name);
  AppendText(object, json, "file", project.file);
  object.Key("document");
  json += '[';
  for (const symbols::DocumentProperty& property : project.properties) {
    if (json.back() != '[') json += ',';
    JsonObject entry(json);
    AppendText(entry, json, "property", property.name);
    AppendText(entry, json, "value", property.value);
    entry.End();
  }
  json += ']';
  object.End();
}

}  // namespace

void AppendSources(JsonObject& object, std::string& json, std::span<const symbols::ProjectInfo> projects,
                   std::span<const symbols::Omission> omissions) {
  if (std::ranges::any_of(projects, [](const auto& project) { return !project.properties.empty(); })) {
    object.Key("projects");
    JsonLines lines(json);
    for (const symbols::ProjectInfo& project : projects) {
      lines.Next();
      AppendProject(json, project);
    }
    lines.End();
  }
  if (omissions.empty()) return;
  object.Key("omitted");
  JsonLines lines(json);
  for (const symbols::Omission& omission : omissions) {
    lines.Next();
    JsonObject entry(json);
    AppendText(entry, json, "file", omission.file);
    AppendText(entry, json, "project", omission.project);
    AppendText(entry, json, "module", omission.module);
    AppendText(entry, json, "reason", omission.reason);
    entry.End();
  }
  lines.End();
}

Provenance::Provenance(const std::filesystem::path& folder) {
  try {
    facts_ = codedb::ReadFacts(folder);
  } catch (const files::Failure&) {
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

void Provenance::AppendSources(JsonObject& object, std::string& json) const {
  if (!facts_) return;
  std::vector<symbols::ProjectInfo> projects;
  for (const codedb::ProjectFacts& facts : facts_->projects) {
    symbols::ProjectInfo& project = projects.emplace_back();
    project.name = facts.name;
    project.file = facts.file;
    for (const codedb::DocumentFact& fact : facts.document) project.properties.push_back({fact.property, fact.value});
  }
  std::vector<symbols::Omission> omissions;
  for (const codedb::OmissionFact& fact : facts_->omissions) {
    omissions.push_back({fact.file, fact.project, fact.module, fact.reason});
  }
  for (const codedb::ModuleFacts& module : facts_->modules) {
    if (module.number > 0 || !module.file.empty()) continue;
    const codedb::ProjectFacts& project = facts_->projects[static_cast<std::size_t>(module.project)];
    omissions.push_back({project.file, project.name, module.name, kTooShort});
  }
  cli::AppendSources(object, json, projects, omissions);
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
