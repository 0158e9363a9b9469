#pragma once

class QWidget;

namespace quillmate::ui {

/// Gives the controls inside a window that say nothing by themselves the names that screen readers speak. To be called
/// when all of them are there.
void NameForScreenReaders(QWidget& window);

}  // namespace quillmate::ui
