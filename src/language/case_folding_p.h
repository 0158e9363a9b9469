#pragma once

#include <cstdint>

/// Classes of single characters beyond ASCII, and letters without their case.
namespace quillmate::language {

/// Unicode's simple case folding: one character for one.
char32_t FoldCase(char32_t character) noexcept;

/// Blanks beyond ASCII. The no-break space is one: it parts tokens, though it never is before a continuation.
bool IsBlank(char32_t character) noexcept;

/// Typographic quotes, dashes and the like, which are no part of a name.
bool IsPunctuation(char32_t character) noexcept;

}  // namespace quillmate::language
