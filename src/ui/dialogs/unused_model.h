#pragma once

#include <QAbstractItemModel>
#include <vector>

#include "unused_classes.h"

namespace quillmate::ui {

/// Routines that nothing calls as a tree of modules and routines; texts are made when a row is painted.
class UnusedModel : public QAbstractItemModel {
 public:
  using QAbstractItemModel::QAbstractItemModel;

  /// By module.
  void SetRoutines(std::vector<JudgedRoutine> routines);
  /// Leaves those that are surely unused, or all.
  void ShowCertainOnly(bool certainOnly);

  const std::vector<JudgedRoutine>& Routines() const noexcept { return routines_; }
  /// Those that are shown, in their order.
  std::size_t ShownCount() const noexcept { return shown_.size(); }
  const JudgedRoutine& Shown(std::size_t position) const { return routines_[shown_[position]]; }
  /// Null for a module.
  const JudgedRoutine* RoutineAt(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void Regroup();

  std::vector<JudgedRoutine> routines_;
  bool certainOnly_ = false;
  /// Positions in `routines_`.
  std::vector<std::size_t> shown_;
  /// By module: where its routines begin in `shown_`; one more at the end.
  std::vector<std::size_t> first_{0};
};

}  // namespace quillmate::ui
