#include "projects.h"

#include <utility>

#include <quillmate/host/document_host.h>

namespace quillmate::standin {
namespace {

using host::kClassModule;
using host::kHostDocument;
using host::kMSForm;
using host::kStdModule;

void Add(Project& project, std::string name, int type, std::string code) {
  project.components.push_back(std::make_shared<Component>(Component{std::move(name), type, std::move(code)}));
}

std::string Routine(const std::string& name) {
  return "Public Sub " + name + "()\r\n  ' \334berpr\374fung\r\n  Debug.Print \"" + name + "\"\r\nEnd Sub";
}

std::shared_ptr<Project> BuiltIn(const std::string& edition) {
  auto project = std::make_shared<Project>(Project{"Pr\374fstand",
                                                   "C:\\Daten\\Pr\xC3\xBC"
                                                   "fung M\xC3\xA4rz.xls"});
  const bool access = edition == "Access";
  Add(*project, access ? "Form_Main" : "Tabelle1", kHostDocument, Routine("Anzeigen"));
  Add(*project, access ? "Report_Orders" : "Leer", access ? kHostDocument : kStdModule,
      access ? Routine("Drucken") : "Option Explicit\r\n");
  Add(*project, "mod\304nderung", kStdModule, Routine("\304ndern") + "\r\n\r\n" + Routine("Pr\374fen") + "\r\n");
  Add(*project, "clsKunde", kClassModule, Routine("Laden"));
  Add(*project, "frmEingabe", kMSForm, Routine("OK_Click"));
  return project;
}

std::shared_ptr<Project> Many(const Options& options) {
  auto project = std::make_shared<Project>(Project{"Gro\337projekt", "C:\\Daten\\Gro\xC3\x9F.xlsm"});
  for (int number = 1; number <= options.many; ++number) {
    Add(*project, "Modul" + std::to_string(number), kStdModule, Routine("Nummer" + std::to_string(number)));
  }
  if (options.longModule > 0) {
    std::string code = "Sub Lang()";
    for (int line = 2; line < options.longModule; ++line)
      code += "\r\n  Summe = Summe + Wert(" + std::to_string(line) + ")";
    Add(*project, "Lang", kStdModule, code + "\r\nEnd Sub");
  }
  return project;
}

/// Office files and module files as they are read from their files.
Projects FromSources(const std::vector<std::filesystem::path>& sources) {
  host::DocumentHost documents;
  documents.SetSources(sources);
  Projects projects;
  const int count = documents.AttachHost() ? documents.ProjectCount() : 0;
  for (int index = 1; index <= count; ++index) {
    const host::HostProject info = documents.Project(index);
    const auto project = std::make_shared<Project>(Project{info.name, info.fileName, info.locked});
    const int components = info.locked ? 0 : documents.ComponentCount(index);
    for (int position = 1; position <= components; ++position) {
      const std::string name = documents.Component(index, position).name;
      const host::HostComponent component = documents.ComponentByName(index, name, position);
      Add(*project, name, component.type, documents.Lines(index, name, position, component.lineCount));
    }
    projects.push_back(project);
  }
  return projects;
}

}  // namespace

Projects MakeProjects(const Options& options) {
  Projects projects;
  if (options.locked) projects.push_back(std::make_shared<Project>(Project{"Geheim", "C:\\Daten\\Geheim.xls", true}));
  if (options.sources.empty()) {
    projects.push_back(BuiltIn(options.edition));
  } else {
    for (auto& project : FromSources(options.sources)) projects.push_back(std::move(project));
  }
  if (options.many > 0 || options.longModule > 0) projects.push_back(Many(options));
  for (int number = 1; number <= options.unsaved; ++number) {
    projects.push_back(std::make_shared<Project>(Project{"Neu", std::nullopt}));
    Add(*projects.back(), "Modul1", kStdModule, Routine("Start"));
  }
  return projects;
}

}  // namespace quillmate::standin
