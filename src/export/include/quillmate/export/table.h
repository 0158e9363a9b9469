#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/export/spreadsheet.h>

/// A list for other programs, in every form that they take it. All texts are UTF-8.
namespace quillmate::output {

/// Takes the cells of a table, row by row.
class TableSink {
 public:
  virtual ~TableSink() = default;
  virtual TableSink& Text(std::string_view utf8) = 0;
  virtual TableSink& Number(std::int64_t value) = 0;
  virtual void EndRow() = 0;
};

struct Table {
  /// Of its sheet.
  std::string name;
  std::vector<std::string> heads;
  /// Hands all rows over; may be asked more than once.
  std::function<void(TableSink& sink)> rows;
};

/// As in csv.h, after a row of heads.
std::string TableCsv(const Table& table);
/// A line for each row, tabs between the cells, LF, without the heads.
std::string TableText(const Table& table);
/// As the book's next sheet.
void AddTable(Spreadsheet& book, const Table& table);

}  // namespace quillmate::output
