#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Conversion between Windows-1252, the encoding of all code text in this program, and Unicode.
///
/// The table is Microsoft's best-fit table for code page 1252: the five codes without a character (0x81, 0x8D, 0x8F,
/// 0x90, 0x9D) map to the C1 control of the same number, so that every byte survives the way to Unicode and back.
namespace quillmate::text {

/// The Unicode character of one Windows-1252 byte.
char16_t ToUnicode(unsigned char code) noexcept;

/// The Windows-1252 byte of a Unicode character; nothing when the code page lacks it.
std::optional<unsigned char> FromUnicode(char32_t character) noexcept;

/// Windows-1252 bytes as UTF-8.
std::string Utf8FromCode(std::string_view code);

/// UTF-8 as Windows-1252 bytes. A character that the code page lacks becomes "?", a malformed sequence too (one "?"
/// for each byte that can't be read); `replaced` gets the number of those.
std::string CodeFromUtf8(std::string_view utf8, std::size_t* replaced = nullptr);

/// Windows-1252 bytes as UTF-16.
std::u16string Utf16FromCode(std::string_view code);

/// UTF-16 as Windows-1252 bytes, with "?" for what the code page lacks (one for a surrogate pair).
std::string CodeFromUtf16(std::u16string_view utf16, std::size_t* replaced = nullptr);

/// How many characters of UTF-8 text Windows-1252 lacks.
std::size_t CountReplaced(std::string_view utf8);

/// True when the bytes are well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
/// Plain ASCII is well-formed UTF-8.
bool IsValidUtf8(std::string_view bytes) noexcept;

}  // namespace quillmate::text
