#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <quillmate/host/host_automation.h>

namespace quillmate::host {

/// A source that could not be read when it was listed.
struct SourceProblem {
  std::string source;  // UTF-8 path
  std::string reason;  // German, UTF-8, one line
};

/// Module files, folders of module files and VB project files as the open projects of a running host: one project a
/// source. It attaches when at least one source is known.
///
/// Folder: every module file in it, then those of its sub-folders, each level in the byte order of its names; symbolic
/// links to folders are not followed. VB project file: the modules of its Module, Class, Form, UserControl,
/// PropertyPage, UserDocument and Designer lines, paths relative to the file, with backslashes.
/// Names that occur twice in one project are kept as they are; the position tells the components apart.
class DocumentHost : public HostAutomation {
 public:
  DocumentHost();
  ~DocumentHost() override;

  /// The sources, in the order in which they are listed. Takes effect at the next Attach.
  void SetSources(std::vector<std::filesystem::path> sources);
  /// Sources or files that the last Attach could not list.
  const std::vector<SourceProblem>& Problems() const noexcept;

  bool Attach() override;
  void Release() noexcept override;
  float Version() const noexcept override;
  int ProjectCount() override;
  HostProject Project(int project) override;
  int ComponentCount(int project) override;
  HostComponent Component(int project, int component) override;
  HostComponent ComponentByName(int project, const std::string& name, int position) override;
  std::string Lines(int project, const std::string& name, int position, int count) override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmate::host
