#include "list_model.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include <quillmate/codedb/collation.h>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// Sorts positions by their keys; equals keep their order, also when the largest come first.
template <typename Key, typename Less>
void SortBy(std::vector<std::uint32_t>& order, const std::vector<Key>& keys, Qt::SortOrder direction, Less less) {
  const bool down = direction == Qt::DescendingOrder;
  std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return down ? less(keys[b], keys[a]) : less(keys[a], keys[b]);
  });
}

}  // namespace

ListModel::ListModel(ListSource source, QObject* parent) : QAbstractTableModel(parent), source_(std::move(source)) {}

void ListModel::SetRows(ListRows rows) {
  beginResetModel();
  rows_ = std::move(rows);
  order_.resize(rows_.count);
  std::iota(order_.begin(), order_.end(), 0U);
  folded_.clear();
  if (!filter_.isEmpty()) ReadRows();
  Show();
  endResetModel();
}

void ListModel::ReadRows() {
  if (!folded_.empty()) return;
  folded_.reserve(rows_.count);
  for (std::size_t row = 0; row < rows_.count; ++row) {
    QString text;
    for (int column = 0; column < columnCount(); ++column) {
      text += rows_.cell(row, column).toString() + QLatin1Char('\n');
    }
    folded_.push_back(text.toCaseFolded());
  }
}

void ListModel::SetFilter(const QString& text) {
  filter_ = text.toCaseFolded();
  if (!filter_.isEmpty()) ReadRows();
  beginResetModel();
  Show();
  endResetModel();
}

void ListModel::Show() {
  shown_.clear();
  for (const std::uint32_t row : order_) {
    if (filter_.isEmpty() || folded_[row].contains(filter_)) shown_.push_back(row);
  }
}

int ListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(source_.columns.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const ListColumn& column = source_.columns[static_cast<std::size_t>(index.column())];
  if (role == Qt::TextAlignmentRole && column.isNumber) return QVariant(Qt::AlignRight | Qt::AlignVCenter);
  return role == Qt::DisplayRole ? rows_.cell(SourceRow(index.row()), index.column()) : QVariant();
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  const ListColumn& column = source_.columns[static_cast<std::size_t>(section)];
  if (role == Qt::DisplayRole) return column.title;
  return role == Qt::ToolTipRole && !column.explanation.isEmpty() ? column.explanation : QVariant();
}

void ListModel::sort(int column, Qt::SortOrder direction) {
  emit layoutAboutToBeChanged();
  std::iota(order_.begin(), order_.end(), 0U);
  const ListColumn* by = column < 0 ? nullptr : &source_.columns[static_cast<std::size_t>(column)];
  if (by != nullptr && by->isRanked && rows_.rank) {
    std::vector<int> keys;
    for (std::size_t row = 0; row < rows_.count; ++row) keys.push_back(rows_.rank(row));
    SortBy(order_, keys, direction, std::less<>());
  } else if (by != nullptr && by->isNumber) {
    std::vector<qlonglong> keys;
    for (std::size_t row = 0; row < rows_.count; ++row) keys.push_back(rows_.cell(row, column).toLongLong());
    SortBy(order_, keys, direction, std::less<>());
  } else if (by != nullptr) {
    std::vector<std::string> keys;
    for (std::size_t row = 0; row < rows_.count; ++row) keys.push_back(ToUtf8(rows_.cell(row, column).toString()));
    SortBy(order_, keys, direction,
           [](const std::string& a, const std::string& b) { return codedb::CompareText(a, b) < 0; });
  }
  const QModelIndexList before = persistentIndexList();
  std::vector<std::uint32_t> rows;
  for (const QModelIndex& index : before) rows.push_back(shown_[static_cast<std::size_t>(index.row())]);
  Show();
  QModelIndexList after;
  for (qsizetype i = 0; i < before.size(); ++i) {
    const auto found = std::find(shown_.begin(), shown_.end(), rows[static_cast<std::size_t>(i)]);
    after.append(index(static_cast<int>(found - shown_.begin()), before[i].column()));
  }
  changePersistentIndexList(before, after);
  emit layoutChanged();
}

}  // namespace quillmate::ui
