#pragma once

#include <string_view>

/// The markers of marked-up text: four bytes each, built from "|", the byte 159 of Windows-1252 and one letter.
/// Openers hold byte 159 in second place, closers in third.
///
/// Marked-up text is a module's code in which comments, keywords, string literals and the header and end lines of
/// routines are wrapped in these markers; line breaks are CR LF. Byte 159 is written octal: a hexadecimal escape would
/// swallow a following f, b or d.
namespace quillmate::text {

inline constexpr char kMarkerByte = '\237';

inline constexpr std::string_view CommentOpen = "|\237k|";
inline constexpr std::string_view KeywordOpen = "|\237f|";
inline constexpr std::string_view StringOpen = "|\237s|";
/// Ends a keyword, a string or a comment.
inline constexpr std::string_view SpanClose = "|n\237|";
/// Opens the header line or the end line of a routine.
inline constexpr std::string_view HeaderLineOpen = "|\237x|";
inline constexpr std::string_view HeaderLineClose = "|y\237|";

inline constexpr std::string_view kLineBreak = "\r\n";

}  // namespace quillmate::text
