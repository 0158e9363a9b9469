#include <algorithm>

#include <quillmate/codedb/database_reason.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/navigation/project_texts.h>

namespace quillmate::navigation {

std::filesystem::file_time_type TimeOfIndex(const std::filesystem::path& folder) {
  std::error_code missing;
  const auto time = std::filesystem::last_write_time(codedb::CodeDbPath(folder), missing);
  return missing ? std::filesystem::file_time_type::min() : time;
}

void ProjectTexts::MoveTo(const std::filesystem::path& folder) {
  folder_ = folder;
  time_ = TimeOfIndex(folder);
}

void ProjectTexts::CheckFolder() const {
  const auto now = TimeOfIndex(folder_);
  if (now == time_ || now == std::filesystem::file_time_type::min()) return;
  throw files::Failure(codedb::DatabaseReason::kReplaced, folder_);
}

void ProjectTexts::Load(const std::filesystem::path& folder, int moduleCount) {
  MoveTo(folder);
  texts_.clear();
  kept_ = 0;
  ahead_ = 0;
  texts_.resize(static_cast<std::size_t>(std::max(moduleCount, 0)));
}

std::string_view ProjectTexts::Text(codedb::ModuleNumber module) {
  std::optional<std::string>& text = texts_.at(static_cast<std::size_t>(module.value) - 1);
  if (!text) {
    CheckFolder();
    text = codedb::ReadModuleText(folder_, module);
    kept_ += text->size();
  }
  return *text;
}

bool ProjectTexts::ReadAhead(std::size_t bytes, std::size_t most) {
  const std::size_t enough = std::min(kept_ + bytes, most);
  for (; ahead_ < texts_.size() && kept_ < enough; ++ahead_) {
    try {
      Text({static_cast<std::int32_t>(ahead_) + 1});
    } catch (const files::Failure&) {
      // Perhaps nobody asks for it.
    }
  }
  return ahead_ < texts_.size() && kept_ < most;
}

}  // namespace quillmate::navigation
