#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Text for the pages of a site: UTF-8, fit to be between tags and in attributes with double quotes.
namespace quillmate::output {

/// Appends Windows-1252 text. Control characters other than TAB, which HTML does not allow, become U+FFFD; so do a CR
/// and an LF, which the caller has to take out before.
void AppendCode(std::string& html, std::string_view code);
std::string EscapeCode(std::string_view code);

/// The same for UTF-8; bytes that are none are taken as Windows-1252.
std::string EscapeUtf8(std::string_view text);
/// The same for several lines, which keep the LFs between them.
std::string EscapeLines(std::string_view text);

/// A number with points between the thousands, "1.234.567".
std::string GroupedNumber(std::int64_t number);

}  // namespace quillmate::output
