#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Encodings of module files that don't tell theirs.
namespace quillmate::office {

/// The Windows number of an encoding of 8 bits or of several bytes a character: "1251", "cp1251", "windows-1251",
/// "GBK", "Shift_JIS", "KOI8-R", "ISO-8859-7" ... regardless of case. Nothing for one that the system can't convert.
std::optional<int> FindCodePage(std::string_view name);

/// The bytes of a module file as UTF-8 after a byte order mark, when they tell no encoding of their own (by a byte
/// order mark, or as well-formed UTF-8 that is not ASCII); else, and for number 0, as they are.
std::string DecodeModuleBytes(std::string bytes, int codePage);

}  // namespace quillmate::office
