#pragma once

#include <QPushButton>
#include <QWidget>
#include <functional>

namespace quillmate::ui {

/// A button that Enter elsewhere in its window does not press. `caption`: UTF-8.
QPushButton* MakeButton(const char* name, const char* caption);

/// The buttons at the foot of a window, at its right.
class ButtonRow : public QWidget {
 public:
  ButtonRow();

  QPushButton* Add(const char* name, const char* caption, std::function<void()> run);
};

}  // namespace quillmate::ui
