#include <clocale>
#include <map>
#include <string>

#include <gtest/gtest.h>
#include <zip.h>

#include <quillmate/export/spreadsheet.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "files/scratch.h"

namespace quillmate::output {
namespace {

/// The parts of a packed document by their names.
std::map<std::string, std::string> PartsOf(const std::filesystem::path& file) {
  std::map<std::string, std::string> parts;
  zip_t* const archive = zip_open(files::PathText(file).c_str(), ZIP_RDONLY, nullptr);
  if (archive == nullptr) return parts;
  for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
    zip_stat_t info{};
    zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &info);
    std::string bytes(info.size, '\0');
    zip_file_t* const part = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0);
    zip_fread(part, bytes.data(), bytes.size());
    zip_fclose(part);
    parts[info.name] = bytes;
  }
  zip_discard(archive);
  return parts;
}

bool Holds(const std::string& text, std::string_view piece) { return text.find(piece) != std::string::npos; }

TEST(Spreadsheet, KeepsTextsAndNumbersAsTheyAre) {
  const files::ScratchFolder scratch;
  const std::string longText(40000, 'x');
  const struct {
    std::string text, cell;
  } cases[] = {
      {"=1+1", "<t>=1+1</t>"},
      {"http://x.example/", "<t>http://x.example/</t>"},
      {"00123", "<t>00123</t>"},
      {"a<b>&c", "<t>a&lt;b&gt;&amp;c</t>"},
      {"Größe \U0001F600", "<t>Größe \U0001F600</t>"},
      {"a\r\nb\rc", "<t>a\nb\nc</t>"},
      {std::string("a\0b\x1B", 4), "<t>a␀b␛</t>"},
      {"\xFF_x0041_", "<t>\uFFFD_x005F_x0041_</t>"},
      {" Rand ", "<t xml:space=\"preserve\"> Rand </t>"},
      {longText, "<t>" + longText.substr(0, 32766) + "…</t>"},
  };
  Spreadsheet book;
  book.AddSheet("Blatt", {"Text", "Zahl"});
  for (const auto& row : cases) book.Text(row.text).Number(1234567890123).EndRow();
  book.Empty().Number(std::int64_t{1} << 60U).EndRow();
  // A system in German must not write its own decimal sign into the file.
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  book.Write(scratch / "Mappe ä.xlsx");
  std::setlocale(LC_NUMERIC, before.c_str());
  auto parts = PartsOf(scratch / "Mappe ä.xlsx");
  const std::string& sheet = parts["xl/worksheets/sheet1.xml"];
  for (const auto& row : cases) EXPECT_TRUE(Holds(sheet, row.cell)) << row.cell.substr(0, 100);
  EXPECT_TRUE(Holds(sheet, "<v>1234567890123</v>"));
  EXPECT_TRUE(Holds(sheet, "<t>1152921504606846976</t>"));
  EXPECT_TRUE(Holds(sheet, "state=\"frozen\""));
  EXPECT_TRUE(Holds(sheet, "<autoFilter ref=\"A1:B12\"/>"));
  EXPECT_TRUE(Holds(sheet, "left=\"0.7\""));
  EXPECT_FALSE(Holds(sheet, "<f>"));
}

TEST(Spreadsheet, GoesOnInFurtherSheets) {
  const files::ScratchFolder scratch;
  Spreadsheet book(4);
  const std::string name(40, 'n');
  for (const std::string& sheet : {std::string("Dateien"), std::string("dateien"), "a/b[" + name, std::string("''")}) {
    book.AddSheet(sheet, {"Kopf"});
    for (int row = 1; row <= (sheet == "Dateien" ? 7 : 3); ++row) book.Number(row).EndRow();
  }
  book.Write(scratch / "a.xlsx");
  auto parts = PartsOf(scratch / "a.xlsx");
  std::string names;
  const std::string& listed = parts["xl/workbook.xml"];
  for (std::size_t at = 0; (at = listed.find("<sheet name=\"", at)) != std::string::npos; ++at) {
    names += listed.substr(at + 13, listed.find('"', at + 13) - at - 13) + "|";
  }
  EXPECT_EQ(names, "Dateien|Dateien (2)|Dateien (3)|dateien (4)|a b " + name.substr(0, 27) + "|Tabelle|");
  const std::string& last = parts["xl/worksheets/sheet3.xml"];
  EXPECT_TRUE(Holds(last, "<t>Kopf</t>") && Holds(last, "<v>7</v>") && !Holds(last, "<v>6</v>"));
}

TEST(Spreadsheet, LeavesTheTargetAloneWhenItFails) {
  const files::ScratchFolder scratch;
  Spreadsheet empty;
  empty.Write(scratch / "leer.xlsx");
  EXPECT_EQ(PartsOf(scratch / "leer.xlsx").count("xl/worksheets/sheet1.xml"), 1U);
  Spreadsheet book;
  book.AddSheet("A", {"B"});
  const auto target = scratch / "gibt es nicht/a.xlsx";
  const std::string problem = files::MessageOf([&] { book.Write(target); });
  EXPECT_TRUE(problem.starts_with(files::PathText(target) + " kann nicht geschrieben werden")) << problem;
  EXPECT_EQ(files::Names(scratch.Path()), "leer.xlsx");
}

}  // namespace
}  // namespace quillmate::output
