#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace quillmate::office {

/// Bytes that can be read from the beginning to the end only, such as an entry of a zip while it is unpacked.
class ByteStream {
 public:
  virtual ~ByteStream() = default;
  /// Up to `count` of the next bytes; 0 at the end, and where it breaks off.
  virtual std::size_t Read(char* to, std::size_t count) = 0;
};

/// Bytes that are in memory; they have to outlive the stream.
class MemoryStream final : public ByteStream {
 public:
  explicit MemoryStream(std::string_view bytes) noexcept : bytes_(bytes) {}
  std::size_t Read(char* to, std::size_t count) override {
    const std::size_t got = std::min(count, bytes_.size());
    if (got > 0) std::memcpy(to, bytes_.data(), got);
    bytes_.remove_prefix(got);
    return got;
  }

 private:
  std::string_view bytes_;
};

}  // namespace quillmate::office
