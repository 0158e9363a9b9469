#include "project_tree_model.h"

#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <utility>

#include "qt_text.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

constexpr int kIconSide = 32;

/// The picture with a warning sign in its corner.
QIcon WithSign(const QIcon& icon) {
  QPixmap picture(kIconSide, kIconSide);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  icon.paint(&painter, 0, 0, kIconSide, kIconSide);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Qt::white, 2));
  painter.setBrush(QColor(0xd0, 0x60, 0x00));
  painter.drawPolygon(QPolygonF({{21, 14}, {31, 31}, {11, 31}}));
  QIcon marked(picture);
  // Not tinted in a selected row.
  marked.addPixmap(picture, QIcon::Selected);
  return marked;
}

}  // namespace

ProjectTreeModel::ProjectTreeModel(QObject* parent) : QAbstractItemModel(parent) {
  SetTree(std::make_shared<navigation::ProjectTree>());
}

void ProjectTreeModel::SetTree(std::shared_ptr<const navigation::ProjectTree> tree) { SetTree(std::move(tree), {}); }

void ProjectTreeModel::SetTree(std::shared_ptr<const navigation::ProjectTree> tree,
                               std::vector<symbols::SymbolId> declarations) {
  beginResetModel();
  tree_ = std::move(tree);
  declarations_ = std::move(declarations);
  marked_ = -1;
  const std::vector<navigation::TreeNode>& nodes = tree_->nodes;
  const auto slot = [&nodes](std::size_t node) { return static_cast<std::size_t>(nodes[node].parent + 1); };
  firstChild_.assign(nodes.size() + 2, 0);
  rows_.resize(nodes.size());
  for (std::size_t node = 0; node < nodes.size(); ++node) rows_[node] = firstChild_[slot(node) + 1]++;
  for (std::size_t i = 1; i < firstChild_.size(); ++i) firstChild_[i] += firstChild_[i - 1];
  children_.resize(nodes.size());
  for (std::size_t node = 0; node < nodes.size(); ++node) {
    children_[static_cast<std::size_t>(firstChild_[slot(node)] + rows_[node])] = static_cast<int>(node);
  }
  endResetModel();
}

int ProjectTreeModel::NodeOf(const QModelIndex& index) {
  return index.isValid() ? static_cast<int>(index.internalId()) : -1;
}

QModelIndex ProjectTreeModel::IndexOf(int node) const {
  if (node < 0 || node >= static_cast<int>(rows_.size())) return {};
  return createIndex(rows_[static_cast<std::size_t>(node)], 0, static_cast<quintptr>(node));
}

void ProjectTreeModel::Mark(codedb::ModuleNumber module) {
  const int node = tree_->Find(module);
  const int before = std::exchange(marked_, node);
  for (const int changed : {before, node}) {
    const QModelIndex index = IndexOf(changed);
    if (index.isValid()) emit dataChanged(index, index, {kMarkedRole});
  }
}

void ProjectTreeModel::SetKnowledge(std::shared_ptr<const project::Understanding> known) {
  known_ = std::move(known);
  const int modules = rowCount();
  if (modules > 0) emit dataChanged(index(0, 0), index(modules - 1, 0), {Qt::DecorationRole, Qt::ToolTipRole});
}

symbols::SymbolId ProjectTreeModel::DeclarationOf(int node) const {
  const auto at = static_cast<std::size_t>(node);
  return at < declarations_.size() ? declarations_[at] : symbols::kNone;
}

const project::OutlineDifference* ProjectTreeModel::DifferenceOf(int node) const {
  if (known_ == nullptr || !tree_->IsModule(node)) return nullptr;
  const codedb::ModuleNumber module = tree_->nodes[static_cast<std::size_t>(node)].module;
  const std::vector<project::OutlineDifference>& all = known_->Differences();
  const auto found = std::ranges::lower_bound(all, module, {}, &project::OutlineDifference::module);
  return found == all.end() || found->module != module ? nullptr : &*found;
}

QIcon ProjectTreeModel::IconOf(int node) const {
  const symbols::SymbolId declaration = DeclarationOf(node);
  if (known_ != nullptr && declaration != symbols::kNone) return symbolIcons_.Of(known_->Index(), declaration);
  const QIcon icon = icons_.Of(tree_->nodes[static_cast<std::size_t>(node)].image);
  return DifferenceOf(node) != nullptr ? WithSign(icon) : icon;
}

QString ProjectTreeModel::ToolTip(int node) const {
  if (known_ == nullptr) return {};
  const symbols::SymbolId declaration = DeclarationOf(node);
  if (declaration != symbols::kNone) return DescribeSymbol(*known_, declaration);
  return tree_->IsModule(node) ? ModuleToolTip(node) : QString();
}

QString ProjectTreeModel::ModuleToolTip(int node) const {
  const symbols::Index module = known_->ModuleOf(codedb::ViewOf(tree_->nodes[static_cast<std::size_t>(node)].module));
  if (module == symbols::kNone) return {};
  const symbols::ModuleInfo& info = known_->Index().Modules()[module];
  const symbols::ProjectInfo& project = known_->Index().Projects()[info.project];
  QStringList lines;
  if (!project.name.empty()) lines << QStringLiteral("Projekt: ") + FromUtf8(project.name);
  const std::string& file = info.file.empty() ? project.file : info.file;
  if (!file.empty()) lines << QStringLiteral("Datei: ") + FromUtf8(file);
  if (!info.outsideName.empty()) lines << QStringLiteral("Heißt außen: ") + FromUtf8(info.outsideName);
  if (const auto* difference = DifferenceOf(node)) lines << FromUtf8(project::DifferenceText(*difference));
  return lines.join(QLatin1Char('\n'));
}

const navigation::TreeNode& ProjectTreeModel::Node(const QModelIndex& index) const {
  return tree_->nodes[static_cast<std::size_t>(NodeOf(index))];
}

QModelIndex ProjectTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  return IndexOf(children_[static_cast<std::size_t>(firstChild_[Slot(parent)] + row)]);
}

QModelIndex ProjectTreeModel::parent(const QModelIndex& index) const {
  return index.isValid() ? IndexOf(Node(index).parent) : QModelIndex();
}

int ProjectTreeModel::rowCount(const QModelIndex& parent) const {
  return parent.column() > 0 ? 0 : firstChild_[Slot(parent) + 1] - firstChild_[Slot(parent)];
}

int ProjectTreeModel::columnCount(const QModelIndex&) const { return 1; }

QVariant ProjectTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return Node(index).text.empty() ? QStringLiteral("(ohne Namen)") : FromCode(Node(index).text);
    case Qt::DecorationRole:
      return IconOf(NodeOf(index));
    case Qt::ToolTipRole:
      return ToolTip(NodeOf(index));
    case kMarkedRole:
      return NodeOf(index) == marked_;
    default:
      return {};
  }
}

Qt::ItemFlags ProjectTreeModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags usual = QAbstractItemModel::flags(index);
  // A large tree is unfolded in no time when nobody has to remember that its routines are unfolded, too.
  const bool isLeaf = index.isValid() && Node(index).parent >= 0 && rowCount(index) == 0;
  return isLeaf ? usual | Qt::ItemNeverHasChildren : usual;
}

}  // namespace quillmate::ui
