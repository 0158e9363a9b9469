#pragma once

#include <QWidget>

namespace quillmate::ui {

/// The mini window `frmMin`, always on top in the corner of the screen. Its button `cmdHtml` turns what is on the
/// clipboard into HTML, `cmdClose` leads back to the main window; closing it by its title bar ends the program.
class MiniWindow : public QWidget {
  Q_OBJECT

 public:
  MiniWindow();

 signals:
  void HtmlWanted();
  /// The main window takes its place.
  void Returned();
  /// It was closed by its title bar.
  void Closed();

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  bool returning_ = false;
};

}  // namespace quillmate::ui
