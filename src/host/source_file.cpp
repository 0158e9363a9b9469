#include <cstdint>
#include <fstream>
#include <system_error>

#include <quillmate/office/byte_source.h>

#include "source_file_p.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

/// The editor takes 65,534 lines of 1,023 characters.
constexpr std::uintmax_t kLargestFile = 128U << 20U;

constexpr const char* kUnreadable = "Datei kann nicht gelesen werden";

/// Two zero bytes at an even offset, behind the byte order mark.
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

/// Reads to the end; one byte more than expected is asked for, so that a file that has grown is noticed.
bool ReadToEnd(std::ifstream& in, std::size_t expected, std::string& buffer, std::size_t& size) {
  size = 0;
  for (std::size_t wanted = expected + 1;; wanted = size) {
    if (buffer.size() < size + wanted) buffer.resize(size + wanted);
    in.read(buffer.data() + size, static_cast<std::streamsize>(wanted));
    size += static_cast<std::size_t>(in.gcount());
    if (!in) return in.eof() && !in.bad();
    if (size > kLargestFile) return false;
  }
}

}  // namespace

SourceBytes ReadSourceFile(const fs::path& file, std::string& buffer) {
  std::error_code error;
  if (!fs::is_regular_file(file, error)) return {{}, office::ProblemOfPath(file)};
  const std::uintmax_t expected = fs::file_size(file, error);
  if (error) return {{}, kUnreadable};
  if (expected > kLargestFile) return {{}, "Datei ist zu groß für ein Modul"};

  std::ifstream in(file, std::ios::binary);
  std::size_t size = 0;
  if (!in || !ReadToEnd(in, static_cast<std::size_t>(expected), buffer, size)) return {{}, kUnreadable};
  const std::string_view bytes(buffer.data(), size);
  if (bytes.empty()) return {{}, "Datei ist leer"};
  if (!HoldsText(bytes)) return {{}, "Datei enthält keinen Text"};
  return {bytes, {}};
}

}  // namespace quillmate::host
