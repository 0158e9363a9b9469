#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

namespace quillmate::output {

/// What a cell can hold of a text (spreadsheet.h), with the escapes that such files know for what looks like one:
/// "_x0041_" would be read as "A". `characters` gets their number.
std::string CellText(std::string_view utf8, std::size_t& characters);

/// A name that a sheet can have and none of `taken` has (in lower case of ASCII letters); it is put there. `number`
/// above 1 is that of a continuation: "Dateien (2)".
std::string SheetName(std::string_view wanted, int number, std::set<std::string>& taken);

}  // namespace quillmate::output
