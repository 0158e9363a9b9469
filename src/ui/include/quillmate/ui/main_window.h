#pragma once

#include <QMainWindow>
#include <memory>
#include <string_view>

#include <quillmate/ui/services.h>

namespace quillmate::ui {

class Shell;

/// The main window `frmHaupt`. Its widgets carry their names as object names; menu items are QActions named after the
/// commands ("mnuNeu"), toolbar buttons QActions named after their keys ("doit").
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit MainWindow(const Services& services);
  ~MainWindow() override;

  /// Second half of the start: scratch folder, options, list of projects; then shows the window, or the mini window
  /// `frmMin` in its place.
  void Load(bool mini);
  /// What was written after the program's name and says nothing to it: tells the user, and standard error.
  void RefuseCommandLine(const QString& text);
  /// End of the run, once: closes the index, removes the scratch folder, and says so with `Ended`.
  void Unload();
  /// Runs the command behind a toolbar key, regardless of case. Unknown keys are ignored.
  void PressToolButton(std::string_view key);

 signals:
  void Ended();

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  Services services_;
  std::unique_ptr<Shell> shell_;
  bool unloaded_ = false;
};

}  // namespace quillmate::ui
