#pragma once

#include <QWidget>
#include <functional>

namespace quillmate::ui {

/// The mini window `frmMin`, always on top in the corner of the screen. Its button `cmdHtml` turns what is on the
/// clipboard into HTML, `cmdClose` leads back to the main
/// window; closing it by its title bar ends the program.
class MiniWindow : public QWidget {
 public:
  MiniWindow();

  std::function<void()> onHtml;
  std::function<void()> onReturn;
  std::function<void()> onEnd;

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  bool returning_ = false;
};

}  // namespace quillmate::ui
