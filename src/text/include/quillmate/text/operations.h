#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Whole-string helpers. They work on bytes and know no encoding unless said.
namespace quillmate::text {

/// True when no byte is above 127.
bool IsAscii(std::string_view text) noexcept;

/// Every occurrence of `from`, left to right without overlaps, replaced by `to`. An empty `from` changes nothing.
std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);

/// LF alone and CR alone turned into CR LF.
std::string NormalizeLineBreaks(std::string_view text);

/// The pieces between the separators; always at least one piece. `separator` must not be empty.
std::vector<std::string_view> Split(std::string_view text, std::string_view separator);
std::string Join(const std::vector<std::string>& pieces, std::string_view separator);

/// The text before the first separator; the whole text when there is none.
std::string_view TextBefore(std::string_view text, std::string_view separator) noexcept;
/// The text after the last separator; the whole text when there is none.
std::string_view TextAfterLast(std::string_view text, std::string_view separator) noexcept;

/// Blanks (only code 32) removed at the start or at both ends.
std::string_view TrimLeft(std::string_view text) noexcept;
std::string_view Trim(std::string_view text) noexcept;

/// Equal without regard to the case of ASCII letters; other bytes must be the same.
bool EqualsIgnoreCase(std::string_view a, std::string_view b) noexcept;
/// True when `text` begins with `prefix` without regard to the case of ASCII letters.
bool StartsWithIgnoreCase(std::string_view text, std::string_view prefix) noexcept;

/// The number at the start of a text: leading blanks are skipped, then an optional sign, decimal digits with an
/// optional decimal point, an optional exponent. 0 when there is none. Never depends on the locale.
double LeadingNumber(std::string_view text) noexcept;

/// A folder path that ends in the platform's separator ("\" on Windows, "/" elsewhere); one is appended when it
/// lacks both forms that the platform takes. An empty path stays empty. UTF-8.
std::string EnsureBackslash(std::string_view folder);

}  // namespace quillmate::text
