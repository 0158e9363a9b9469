#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Writes the files that the readers of Office files are tested with: no document of anybody's is needed for it.
namespace quillmate::office {

/// A number as `Width` little-endian bytes.
template <int Width>
std::string Bytes(std::uint64_t number) {
  std::string bytes;
  for (int i = 0; i < Width; ++i) bytes += i < 8 ? static_cast<char>(number >> (8 * i) & 0xFFU) : '\0';
  return bytes;
}

/// ASCII and Latin-1 as UTF-16 in little-endian bytes.
std::string Utf16Bytes(std::u16string_view text);

/// A compound file: streams by their paths, "VBA/dir". Names are Latin-1.
struct CompoundWriter {
  std::vector<std::pair<std::string, std::string>> streams;
  /// 3 with sectors of 512 bytes, or 4 with 4096.
  int version = 3;
  /// The sectors of a stream lie in the file from its end to its beginning.
  bool scattered = false;

  void Add(std::string_view path, std::string bytes) { streams.emplace_back(path, std::move(bytes)); }
  std::string File() const;
};

struct ZipFile {
  std::string name;
  std::string bytes;
  bool deflate = true;
  /// Flags of the entry; 1 says that it is encrypted.
  int flags = 0;
  /// The size that the zip claims; -1 for the true one.
  std::int64_t claimedSize = -1;
};
std::string ZipOf(const std::vector<ZipFile>& files);

/// A presentation whose project is `project`, a compound file. The document was saved twice: the first edit holds an
/// older project.
struct PresentationWriter {
  std::string project = {};
  std::string olderProject = {};
  bool packed = true;
  bool encrypted = false;
  bool hasMacros = true;
  /// The way through the edits leads nowhere.
  bool brokenEdits = false;

  std::string File() const;
};

}  // namespace quillmate::office
