#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmate::navigation {

/// The marked-up texts of a project's modules, kept in memory so that one question after the other runs over them. A
/// module's file is read when its text is first asked for; a million lines of code take about 50 MB.
class ProjectTexts {
 public:
  /// Turns to the project in `folder` and drops the texts of the one before. To be called after every read, too, since
  /// it writes the files anew.
  void Load(const std::filesystem::path& folder, int moduleCount);

  int Count() const noexcept { return static_cast<int>(texts_.size()); }
  /// Text of the module with that `mod_num`, 1 to Count(). Valid until the next Load. Throws std::runtime_error (UTF-8)
  /// when the file can't be read.
  std::string_view Text(int moduleNumber);

 private:
  std::filesystem::path folder_;
  std::vector<std::optional<std::string>> texts_;
};

}  // namespace quillmate::navigation
