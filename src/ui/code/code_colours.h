#pragma once

#include <QColor>
#include <QPalette>

namespace quillmate::ui {

/// The colours of code on screen. What is copied, exported or printed always has the user's own.
struct CodeColours {
  QColor paper;
  QColor ink;
  QColor keyword;
  QColor comment;
  QColor string;
  /// What is selected, and its text.
  QColor selection;
  QColor selectedInk;
  /// After the occurrences of a name.
  QColor occurrence;
  QColor link;
  /// Beside the code: the ground of the column with the line numbers, a number, that of the caret's line, and signs.
  QColor margin;
  QColor number;
  QColor caretNumber;
  QColor sign;
  /// A note of the user after a line.
  QColor note;
};

/// On white paper; the colours of the code are the user's.
CodeColours LightColours(const QColor& keyword, const QColor& comment, const QColor& string);
/// On dark paper, with colours of its own: the user's are made for white.
CodeColours DarkColours();

/// What a widget with code on it takes them from.
QPalette PaperPalette(QPalette palette, const CodeColours& colours);

/// How far two colours are apart, from 1 (the same) to 21 (black on white), as the guidelines for readable web pages
/// compute it.
double ContrastOf(const QColor& one, const QColor& other);

}  // namespace quillmate::ui
