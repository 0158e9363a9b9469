#include <cstddef>

#include <quillmate/files/command_word.h>

namespace quillmate::files {

void AppendCommandWord(std::wstring& line, std::wstring_view word) {
  if (!line.empty()) line += L' ';
  line += L'"';
  std::size_t backslashes = 0;
  for (const wchar_t c : word) {
    if (c == L'\\') {
      ++backslashes;
      continue;
    }
    line.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
    backslashes = 0;
    line += c;
  }
  line.append(backslashes * 2, L'\\').append(1, L'"');
}

}  // namespace quillmate::files
