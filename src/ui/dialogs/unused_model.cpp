#include "unused_model.h"

#include <utility>

#include "qt_text.h"

namespace quillmate::ui {

void UnusedModel::SetRoutines(std::vector<JudgedRoutine> routines) {
  beginResetModel();
  routines_ = std::move(routines);
  Regroup();
  endResetModel();
}

void UnusedModel::ShowCertainOnly(bool certainOnly) {
  beginResetModel();
  certainOnly_ = certainOnly;
  Regroup();
  endResetModel();
}

void UnusedModel::Regroup() {
  shown_.clear();
  first_.clear();
  for (std::size_t i = 0; i < routines_.size(); ++i) {
    if (certainOnly_ && routines_[i].grade != symbols::Grade::kCertain) continue;
    const bool isNew =
        shown_.empty() || Shown(shown_.size() - 1).routine.moduleNumber != routines_[i].routine.moduleNumber;
    if (isNew) first_.push_back(shown_.size());
    shown_.push_back(i);
  }
  first_.push_back(shown_.size());
}

const JudgedRoutine* UnusedModel::RoutineAt(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() == 0) return nullptr;
  return &Shown(first_[index.internalId() - 1] + static_cast<std::size_t>(index.row()));
}

/// Modules have the number 0, routines that of their module, counted from 1.
QModelIndex UnusedModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr{0});
}

QModelIndex UnusedModel::parent(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() == 0) return {};
  return createIndex(static_cast<int>(index.internalId() - 1), 0, quintptr{0});
}

int UnusedModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(first_.size()) - 1;
  if (parent.internalId() != 0 || parent.column() > 0) return 0;
  const auto module = static_cast<std::size_t>(parent.row());
  return static_cast<int>(first_[module + 1] - first_[module]);
}

int UnusedModel::columnCount(const QModelIndex&) const { return 2; }

QVariant UnusedModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const JudgedRoutine* judged = RoutineAt(index);
  if (judged == nullptr) {
    const bool isName = role == Qt::DisplayRole && index.column() == 0;
    return isName ? FromCode(Shown(first_[static_cast<std::size_t>(index.row())]).routine.moduleName) : QVariant();
  }
  if (index.column() == 1 && role == Qt::ToolTipRole) return judged->reason;
  if (role != Qt::DisplayRole) return {};
  return index.column() == 0 ? FromCode(judged->routine.routineName) : GradeCaption(judged->grade);
}

QVariant UnusedModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return section == 0 ? QStringLiteral("Routine") : QStringLiteral("Klasse");
}

}  // namespace quillmate::ui
