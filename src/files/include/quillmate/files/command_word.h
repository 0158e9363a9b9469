#pragma once

#include <string>
#include <string_view>

namespace quillmate::files {

/// Adds a word to the command line of a Windows program as the program's runtime takes it apart again: in quotes,
/// backslashes before a quote doubled. Wide characters are UTF-16 there.
void AppendCommandWord(std::wstring& line, std::wstring_view word);

}  // namespace quillmate::files
