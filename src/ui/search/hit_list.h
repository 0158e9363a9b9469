#pragma once

#include <QAbstractTableModel>
#include <vector>

#include <quillmate/navigation/code_views.h>
#include <quillmate/navigation/search.h>

namespace quillmate::ui {

/// All hits of a search, one row each: module, routine, line, text of the line. A hit costs about 40 bytes; texts are
/// taken from the views when a row is painted.
class HitList : public QAbstractTableModel {
 public:
  enum Column { kModule, kRoutine, kLine, kText, kColumns };

  using QAbstractTableModel::QAbstractTableModel;

  /// `names`: of the modules, by view. The views must be the ones that were searched, as long as the hits are shown.
  void SetHits(std::vector<navigation::ModuleHits> modules, std::vector<QString> names, navigation::CodeViews* views);

  struct Place {
    codedb::ViewIndex view;
    navigation::Hit hit;
  };
  Place At(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const navigation::ModuleHits& ModuleOf(int row) const;
  const navigation::Hit& HitOf(int row) const;
  QString LineOf(int row) const;
  std::size_t Module(int row) const;

  std::vector<navigation::ModuleHits> modules_;
  /// Number of the row in front of which each module's hits begin, and the number of all rows at the end.
  std::vector<int> firstRows_{0};
  std::vector<QString> names_;
  navigation::CodeViews* views_ = nullptr;
};

}  // namespace quillmate::ui
