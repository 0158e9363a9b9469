#pragma once

#include <string_view>

/// How the index compares text: one order for equality, grouping and sorting.
///
/// German order at secondary strength: the case of letters is ignored; umlauts are letters of their own that sort right
/// after their base letter, "ß" likewise right after "ss" ("Apfel" < "Äpfel" = "äpfel" < "Apfelmus" < "Ast"). "_"
/// sorts before digits, digits before letters. Control characters don't count at all, except tab and line breaks. The
/// order is a table of the program's own for the characters of Windows-1252, so that an index sorts alike on every
/// system; whatever else turns up in a foreign file sorts after them by code point.
namespace quillmate::codedb {

/// Below 0, 0 or above 0 as `a` sorts before, equal to or after `b`. Both are UTF-8.
int CompareText(std::string_view a, std::string_view b) noexcept;

}  // namespace quillmate::codedb
