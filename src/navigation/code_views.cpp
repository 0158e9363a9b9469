#include <cerrno>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/failure.h>
#include <quillmate/navigation/code_views.h>

namespace quillmate::navigation {
namespace {

void CheckModuleFiles(const std::filesystem::path& folder, int moduleCount) {
  for (int number = 1; number <= moduleCount; ++number) {
    const std::filesystem::path file = codedb::ModuleTextPath(folder, {number});
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
      throw files::Failure(files::FileAction::kRead, file, ENOENT);
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
  current_ = {};
}

int CodeViews::Count() const noexcept { return static_cast<int>(slots_.size()); }

CodeView& CodeViews::View(codedb::ViewIndex index) { return Read(index).view; }

const std::vector<StyleRun>& CodeViews::Runs(codedb::ViewIndex index) { return Read(index).runs; }

bool CodeViews::IsRead(codedb::ViewIndex index) const noexcept {
  const auto position = static_cast<std::size_t>(index.value);
  return position < slots_.size() && slots_[position] != nullptr;
}

void CodeViews::Forget(codedb::ViewIndex index) noexcept {
  if (IsRead(index)) slots_[static_cast<std::size_t>(index.value)].reset();
}

CodeViews::Slot& CodeViews::Read(codedb::ViewIndex index) {
  std::unique_ptr<Slot>& slot = slots_.at(static_cast<std::size_t>(index.value));
  if (slot == nullptr) {
    const codedb::ModuleNumber module = codedb::ModuleOf(index);
    PlainModule plain =
        texts_ != nullptr ? StripMarkers(texts_->Text(module)) : StripMarkers(codedb::ReadModuleText(folder_, module));
    slot = std::make_unique<Slot>(Slot{CodeView(std::move(plain.text)), std::move(plain.runs)});
  }
  return *slot;
}

}  // namespace quillmate::navigation
