#include <algorithm>

#include <quillmate/codedb/index_files.h>
#include <quillmate/navigation/project_texts.h>

namespace quillmate::navigation {

void ProjectTexts::Load(const std::filesystem::path& folder, int moduleCount) {
  folder_ = folder;
  texts_.clear();
  texts_.resize(static_cast<std::size_t>(std::max(moduleCount, 0)));
}

std::string_view ProjectTexts::Text(int moduleNumber) {
  std::optional<std::string>& text = texts_.at(static_cast<std::size_t>(moduleNumber) - 1);
  if (!text) text = codedb::ReadModuleText(folder_, moduleNumber);
  return *text;
}

}  // namespace quillmate::navigation
