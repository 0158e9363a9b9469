#pragma once

#include <QColor>
#include <QFont>
#include <cstdint>

#include <quillmate/settings/options.h>

namespace quillmate::ui {

/// Whether project exports carry a header block in front of each module. The options dialog shows the switch; nothing
/// changes it.
inline constexpr bool kModuleHeaders = true;

/// How code looks on screen and on the clipboard, made of the user's options.
struct CodeStyle {
  QFont font;
  /// Distance of the tab stops in pixels.
  double tabStop = 0;
  QColor keyword;
  QColor comment;
  QColor string;
  /// The same as the exports take it.
  text::CodeLook look;
};

/// A colour of the options, red in its lowest byte.
QColor FromColourValue(std::int32_t value);

/// `dpi`: logical dots per inch of the screen. A font that is not installed is replaced by the desktop's font with
/// fixed pitch; the RTF names the user's font all the same.
CodeStyle StyleOf(const settings::Options& options, double dpi);

}  // namespace quillmate::ui
