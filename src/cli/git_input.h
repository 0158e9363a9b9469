#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/files/work_folder.h>

/// Inputs of the form "git:REV:PATH": a file or folder as a repository has it in a revision. The git program is asked,
/// and only for what it has stored: nothing is checked out, fetched, filtered or written there.
namespace quillmate::cli {

/// REV is anything that names a commit or tree, empty for what is staged. PATH counts from the repository's top; with
/// "./" or "../" in front from the current folder; a full path may be in any repository. Empty: all of it.
struct GitInput {
  std::string revision;
  std::string path;
};
/// Nothing for inputs of another form.
std::optional<GitInput> ParseGitInput(std::string_view input);

/// What was taken out of the repository, in a scratch folder that lives as long as this: of folders the module files,
/// VB projects and Office files, links to files of the same tree and checked-out submodules included; with a VB project
/// all module files of its repository, which it may name.
class GitFiles {
 public:
  /// Throws CommandFailure: no git, no repository, no such revision or path.
  explicit GitFiles(const GitInput& input);
  ~GitFiles();

  /// The file or folder that was asked for.
  const std::filesystem::path& Path() const noexcept { return path_; }
  /// A text with the paths in the scratch folder as the user knows them: "git:REV:PATH".
  std::string Shown(std::string text) const;
  /// What is missing: German, one line each.
  const std::vector<std::string>& Problems() const noexcept { return problems_; }

 private:
  class Reader;
  std::unique_ptr<files::WorkFolder> scratch_;
  std::filesystem::path path_;
  std::string place_, shownPlace_;
  std::vector<std::string> problems_;
};

}  // namespace quillmate::cli
