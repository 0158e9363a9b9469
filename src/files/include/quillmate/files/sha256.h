#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace quillmate::files {

/// SHA-256 [FIPS 180-4] of bytes that come in any pieces.
class Sha256 {
 public:
  void Add(std::string_view bytes) noexcept;
  /// 64 hexadecimal digits in lower case; ends the sum.
  std::string Digits();

 private:
  void AddBlock(const unsigned char* block) noexcept;

  std::array<std::uint32_t, 8> state_{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                      0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  std::array<unsigned char, 64> pending_{};
  std::size_t pendingSize_ = 0;
  std::uint64_t size_ = 0;
};

/// Of a regular file's bytes; empty when it is none or can't be read.
std::string FileHash(const std::filesystem::path& file);

}  // namespace quillmate::files
