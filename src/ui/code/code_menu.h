#pragma once

#include <QPoint>

/// The context menus of the code and of the zoom view.
namespace quillmate::ui {

class Shell;

/// Names the identifier and the routine at the caret in their captions. `position` is global.
void ShowCodeMenu(Shell& shell, const QPoint& position);
void WireZoomMenu(Shell& shell);

}  // namespace quillmate::ui
