#pragma once

#include <QPalette>

class QApplication;

namespace quillmate::ui {

/// The program's own dark colours, for desktops whose choice the toolkit does not know.
QPalette DarkPalette();

/// Light text on dark ground.
bool IsDark(const QPalette& palette);

/// The desktop's style, improved where it hides things: see the class of the style. To be called once, at the start.
void UseProgramStyle();

/// Light or dark for the whole program. Light brings back the style and the colours of the start.
void UseLook(bool dark);

/// Takes over the desktop's choice of light or dark, now and whenever it changes, where the toolkit does not do so by
/// itself: from the desktop portal, on Windows from the user's settings. Does not wait for an answer.
void FollowDesktopLook(QApplication& app);

}  // namespace quillmate::ui
