#pragma once

#include <QAbstractTableModel>
#include <QHeaderView>
#include <memory>
#include <vector>

#include <quillmate/export/table.h>
#include <quillmate/project/understanding.h>
#include <quillmate/symbols/module_uses.h>

namespace quillmate::ui {

/// Which module uses which others: a row for each module that uses, a column for each that is used. Only the cells that
/// are not empty are kept.
class ModuleMatrix : public QAbstractTableModel {
 public:
  ModuleMatrix(std::shared_ptr<const project::Understanding> known, QObject* parent);

  const std::vector<symbols::ModuleUse>& Uses() const noexcept { return uses_; }
  /// How many cycles there are.
  std::size_t Cycles() const noexcept { return cycleCount_; }
  /// The module of a row or a column.
  symbols::Index ModuleAt(int section) const { return shown_[static_cast<std::size_t>(section)]; }
  /// Null for an empty cell.
  const symbols::ModuleUse* UseAt(const QModelIndex& index) const;
  bool IsInCycle(const symbols::ModuleUse& use) const;
  /// What a cell says, in words.
  QString CellText(const QModelIndex& index) const;
  /// Leaves the modules that have the text in their names, regardless of case, and those that belong to a cycle, or
  /// all.
  void SetFilter(const QString& text, bool cyclesOnly);
  /// Every use: from, to, how often, the cycle that it belongs to. Good after the matrix has gone, in any thread.
  output::Table AsTable() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::shared_ptr<const project::Understanding> known_;
  /// Sorted by the module that uses, then by the one that is used.
  std::vector<symbols::ModuleUse> uses_;
  /// By module: where its uses begin; one more at the end.
  std::vector<std::size_t> first_;
  std::vector<symbols::Index> cycles_;
  std::size_t cycleCount_ = 0;
  std::vector<symbols::Index> shown_;
  std::uint32_t most_ = 0;
};

/// The names of columns, read from below.
class UprightHeader : public QHeaderView {
 public:
  explicit UprightHeader(QWidget* parent = nullptr);

  QSize sizeHint() const override;

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
};

}  // namespace quillmate::ui
