#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include <quillmate/analysis/scanner.h>
#include <quillmate/host/document_host.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/host/project_reader.h>
#include <quillmate/navigation/project_texts.h>
#include <quillmate/project/understanding.h>

#include "codedb/scratch.h"

namespace quillmate::project {

/// Names and texts.
using SourceFiles = std::map<std::string, std::string>;

/// A project read from files.
class ReadProject {
 public:
  explicit ReadProject(const SourceFiles& files, const analysis::ScanOptions& options = {}) {
    for (const auto& [name, text] : files) sources_.Write(name, text);
    Read(options);
  }

  void Read(const analysis::ScanOptions& options = {}) const {
    host::DocumentHost documents;
    documents.SetSources({sources_.Path()});
    host::HostTree tree;
    host::ListHostProjects(documents, false, tree);
    for (host::HostProjectNode& project : tree.projects) {
      project.checked = true;
      for (host::HostModuleNode& module : project.modules) module.checked = true;
    }
    codedb::CodeDatabase database;
    const host::ReadRequest request{folder_.Path(), codedb::TemplateFile(), options, {}};
    const host::ReadReport report = host::ReadCheckedModules(documents, tree, database, request);
    if (report.outcome != host::ReadOutcome::kDone) throw std::runtime_error(report.message + report.detail);
  }

  const std::filesystem::path& Folder() const { return folder_.Path(); }
  const files::ScratchFolder& Sources() const { return sources_; }

  std::shared_ptr<const Understanding> Understood() const {
    UnderstandingProgress progress;
    return MakeUnderstanding({Folder(), navigation::TimeOfIndex(Folder())}, progress);
  }

 private:
  files::ScratchFolder folder_{"Projekt"};
  files::ScratchFolder sources_{"Quelle"};
};

}  // namespace quillmate::project
