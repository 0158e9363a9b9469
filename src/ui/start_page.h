#pragma once

#include <QEvent>
#include <QLabel>
#include <QWidget>
#include <string>
#include <vector>

#include "command_table.h"

/// What is in the place of the code while no project is loaded: what to do next, the projects opened last, and a
/// place to drop files on.
namespace quillmate::ui {

class StartPage : public QWidget {
  Q_OBJECT

 public:
  /// `host`: name of the program whose macros are read.
  explicit StartPage(const QString& host);

  /// Shows the project folders opened last, the newest first. UTF-8.
  void ShowRecent(const std::vector<std::string>& folders);

 signals:
  /// A link was clicked that stands for a command.
  void CommandWanted(CommandId command);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  /// Carries out what a link stands for: the name of a menu item.
  void Follow(const QString& link);

  QLabel* steps_ = nullptr;
  QLabel* recentTitle_ = nullptr;
  QLabel* recent_ = nullptr;
};

}  // namespace quillmate::ui
