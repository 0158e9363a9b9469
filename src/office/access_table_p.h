#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "access_pages_p.h"
#include "code_page_p.h"

namespace quillmate::office {

/// Tables of an Access database, as far as the few system tables need it. Offsets: format of 97 / later.
///
///     definition (type 2)   4 next page, 8 length; rows of several pages follow one another without their first 8
///     bytes
///                           12 / 16 number of rows
///                           25 / 45 number of columns, 31 / 51 of indexes, 35 / 55 where the map of its pages is
///                           43 / 63 indexes (8 / 12 bytes each), columns (18 / 25 bytes each), names of the columns
///     row (97)              number of columns (8 bits), fixed values, variable values, their offsets (8 bits, last
///                           first), jumps of 256, number of variable columns (8 bits), a bit for each column that is
///                           set
///     row (later)           the same with 16 bits and without jumps
///     long value            length (30 bits) and kind (2 bits: within the row, one row elsewhere, a chain of rows),
///                           pointer to the row, 4 bytes
///
/// Files may be damaged or made to do harm. Bounds: every page is visited once for a table; long values together are
/// not longer than two files; kMostAccessColumns columns; a row that was moved is followed 4 times.
inline constexpr std::size_t kMostAccessColumns = 1024;

struct AccessColumn {
  /// UTF-8.
  std::string name;
  std::uint8_t type = 0;
  /// Its bit in the row.
  std::uint16_t number = 0;
  bool fixed = false;
  /// Of a fixed one: where its value is. Of a variable one: its position among those.
  std::uint16_t place = 0;
  std::uint16_t length = 0;
};

class AccessTable;

/// One row; it is there until the visit ends.
class AccessRow {
 public:
  AccessRow(AccessTable& table, std::string bytes, AccessPointer pointer);

  /// Where it is, for AccessTable::At.
  AccessPointer Pointer() const noexcept { return pointer_; }
  /// 0 where the value or the column is missing.
  std::int64_t Number(std::size_t column) const;
  /// UTF-8, also of a long text; empty where the value or the column is missing.
  std::string Text(std::size_t column) const;
  struct Value {
    std::string bytes;
    /// False when a long value breaks off.
    bool complete = true;
  };
  Value Bytes(std::size_t column, std::uint64_t limit) const;

 private:
  /// Nothing for a missing value.
  std::optional<std::string_view> Raw(std::size_t column) const;
  void FindVariableOld();
  void FindVariable();

  AccessTable& table_;
  std::string bytes_;
  AccessPointer pointer_;
  std::size_t columns_ = 0;
  std::size_t maskAt_ = 0;
  /// Where the variable values begin, and the end of the last one.
  std::vector<std::size_t> variable_;
};

class AccessTable {
 public:
  /// The table whose definition begins at `page`; nothing when there is none. `pages` has to outlive it.
  static std::optional<AccessTable> Open(AccessPages& pages, std::uint32_t page);
  AccessTable(AccessTable&&) = default;

  /// How many rows the definition counts.
  std::uint64_t RowCount() const noexcept { return rowCount_; }
  /// kNoColumn when it has none of that name.
  static constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);
  std::size_t Column(std::string_view name) const noexcept;

  /// Visits the rows page by page until `visit` says false.
  void Visit(const std::function<bool(const AccessRow&)>& visit);
  /// The row at a place where one was visited.
  std::optional<AccessRow> At(AccessPointer pointer);

 private:
  friend class AccessRow;

  explicit AccessTable(AccessPages& pages)
      : pages_(&pages), codePage_(pages.CodePage()), valueBytesLeft_(2 * pages.Size()) {}
  bool Read(std::uint32_t page);
  std::string Definition(std::uint32_t page) const;
  bool ReadColumns(std::string_view definition);
  std::vector<std::uint32_t> DataPages() const;
  std::uint64_t RowsInUse(std::uint32_t page) const;
  void AppendFromMap(std::vector<std::uint32_t>& found) const;
  /// False when `visit` has had enough.
  bool VisitPage(std::uint32_t page, const std::function<bool(const AccessRow&)>& visit);
  AccessRow::Value LongValue(std::string_view head, std::uint64_t limit);
  std::string TextFrom(std::string_view bytes) const;

  AccessPages* pages_;
  class CodePage codePage_;
  std::uint32_t page_ = 0;
  /// As the definition has it.
  std::uint64_t rowCount_ = 0;
  AccessPointer map_ = 0;
  std::vector<AccessColumn> columns_;
  bool hasVariable_ = false;
  std::uint64_t valueBytesLeft_;
};

}  // namespace quillmate::office
