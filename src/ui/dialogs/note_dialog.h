#pragma once

#include <QDialog>
#include <QPlainTextEdit>

namespace quillmate::ui {

/// Asks for the text of a note beside a line of code.
class NoteDialog : public QDialog {
  Q_OBJECT

 public:
  /// `place` and `code` tell the line.
  NoteDialog(QWidget* parent, const QString& place, const QString& code, const QString& text);

 signals:
  /// The note, without blanks around it; empty takes it away.
  void Written(const QString& text);

 private:
  QPlainTextEdit* text_;
};

}  // namespace quillmate::ui
