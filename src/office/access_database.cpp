#include <algorithm>
#include <tuple>
#include <utility>

#include <quillmate/text/operations.h>

#include "access_database_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

constexpr std::uint32_t kObjectsPage = 2;
constexpr std::int64_t kPageBits = 0xFFFFFF;
constexpr std::string_view kStorageRoot = "MSysAccessStorage_ROOT";
constexpr std::int64_t kFolderType = 1;

}  // namespace

// The tree -----------------------------------------------------------------------------------------------------------

std::unique_ptr<AccessStorage> AccessStorage::Open(AccessPages& pages, std::uint32_t definitionPage) {
  std::optional<AccessTable> table = AccessTable::Open(pages, definitionPage);
  if (!table.has_value()) return nullptr;
  std::unique_ptr<AccessStorage> storage(new AccessStorage(*std::move(table), pages.Size()));
  return storage->ReadTree() ? std::move(storage) : nullptr;
}

bool AccessStorage::ReadTree() {
  const std::size_t id = table_.Column("Id");
  const std::size_t name = table_.Column("Name");
  const std::size_t parent = table_.Column("ParentId");
  const std::size_t type = table_.Column("Type");
  table_.Visit([&](const AccessRow& row) {
    Node node{row.Number(id), row.Number(parent), row.Text(name), {}, row.Number(type) == kFolderType, row.Pointer()};
    node.key = UpperCaseName(node.name);
    nodes_.push_back(std::move(node));
    return true;
  });
  const auto root = std::find_if(nodes_.begin(), nodes_.end(), [](const Node& node) {
    return node.isStorage && text::EqualsIgnoreCase(node.name, kStorageRoot);
  });
  if (root == nodes_.end()) return false;
  std::iter_swap(nodes_.begin(), root);
  for (Id node = 0; node < nodes_.size(); ++node) sorted_.push_back(node);
  std::sort(sorted_.begin(), sorted_.end(), [this](Id a, Id b) {
    return std::tie(nodes_[a].parent, nodes_[a].key, a) < std::tie(nodes_[b].parent, nodes_[b].key, b);
  });
  return true;
}

std::vector<Storage::Item> AccessStorage::List(Id storage) const {
  const std::int64_t parent = nodes_[storage].id;
  auto at = std::lower_bound(sorted_.begin(), sorted_.end(), parent,
                             [this](Id node, std::int64_t wanted) { return nodes_[node].parent < wanted; });
  std::vector<Item> items;
  for (; at != sorted_.end() && nodes_[*at].parent == parent; ++at) {
    // A storage that is its own parent would be found in itself for ever.
    if (*at != storage) items.push_back({*at, nodes_[*at].name, nodes_[*at].isStorage});
  }
  return items;
}

std::optional<Storage::Id> AccessStorage::Find(Id storage, std::string_view name, bool isStorage) const {
  const std::string key = UpperCaseName(name);
  const std::int64_t parent = nodes_[storage].id;
  auto at = std::lower_bound(sorted_.begin(), sorted_.end(), key, [&](Id node, const std::string& wanted) {
    return std::tie(nodes_[node].parent, nodes_[node].key) < std::tie(parent, wanted);
  });
  for (; at != sorted_.end() && nodes_[*at].parent == parent && nodes_[*at].key == key; ++at) {
    if (nodes_[*at].isStorage == isStorage) return *at;
  }
  return std::nullopt;
}

std::optional<Storage::Id> AccessStorage::FindStorage(Id storage, std::string_view name) const {
  return Find(storage, name, true);
}

std::optional<Storage::Id> AccessStorage::FindStream(Id storage, std::string_view name) const {
  return Find(storage, name, false);
}

Storage::Stream AccessStorage::ReadStream(Id stream, std::uint64_t limit) const {
  const std::optional<AccessRow> row = table_.At(nodes_[stream].row);
  if (!row.has_value()) return {};
  AccessRow::Value value = row->Bytes(table_.Column("Lv"), limit);
  return {std::move(value.bytes), value.complete};
}

// The database -------------------------------------------------------------------------------------------------------

void AccessDatabase::ReadObjects() {
  if (Opened() != AccessPages::State::kOpen) return;
  std::optional<AccessTable> table = AccessTable::Open(pages_, kObjectsPage);
  if (!table.has_value()) return;
  const std::size_t id = table->Column("Id");
  const std::size_t type = table->Column("Type");
  const std::size_t name = table->Column("Name");
  const std::size_t connect = table->Column("Connect");
  const std::size_t database = table->Column("Database");
  const std::size_t foreignName = table->Column("ForeignName");
  table->Visit([&](const AccessRow& row) {
    AccessObject object{row.Number(id), static_cast<int>(row.Number(type)), row.Text(name), {}, {}, {}};
    if (object.type == AccessObject::kLinkedByDriver || object.type == AccessObject::kLinkedTable) {
      object.connect = row.Text(connect);
      object.database = row.Text(database);
      object.foreignName = row.Text(foreignName);
    }
    objects_.push_back(std::move(object));
    return true;
  });
  whole_ = !objects_.empty() && objects_.size() >= table->RowCount();
}

std::optional<std::uint32_t> AccessDatabase::DefinitionOf(std::string_view name) const {
  const auto found = std::find_if(objects_.begin(), objects_.end(), [&](const AccessObject& object) {
    return object.type == AccessObject::kTable && text::EqualsIgnoreCase(object.name, name);
  });
  return found == objects_.end() ? std::nullopt : std::optional(static_cast<std::uint32_t>(found->id & kPageBits));
}

std::optional<AccessTable> AccessDatabase::Table(std::string_view name) {
  const std::optional<std::uint32_t> page = DefinitionOf(name);
  return page.has_value() ? AccessTable::Open(pages_, *page) : std::nullopt;
}

std::unique_ptr<AccessStorage> AccessDatabase::OpenStorage() {
  const std::optional<std::uint32_t> page = DefinitionOf("MSysAccessStorage");
  return page.has_value() ? AccessStorage::Open(pages_, *page) : nullptr;
}

std::string AccessDatabase::JoinedObjects(std::uint64_t limit) {
  std::optional<AccessTable> table = Table("MSysAccessObjects");
  if (!table.has_value()) return {};
  struct Piece {
    std::int64_t number;
    std::string bytes;
  };
  std::vector<Piece> pieces;
  std::size_t size = 0;
  const std::size_t id = table->Column("ID");
  const std::size_t data = table->Column("Data");
  table->Visit([&](const AccessRow& row) {
    Piece piece{row.Number(id), row.Bytes(data, limit).bytes};
    size = std::max(size, piece.bytes.size());
    if (piece.number >= 1) pieces.push_back(std::move(piece));
    return true;
  });
  std::string joined;
  for (const Piece& piece : pieces) {
    const std::uint64_t at = (static_cast<std::uint64_t>(piece.number) - 1) * size;
    if (at + piece.bytes.size() > std::min(limit, 2 * pages_.Size())) continue;
    if (joined.size() < at + piece.bytes.size()) joined.resize(at + piece.bytes.size(), '\0');
    joined.replace(at, piece.bytes.size(), piece.bytes);
  }
  return joined;
}

}  // namespace quillmate::office
