#include <system_error>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/file_error.h>
#include <quillmate/office/byte_source.h>

#include "source_file_p.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

/// The editor takes 65,534 lines of 1,023 characters.
constexpr std::size_t kLargestFile = std::size_t{128} << 20U;

/// Two zero bytes at an even offset, after the byte order mark.
bool HasUtf16Nul(std::string_view bytes) noexcept {
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    if (bytes[i] == '\0' && bytes[i + 1] == '\0') return true;
  }
  return false;
}

bool HoldsText(std::string_view bytes) noexcept {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return !HasUtf16Nul(bytes);
  return bytes.find('\0') == std::string_view::npos;
}

}  // namespace

SourceBytes ReadSourceFile(const fs::path& file, std::string& buffer) {
  try {
    buffer = files::ReadWholeFile(file, kLargestFile);
  } catch (const files::FileError& error) {
    if (error.Code() == std::errc::file_too_large) return {{}, "Datei ist zu groß für ein Modul"};
    return {{}, office::ProblemOfPath(file)};
  }
  const std::string_view bytes = buffer;
  if (bytes.empty()) return {{}, "Datei ist leer"};
  if (!HoldsText(bytes)) return {{}, "Datei enthält keinen Text"};
  return {bytes, {}};
}

}  // namespace quillmate::host
