#include "use_model.h"

#include <algorithm>
#include <utility>

#include "qt_text.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

constexpr const char* kHeaders[] = {"Stelle", "Text", "Art", "Gewissheit"};

}  // namespace

void UseModel::SetUses(std::shared_ptr<const project::Understanding> known, std::vector<symbols::Reference> uses) {
  beginResetModel();
  known_ = std::move(known);
  uses_ = std::move(uses);
  kind_.reset();
  Regroup();
  endResetModel();
}

void UseModel::SetFilter(std::optional<symbols::Use> kind) {
  beginResetModel();
  kind_ = kind;
  Regroup();
  endResetModel();
}

void UseModel::Regroup() {
  shown_.clear();
  modules_.clear();
  routines_.clear();
  for (std::size_t i = 0; i < uses_.size(); ++i) {
    const symbols::Reference& use = uses_[i];
    if (kind_ && use.use != *kind_) continue;
    const bool isFirst = shown_.empty();
    const symbols::Reference& before = isFirst ? use : uses_[shown_.back()];
    const bool otherModule = isFirst || before.module != use.module;
    if (otherModule) modules_.push_back({routines_.size(), 0, shown_.size()});
    if (otherModule || before.inRoutine != use.inRoutine) {
      routines_.push_back({shown_.size(), modules_.size() - 1, shown_.size()});
    }
    shown_.push_back(static_cast<std::uint32_t>(i));
  }
  modules_.push_back({routines_.size(), 0, shown_.size()});
  routines_.push_back({shown_.size(), modules_.size() - 1, shown_.size()});
}

QModelIndex UseModel::Make(Level level, std::size_t number, std::size_t row, int column) const {
  return createIndex(static_cast<int>(row), column, (number << 2) | static_cast<quintptr>(level));
}

QModelIndex UseModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  const auto at = static_cast<std::size_t>(row);
  if (!parent.isValid()) return Make(Level::kModule, at, at, column);
  if (LevelOf(parent) == Level::kModule) {
    return Make(Level::kRoutine, modules_[NumberOf(parent)].first + at, at, column);
  }
  return Make(Level::kUse, routines_[NumberOf(parent)].first + at, at, column);
}

QModelIndex UseModel::parent(const QModelIndex& index) const {
  if (!index.isValid() || LevelOf(index) == Level::kModule) return {};
  if (LevelOf(index) == Level::kRoutine) {
    const std::size_t module = routines_[NumberOf(index)].parent;
    return Make(Level::kModule, module, module, 0);
  }
  const auto behind = std::upper_bound(routines_.begin(), routines_.end(), NumberOf(index),
                                       [](std::size_t use, const Group& group) { return use < group.first; });
  const auto routine = static_cast<std::size_t>(behind - routines_.begin()) - 1;
  return Make(Level::kRoutine, routine, routine - modules_[routines_[routine].parent].first, 0);
}

int UseModel::rowCount(const QModelIndex& parent) const {
  if (parent.column() > 0) return 0;
  if (!parent.isValid()) return modules_.empty() ? 0 : static_cast<int>(modules_.size()) - 1;
  if (LevelOf(parent) == Level::kUse) return 0;
  const std::vector<Group>& groups = LevelOf(parent) == Level::kModule ? modules_ : routines_;
  const std::size_t number = NumberOf(parent);
  return static_cast<int>(groups[number + 1].first - groups[number].first);
}

int UseModel::columnCount(const QModelIndex&) const { return kColumns; }

std::optional<std::size_t> UseModel::PositionOf(const QModelIndex& index) const {
  if (!index.isValid()) return std::nullopt;
  const std::size_t number = NumberOf(index);
  switch (LevelOf(index)) {
    case Level::kModule:
      return modules_[number].firstUse;
    case Level::kRoutine:
      return routines_[number].firstUse;
    default:
      return number;
  }
}

QModelIndex UseModel::IndexOf(std::size_t position) const {
  if (position >= shown_.size()) return {};
  const QModelIndex routine = parent(Make(Level::kUse, position, 0, 0));
  return Make(Level::kUse, position, position - routines_[NumberOf(routine)].first, 0);
}

QVariant UseModel::Text(const QModelIndex& index) const {
  const symbols::Reference& use = Shown(*PositionOf(index));
  const symbols::ReferenceIndex& symbols = known_->Index();
  if (LevelOf(index) != Level::kUse) {
    if (index.column() == kText && LevelOf(index) == Level::kModule) return FileText(symbols, use.module);
    if (index.column() != kPlace) return {};
    const QString name =
        LevelOf(index) == Level::kModule ? ModuleText(symbols, use.module) : RoutineText(symbols, use.inRoutine);
    const Group& group = (LevelOf(index) == Level::kModule ? modules_ : routines_)[NumberOf(index)];
    const Group& next = (LevelOf(index) == Level::kModule ? modules_ : routines_)[NumberOf(index) + 1];
    return QStringLiteral("%1 (%2)").arg(name).arg(next.firstUse - group.firstUse);
  }
  switch (index.column()) {
    case kPlace: {
      const std::uint32_t line = known_->ShownLine(use.module, use.line);
      return QStringLiteral("Zeile %1").arg(line > 0 ? line : symbols.EditorLine(use.module, use.line));
    }
    case kText:
      return LineText(symbols, use.module, use.line);
    case kUse:
      return FromUtf8(symbols::GermanWord(use.use));
    default:
      return FromUtf8(symbols::GermanWord(use.certainty));
  }
}

QVariant UseModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::ToolTipRole && LevelOf(index) == Level::kModule) {
    return FromUtf8(known_->Index().Modules()[Shown(*PositionOf(index)).module].file);
  }
  return role == Qt::DisplayRole ? Text(index) : QVariant();
}

QVariant UseModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= kColumns) return {};
  return FromUtf8(kHeaders[section]);
}

Qt::ItemFlags UseModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags usual = QAbstractItemModel::flags(index);
  return IsUse(index) ? usual | Qt::ItemNeverHasChildren : usual;
}

}  // namespace quillmate::ui
