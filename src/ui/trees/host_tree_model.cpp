#include "host_tree_model.h"

#include <QApplication>
#include <QPalette>
#include <algorithm>
#include <utility>

#include "qt_text.h"

namespace quillmate::ui {
namespace {

/// Internal id of a top node; a module's is the position of its project.
constexpr quintptr kProjectId = ~quintptr{0};

/// The last part of a path of this system or another one.
QString LastPart(const QString& path) {
  const qsizetype at = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
  return at + 1 < path.size() ? path.mid(at + 1) : path;
}

Qt::CheckState StateOf(const host::HostProjectNode& project) {
  const auto ticked = std::count_if(project.modules.begin(), project.modules.end(),
                                    [](const host::HostModuleNode& module) { return module.checked; });
  if (ticked == 0) return project.modules.empty() && project.checked ? Qt::Checked : Qt::Unchecked;
  return static_cast<std::size_t>(ticked) == project.modules.size() ? Qt::Checked : Qt::PartiallyChecked;
}

}  // namespace

void HostTreeModel::SetTree(host::HostTree tree, std::vector<UnreadSource> unread) {
  beginResetModel();
  tree_ = std::move(tree);
  unread_ = std::move(unread);
  endResetModel();
}

const UnreadSource* HostTreeModel::UnreadAt(const QModelIndex& index) const {
  const auto projects = static_cast<int>(tree_.projects.size());
  if (!index.isValid() || index.internalId() != kProjectId || index.row() < projects) return nullptr;
  return &unread_[static_cast<std::size_t>(index.row() - projects)];
}

int HostTreeModel::ProjectOf(const QModelIndex& index) const {
  if (!index.isValid() || UnreadAt(index) != nullptr) return -1;
  return index.internalId() == kProjectId ? index.row() : static_cast<int>(index.internalId());
}

const host::HostModuleNode* HostTreeModel::Module(const QModelIndex& index) const {
  if (index.internalId() == kProjectId) return nullptr;
  return &tree_.projects[index.internalId()].modules[static_cast<std::size_t>(index.row())];
}

QModelIndex HostTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) : kProjectId);
}

QModelIndex HostTreeModel::parent(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() == kProjectId) return {};
  return createIndex(static_cast<int>(index.internalId()), 0, kProjectId);
}

int HostTreeModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(tree_.projects.size() + unread_.size());
  if (parent.column() != 0 || parent.internalId() != kProjectId || UnreadAt(parent) != nullptr) return 0;
  return static_cast<int>(tree_.projects[static_cast<std::size_t>(parent.row())].modules.size());
}

int HostTreeModel::columnCount(const QModelIndex&) const { return 1; }

QVariant HostTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (const UnreadSource* unread = UnreadAt(index)) {
    switch (role) {
      case Qt::DisplayRole:
        return LastPart(FromUtf8(unread->source)) + QStringLiteral(" \u2013 ") + FromUtf8(unread->reason);
      case Qt::ToolTipRole:
        return FromUtf8(unread->source) + QLatin1Char('\n') + FromUtf8(unread->reason);
      case Qt::ForegroundRole:
        return QApplication::palette().brush(QPalette::Disabled, QPalette::Text);
      default:
        return {};
    }
  }
  const host::HostModuleNode* module = Module(index);
  const host::HostProjectNode& project = tree_.projects[static_cast<std::size_t>(ProjectOf(index))];
  switch (role) {
    case Qt::DisplayRole:
      return FromCode(module != nullptr ? module->text : project.text);
    case Qt::DecorationRole:
      return icons_.Of(module != nullptr ? module->image : "Fahne");
    case Qt::CheckStateRole:
      return module == nullptr ? StateOf(project) : module->checked ? Qt::Checked : Qt::Unchecked;
    case Qt::ToolTipRole:
      return module != nullptr ? FromUtf8(module->file) : QVariant();
    default:
      return {};
  }
}

bool HostTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!index.isValid() || role != Qt::CheckStateRole || UnreadAt(index) != nullptr) return false;
  const bool ticked = value.toInt() != Qt::Unchecked;
  if (Module(index) == nullptr) {
    TickProject(index.row(), ticked);
  } else {
    TickModule(ProjectOf(index), index.row(), ticked);
  }
  return true;
}

void HostTreeModel::TickProject(int project, bool ticked) {
  host::HostProjectNode& node = tree_.projects[static_cast<std::size_t>(project)];
  node.checked = ticked;
  for (host::HostModuleNode& module : node.modules) module.checked = ticked;
  const QModelIndex parent = index(project, 0);
  emit dataChanged(parent, parent, {Qt::CheckStateRole});
  const int count = rowCount(parent);
  if (count > 0) emit dataChanged(index(0, 0, parent), index(count - 1, 0, parent), {Qt::CheckStateRole});
}

void HostTreeModel::TickModule(int project, int module, bool ticked) {
  host::HostProjectNode& node = tree_.projects[static_cast<std::size_t>(project)];
  node.modules[static_cast<std::size_t>(module)].checked = ticked;
  node.checked = StateOf(node) != Qt::Unchecked;
  const QModelIndex parent = index(project, 0);
  const QModelIndex child = index(module, 0, parent);
  emit dataChanged(child, child, {Qt::CheckStateRole});
  emit dataChanged(parent, parent, {Qt::CheckStateRole});
}

Qt::ItemFlags HostTreeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  if (UnreadAt(index) != nullptr) return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable;
}

}  // namespace quillmate::ui
