#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Tables as comma-separated values, the way spreadsheets here open them: UTF-8 after a byte order mark, ";" between
/// the cells, CR LF after each row.
namespace quillmate::output {

/// What such a file begins with.
inline constexpr std::string_view kCsvStart = "\xEF\xBB\xBF";

/// Appends one row, cells in the order of the calls. The text must outlive it.
class CsvRow {
 public:
  explicit CsvRow(std::string& csv) : csv_(csv) {}

  /// A cell of any text, UTF-8. In quotes where it holds a separator, a quote or a line break. A text that a
  /// spreadsheet would take for a formula (its first character is "=", "+", "-", "@", a tab or CR) gets an apostrophe
  /// in front and so stays text: names and code come from files of strangers.
  CsvRow& Text(std::string_view utf8);
  CsvRow& Number(std::int64_t value);
  void End() { csv_ += "\r\n"; }

 private:
  void NextCell();

  std::string& csv_;
  bool first_ = true;
};

}  // namespace quillmate::output
