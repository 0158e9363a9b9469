#pragma once

#include <QDockWidget>
#include <QString>
#include <QTreeWidget>
#include <vector>

namespace quillmate::ui {

/// A row of the panel. `line` is 1-based, 0 for a module that the project does not have.
struct NoteRow {
  QString place;
  int line = 0;
  bool isBookmark = false;
  bool isNote = false;
  /// The note, or the code of the line for a bookmark alone.
  QString text;
  QString hint;
};

/// "Notizen und Lesezeichen": the panel below the code that lists what the user has put beside the lines of a project.
/// A click or Enter shows a line, Del takes the row away, Esc goes back to the code and closes the panel.
class NotePanel : public QDockWidget {
  Q_OBJECT

 public:
  NotePanel();

  /// Rows by place.
  void ShowRows(const std::vector<NoteRow>& rows);

 signals:
  void Chosen(int row);
  void RemoveWanted(int row);
  /// The user goes back to the code.
  void Left();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTreeWidget* list_;
};

}  // namespace quillmate::ui
