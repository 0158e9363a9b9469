#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text that a terminal can be given, whatever file it comes from: names and code may hold sequences that move its
/// cursor, rename its window or type for the user, and characters that turn the direction of reading.
namespace quillmate::cli {

/// Appends UTF-8 text with each control character (those of 0x80 to 0x9F too) and each control of the direction as
/// "\u001b", each byte that is no UTF-8 as "\x9b". Tabs and line breaks (LF, CR LF) stay. Gives the number of bytes
/// taken: those at the end whose meaning depends on what follows are left, unless the text is the `last`.
std::size_t AppendForTerminal(std::string& out, std::string_view utf8, bool last);

/// A whole text in that form.
std::string ForTerminal(std::string_view utf8);

}  // namespace quillmate::cli
