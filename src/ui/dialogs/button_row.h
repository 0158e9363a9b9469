#pragma once

#include <QPushButton>
#include <QWidget>
#include <functional>

namespace quillmate::ui {

/// The buttons at the foot of a window, at its right. None of them is pressed by Enter elsewhere in the window.
class ButtonRow : public QWidget {
 public:
  ButtonRow();

  QPushButton* Add(const char* name, const char* caption, std::function<void()> run);
};

}  // namespace quillmate::ui
