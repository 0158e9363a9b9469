#include <cerrno>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/file_error.h>
#include <quillmate/navigation/code_views.h>

namespace quillmate::navigation {
namespace {

void CheckModuleFiles(const std::filesystem::path& folder, int moduleCount) {
  for (int number = 1; number <= moduleCount; ++number) {
    const std::filesystem::path file = codedb::ModuleTextPath(folder, number);
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
      throw files::FileError(files::FileAction::kRead, file, ENOENT);
    }
  }
}

}  // namespace

CodeViews::CodeViews() { Reset(); }

void CodeViews::Load(const std::filesystem::path& folder, int moduleCount) {
  CheckModuleFiles(folder, moduleCount);
  Reset();
  if (moduleCount < 1) return;
  folder_ = folder;
  slots_.clear();
  slots_.resize(static_cast<std::size_t>(moduleCount));
}

void CodeViews::Load(ProjectTexts& texts) {
  Load(texts.Folder(), texts.Count());
  texts_ = &texts;
}

void CodeViews::Reset() {
  folder_.clear();
  texts_ = nullptr;
  slots_.clear();
  slots_.push_back(std::make_unique<Slot>());
  current_ = 0;
}

int CodeViews::Count() const noexcept { return static_cast<int>(slots_.size()); }

CodeView& CodeViews::View(int index) { return Read(index).view; }

const std::vector<StyleRun>& CodeViews::Runs(int index) { return Read(index).runs; }

bool CodeViews::IsRead(int index) const noexcept {
  const auto position = static_cast<std::size_t>(index);
  return position < slots_.size() && slots_[position] != nullptr;
}

CodeViews::Slot& CodeViews::Read(int index) {
  std::unique_ptr<Slot>& slot = slots_.at(static_cast<std::size_t>(index));
  if (slot == nullptr) {
    PlainModule module = texts_ != nullptr ? StripMarkers(texts_->Text(index + 1))
                                           : StripMarkers(codedb::ReadModuleText(folder_, index + 1));
    slot = std::make_unique<Slot>(Slot{CodeView(std::move(module.text)), std::move(module.runs)});
  }
  return *slot;
}

}  // namespace quillmate::navigation
