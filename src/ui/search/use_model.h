#pragma once

#include <QAbstractItemModel>
#include <memory>
#include <optional>
#include <vector>

#include <quillmate/project/understanding.h>

namespace quillmate::ui {

/// Uses of a name as a tree of modules, routines and lines. A use costs some 50 bytes; texts are made when a row is
/// painted.
class UseModel : public QAbstractItemModel {
 public:
  enum Column { kPlace, kText, kUse, kCertainty, kColumns };

  using QAbstractItemModel::QAbstractItemModel;

  /// `uses` by module, then place.
  void SetUses(std::shared_ptr<const project::Understanding> known, std::vector<symbols::Reference> uses);
  /// Leaves only the uses of one kind, or all of them.
  void SetFilter(std::optional<symbols::Use> kind);

  /// Those that the filter leaves.
  std::size_t Count() const noexcept { return shown_.size(); }
  const std::vector<symbols::Reference>& Uses() const noexcept { return uses_; }
  const symbols::Reference& Shown(std::size_t position) const { return uses_[shown_[position]]; }
  const std::shared_ptr<const project::Understanding>& Known() const noexcept { return known_; }
  /// The position of a node's use: of a module or a routine the first one; nothing for no node.
  std::optional<std::size_t> PositionOf(const QModelIndex& index) const;
  QModelIndex IndexOf(std::size_t position) const;
  bool IsUse(const QModelIndex& index) const { return index.isValid() && LevelOf(index) == Level::kUse; }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  enum class Level : quintptr { kModule, kRoutine, kUse };
  /// Children from `first` up to the next group's.
  struct Group {
    std::size_t first = 0;
    std::size_t parent = 0;
    std::size_t firstUse = 0;
  };

  static Level LevelOf(const QModelIndex& index) { return static_cast<Level>(index.internalId() & 3); }
  static std::size_t NumberOf(const QModelIndex& index) { return index.internalId() >> 2; }
  QModelIndex Make(Level level, std::size_t number, std::size_t row, int column) const;
  void Regroup();
  QVariant Text(const QModelIndex& index) const;

  std::shared_ptr<const project::Understanding> known_;
  std::vector<symbols::Reference> uses_;
  /// Positions in `uses_`.
  std::vector<std::uint32_t> shown_;
  std::optional<symbols::Use> kind_;
  /// One more than there are, for the end of the last one.
  std::vector<Group> modules_;
  std::vector<Group> routines_;
};

}  // namespace quillmate::ui
