#include <quillmate/export/csv.h>

namespace quillmate::output {
namespace {

constexpr std::string_view kBeginsFormula = "=+-@\t\r";
/// Spreadsheets that are set up otherwise part cells at commas and tabs.
constexpr std::string_view kNeedsQuotes = ";,\t\"\r\n";

}  // namespace

void CsvRow::NextCell() {
  if (!first_) csv_ += ';';
  first_ = false;
}

CsvRow& CsvRow::Text(std::string_view utf8) {
  NextCell();
  const bool isFormula = !utf8.empty() && kBeginsFormula.find(utf8[0]) != std::string_view::npos;
  const bool quoted = utf8.find_first_of(kNeedsQuotes) != std::string_view::npos;
  if (quoted) csv_ += '"';
  if (isFormula) csv_ += '\'';
  for (const char c : utf8) {
    if (c == '"') csv_ += '"';
    csv_ += c;
  }
  if (quoted) csv_ += '"';
  return *this;
}

CsvRow& CsvRow::Number(std::int64_t value) {
  NextCell();
  csv_ += std::to_string(value);
  return *this;
}

}  // namespace quillmate::output
