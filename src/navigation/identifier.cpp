#include <quillmate/navigation/identifier.h>

#include "words_p.h"

namespace quillmate::navigation {
std::string_view IdentifierAtCaret(std::string_view text, std::size_t caret) noexcept {
  if (caret == 0 || caret >= text.size() || !IsIdentifierAt(text, caret - 1)) return {};
  std::size_t start = caret - 1;
  while (start > 0 && IsIdentifierAt(text, start - 1)) --start;
  // The last character of the text is never looked at: the word ends before it at the latest.
  std::size_t end = caret;
  while (end + 1 < text.size() && IsIdentifierAt(text, end)) ++end;
  return text.substr(start, end - start);
}

}  // namespace quillmate::navigation
