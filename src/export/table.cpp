#include <optional>

#include <quillmate/export/csv.h>
#include <quillmate/export/table.h>

namespace quillmate::output {
namespace {

class CsvSink : public TableSink {
 public:
  explicit CsvSink(std::string& csv) : csv_(csv) { row_.emplace(csv_); }
  TableSink& Text(std::string_view utf8) override {
    row_->Text(utf8);
    return *this;
  }
  TableSink& Number(std::int64_t value) override {
    row_->Number(value);
    return *this;
  }
  void EndRow() override {
    row_->End();
    row_.emplace(csv_);
  }

 private:
  std::string& csv_;
  std::optional<CsvRow> row_;
};

class TextSink : public TableSink {
 public:
  explicit TextSink(std::string& text) : text_(text) {}
  TableSink& Text(std::string_view utf8) override {
    if (!first_) text_ += '\t';
    first_ = false;
    text_ += utf8;
    return *this;
  }
  TableSink& Number(std::int64_t value) override { return Text(std::to_string(value)); }
  void EndRow() override {
    text_ += '\n';
    first_ = true;
  }

 private:
  std::string& text_;
  bool first_ = true;
};

class SheetSink : public TableSink {
 public:
  explicit SheetSink(Spreadsheet& book) : book_(book) {}
  TableSink& Text(std::string_view utf8) override {
    book_.Text(utf8);
    return *this;
  }
  TableSink& Number(std::int64_t value) override {
    book_.Number(value);
    return *this;
  }
  void EndRow() override { book_.EndRow(); }

 private:
  Spreadsheet& book_;
};

}  // namespace

std::string TableCsv(const Table& table) {
  std::string csv(kCsvStart);
  CsvSink sink(csv);
  for (const std::string& head : table.heads) sink.Text(head);
  sink.EndRow();
  table.rows(sink);
  return csv;
}

std::string TableText(const Table& table) {
  std::string text;
  TextSink sink(text);
  table.rows(sink);
  return text;
}

void AddTable(Spreadsheet& book, const Table& table) {
  book.AddSheet(table.name, table.heads);
  SheetSink sink(book);
  table.rows(sink);
}

}  // namespace quillmate::output
