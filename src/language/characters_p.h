#pragma once

#include <array>
#include <cstdint>

/// What a byte of the source begins or belongs to.
namespace quillmate::language {

enum class CharacterClass : std::uint8_t {
  kOther,
  kBlank,
  kLineEnd,
  kLetter,
  kDigit,
  kUnderscore,
  kHigh,  ///< part of a character beyond ASCII
  kQuote,
  kApostrophe,
  kOperator,
  kAmpersand,
  kBang,
  kHash,
  kDot,
  kBracket,
  kOpen,
  kClose,
};

struct CharacterTable {
  std::array<CharacterClass, 256> classes{};
  std::array<bool, 256> name{};  ///< goes on with a name

  constexpr CharacterTable() {
    for (const char blank : {'\0', '\t', '\v', '\f', '\x19', '\x1a', ' '}) Set(blank, CharacterClass::kBlank);
    Set('\r', CharacterClass::kLineEnd);
    Set('\n', CharacterClass::kLineEnd);
    for (unsigned c = 'A'; c <= 'Z'; ++c) classes[c] = classes[c + 0x20] = CharacterClass::kLetter;
    for (unsigned c = '0'; c <= '9'; ++c) classes[c] = CharacterClass::kDigit;
    for (unsigned c = 0x80; c <= 0xFF; ++c) classes[c] = CharacterClass::kHigh;
    Set('_', CharacterClass::kUnderscore);
    Set('"', CharacterClass::kQuote);
    Set('\'', CharacterClass::kApostrophe);
    for (const char c : {'+', '-', '*', '/', '\\', '^', '=', '<', '>', ',', ';', ':', '?'}) {
      Set(c, CharacterClass::kOperator);
    }
    Set('&', CharacterClass::kAmpersand);
    Set('!', CharacterClass::kBang);
    Set('#', CharacterClass::kHash);
    Set('.', CharacterClass::kDot);
    Set('[', CharacterClass::kBracket);
    Set('(', CharacterClass::kOpen);
    Set(')', CharacterClass::kClose);
    for (unsigned c = 0; c < 256; ++c) {
      name[c] = classes[c] == CharacterClass::kLetter || classes[c] == CharacterClass::kDigit ||
                classes[c] == CharacterClass::kUnderscore || classes[c] == CharacterClass::kHigh;
    }
  }

 private:
  constexpr void Set(char c, CharacterClass characterClass) { classes[static_cast<unsigned char>(c)] = characterClass; }
};

inline constexpr CharacterTable kCharacters;

inline CharacterClass ClassOf(char c) noexcept { return kCharacters.classes[static_cast<unsigned char>(c)]; }
inline bool GoesOnWithName(char c) noexcept { return kCharacters.name[static_cast<unsigned char>(c)]; }
inline bool IsAsciiDigit(char c) noexcept { return c >= '0' && c <= '9'; }
inline bool IsAsciiLetter(char c) noexcept { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }
inline bool IsHexDigit(char c) noexcept { return IsAsciiDigit(c) || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f'); }
inline bool IsLineEnd(char c) noexcept { return c == '\r' || c == '\n'; }
inline bool IsNarrowBlank(char c) noexcept { return ClassOf(c) == CharacterClass::kBlank; }

/// True when "&" or "^", glued to what is before it, is an operator because of the character after it.
inline bool StartsOperand(char sign, char next) noexcept {
  const CharacterClass found = ClassOf(next);
  if (found == CharacterClass::kLetter || found == CharacterClass::kDigit || found == CharacterClass::kHigh ||
      found == CharacterClass::kQuote) {
    return true;
  }
  return sign == '^' && (next == '(' || next == '-' || next == '.' || next == '[');
}

}  // namespace quillmate::language
