#pragma once

#include <QAbstractTableModel>
#include <atomic>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "list_source.h"

namespace quillmate::ui {

/// What sorting and filtering a list need of its rows, which takes a second or two for a hundred thousand of them.
struct ListKeys {
  /// The cells of each row in lower case.
  std::vector<QString> folded;
  /// By column, of those that hold text: the place of each row's text in the order of all; equal texts share one.
  std::vector<std::vector<std::uint32_t>> ranks;
};

/// In any thread. Not whole when `cancelled`, which may be null, becomes true.
ListKeys KeysOf(const ListSource& source, const ListRows& rows, const std::atomic<bool>* cancelled);

/// A list as a model that sorts and filters by itself: what is not seen is no row.
class ListModel : public QAbstractTableModel {
 public:
  /// Empty until it gets its rows.
  ListModel(ListSource source, QObject* parent);

  void SetRows(ListRows rows);
  /// Of these rows; without them they are made when they are first needed.
  void SetKeys(ListKeys keys) { keys_ = std::move(keys); }

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
  void SortByText(int column, Qt::SortOrder direction);

  ListSource source_;
  ListRows rows_;
  /// Rows of the source in the order that is wanted, and those of them that the filter leaves.
  std::vector<std::uint32_t> order_;
  std::vector<std::uint32_t> shown_;
  QString filter_;
  ListKeys keys_;
};

}  // namespace quillmate::ui
