#pragma once

#include <QAbstractTableModel>
#include <QStyledItemDelegate>
#include <vector>

#include <quillmate/export/table.h>
#include <quillmate/navigation/code_views.h>
#include <quillmate/navigation/search.h>

namespace quillmate::ui {

/// All hits of a search, one row each: module, routine, line, text of the line. A hit costs about 40 bytes; texts are
/// taken from the views when a row is painted.
class HitList : public QAbstractTableModel {
 public:
  enum Column { kModule, kRoutine, kLine, kText, kColumns };
  /// Where the match is in the text of a row: QPoint(first character, length).
  static constexpr int kMatchRole = Qt::UserRole;

  using QAbstractTableModel::QAbstractTableModel;

  /// `names`: of the modules, by view. The views must be the ones that were searched, as long as the hits are shown.
  void SetHits(std::vector<navigation::ModuleHits> modules, std::vector<QString> names, navigation::CodeViews* views);

  struct Place {
    codedb::ViewIndex view;
    navigation::Hit hit;
  };
  Place At(int row) const;
  /// All rows in their order: module, routine, line, column, text.
  output::Table AsTable() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  /// By text: by its first characters. No column brings the order of the code back.
  void sort(int column, Qt::SortOrder order) override;

 private:
  /// A row as it was found.
  struct Found {
    const navigation::ModuleHits& module;
    const navigation::Hit& hit;
  };
  struct Line {
    QString text;
    int first = 0;
    int length = 0;
  };

  /// The number of the hit in a row.
  int HitAt(int row) const { return order_.empty() ? row : order_[static_cast<std::size_t>(row)]; }
  Found FoundAt(int row) const;
  QString RoutineOf(const Found& found) const;
  Line LineOf(const Found& found, std::size_t most) const;

  std::vector<navigation::ModuleHits> modules_;
  /// Number of the hit in front of which each module's hits begin, and the number of all hits at the end.
  std::vector<int> firstRows_{0};
  /// The hits in the order of the rows; empty for that of the code.
  std::vector<int> order_;
  std::vector<QString> names_;
  navigation::CodeViews* views_ = nullptr;
};

/// Paints the text of a row with its match marked.
class HitDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace quillmate::ui
