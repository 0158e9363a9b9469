#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <quillmate/office/byte_source.h>

namespace quillmate::office {

/// The zip's table of contents may be this long, about 100,000 entries. Opening a zip costs memory by its entries.
inline constexpr std::uint64_t kLargestZipDirectory = std::uint64_t{8} << 20U;

/// A file out of a zip.
struct ZipEntry {
  enum class State { kRead, kMissing, kNoZip, kEncrypted, kTooLarge, kDamaged };

  State state = State::kNoZip;
  /// Its path in the zip, for kMissing that of nothing.
  std::string name;
  std::string bytes;
  /// False when unpacking ended early or the checksum is wrong; `bytes` is what came before that.
  bool complete = false;
  /// True when the zip is a document of the open Office formats.
  bool office = false;
};

/// The first entry whose path ends in `ending`, in any case of its ASCII letters. Never unpacks more than `limit`
/// bytes, whatever size the zip claims.
ZipEntry ReadZipEntry(ByteSource& source, std::string_view ending, std::size_t limit);

}  // namespace quillmate::office
