#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Marked-up text as RTF. Input and output are Windows-1252 bytes; characters outside ASCII are written as they are.
namespace quillmate::output {

struct RtfOptions {
  /// Colours: red + 256 * green + 65536 * blue.
  std::int32_t keywordColour = 8388608;
  std::int32_t commentColour = 32768;
  std::int32_t stringColour = 128;
  /// Windows-1252.
  std::string fontName = "MS Sans Serif";
  /// Points.
  int fontSize = 10;
  /// Millimetres.
  int tabWidth = 5;
  /// Header and end lines of routines in bold.
  bool boldRoutines = true;
};

/// "\redR\greenG\blueB;".
std::string ColourEntry(std::int32_t colour);
/// Marked-up text to RTF body, in one pass with the result of the replacements one after the other.
std::string ColourBody(std::string_view markedText, bool boldRoutines);
/// RTF body to a complete RTF document.
std::string WrapDocument(std::string_view body, const RtfOptions& options);

/// Both, for a module or for text that already carries headers.
std::string RtfDocument(std::string_view markedText, const RtfOptions& options);

}  // namespace quillmate::output
