#pragma once

#include <QPlainTextEdit>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include <quillmate/symbols/code_spans.h>
#include <quillmate/symbols/compare_rows.h>

#include "compare_colours.h"

namespace quillmate::ui {

/// What a side shows. Everything must live until something else is shown.
struct SideContent {
  const symbols::CompareRows* rows = nullptr;
  const symbols::ReferenceIndex* index = nullptr;
};

/// One side of a comparison: a block of text for each row, an empty one where the other side alone has a line, so that
/// both sides scroll alike. What is copied is the code.
class CompareSide : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit CompareSide(symbols::Side side, QWidget* parent = nullptr);

  void Show(const SideContent& content);
  void SetCodeFont(const QFont& font, double tabStop);
  /// Puts the caret at the beginning of a row.
  void PutCaret(std::size_t row);
  /// The rows that are framed at the left; none when `count` is 0.
  void SetCurrent(std::size_t first, std::size_t count);

  std::size_t RowAtCaret() const { return static_cast<std::size_t>(textCursor().blockNumber()); }
  /// Rows that can be seen: the first one, and how many.
  std::pair<int, int> RowsOnScreen() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;

 private:
  class Gutter;
  class Colouring;

  /// Calls `row(number, rectangle)` for each row on screen, in pixels of the viewport.
  void ForEachRowOnScreen(const std::function<void(std::size_t, const QRectF&)>& row) const;
  QColor GroundOf(const symbols::CompareRow& row) const;
  void PaintRows(QPainter& painter) const;
  void PaintWords(QPainter& painter, std::size_t row, const QRectF& place) const;
  void PaintNumbers(QPainter& painter, int width) const;
  int GutterWidth() const;
  void PlaceGutter();
  void UsePalette();
  const symbols::WordDifference& WordsOf(std::size_t row) const;
  std::string_view TextOf(const symbols::CompareRow& row) const noexcept;
  std::uint32_t NumberOf(const symbols::CompareRow& row) const noexcept;
  /// Whether the row is a line of code of this side.
  bool HasCode(const symbols::CompareRow& row) const noexcept { return NumberOf(row) != 0; }

  const symbols::Side side_;
  SideContent content_;
  const CompareColours* colours_ = nullptr;
  Gutter* gutter_;
  Colouring* colouring_;
  std::size_t currentFirst_ = 0, currentCount_ = 0;
  bool placing_ = false;
  mutable std::unordered_map<std::size_t, symbols::WordDifference> words_;
};

}  // namespace quillmate::ui
