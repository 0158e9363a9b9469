#include <cstdint>
#include <memory>
#include <system_error>
#include <utility>

#include <quillmate/codedb/index_files.h>

#include "pieces_p.h"
#include "text_work_p.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

/// A longer text is cut, so that several can work on it and only pieces of the result are held.
constexpr std::size_t kLong = std::size_t{1} << 19U;
constexpr std::size_t kPart = std::size_t{1} << 17U;

}  // namespace

void TextWork::AddText(std::string markedText) {
  const auto text = std::make_shared<const std::string>(std::move(markedText));
  for (std::string_view rest = *text; !rest.empty();) {
    const std::string_view part = rest.size() < kLong ? rest : FirstPiece(rest, kPart);
    rest.remove_prefix(part.size());
    Add([this, text, part](const Sink& sink) { convert_(part, sink); });
  }
}

void TextWork::AddShortText(std::string_view markedText) {
  convert_(markedText, [this](std::string_view bytes) { AddBytes(bytes); });
}

void TextWork::AddModule(const fs::path& folder, codedb::ModuleNumber module) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(codedb::ModuleTextPath(folder, module), error);
  if (!error && size >= kLong) return AddText(codedb::ReadModuleText(folder, module));
  Add([this, &folder, module](const Sink& sink) { convert_(codedb::ReadModuleText(folder, module), sink); });
}

void TextWork::Finish() {
  work_.FinishAll();
  if (!bytes_.empty()) sink_(bytes_);
  bytes_.clear();
}

void TextWork::Add(std::function<void(const Sink&)> produce) {
  while (work_.IsFull()) work_.FinishFirst();
  const auto result = std::make_shared<std::string>(TakeSpare());
  result->swap(bytes_);
  work_.Add(
      [produce = std::move(produce), result] {
        produce([&result](std::string_view bytes) { result->append(bytes); });
        return result->size();
      },
      [this, result](const std::exception_ptr& failure) {
        if (failure) std::rethrow_exception(failure);
        sink_(*result);
        result->clear();
        spare_.push_back(std::move(*result));
      });
}

/// Room that was written to once costs nothing more.
std::string TextWork::TakeSpare() {
  if (spare_.empty()) return {};
  std::string spare = std::move(spare_.back());
  spare_.pop_back();
  return spare;
}

}  // namespace quillmate::output
