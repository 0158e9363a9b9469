#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/host/document_host.h>
#include <quillmate/host/host_automation.h>
#include <quillmate/host/module_file.h>

namespace quillmate::host {

/// A module of a source as it was listed.
struct ListedModule {
  HostComponent component;
  std::filesystem::path path;
  /// Decides how the file is read; the file's own extension, or the one that its line in a project file stands for.
  std::string extension;
  /// The name that a project file gives the module, Windows-1252; empty when it gives none.
  std::string givenName;
};

struct ListedProject {
  HostProject project;
  std::vector<ListedModule> modules;
};

struct Listing {
  std::vector<ListedProject> projects;
  std::vector<SourceProblem> problems;
};

/// Looks through the sources; a source that holds no readable module becomes a problem instead of a project.
Listing ListSources(const std::vector<std::filesystem::path>& sources);

/// A module's name, Windows-1252: as the project file gives it, as the file says itself, or the file name's stem.
std::string NameOf(const ListedModule& module, const ModuleFile& file);

/// The text of a file that holds a module. Throws HostError (the reason alone).
ModuleFile LoadModule(const ListedModule& module, std::string& buffer);

}  // namespace quillmate::host
