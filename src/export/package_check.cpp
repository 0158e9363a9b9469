#include <array>
#include <memory>
#include <string>
#include <string_view>

#include <zip.h>

#include <quillmate/files/paths.h>

#include "package_check_p.h"

namespace quillmate::output {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 16U;
/// Longer than the longest name of an element.
constexpr std::size_t kEdge = 512;

/// "</name>" of the first element after the declaration; empty without one.
std::string ClosingTag(std::string_view head) {
  std::size_t at = head.find("?>");
  at = at == std::string_view::npos ? 0 : head.find('<', at);
  if (at == std::string_view::npos || at >= head.size()) return {};
  head.remove_prefix(at + 1);
  const std::size_t end = head.find_first_of(" >\n\r\t");
  return end == std::string_view::npos ? std::string() : "</" + std::string(head.substr(0, end)) + ">";
}

bool IsWholePart(zip_file_t* part) {
  std::array<char, kBlock> block;
  std::string head, tail;
  for (;;) {
    const zip_int64_t got = zip_fread(part, block.data(), block.size());
    if (got < 0) return false;
    if (got == 0) break;
    const std::string_view bytes(block.data(), static_cast<std::size_t>(got));
    if (head.size() < kEdge) head += bytes.substr(0, kEdge - head.size());
    tail += bytes.size() > kEdge ? bytes.substr(bytes.size() - kEdge) : bytes;
    if (tail.size() > kEdge) tail.erase(0, tail.size() - kEdge);
  }
  while (!tail.empty() && (tail.back() == '\n' || tail.back() == '\r')) tail.pop_back();
  const std::string closing = ClosingTag(head);
  return !closing.empty() && tail.ends_with(closing);
}

}  // namespace

bool IsWholePackage(const std::filesystem::path& file) {
  int error = 0;
  const std::unique_ptr<zip_t, void (*)(zip_t*)> archive(zip_open(files::PathText(file).c_str(), ZIP_RDONLY, &error),
                                                         &zip_discard);
  if (!archive) return false;
  const zip_int64_t count = zip_get_num_entries(archive.get(), 0);
  for (zip_int64_t i = 0; i < count; ++i) {
    zip_file_t* const part = zip_fopen_index(archive.get(), static_cast<zip_uint64_t>(i), 0);
    const bool whole = part != nullptr && IsWholePart(part);
    if (part != nullptr) zip_fclose(part);
    if (!whole) return false;
  }
  return count > 0;
}

}  // namespace quillmate::output
