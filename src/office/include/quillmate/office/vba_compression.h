#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Unpacks what macro projects store packed: module texts and the `dir` stream, after the published format
/// [MS-OVBA] 2.4.1.
///
///     container   the byte 1, then chunks up to its end                                          2.4.1.1.1
///     chunk       16 bits: size of the chunk - 3 (12 bits), 3 (3 bits), packed or not (1 bit)    2.4.1.1.5
///                 packed: a byte of 8 flags, then for each flag a byte as it is or a copy of
///                 bytes before it in the same chunk (16 bits: distance and length)               2.4.1.1.7, 2.4.1.3.19
///                 not packed: bytes as they are
///
/// A chunk unpacks to at most 4096 bytes: what goes beyond is dropped, and reading goes on with the next chunk. A chunk
/// that breaks off counts as far as it goes.
namespace quillmate::office {

struct VbaUnpacked {
  std::string bytes;
  /// False when something in the container made no sense, it broke off, or the limit was reached; `bytes` is what comes
  /// before that.
  bool complete = false;
};

/// `container` begins with its byte 1; otherwise nothing is unpacked. At most `limit` bytes (rounded up to a chunk).
VbaUnpacked UnpackVba(std::string_view container, std::size_t limit);

/// True when `bytes` begins with a container that unpacks to a text which begins with `start`, regardless of the case
/// of its ASCII letters. Looks at the first chunk only, as far as needed; `start` must not be longer than a chunk.
bool UnpacksTo(std::string_view bytes, std::string_view start);

/// The first place where UnpacksTo holds, npos when there is none. Linear in `bytes`.
std::size_t FindContainer(std::string_view bytes, std::string_view start);

}  // namespace quillmate::office
