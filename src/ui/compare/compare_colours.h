#pragma once

#include <QColor>
#include <QIcon>
#include <QPalette>

#include <quillmate/symbols/compare.h>

namespace quillmate::ui {

/// The colours of a comparison: those of its HTML report, for a light or a dark desktop.
struct CompareColours {
  QColor ground, text;
  /// Lines that are gone and new, and the words that differ in them.
  QColor gone, goneWord, fresh, freshWord;
  /// Where one side has nothing, left-out lines, headings of pieces.
  QColor filler, soft, heading;
  /// Line numbers and remarks; the frame of what is seen; the change at hand.
  QColor dim, frame, current;
  QColor keyword, string, comment;
  /// In the strip of all changes.
  QColor goneMark, freshMark, changedMark;
};

const CompareColours& ColoursFor(const QPalette& palette);

/// A small square with the sign of a state: "+", "-", "~" ...; drawn for the palette.
QIcon StateIcon(symbols::ChangeState state, const QPalette& palette);

}  // namespace quillmate::ui
