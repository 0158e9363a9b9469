#pragma once

#include <cstddef>
#include <string_view>

namespace quillmate::navigation {

/// The identifier that the caret is in or directly after; empty when the character before the caret belongs to
/// none, so also with the caret just in front of a word, at the start or at the end of the text. Of a qualified name it
/// is the part on the caret's side of the ".". A word that ends with the very last character of the text loses that
/// character.
///
/// `text` is a code view's text, `caret` a 0-based offset in it. The result points into `text`.
std::string_view IdentifierAtCaret(std::string_view text, std::size_t caret) noexcept;

}  // namespace quillmate::navigation
