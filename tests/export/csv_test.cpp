#include <gtest/gtest.h>

#include <quillmate/export/csv.h>

namespace quillmate::output {
namespace {

TEST(Csv, TextStaysText) {
  const struct {
    const char* text;
    const char* cell;
  } cases[] = {
      {"", ""},
      {"Zähler-1", "Zähler-1"},
      {"a;b", "\"a;b\""},
      {"a,=b", "\"a,=b\""},
      {"a\tb", "\"a\tb\""},
      {"say \"x\"", "\"say \"\"x\"\"\""},
      {"a\r\nb", "\"a\r\nb\""},
      {"=HYPERLINK(\"x\")", "\"'=HYPERLINK(\"\"x\"\")\""},
      {"+1", "'+1"},
      {"-1", "'-1"},
      {"@A1", "'@A1"},
      {"\t=1", "\"'\t=1\""},
      {"\r=1", "\"'\r=1\""},
  };
  for (const auto& c : cases) {
    std::string csv;
    CsvRow(csv).Text(c.text).Number(-1).Text("=").End();
    EXPECT_EQ(csv, std::string(c.cell) + ";-1;'=\r\n");
  }
}

}  // namespace
}  // namespace quillmate::output
