#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillmate::files {

/// The bytes of a module file, or of code from anywhere, as code text: Windows-1252 with CR LF line breaks.
///
/// A byte order mark (UTF-8, UTF-16 little or big endian) decides first; without one, well-formed UTF-8 with at least
/// one multi-byte sequence is taken as UTF-8; everything else is Windows-1252. A character without a code becomes "?".
/// LF alone and CR alone become CR LF.
std::string DecodeSourceText(std::string_view bytes);

/// True for bytes that are Windows-1252 already: decoding would only make all line breaks CR LF.
bool IsSingleByteText(std::string_view bytes) noexcept;

/// A text as code, and as it is where code can't hold all of it.
struct DecodedText {
  std::string code;
  /// Characters that became "?".
  std::size_t replaced = 0;
  /// The text with them: UTF-8, line for line and character for character the code; empty when none was replaced.
  std::string original;
};

/// The same as DecodeSourceText in one go with what it loses.
DecodedText DecodeWithOriginal(std::string_view bytes);

}  // namespace quillmate::files
