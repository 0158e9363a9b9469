#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include <quillmate/office/byte_source.h>
#include <quillmate/office/vba_compression.h>
#include <quillmate/text/operations.h>

namespace quillmate::office {
namespace {

constexpr char kContainerStart = 1;
constexpr std::size_t kHeaderSize = 2;
constexpr std::size_t kChunkSize = 4096;
constexpr std::size_t kTokenSize = 2;
constexpr int kTokensPerFlags = 8;

struct Chunk {
  std::array<char, kChunkSize> bytes;
  std::size_t size = 0;

  std::string_view Text() const noexcept { return {bytes.data(), size}; }
};

struct ChunkHeader {
  std::size_t dataSize;
  bool valid;
  bool packed;
};

ChunkHeader HeaderAt(std::string_view bytes, std::size_t at) noexcept {
  const unsigned header = LittleEndian<std::uint16_t>(bytes, at);
  return {(header & 0x0FFFU) + 3 - kHeaderSize, (header >> 12U & 7U) == 3, (header & 0x8000U) != 0};
}

/// 2.4.1.3.19.1: the further into the chunk, the more bits of the token are distance and the fewer length.
bool Copy(unsigned token, Chunk& chunk, std::size_t wanted) noexcept {
  const auto distanceBits =
      std::max(4U, static_cast<unsigned>(std::bit_width(std::max<std::size_t>(chunk.size, 1) - 1)));
  const unsigned lengthBits = 16 - distanceBits;
  const std::size_t distance = (token >> lengthBits) + 1;
  if (distance > chunk.size) return false;
  const std::size_t length = (token & ((1U << lengthBits) - 1)) + 3;
  const std::size_t end = std::min(chunk.size + length, wanted);
  // Byte by byte: a copy may overlap itself, which repeats its beginning.
  for (; chunk.size < end; ++chunk.size) chunk.bytes[chunk.size] = chunk.bytes[chunk.size - distance];
  return true;
}

/// Unpacks the tokens of a chunk until `wanted` bytes are there. False when a token makes no sense.
bool UnpackTokens(std::string_view data, Chunk& chunk, std::size_t wanted) noexcept {
  std::size_t at = 0;
  while (at < data.size() && chunk.size < wanted) {
    unsigned flags = static_cast<unsigned char>(data[at++]);
    for (int token = 0; token < kTokensPerFlags && at < data.size() && chunk.size < wanted; ++token, flags >>= 1U) {
      if ((flags & 1U) == 0) {
        chunk.bytes[chunk.size++] = data[at++];
        continue;
      }
      if (data.size() - at < kTokenSize || !Copy(LittleEndian<std::uint16_t>(data, at), chunk, wanted)) return false;
      at += kTokenSize;
    }
  }
  return true;
}

bool UnpackChunk(std::string_view data, bool packed, Chunk& chunk, std::size_t wanted) noexcept {
  chunk.size = 0;
  if (packed) return UnpackTokens(data, chunk, wanted);
  chunk.size = std::min(data.size(), wanted);
  std::copy_n(data.begin(), chunk.size, chunk.bytes.begin());
  return true;
}

}  // namespace

VbaUnpacked UnpackVba(std::string_view container, std::size_t limit) {
  VbaUnpacked result;
  if (!container.starts_with(kContainerStart)) return result;
  Chunk chunk;
  for (std::size_t at = 1; at < container.size();) {
    const ChunkHeader header = HeaderAt(container, at);
    if (container.size() - at < kHeaderSize || !header.valid || result.bytes.size() >= limit) {
      // Some writers fill the stream up.
      result.complete = container.find_first_not_of('\0', at) == std::string_view::npos;
      return result;
    }
    at += kHeaderSize;
    const std::string_view data = container.substr(at, header.dataSize);
    const bool makesSense = UnpackChunk(data, header.packed, chunk, kChunkSize);
    result.bytes += chunk.Text();
    if (!makesSense || data.size() < header.dataSize) return result;
    at += header.dataSize;
  }
  result.complete = true;
  return result;
}

bool UnpacksTo(std::string_view bytes, std::string_view start) {
  if (!bytes.starts_with(kContainerStart) || bytes.size() <= 1 + kHeaderSize) return false;
  const ChunkHeader header = HeaderAt(bytes, 1);
  if (!header.valid) return false;
  Chunk chunk;
  UnpackChunk(bytes.substr(1 + kHeaderSize, header.dataSize), header.packed, chunk, start.size());
  return text::EqualsIgnoreCase(chunk.Text(), start);
}

std::size_t FindContainer(std::string_view bytes, std::string_view start) {
  std::size_t at = bytes.find(kContainerStart);
  while (at != std::string_view::npos && !UnpacksTo(bytes.substr(at), start)) at = bytes.find(kContainerStart, at + 1);
  return at;
}

}  // namespace quillmate::office
