#pragma once

#include <QAbstractItemModel>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/project/understanding.h>
#include <quillmate/symbols/calls.h>

namespace quillmate::ui {

/// Who calls a routine, or what it calls, as a tree that finds its branches when they are unfolded. Below a routine
/// stand the calling lines, when there are several, the sure calls, what calls it from outside the code, and the
/// possible calls in a branch of their own.
class CallModel : public QAbstractItemModel {
 public:
  enum Column { kRoutine, kModule, kText, kCertainty, kColumns };

  using QAbstractItemModel::QAbstractItemModel;

  /// Null for nothing.
  void Show(std::shared_ptr<const project::Understanding> known, symbols::SymbolId routine,
            symbols::CallDirection direction);
  /// Where a node leads: to the calling line, the declaration for the root. Nothing for what is outside the code.
  std::optional<project::TextStretch> PlaceOf(const QModelIndex& index) const;

  /// The routine of a node; kNone for what is none.
  symbols::SymbolId RoutineOf(const QModelIndex& index) const {
    return index.isValid() ? At(index).routine : symbols::kNone;
  }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  bool hasChildren(const QModelIndex& parent = {}) const override;
  bool canFetchMore(const QModelIndex& parent) const override;
  void fetchMore(const QModelIndex& parent) override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  enum class Kind { kRoot, kCall, kLine, kHost, kPossible };
  struct Node {
    Kind kind = Kind::kRoot;
    int parent = -1;
    int row = 0;
    symbols::SymbolId routine = symbols::kNone;
    symbols::Certainty certainty = symbols::Certainty::kSure;
    /// The calling lines, which are in `module`; of a line that one.
    std::vector<std::uint32_t> lines;
    symbols::Index module = symbols::kNone;
    std::string host;
    bool isCycle = false;
    bool isFetched = false;
    /// No further calls: a root when callers are asked for.
    bool isEnd = false;
    std::vector<int> children;
  };

  const Node& At(const QModelIndex& index) const { return nodes_[index.internalId()]; }
  QModelIndex IndexOf(int node) const;
  int Add(Node node);
  void AddCall(int parent, symbols::SymbolId caller, const symbols::CallEdge& edge);
  bool StandsAbove(int node, symbols::SymbolId routine) const;
  QString Name(const Node& node) const;
  QString Certainty(const Node& node) const;

  std::shared_ptr<const project::Understanding> known_;
  symbols::CallDirection direction_ = symbols::CallDirection::kCallers;
  std::vector<Node> nodes_;
};

}  // namespace quillmate::ui
