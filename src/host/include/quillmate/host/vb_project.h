#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/office/vba_project.h>

namespace quillmate::host {

/// One module line of a VB project file.
struct VbProjectModule {
  /// From "Module=Name; file" and "Class=Name; file"; empty for the other lines. UTF-8.
  std::string name;
  /// As it is in the file: mostly relative, with backslashes. UTF-8.
  std::string file;
  /// The module file extension that stands for the line's kind, whatever the file itself is called.
  std::string_view extension;
};

/// A VB project file (.vbp): lines "Key=Value" in Windows-1252 or UTF-8, keys in upper or lower case, values with or
/// without quotes. Module and Class lines name the module before the file ("Module=Helpers; src\Helpers.bas"), Form,
/// UserControl, PropertyPage, UserDocument and Designer lines hold the file alone. Name is the project's name, CondComp
/// holds its conditional constants, Reference lines its references.
struct VbProject {
  /// UTF-8; empty when the file gives none.
  std::string name;
  /// CondComp: "DEBUGMODE = 1 : ALT = 0"; UTF-8.
  std::string constants;
  std::vector<office::VbaReference> references;
  std::vector<VbProjectModule> modules;
};

VbProject ParseVbProject(std::string_view bytes);

/// Finds the files that a project file names. Where file names are told apart by case, a name that does not exist as
/// written is looked for without regard to case; each folder is listed once.
class ProjectPaths {
 public:
  explicit ProjectPaths(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// The file's path; when there is no such file, the path as written.
  std::filesystem::path Resolve(std::string_view written);

 private:
  using Names = std::map<std::string, std::filesystem::path>;
  const Names& NamesIn(const std::filesystem::path& folder);
  std::filesystem::path Step(const std::filesystem::path& folder, const std::filesystem::path& name);

  std::filesystem::path folder_;
  std::map<std::filesystem::path, Names> names_;
};

}  // namespace quillmate::host
