#pragma once

/// Lengths of the window in twips, 1440 to the inch, whatever the screen.
namespace quillmate::ui {

constexpr double ToTwips(int pixels, double dpi) noexcept { return pixels * 1440.0 / dpi; }
constexpr double ToPixels(double twips, double dpi) noexcept { return twips * dpi / 1440.0; }

}  // namespace quillmate::ui
