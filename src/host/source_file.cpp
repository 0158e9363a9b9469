#include <algorithm>
#include <cstddef>
#include <system_error>
#include <utility>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/office/byte_source.h>
#include <quillmate/office/code_pages.h>

#include "source_file_p.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

/// Two zero bytes at an even offset, after the byte order mark.
bool HasUtf16Nul(std::string_view bytes) noexcept {
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    if (bytes[i] == '\0' && bytes[i + 1] == '\0') return true;
  }
  return false;
}

bool IsUtf16(std::string_view bytes) noexcept { return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"); }

/// Cuts what fills a file up to the end of its last block.
void CutTrailingNuls(std::string& bytes) {
  if (!IsUtf16(bytes)) return bytes.resize(bytes.find_last_not_of('\0') + 1);
  bytes.resize(bytes.size() / 2 * 2);
  while (bytes.size() > 2 && bytes[bytes.size() - 1] == '\0' && bytes[bytes.size() - 2] == '\0') {
    bytes.resize(bytes.size() - 2);
  }
}

/// Text may hold a NUL byte here and there, from a broken copy; what holds more of them, or other characters of control
/// with them, is none.
bool HoldsText(std::string_view bytes) noexcept {
  constexpr std::size_t kOneIn = 64;
  if (IsUtf16(bytes)) return !HasUtf16Nul(bytes);
  if (bytes.find('\0') == std::string_view::npos) return true;
  const auto strange = std::count_if(bytes.begin(), bytes.end(), [](char c) {
    return (c >= '\0' && c < '\t') || (c > '\r' && c < ' ' && c != '\x1a');
  });
  return static_cast<std::size_t>(strange) * kOneIn <= bytes.size();
}

bool HasTooManyLines(std::string_view bytes) noexcept {
  if (bytes.size() <= kMostSourceLines) return false;
  return std::max(std::ranges::count(bytes, '\n'), std::ranges::count(bytes, '\r')) >
         static_cast<std::ptrdiff_t>(kMostSourceLines);
}

}  // namespace

SourceBytes ReadSourceFile(const fs::path& file, std::string& buffer, int codePage) {
  try {
    buffer = files::ReadWholeFile(file, kLargestSourceFile);
  } catch (const files::Failure& error) {
    if (error.Code() == std::errc::file_too_large) return {{}, office::Reason::kModuleTooLarge};
    return {{}, office::ProblemOfPath(file)};
  }
  return DecodeSourceBytes(buffer, codePage);
}

SourceBytes DecodeSourceBytes(std::string& buffer, int codePage) {
  if (buffer.empty()) return {{}, office::Reason::kEmpty};
  CutTrailingNuls(buffer);
  if (buffer.empty() || !HoldsText(buffer)) return {{}, office::Reason::kNoText};
  if (HasTooManyLines(buffer)) return {{}, office::Reason::kModuleTooLarge};
  if (!IsUtf16(buffer) && buffer.find('\0') != std::string::npos) std::replace(buffer.begin(), buffer.end(), '\0', ' ');
  buffer = office::DecodeModuleBytes(std::move(buffer), codePage);
  return {buffer, {}};
}

}  // namespace quillmate::host
