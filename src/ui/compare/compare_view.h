#pragma once

#include <QLabel>
#include <QWidget>
#include <array>
#include <memory>

#include <quillmate/project/compared_state.h>
#include <quillmate/symbols/compare_rows.h>

#include "compare_side.h"
#include "compare_strip.h"

namespace quillmate::ui {

/// Two states of a module side by side, which scroll together, with the strip of all changes.
class CompareView : public QWidget {
  Q_OBJECT

 public:
  explicit CompareView(QWidget* parent = nullptr);

  void SetCodeFont(const QFont& font, double tabStop);
  /// What is above the sides: whose code it is.
  void SetTitles(const QString& oldTitle, const QString& newTitle);
  /// `compared` is what the rows speak of.
  void Show(std::shared_ptr<const project::ComparedProjects> compared, symbols::CompareRows rows);
  void Clear();

  const symbols::CompareRows& Rows() const noexcept { return *rows_; }
  std::size_t CurrentRow() const;
  /// Puts the caret into a row; what can't be seen is scrolled to, or all of it with some rows above when `atTop`.
  void GoToRow(std::size_t row, bool atTop = false);
  /// The next change from the caret on (1) or back (-1), or the first or last one where `fromEnd`; false when there is
  /// none.
  bool StepChange(int direction, bool fromEnd = false);
  /// The change at the caret: 0-based number; nothing where none is.
  std::optional<std::size_t> CurrentChange() const;
  /// The side that has the focus, or had it last.
  CompareSide& FocusSide() { return *sides_[static_cast<std::size_t>(focus_)]; }

 signals:
  /// The caret is in another row.
  void RowChanged();

 private:
  CompareSide& Old() { return *sides_[0]; }
  CompareSide& New() { return *sides_[1]; }
  void Connect(symbols::Side side);
  void TakeCaret(symbols::Side side);
  void ShowSeen();
  void MatchScrollBars();

  std::array<CompareSide*, 2> sides_;
  std::array<QLabel*, 2> titles_;
  CompareStrip* strip_;
  std::shared_ptr<const project::ComparedProjects> compared_;
  std::unique_ptr<symbols::CompareRows> rows_ = std::make_unique<symbols::CompareRows>();
  symbols::Side focus_ = symbols::Side::kNew;
  bool following_ = false;
};

}  // namespace quillmate::ui
