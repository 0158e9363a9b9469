#pragma once

#include <QEvent>
#include <QLabel>
#include <QWidget>
#include <string>
#include <vector>

/// What stands in the place of the code while no project is loaded: what to do next, the projects opened last, and a
/// place to drop files on.
namespace quillmate::ui {

class Shell;

class StartPage : public QWidget {
 public:
  explicit StartPage(Shell& shell);

  /// Shows the project folders opened last, the newest first. UTF-8.
  void ShowRecent(const std::vector<std::string>& folders);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  /// Carries out what a link stands for: the name of a menu item.
  void Follow(const QString& link);

  Shell& shell_;
  QLabel* steps_ = nullptr;
  QLabel* recentTitle_ = nullptr;
  QLabel* recent_ = nullptr;
};

}  // namespace quillmate::ui
