#include "call_model.h"

#include <QFont>
#include <algorithm>
#include <utility>

#include "qt_text.h"
#include "symbol_text.h"

namespace quillmate::ui {
namespace {

using symbols::CallDirection;
using symbols::CallEdge;
using symbols::SymbolId;

constexpr const char* kHeaders[] = {"Routine", "Modul", "Zeile", "Gewissheit"};

}  // namespace

void CallModel::Show(std::shared_ptr<const project::Understanding> known, SymbolId routine, CallDirection direction) {
  beginResetModel();
  known_ = std::move(known);
  direction_ = direction;
  nodes_.clear();
  if (known_ != nullptr) {
    Node root;
    root.routine = routine;
    nodes_.push_back(std::move(root));
  }
  endResetModel();
}

QModelIndex CallModel::IndexOf(int node) const {
  return node < 0 ? QModelIndex()
                  : createIndex(nodes_[static_cast<std::size_t>(node)].row, 0, static_cast<quintptr>(node));
}

int CallModel::Add(Node node) {
  const int number = static_cast<int>(nodes_.size());
  std::vector<int>& siblings = nodes_[static_cast<std::size_t>(node.parent)].children;
  node.row = static_cast<int>(siblings.size());
  siblings.push_back(number);
  nodes_.push_back(std::move(node));
  return number;
}

bool CallModel::StandsAbove(int node, SymbolId routine) const {
  for (; node >= 0; node = nodes_[static_cast<std::size_t>(node)].parent) {
    const Node& above = nodes_[static_cast<std::size_t>(node)];
    if (above.kind != Kind::kPossible && above.routine == routine) return true;
  }
  return false;
}

/// `caller`: the routine whose module the calling lines are in, when callees are asked for.
void CallModel::AddCall(int parent, SymbolId caller, const CallEdge& edge) {
  Node node;
  node.parent = parent;
  node.certainty = edge.certainty;
  if (edge.routine == symbols::kNone) {
    node.kind = Kind::kHost;
    node.host = edge.host;
    node.isFetched = true;
  } else {
    node.kind = Kind::kCall;
    node.routine = edge.routine;
    node.lines = edge.lines;
    const SymbolId of = direction_ == CallDirection::kCallers ? edge.routine : caller;
    node.module = known_->Index().SymbolAt(of).module;
    node.isCycle = StandsAbove(parent, edge.routine);
    node.isFetched = node.isCycle && node.lines.size() < 2;
  }
  Add(std::move(node));
}

bool CallModel::canFetchMore(const QModelIndex& parent) const { return parent.isValid() && !At(parent).isFetched; }

void CallModel::fetchMore(const QModelIndex& parent) {
  if (!canFetchMore(parent)) return;
  const int number = static_cast<int>(parent.internalId());
  nodes_[parent.internalId()].isFetched = true;
  const Node node = nodes_[parent.internalId()];
  std::vector<CallEdge> edges;
  if (!node.isCycle) {
    edges = direction_ == CallDirection::kCallers ? symbols::CallersOf(known_->Index(), node.routine)
                                                  : symbols::CalleesOf(known_->Index(), node.routine);
  }
  const auto isSure = [](const CallEdge& edge) {
    return edge.certainty == symbols::Certainty::kSure || edge.certainty == symbols::Certainty::kHost;
  };
  const auto possible = std::stable_partition(edges.begin(), edges.end(), isSure);
  const std::size_t lines = node.lines.size() > 1 ? node.lines.size() : 0;
  const std::size_t rows =
      lines + static_cast<std::size_t>(possible - edges.begin()) + (possible == edges.end() ? 0 : 1);
  nodes_[parent.internalId()].isEnd = !node.isCycle && edges.empty();
  if (rows == 0) {
    emit dataChanged(parent, parent.siblingAtColumn(kColumns - 1));
    return;
  }
  beginInsertRows(parent.siblingAtColumn(0), 0, static_cast<int>(rows) - 1);
  for (std::size_t i = 0; i < lines; ++i) {
    Node line;
    line.kind = Kind::kLine;
    line.parent = number;
    line.module = node.module;
    line.lines = {node.lines[i]};
    line.isFetched = true;
    Add(std::move(line));
  }
  for (auto edge = edges.begin(); edge != possible; ++edge) AddCall(number, node.routine, *edge);
  if (possible != edges.end()) {
    Node group;
    group.kind = Kind::kPossible;
    group.parent = number;
    group.isFetched = true;
    const int parentOfPossible = Add(std::move(group));
    for (auto edge = possible; edge != edges.end(); ++edge) AddCall(parentOfPossible, node.routine, *edge);
  }
  endInsertRows();
}

QModelIndex CallModel::index(int row, int column, const QModelIndex& parent) const {
  if (!hasIndex(row, column, parent)) return {};
  const int node = parent.isValid() ? At(parent).children[static_cast<std::size_t>(row)] : 0;
  return createIndex(row, column, static_cast<quintptr>(node));
}

QModelIndex CallModel::parent(const QModelIndex& index) const {
  return index.isValid() ? IndexOf(At(index).parent) : QModelIndex();
}

int CallModel::rowCount(const QModelIndex& parent) const {
  if (parent.column() > 0) return 0;
  return parent.isValid() ? static_cast<int>(At(parent).children.size()) : nodes_.empty() ? 0 : 1;
}

int CallModel::columnCount(const QModelIndex&) const { return kColumns; }

bool CallModel::hasChildren(const QModelIndex& parent) const {
  if (parent.column() > 0) return false;
  return !parent.isValid() ? !nodes_.empty() : !At(parent).isFetched || !At(parent).children.empty();
}

QString CallModel::Name(const Node& node) const {
  switch (node.kind) {
    case Kind::kHost:
      return FromUtf8(node.host);
    case Kind::kLine: {
      const std::uint32_t shown = known_->ShownLine(node.module, node.lines.front());
      return QStringLiteral("Zeile %1")
          .arg(shown > 0 ? shown : known_->Index().EditorLine(node.module, node.lines.front()));
    }
    case Kind::kPossible:
      return QStringLiteral("möglich (%1)").arg(node.children.size());
    default: {
      QString name = SymbolName(known_->Index(), node.routine);
      if (node.isCycle) name += QStringLiteral(" (Kreis)");
      if (node.isEnd && direction_ == CallDirection::kCallers) name += QStringLiteral(" (Wurzel)");
      return name;
    }
  }
}

QString CallModel::Certainty(const Node& node) const {
  const bool isCall = node.kind == Kind::kCall || node.kind == Kind::kHost;
  return isCall ? FromUtf8(symbols::GermanWord(node.certainty)) : QString();
}

QVariant CallModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Node& node = At(index);
  if (role == Qt::FontRole && (node.kind == Kind::kHost || node.kind == Kind::kPossible || node.isEnd)) {
    QFont font;
    font.setBold(node.kind == Kind::kHost || node.isEnd);
    font.setItalic(node.kind == Kind::kPossible);
    return font;
  }
  if (role != Qt::DisplayRole) return {};
  const bool isRoutine = node.kind == Kind::kRoot || node.kind == Kind::kCall;
  switch (index.column()) {
    case kRoutine:
      return Name(node);
    case kModule:
      return isRoutine ? ModuleText(known_->Index(), known_->Index().SymbolAt(node.routine).module) : QString();
    case kText: {
      if (node.lines.empty()) return {};
      const QString text = LineText(known_->Index(), node.module, node.lines.front());
      return node.kind == Kind::kCall && node.lines.size() > 1 ? QStringLiteral("%1 Stellen").arg(node.lines.size())
                                                               : text;
    }
    default:
      return Certainty(node);
  }
}

QVariant CallModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= kColumns) return {};
  return FromUtf8(kHeaders[section]);
}

std::optional<project::TextStretch> CallModel::PlaceOf(const QModelIndex& index) const {
  if (!index.isValid()) return std::nullopt;
  const Node& node = At(index);
  if (node.kind == Kind::kRoot) return known_->NameOf(node.routine);
  if (node.lines.empty()) return std::nullopt;
  const std::uint32_t line = node.lines.front();
  const std::string_view text = known_->Index().Code(node.module).LineText(line);
  const auto blanks = static_cast<std::uint32_t>(std::min(text.find_first_not_of(" \t"), text.size()));
  return project::TextStretch{{node.module, line, blanks + 1}, 0};
}

}  // namespace quillmate::ui
