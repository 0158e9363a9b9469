#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include <quillmate/office/byte_source.h>

#include "byte_stream_p.h"

namespace quillmate::office {

/// The zip's table of contents may be this long, about 100,000 entries. Opening a zip costs memory by its entries.
inline constexpr std::uint64_t kLargestZipDirectory = std::uint64_t{8} << 20U;

/// A file out of a zip.
struct ZipEntry {
  enum class State { kRead, kMissing, kEncrypted, kTooLarge, kDamaged };

  State state = State::kMissing;
  std::string bytes;
  /// False when unpacking ended early or the checksum is wrong; `bytes` is what came before that.
  bool complete = false;
};

/// A zip, opened once. Names are those of the zip, regardless of the case of their ASCII letters; of several equal ones
/// the first counts.
class ZipArchive {
 public:
  using Index = std::uint64_t;

  /// `source` has to outlive the archive.
  explicit ZipArchive(ByteSource& source);
  ~ZipArchive();
  ZipArchive(const ZipArchive&) = delete;
  ZipArchive& operator=(const ZipArchive&) = delete;

  /// False when there is no table of contents that can be read.
  bool Opened() const noexcept;
  std::optional<Index> Find(std::string_view name) const;
  /// The first entry whose path ends so.
  std::optional<Index> FindEnding(std::string_view ending) const;
  /// True when an entry is in that folder, given in lower case with "/" at its end.
  bool HoldsFolder(std::string_view folder) const;
  std::string Name(Index index) const;

  /// Never unpacks more than `limit` bytes, whatever size the zip claims.
  ZipEntry Read(Index index, std::size_t limit) const;
  /// The entry to be read piece by piece; nothing when it is encrypted or can't be unpacked. It must not outlive the
  /// archive.
  std::unique_ptr<ByteStream> Stream(Index index) const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmate::office
