#include <gtest/gtest.h>

#include <quillmate/export/table.h>

namespace quillmate::output {
namespace {

TEST(Table, IsTheSameInEveryForm) {
  const Table table = {"Liste", {"Modul", "Zeile"}, [](TableSink& sink) {
                         sink.Text("a;b").Number(3).EndRow();
                         sink.Text("\"c\"").Number(-4).EndRow();
                       }};
  EXPECT_EQ(TableCsv(table), "\xEF\xBB\xBFModul;Zeile\r\n\"a;b\";3\r\n\"\"\"c\"\"\";-4\r\n");
  EXPECT_EQ(TableText(table), "a;b\t3\n\"c\"\t-4\n");
}

}  // namespace
}  // namespace quillmate::output
