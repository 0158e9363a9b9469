#pragma once

#include <string>
#include <string_view>

namespace quillmate::office {

/// Little-endian UTF-16 as UTF-8; half a surrogate pair becomes U+FFFD, an odd last byte is dropped.
std::string Utf8FromUtf16Bytes(std::string_view bytes);
/// Bytes that are the first 256 characters of Unicode.
std::string Utf8FromLatin1(std::string_view bytes);

/// The letter in upper case where that is one character, else the character itself. The system knows.
char32_t UpperCaseCharacter(char32_t character);

/// UTF-8 with each letter in upper case, one character for one: the form in which names that differ in case only are
/// equal in compound files and in projects.
std::string UpperCaseName(std::string_view utf8);

}  // namespace quillmate::office
