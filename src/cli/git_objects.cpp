#include "git_objects.h"

#include <algorithm>
#include <charconv>

#include <quillmate/files/file_bytes.h>

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

/// A small file that stands for a large one that is kept beside the repository.
constexpr std::string_view kPointerHead = "version https://git-lfs.github.com/spec/v1\n";
constexpr std::string_view kPointerHash = "oid sha256:";
constexpr std::size_t kLargestPointer = 1024;
constexpr std::size_t kPointerHashLength = 64;

}  // namespace

void ObjectStream::Take(std::string_view piece) {
  while (!piece.empty()) {
    if (left_ > 0) {
      const std::string_view content = piece.substr(0, left_);
      // The last byte is the line break after the object.
      const bool whole = content.size() == left_;
      sink_.bytes(whole ? content.substr(0, content.size() - 1) : content);
      left_ -= content.size();
      piece.remove_prefix(content.size());
      if (whole) sink_.end();
      continue;
    }
    const std::size_t end = piece.find('\n');
    header_ += piece.substr(0, end);
    if (end == std::string_view::npos) return;
    piece.remove_prefix(end + 1);
    TakeHeader();
    header_.clear();
  }
}

void ObjectStream::TakeHeader() {
  const std::size_t blank = header_.rfind(' ');
  std::size_t size = 0;
  const char* const last = header_.data() + header_.size();
  const bool found = blank != std::string::npos && header_.find(" blob ") != std::string::npos &&
                     std::from_chars(header_.data() + blank + 1, last, size).ec == std::errc();
  sink_.begin(number_++, !found);
  if (found) left_ = size + 1;
}

std::optional<std::string> PointedTo(const fs::path& file) {
  std::error_code error;
  if (fs::file_size(file, error) > kLargestPointer || error) return std::nullopt;
  const std::string text = files::ReadWholeFile(file);
  const std::size_t at = text.find(kPointerHash);
  if (!text.starts_with(kPointerHead) || at == std::string::npos) return std::nullopt;
  std::string hash = text.substr(at + kPointerHash.size(), kPointerHashLength);
  const bool isHash = hash.size() == kPointerHashLength && std::ranges::all_of(hash, [](char c) {
                        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
                      });
  return isHash ? std::optional(std::move(hash)) : std::nullopt;
}

}  // namespace quillmate::cli
