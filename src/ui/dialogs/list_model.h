#pragma once

#include <QAbstractTableModel>
#include <string>
#include <vector>

#include "list_source.h"

namespace quillmate::ui {

/// A list as a model that sorts and filters by itself: what is not seen is no row.
class ListModel : public QAbstractTableModel {
 public:
  /// Empty until it gets its rows.
  ListModel(ListSource source, QObject* parent);

  void SetRows(ListRows rows);

  const ListSource& Source() const noexcept { return source_; }
  const ListRows& Rows() const noexcept { return rows_; }
  /// The row of the source for one of the model.
  std::size_t SourceRow(int row) const { return shown_[static_cast<std::size_t>(row)]; }

  /// All that are shown, in their order.
  const std::vector<std::uint32_t>& Shown() const noexcept { return shown_; }

  /// Leaves the rows that have the text in one of their cells, regardless of case; an empty text leaves all.
  void SetFilter(const QString& text);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 private:
  void ReadRows();
  void Show();

  ListSource source_;
  ListRows rows_;
  /// Rows of the source in the order that is wanted, and those of them that the filter leaves.
  std::vector<std::uint32_t> order_;
  std::vector<std::uint32_t> shown_;
  QString filter_;
  /// The cells of each row in lower case, made when the first filter is typed.
  std::vector<QString> folded_;
};

}  // namespace quillmate::ui
