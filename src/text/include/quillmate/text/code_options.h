#pragma once

#include <cstdint>
#include <string>

/// What the user's options say about code, as its readers and writers take it.
namespace quillmate::text {

/// How code is laid out when it is marked up.
struct CodeLayout {
  bool indent = false;                   // the program's own block indentation instead of the code's
  bool indentBodies = false;             // routine bodies one TAB deeper; counts only with `indent`
  bool removeEmptyLines = false;         //
  bool emptyLineBeforeRoutines = false;  //
};

/// How marked-up code looks, on screen and in exports.
struct CodeLook {
  /// Colours: red + 256 * green + 65536 * blue.
  std::int32_t keywordColour = 0;
  std::int32_t commentColour = 0;
  std::int32_t stringColour = 0;
  /// Windows-1252.
  std::string fontName;
  /// Points.
  int fontSize = 0;
  /// Distance of the tab stops in millimetres.
  int tabWidth = 0;
  /// Header and end lines of routines in bold.
  bool boldRoutines = false;
};

}  // namespace quillmate::text
