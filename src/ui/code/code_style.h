#pragma once

#include <QColor>
#include <QFont>
#include <cstdint>

#include <quillmate/settings/options.h>

#include "code_colours.h"

namespace quillmate::ui {

/// Whether project exports carry a header block in front of each module. The options dialog shows the switch; nothing
/// changes it.
inline constexpr bool kModuleHeaders = true;

/// How code looks on screen and on the clipboard, made of the user's options.
struct CodeStyle {
  QFont font;
  /// Distance of the tab stops in pixels.
  double tabStop = 0;
  /// On paper and on the clipboard.
  QColor keyword;
  QColor comment;
  QColor string;
  CodeColours screen;
  /// The same as the exports take it.
  text::CodeLook look;
};

/// A colour of the options, red in its lowest byte.
QColor FromColourValue(std::int32_t value);

/// `dpi`: logical dots per inch of the screen. `dark`: the desktop is dark, and the code has colours of its own on
/// screen. A font that is not installed is replaced by the desktop's font with
/// fixed pitch; the RTF names the user's font all the same.
CodeStyle StyleOf(const settings::Options& options, double dpi, bool dark = false);

}  // namespace quillmate::ui
