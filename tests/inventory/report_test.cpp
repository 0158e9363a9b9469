#include <algorithm>

#include <gtest/gtest.h>

#include <quillmate/inventory/report.h>
#include <quillmate/inventory/scan.h>

#include "files/scratch.h"
#include "inventory/estate.h"
#include "inventory/own_program.h"
#include "inventory/table.h"
#include "office/document_writer.h"
#include "office/vba_writer.h"

namespace quillmate::inventory {
namespace {

namespace fs = std::filesystem;
using namespace office;

/// A workbook with one module, whose author and links are told.
std::string Workbook(const std::string& code, const std::string& link = {}) {
  WrittenProject project;
  project.modules = {{"Module", "Modul1", StandardModule("Modul1", code)}};
  PackageWriter writer;
  writer.Add("xl/vbaProject.bin", project.Bin())
      .Add("xl/workbook.xml", "<workbook/>")
      .Relate("", "officeDocument", "/xl/workbook.xml")
      .Relate("", "core-properties", "docProps/core.xml")
      .Add("docProps/core.xml", "<p><dc:creator>Ada &lt;x&gt;</dc:creator></p>");
  if (!link.empty()) {
    writer.Relate("xl/workbook.xml", "externalLink", "externalLinks/externalLink1.xml")
        .Add("xl/externalLinks/externalLink1.xml", "<externalLink/>")
        .Relate("xl/externalLinks/externalLink1.xml", "externalLinkPath", link);
  }
  return writer.File();
}

class Report : public testing::Test {
 protected:
  Report() {
    const std::string shell = "Sub A()\r\n  Shell \"cmd\"\r\nEnd Sub\r\n";
    scratch.Write("r/start.xlsm",
                  Workbook("Sub Auto_Open()\r\n  x = CreateObject(\"ADODB.Connection\")\r\nEnd Sub\r\n"));
    scratch.Write("r/api.xlsm",
                  Workbook("Declare Function F Lib \"user32\" () As Long\r\nSub A()\r\n  F\r\nEnd Sub\r\n"));
    scratch.Write("r/eins.xlsm", Workbook(shell, "file:///Z:/da/API.XLSM"));
    scratch.Write("r/zwei.xlsm", Workbook(shell, "file:///Z:/weg/fort.xlsx"));
    scratch.Write("r/k/zwei.xlsm", Workbook(shell, "file:///Z:/weg/fort.xlsx"));
    scratch.Write("r/leer.xlsm", "");
    scratch.Write("r/=1+1.txt", "x");
    Run();
  }
  void Run() {
    ScanOptions options;
    options.roots = {scratch / "r"};
    options.jobs = 1;
    options.readerCommand = OwnReader();
    Scan(scratch / "b", options);
  }
  std::string Names(Inventory& inventory, FileFilter filter) {
    std::string names;
    for (const FileLine& line : inventory.Files(filter)) {
      const fs::path path(std::u8string(line.path.begin(), line.path.end()));
      for (const char8_t c : path.lexically_relative(scratch / "r").generic_u8string()) names += static_cast<char>(c);
      names += ' ';
    }
    EXPECT_EQ(inventory.Count(filter), std::ranges::count(names, ' '));
    return names;
  }
  const files::ScratchFolder scratch;
};

TEST_F(Report, AnswersTheQuestions) {
  Inventory inventory(scratch / "b");
  const std::pair<Question, std::string> cases[] = {
      {Question::kAll, "api.xlsm eins.xlsm k/zwei.xlsm leer.xlsm start.xlsm zwei.xlsm "},
      {Question::kMacros, "api.xlsm eins.xlsm k/zwei.xlsm start.xlsm zwei.xlsm "},
      {Question::kCopies, "k/zwei.xlsm zwei.xlsm "},
      {Question::kOnlyCopies, "eins.xlsm k/zwei.xlsm zwei.xlsm "},
      {Question::k64Bit, "api.xlsm "},
      {Question::kAutoRun, "start.xlsm "},
      {Question::kDatabase, "start.xlsm "},
      {Question::kNetwork, ""},
      {Question::kRegistry, ""},
      {Question::kPrograms, "eins.xlsm k/zwei.xlsm zwei.xlsm "},
      {Question::kDeadLinks, "k/zwei.xlsm zwei.xlsm "},
      {Question::kBroken, ""},
      {Question::kSigned, ""},
      {Question::kUnread, "leer.xlsm "},
  };
  const Overview overview = inventory.Summarize();
  for (const auto& [question, names] : cases) {
    EXPECT_EQ(Names(inventory, {.question = question}), names) << TitleOf(question);
    if (question == Question::kAll) continue;
    const Overview::Line& line = overview.questions[static_cast<std::size_t>(question) - 1];
    EXPECT_EQ(line.title, TitleOf(question));
    EXPECT_EQ(line.files, std::ranges::count(names, ' ')) << line.title;
  }
  EXPECT_EQ(Names(inventory, {.text = "ADA"}), cases[1].second);
  EXPECT_EQ(Names(inventory, {.state = State::kDamaged, .text = "le_r"}), "");
  EXPECT_EQ(Names(inventory, {.state = State::kDamaged, .text = "leer"}), "leer.xlsm ");
  EXPECT_EQ(overview.files, 6);
  EXPECT_EQ(overview.contents, 4);
  const FileLine api = inventory.Files({.text = "api.xlsm"}).at(0);
  EXPECT_EQ(inventory.PathOf(api.number), scratch / "r/api.xlsm");
  const FileDetails details = inventory.DetailsOf(api.number);
  EXPECT_EQ(details.tables.at(0).rows.at(0), (std::vector<std::string>{"Modul1", "module", "4", "4"}));
  EXPECT_EQ(details.tables.back().rows.at(0).at(1), "user32");
  EXPECT_TRUE(Inventory::IsInventory(scratch / "b"));
  EXPECT_FALSE(Inventory::IsInventory(scratch / "r/api.xlsm"));
}

TEST_F(Report, ComesInAllForms) {
  fs::remove(scratch / "r/leer.xlsm");
  scratch.Write("r/neu.bas", "Sub <x>()\r\nEnd Sub\r\n");
  Run();
  Inventory inventory(scratch / "b");
  std::string changes;
  inventory.ForEachRow(0, 1, [&](std::span<const Cell> row) {
    changes.append(row[0].text).append(" ").append(fs::path(row[1].text).filename().string()).append("\n");
  });
  EXPECT_EQ(changes, "neu neu.bas\nverschwunden leer.xlsm\n");
  for (const std::int64_t since : {0, 1}) {
    std::string page;
    WriteReportPage(inventory, since, [&](std::string_view html) { page += html; });
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>") && page.ends_with("</html>\n"));
    EXPECT_EQ(page.find("<x>"), std::string::npos);
    EXPECT_EQ(page.find("src="), std::string::npos);
    WriteReportWorkbook(inventory, since, scratch / "b.xlsx");
    EXPECT_GT(fs::file_size(scratch / "b.xlsx"), 2000U);
    for (std::size_t table = 0; table < Inventory::TableCount(since); ++table) {
      const ReportTable head = inventory.TableAt(table, since);
      EXPECT_EQ(head.heads.size(), head.keys.size()) << head.key;
    }
  }
  EXPECT_NE(ReportText(inventory, 0).find("Laufen nicht unter 64 Bit"), std::string::npos);
  EXPECT_NE(ReportText(inventory, 1).find("verschwunden"), std::string::npos);
}

}  // namespace
}  // namespace quillmate::inventory
