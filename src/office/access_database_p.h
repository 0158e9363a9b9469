#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/office/storage.h>

#include "access_pages_p.h"
#include "access_table_p.h"

namespace quillmate::office {

/// A row of MSysObjects, the list of everything in the database.
struct AccessObject {
  enum Type : int {
    kTable = 1,
    kLinkedByDriver = 4,
    kQuery = 5,
    kLinkedTable = 6,
    kForm = -32768,
    kMacro = -32766,
    kReport = -32764
  };

  std::int64_t id = 0;
  int type = 0;
  std::string name;
  /// Of linked tables: how to get at the source, its file, and the table's name there. All UTF-8.
  std::string connect;
  std::string database;
  std::string foreignName;
};

/// The table in which databases since Access 2002 keep their projects, forms and macros: a tree of storages (type 1)
/// and streams (type 2) with parents by their ids. Its root is "MSysAccessStorage_ROOT"; other trees are left over
/// work.
class AccessStorage final : public Storage {
 public:
  /// Nothing when the table holds no such root. `pages` has to outlive the result.
  static std::unique_ptr<AccessStorage> Open(AccessPages& pages, std::uint32_t definitionPage);

  std::uint64_t Size() const noexcept override { return size_; }
  std::vector<Item> List(Id storage) const override;
  std::optional<Id> FindStorage(Id storage, std::string_view name) const override;
  std::optional<Id> FindStream(Id storage, std::string_view name) const override;
  Stream ReadStream(Id stream, std::uint64_t limit) const override;

 private:
  /// The first node is the root.
  struct Node {
    std::int64_t id = 0;
    std::int64_t parent = 0;
    std::string name;
    /// The name with its letters in upper case.
    std::string key;
    bool isStorage = false;
    AccessPointer row = 0;
  };

  AccessStorage(AccessTable table, std::uint64_t size) : table_(std::move(table)), size_(size) {}
  bool ReadTree();
  std::optional<Id> Find(Id storage, std::string_view name, bool isStorage) const;

  mutable AccessTable table_;
  std::uint64_t size_;
  std::vector<Node> nodes_;
  /// All nodes by parent and key.
  std::vector<Id> sorted_;
};

class AccessDatabase {
 public:
  /// `source` has to outlive it.
  explicit AccessDatabase(ByteSource& source) : pages_(source) { ReadObjects(); }

  AccessPages::State Opened() const noexcept { return pages_.Opened(); }
  /// False when the list of objects can't be read, or not all of it.
  bool Whole() const noexcept { return whole_; }
  const std::vector<AccessObject>& Objects() const noexcept { return objects_; }

  /// A table by its name, regardless of case.
  std::optional<AccessTable> Table(std::string_view name);
  /// Nothing where the file has no such table.
  std::unique_ptr<AccessStorage> OpenStorage();
  /// The compound file in which Access 97 and 2000 keep the project, at most `limit` bytes of it; empty when there is
  /// none. Its pieces are rows of one size, numbered from 1 on; those of missing numbers are NUL bytes.
  std::string JoinedObjects(std::uint64_t limit);

 private:
  void ReadObjects();
  std::optional<std::uint32_t> DefinitionOf(std::string_view name) const;

  AccessPages pages_;
  std::vector<AccessObject> objects_;
  bool whole_ = false;
};

}  // namespace quillmate::office
