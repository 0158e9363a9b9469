#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillmate::settings {

/// Place of the main window in twips (1440 to the inch); fractions are kept.
struct WindowPlace {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
};

/// The stored display size: "max", or Left;Top;Width;Height.
struct DisplaySize {
  bool maximized = false;
  WindowPlace place;
};

/// Nothing when the text is no display size (fewer than four parts, a part that is no number). "max" may be in upper or
/// lower case. Parts after the fourth are not looked at. A decimal comma is read like a decimal point.
std::optional<DisplaySize> ParseDisplaySize(std::string_view bis);
/// Decimal point, fractions as far as they go, no exponent, whatever the locale.
std::string FormatDisplaySize(const DisplaySize& size);

}  // namespace quillmate::settings
