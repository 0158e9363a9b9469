#include "list_model.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <unordered_map>
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

QString FoldedRow(const ListSource& source, const ListRows& rows, std::size_t row) {
  QString text;
  for (std::size_t column = 0; column < source.columns.size(); ++column) {
    text += rows.cell(row, static_cast<int>(column)).toString() + QLatin1Char('\n');
  }
  return text.toCaseFolded();
}

/// Most texts of a column are there many times: only the different ones are compared.
std::vector<std::uint32_t> RanksOf(const ListRows& rows, int column, const std::atomic<bool>* cancelled) {
  std::unordered_map<std::string, std::uint32_t> numbers;
  std::vector<const std::string*> texts;
  std::vector<std::uint32_t> ranks(rows.count);
  for (std::size_t row = 0; row < rows.count; ++row) {
    if (cancelled != nullptr && *cancelled) return ranks;
    const auto [text, isNew] =
        numbers.try_emplace(ToUtf8(rows.cell(row, column).toString()), static_cast<std::uint32_t>(texts.size()));
    if (isNew) texts.push_back(&text->first);
    ranks[row] = text->second;
  }
  std::vector<std::uint32_t> order(texts.size());
  std::iota(order.begin(), order.end(), 0U);
  std::ranges::sort(order,
                    [&](std::uint32_t a, std::uint32_t b) { return codedb::CompareText(*texts[a], *texts[b]) < 0; });
  std::vector<std::uint32_t> rankOf(texts.size());
  for (std::size_t i = 1; i < order.size(); ++i) {
    const bool isSame = codedb::CompareText(*texts[order[i - 1]], *texts[order[i]]) == 0;
    rankOf[order[i]] = rankOf[order[i - 1]] + (isSame ? 0 : 1);
  }
  for (std::uint32_t& rank : ranks) rank = rankOf[rank];
  return ranks;
}

}  // namespace

ListKeys KeysOf(const ListSource& source, const ListRows& rows, const std::atomic<bool>* cancelled) {
  ListKeys keys;
  keys.ranks.resize(source.columns.size());
  for (std::size_t row = 0; row < rows.count; ++row) {
    if (cancelled != nullptr && *cancelled) return keys;
    keys.folded.push_back(FoldedRow(source, rows, row));
  }
  for (std::size_t column = 0; column < source.columns.size(); ++column) {
    const ListColumn& of = source.columns[column];
    if (!of.isNumber && !of.isRanked) keys.ranks[column] = RanksOf(rows, static_cast<int>(column), cancelled);
  }
  return keys;
}

ListModel::ListModel(ListSource source, QObject* parent) : QAbstractTableModel(parent), source_(std::move(source)) {}

void ListModel::SetRows(ListRows rows) {
  beginResetModel();
  rows_ = std::move(rows);
  order_.resize(rows_.count);
  std::iota(order_.begin(), order_.end(), 0U);
  keys_ = {};
  if (!filter_.isEmpty()) ReadRows();
  Show();
  endResetModel();
}

void ListModel::ReadRows() {
  if (!keys_.folded.empty()) return;
  keys_.folded.reserve(rows_.count);
  for (std::size_t row = 0; row < rows_.count; ++row) keys_.folded.push_back(FoldedRow(source_, rows_, row));
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
    if (filter_.isEmpty() || keys_.folded[row].contains(filter_)) shown_.push_back(row);
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

void ListModel::SortByText(int column, Qt::SortOrder direction) {
  const auto at = static_cast<std::size_t>(column);
  keys_.ranks.resize(source_.columns.size());
  if (keys_.ranks[at].empty()) keys_.ranks[at] = RanksOf(rows_, column, nullptr);
  SortBy(order_, keys_.ranks[at], direction, std::less<>());
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
    SortByText(column, direction);
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
