#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillmate::output {

/// Rows that a sheet of an .xlsx file holds, its head included.
inline constexpr std::size_t kMostSheetRows = 1048576;

/// Tables as the sheets of one .xlsx file. Each sheet has a head in bold, which stays in sight and bears a filter, and
/// columns as wide as what is in them. Rows are written as they come and not kept, so that memory does not grow
/// with them; what a sheet does not hold goes on in the next one, "Dateien (2)", under the same head.
///
///     Spreadsheet book;
///     book.AddSheet("Dateien", {"Datei", "Zeilen"});
///     book.Text("a.xlsm").Number(12).EndRow();
///     book.Write(target);
///
/// All texts are UTF-8. Text stays text: "=1+1" is no formula, "www.x" no link, "00123" no number. What a cell can't
/// hold is replaced (control characters by their pictures, bytes that are no UTF-8 by U+FFFD) or cut at 32,767
/// characters, with an ellipsis at the end.
class Spreadsheet {
 public:
  /// `rowsPerSheet` counts the head; more than kMostSheetRows counts as that.
  explicit Spreadsheet(std::size_t rowsPerSheet = kMostSheetRows);
  ~Spreadsheet();
  Spreadsheet(const Spreadsheet&) = delete;
  Spreadsheet& operator=(const Spreadsheet&) = delete;

  /// Begins the next sheet. A name that a sheet can't have (length, characters, taken already) is made into one.
  void AddSheet(std::string_view name, std::vector<std::string> heads);
  /// The next cell of the row.
  Spreadsheet& Text(std::string_view utf8);
  Spreadsheet& Number(std::int64_t value);
  Spreadsheet& Empty();
  void EndRow();

  /// Puts the file in place, through the one way to write (files/replacement.h). Throws files::Failure of the target,
  /// which is what it was then. Ends the book: nothing may be added after it. Where `cancelled`, which may be null, is
  /// true when the file is made, it is not put in place.
  void Write(const std::filesystem::path& target, const std::atomic<bool>* cancelled = nullptr);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace quillmate::output
