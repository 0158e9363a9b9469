#include <algorithm>
#include <string_view>

#include "site_sources_p.h"
#include "site_text_p.h"

namespace quillmate::output {
namespace {

constexpr std::string_view kTooShort = "Das Modul hat höchstens zwei Zeilen";

bool HasSeveralProjects(const SiteModel& model) { return model.known.Projects().size() > 1; }

std::string_view NameOf(const symbols::ProjectInfo& project) {
  return project.name.empty() ? std::string_view(project.file) : std::string_view(project.name);
}

void AppendRow(std::string& html, std::initializer_list<std::string_view> cells) {
  html += "<tr>";
  for (const std::string_view cell : cells) html.append("<td>").append(EscapeUtf8(cell)).append("</td>");
  html += "</tr>\n";
}

void AppendDocuments(std::string& html, const SiteModel& model) {
  const auto projects = model.known.Projects();
  if (std::ranges::all_of(projects, [](const auto& project) { return project.properties.empty(); })) return;
  html +=
      "<table>\n<caption>Was die Dokumente von sich sagen</caption>\n<thead>\n<tr><th scope=\"col\">Datei</th>"
      "<th scope=\"col\">Angabe</th><th scope=\"col\">Wert</th></tr>\n</thead>\n<tbody>\n";
  for (const symbols::ProjectInfo& project : projects) {
    const std::string_view file = project.file.empty() ? NameOf(project) : std::string_view(project.file);
    for (const symbols::DocumentProperty& property : project.properties) {
      AppendRow(html, {file, property.name, property.value});
    }
  }
  html += "</tbody>\n</table>\n";
}

/// Modules that are too short for the index are among them.
std::vector<symbols::Omission> OmissionsOf(const SiteModel& model) {
  std::vector<symbols::Omission> omissions(model.known.Omissions().begin(), model.known.Omissions().end());
  for (symbols::Index i = 0; i < model.known.Modules().size(); ++i) {
    if (model.ModuleOf(i) >= 0) continue;
    const symbols::ModuleInfo& module = model.known.Modules()[i];
    const symbols::ProjectInfo& project = model.known.Projects()[module.project];
    const std::string& file = module.file.empty() ? project.file : module.file;
    omissions.push_back({file, project.name, module.name, std::string(kTooShort)});
  }
  return omissions;
}

void AppendOmissions(std::string& html, const SiteModel& model) {
  const std::vector<symbols::Omission> omissions = OmissionsOf(model);
  if (omissions.empty()) return;
  html +=
      "<table>\n<caption>Was hier fehlt, und warum</caption>\n<thead>\n<tr><th scope=\"col\">Datei</th>"
      "<th scope=\"col\">Projekt</th><th scope=\"col\">Modul</th><th scope=\"col\">Grund</th></tr>\n</thead>\n"
      "<tbody>\n";
  for (const symbols::Omission& omission : omissions) {
    AppendRow(html, {omission.file, omission.project, omission.module, omission.reason});
  }
  html += "</tbody>\n</table>\n";
}

}  // namespace

std::string ProjectCell(const SiteModel& model, const SiteModule& module) {
  if (!HasSeveralProjects(model)) return {};
  const bool isKnown = module.number != symbols::kNone;
  const std::string_view name =
      isKnown ? NameOf(model.known.Projects()[model.known.Modules()[module.number].project]) : std::string_view();
  return "<td>" + EscapeUtf8(name) + "</td>";
}

std::string ProjectHead(const SiteModel& model) {
  return HasSeveralProjects(model) ? "<th scope=\"col\">Projekt</th>" : "";
}

void AppendSources(std::string& html, const SiteModel& model) {
  AppendDocuments(html, model);
  AppendOmissions(html, model);
}

}  // namespace quillmate::output
