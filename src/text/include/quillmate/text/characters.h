#pragma once

#include <array>

/// Character classes of Windows-1252 bytes. The C library's classes depend on the locale and are not used on code.
namespace quillmate::text {

namespace tables {

constexpr std::array<bool, 256> MakeIdentifiers() noexcept {
  std::array<bool, 256> table{};
  for (unsigned c = '0'; c <= '9'; ++c) table[c] = true;
  for (unsigned c = 'A'; c <= 'Z'; ++c) table[c] = true;
  for (unsigned c = 'a'; c <= 'z'; ++c) table[c] = true;
  for (const unsigned c : {95U, 196U, 214U, 220U, 228U, 246U, 252U, 223U}) table[c] = true;
  return table;
}

constexpr std::array<unsigned char, 256> MakeLower() noexcept {
  std::array<unsigned char, 256> table{};
  for (unsigned c = 0; c < 256; ++c) {
    const bool latin = c >= 0xC0 && c <= 0xDE && c != 0xD7;
    const bool ascii = c >= 'A' && c <= 'Z';
    table[c] = static_cast<unsigned char>(ascii || latin ? c + 32 : c);
  }
  table[0x8A] = 0x9A;
  table[0x8C] = 0x9C;
  table[0x8E] = 0x9E;
  table[0x9F] = 0xFF;
  return table;
}

inline constexpr auto kIdentifiers = MakeIdentifiers();
inline constexpr auto kLower = MakeLower();

}  // namespace tables

/// A character of an identifier: 0-9, A-Z, a-z, "_", Ä Ö Ü ä ö ü ß. Nothing else counts, type suffixes included.
constexpr bool IsIdentifierCharacter(char code) noexcept {
  return tables::kIdentifiers[static_cast<unsigned char>(code)];
}

/// The lower-case form of a Windows-1252 letter (umlauts and accented letters included), any other byte unchanged.
constexpr unsigned char ToLower(char code) noexcept { return tables::kLower[static_cast<unsigned char>(code)]; }

}  // namespace quillmate::text
