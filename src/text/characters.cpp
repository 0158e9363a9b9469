#include <array>

#include <quillmate/text/characters.h>

namespace quillmate::text {
namespace {

constexpr std::array<bool, 256> MakeIdentifierTable() {
  std::array<bool, 256> table{};
  for (unsigned c = '0'; c <= '9'; ++c) table[c] = true;
  for (unsigned c = 'A'; c <= 'Z'; ++c) table[c] = true;
  for (unsigned c = 'a'; c <= 'z'; ++c) table[c] = true;
  for (const unsigned c : {95U, 196U, 214U, 220U, 228U, 246U, 252U, 223U}) table[c] = true;
  return table;
}

constexpr std::array<unsigned char, 256> MakeLowerTable() {
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

constexpr auto kIdentifier = MakeIdentifierTable();
constexpr auto kLower = MakeLowerTable();

}  // namespace

bool IsIdentifierCharacter(unsigned char code) noexcept { return kIdentifier[code]; }

unsigned char ToLower(unsigned char code) noexcept { return kLower[code]; }

}  // namespace quillmate::text
