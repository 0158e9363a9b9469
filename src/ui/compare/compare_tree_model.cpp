#include "compare_tree_model.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>
#include <utility>

#include "compare_colours.h"
#include "qt_text.h"

namespace quillmate::ui {
namespace {

using Kind = symbols::ChangeNode::Kind;

bool IsHead(Kind kind) { return kind == Kind::kProject || kind == Kind::kModule || kind == Kind::kGroup; }

}  // namespace

void CompareTreeModel::SetOutline(std::vector<symbols::ChangeNode> outline) {
  beginResetModel();
  outline_ = std::move(outline);
  Arrange();
  endResetModel();
}

void CompareTreeModel::SetFilter(const symbols::OutlineFilter& filter) {
  beginResetModel();
  filter_ = filter;
  Arrange();
  endResetModel();
}

void CompareTreeModel::Arrange() {
  shown_ = symbols::ShownNodes(outline_, filter_);
  children_.assign(outline_.size() + 1, {});
  rows_.assign(outline_.size(), -1);
  for (std::size_t node = 0; node < outline_.size(); ++node) {
    if (!shown_[node]) continue;
    const symbols::Index parent = outline_[node].parent;
    auto& siblings = parent == symbols::kNone ? children_.back() : children_[parent];
    rows_[node] = static_cast<int>(siblings.size());
    siblings.push_back(node);
  }
}

const std::vector<std::size_t>& CompareTreeModel::ChildrenOf(const QModelIndex& parent) const {
  return parent.isValid() ? children_[NumberOf(parent)] : children_.back();
}

QModelIndex CompareTreeModel::IndexOf(std::size_t node, int column) const {
  return node < rows_.size() && rows_[node] >= 0 ? createIndex(rows_[node], column, static_cast<quintptr>(node))
                                                 : QModelIndex();
}

QModelIndex CompareTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return createIndex(row, column, static_cast<quintptr>(ChildrenOf(parent)[static_cast<std::size_t>(row)]));
}

QModelIndex CompareTreeModel::parent(const QModelIndex& child) const {
  if (!child.isValid()) return {};
  const symbols::Index parent = NodeOf(child).parent;
  return parent == symbols::kNone ? QModelIndex() : IndexOf(parent);
}

int CompareTreeModel::rowCount(const QModelIndex& parent) const {
  return parent.column() > 0 ? 0 : static_cast<int>(ChildrenOf(parent).size());
}

int CompareTreeModel::columnCount(const QModelIndex&) const { return 2; }

QVariant CompareTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const symbols::ChangeNode& node = NodeOf(index);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return FromUtf8(index.column() == 0 ? node.text : node.note);
    case Qt::DecorationRole:
      if (index.column() != 0 || node.kind == Kind::kGroup || node.kind == Kind::kNotCompared) return {};
      return StateIcon(node.state, QGuiApplication::palette());
    case Qt::FontRole: {
      QFont font;
      font.setBold(index.column() == 0 && IsHead(node.kind));
      return font;
    }
    case Qt::AccessibleTextRole:
      return index.column() == 0 ? FromUtf8(node.text + (node.note.empty() ? "" : ", " + node.note))
                                 : FromUtf8(node.note);
    default:
      return {};
  }
}

QVariant CompareTreeModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return section == 0 ? QStringLiteral("Änderung") : QStringLiteral("Was geschah");
}

}  // namespace quillmate::ui
