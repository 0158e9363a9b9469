#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <quillmate/files/paths.h>
#include <quillmate/host/document_host.h>

#include "codedb/scratch.h"

namespace quillmate::host {

using Lines = std::vector<std::string>;

/// What a host lists, files as seen from a folder: "Project [file]" and "locked" when it is, for each of its modules
/// "  name type lines file", in the end "file: reason" of each problem.
inline Lines Listed(DocumentHost& host, const std::filesystem::path& root) {
  const auto below = [&](const std::string& file) {
    return files::PathFromText(file).lexically_relative(root).generic_string();
  };
  Lines lines;
  for (int i = 1, projects = host.ProjectCount(); i <= projects; ++i) {
    const HostProject project = host.Project(i);
    lines.push_back(project.name + " [" + below(*project.fileName) + "]" + (project.locked ? " locked" : ""));
    for (int j = 1; j <= host.ComponentCount(i); ++j) {
      const HostComponent component = host.Component(i, j);
      lines.push_back("  " + component.name + " " + std::to_string(component.type) + " " +
                      std::to_string(component.lineCount) +
                      (component.file.empty() ? "" : " " + below(component.file)));
    }
  }
  for (const SourceProblem& problem : host.Problems()) lines.push_back(below(problem.source) + ": " + problem.Text());
  return lines;
}

/// Why a module can't be read; empty when it can.
inline std::string Reason(DocumentHost& host, const std::string& module, int position) {
  return codedb::MessageOf([&] { host.ComponentByName(1, module, position); });
}

}  // namespace quillmate::host
