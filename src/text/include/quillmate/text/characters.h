#pragma once

/// Character classes of Windows-1252 bytes. The C library's classes depend on the locale and are not used on code.
namespace quillmate::text {

/// A character of an identifier: 0-9, A-Z, a-z, "_", Ä Ö Ü ä ö ü ß. Nothing else counts, type suffixes included.
bool IsIdentifierCharacter(unsigned char code) noexcept;

/// The lower-case form of a Windows-1252 letter (umlauts and accented letters included), any other byte unchanged.
unsigned char ToLower(unsigned char code) noexcept;

}  // namespace quillmate::text
