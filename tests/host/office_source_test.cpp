#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/files/paths.h>
#include <quillmate/host/collect_facts.h>
#include <quillmate/host/document_host.h>
#include <quillmate/host/host_tree.h>

#include "codedb/scratch.h"
#include "host/listing.h"
#include "office/document_writer.h"
#include "office/vba_writer.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;
using namespace office;
using namespace std::string_view_literals;

WrittenProject Project(const std::string& name, const std::string& module) {
  WrittenProject project;
  project.name = name;
  project.modules = {{"Document", "Tabelle1", DocumentModule("Tabelle1", "Sub T()\r\nx\r\nEnd Sub\r\n")},
                     {"Module", module, StandardModule(module, "Sub M()\r\nx\r\ny\r\nEnd Sub\r\n")}};
  return project;
}

std::string Zipped(const std::string& entry, const WrittenProject& project) {
  return ZipOf({{"[Content_Types].xml", ""}, {entry, project.Bin()}});
}

TEST(OfficeSource, OneAndManyByTheirContent) {
  const files::ScratchFolder temp;
  WrittenProject locked = Project("Zu", "M");
  locked.locked = true;
  WrittenProject torn = Project("Riss", "M");
  torn.modules.push_back({"Class", "Weg", ""});
  WrittenProject nameless = Project("", "M");
  DocumentHost host;
  host.SetSources({temp.Write("Kasse.xlsm", Zipped("xl/vbaProject.bin", Project("Kass\344", "Pr\374fung"))),
                   temp.Write("Brief.bas", Zipped("word/vbaProject.bin", nameless)), temp.Write("zu.bin", locked.Bin()),
                   temp.Write("Riss", torn.Bin()), temp.Write("leer.xlsm", ""), temp.Write("falsch.docm", "abc"),
                   temp.Write("text.bas", "1\n2\n3")});
  EXPECT_EQ(
      Listed(host, temp.Path()),
      (Lines{"Kass\344 [Kasse.xlsm]", "  Tabelle1 100 3", "  Pr\374fung 1 4", "Brief [Brief.bas]", "  Tabelle1 100 3",
             "  M 1 4", "Zu [zu.bin] locked", "Riss [Riss]", "  Tabelle1 100 3", "  M 1 4", "  Weg 2 0",
             "text [text.bas]", "  text 1 3 text.bas", "Riss: Modul Weg: Quelltext kann nicht entpackt werden",
             "leer.xlsm: Datei ist leer", "falsch.docm: Datei ist keine Office-Datei"}));
  HostTree tree;
  EXPECT_TRUE(ListHostProjects(host, false, tree).attached);
  EXPECT_EQ(tree.lockedProjects, 1);
  ASSERT_EQ(tree.projects.size(), 4U);
  EXPECT_EQ(tree.projects[0].text, "Kass\344 [Kasse.xlsm]");
  EXPECT_EQ(tree.projects[0].modules[1].image + tree.projects[0].modules[1].file, "M2");
}

TEST(OfficeSource, LongPathsAndNamesInAllScripts) {
  const files::ScratchFolder temp;
  const std::string folder(150, 'o');
  const std::string file = folder + "/Übung_日本_" + std::string(90, 'x') + ".xlsm";
  const std::string module = folder + "/Ω_" + std::string(120, 'x') + ".bas";
  temp.Write(file, Zipped("xl/vbaProject.bin", Project("Weit", "M")));
  temp.Write(module, "Attribute VB_Name = \"N\"\r\n1\r\n2\r\n3\r\n");
  DocumentHost host;
  const std::string office = "Weit [" + file + "]";
  host.SetSources({temp / folder, temp / file});
  EXPECT_EQ(Listed(host, temp.Path()),
            (Lines{folder + " [" + folder + "]", "  N 1 3 " + module, office, "  Tabelle1 100 3", "  M 1 4"}));
  EXPECT_EQ(host.Lines(1, "N", 1, 9), "1\r\n2\r\n3");
  EXPECT_EQ(host.Lines(2, "M", 2, 1), "Sub M()");
  host.SetSources({temp / file});
  EXPECT_EQ(Listed(host, temp.Path()), (Lines{office, "  Tabelle1 100 3", "  M 1 4"}));
}

TEST(OfficeSource, FoldersListTheFilesWithMacros) {
  const files::ScratchFolder temp("Ablage");
  temp.Write("m.bas", "1");
  temp.Write("B.XLSM", Zipped("xl/vbaProject.bin", Project("B", "M")));
  temp.Write("a/c.doc", Project("C", "M").Bin());
  temp.Write("a/vbaProject.bin", Project("D", "M").Bin());
  temp.Write("~$B.XLSM", "user");
  temp.Write("brief.doc", "{\\rtf1}");
  temp.Write("Quillmate.mdb", "SQLite format 3");
  temp.Write("ohne.xlsb", ZipOf({{"[Content_Types].xml", ""}}));
  temp.Write("archiv.zip", Zipped("xl/vbaProject.bin", Project("E", "M")));
  temp.Write("kaputt.pptm", "x");
  temp.Write("lager.accdb", "\0\1\0\0Standard ACE DB\0"sv);
  fs::create_directories(temp / "z");
  const fs::path alone = temp.Write("nur/ohne.xls", CompoundWriter{{{"Workbook", "x"}}}.File()).parent_path();
  DocumentHost host;
  host.SetSources({temp.Path(), alone});
  EXPECT_EQ(Listed(host, temp.Path()),
            (Lines{"Ablage [.]", "  m 1 1 m.bas", "B [B.XLSM]", "  Tabelle1 100 3", "  M 1 4", "C [a/c.doc]",
                   "  Tabelle1 100 3", "  M 1 4", "D [a/vbaProject.bin]", "  Tabelle1 100 3", "  M 1 4",
                   "kaputt.pptm: Datei ist keine Office-Datei",
                   "lager.accdb: Datei ist beschädigt: das Verzeichnis der Datenbank ist nicht lesbar",
                   "nur: Ordner enthält keine Module"}));
}

/// What a document says reaches the facts; Excel 4 sheets are told, or read.
TEST(OfficeSource, DocumentsTellWhoStartsTheirMacros) {
  const files::ScratchFolder temp;
  WrittenProject project = Project("P", "M");
  project.modules[0].text =
      DocumentModule("Tabelle1", "Attribute VB_Control = \"cmd, 1, 0, MSForms, CommandButton\"\r\nSub cmd_Click()\r\n");
  office::PackageWriter book;
  book.Add("xl/vbaProject.bin", project.Bin())
      .Add("xl/workbook.xml",
           "<workbook><sheets><sheet name='Kunden' r:id='rId1'/><sheet name='Alt' r:id='rId2'/></sheets></workbook>")
      .Add("xl/worksheets/sheet1.xml", "<worksheet><sheetPr codeName='TABELLE1'/></worksheet>")
      .Add("xl/macrosheets/sheet1.xml",
           "<m><sheetData><c r='A1'><f>HALT()</f></c><c r='A2'><f>X()</f></c></sheetData></m>")
      .Add("xl/drawings/d.xml",
           "<d><sp macro='[0]!M.Start'><cNvPr name='Los'/></sp><sp macro='[1]!Fremd'><cNvPr name='F'/></sp></d>")
      .Relate("", "officeDocument", "xl/workbook.xml")
      .Relate("xl/workbook.xml", "worksheet", "worksheets/sheet1.xml")
      .Relate("xl/workbook.xml", "xlMacrosheet", "macrosheets/sheet1.xml")
      .Relate("xl/worksheets/sheet1.xml", "drawing", "../drawings/d.xml");
  DocumentHost host;
  host.SetSources({temp.Write("a.bas", "Sub A()\r\nEnd Sub"), temp.Write("b.xlsm", book.File())});
  for (const bool excel4 : {false, true}) {
    host.SetExcel4(excel4);
    std::vector<std::string> problems;
    const codedb::Facts facts = CollectFacts(host, host.ProjectCount(), problems);
    EXPECT_EQ(problems, Lines{});
    std::string told;
    for (const SourceProblem& problem : host.Problems()) told += problem.Text();
    EXPECT_EQ(told, excel4 ? "" : "Datei enthält Excel-4-Makros: Alt (2 Formeln)");
    ASSERT_EQ(facts.modules.size(), excel4 ? 4U : 3U);
    EXPECT_EQ(facts.modules[1].outsideName + " " + facts.modules[1].controls.at(0).name, "Kunden cmd");
    EXPECT_TRUE(facts.modules[1].controlsKnown);
    EXPECT_EQ(facts.modules.back().code, excel4 ? "A1: =HALT()\r\nA2: =X()" : "Sub M()\r\nx\r\ny\r\nEnd Sub");
    ASSERT_EQ(facts.bindings.size(), 1U);
    EXPECT_EQ(std::to_string(facts.bindings[0].project) + facts.bindings[0].text + facts.bindings[0].place,
              "1[0]!M.StartForm 'Los' auf Blatt Kunden");
  }
}

TEST(OfficeSource, UnpacksAFileOnceForTheListingAndTheRead) {
  const codedb::ScratchFolder temp;
  const std::string bytes = Zipped("xl/vbaProject.bin", Project("P", "M"));
  const fs::path file = temp.Write("a.xlsm", bytes);
  // Long enough ago for another change to show.
  const auto then = fs::file_time_type::clock::now() - std::chrono::hours(1);
  fs::last_write_time(file, then);
  DocumentHost host;
  host.SetSources({file});
  ASSERT_EQ(host.ProjectCount(), 1);
  host.Release();
  temp.Write("a.xlsm", std::string(bytes.size(), 'x'));
  fs::last_write_time(file, then);
  ASSERT_TRUE(host.AttachHost());
  EXPECT_EQ(host.Lines(1, "M", 2, 1), "Sub M()");
  EXPECT_EQ(host.Lines(1, "Tabelle1", 1, 1), "Sub T()");
  // What was kept for the read is gone with it.
  host.Release();
  EXPECT_EQ(Reason(host, "M", 2), files::PathText(file) + ": Datei ist keine Office-Datei");
}

TEST(OfficeSource, ReadsTheFileOnceAndAsItIsThen) {
  const files::ScratchFolder temp;
  const fs::path file = temp.Write("a.xlsm", Zipped("xl/vbaProject.bin", Project("P", "M")));
  DocumentHost host;
  host.SetSources({file});
  ASSERT_EQ(host.ProjectCount(), 1);

  // A sheet was added before the module since: the module is the one of that name.
  WrittenProject changed = Project("P", "Anderes");
  changed.modules.push_back({"Class", "M", StandardModule("M", "1\r\n2\r\n3\r\n4\r\n5\r\n")});
  temp.Write("a.xlsm", Zipped("xl/vbaProject.bin", changed));
  ASSERT_TRUE(host.AttachHost());
  EXPECT_EQ(host.ComponentByName(1, "M", 2).lineCount, 5);
  EXPECT_EQ(host.Lines(1, "M", 2, 2), "1\r\n2");
  // Until the end of the read all modules come from the same state of the file.
  fs::remove(file);
  EXPECT_EQ(host.Lines(1, "Tabelle1", 1, 99), "Sub T()\r\nx\r\nEnd Sub");
  EXPECT_EQ(host.Lines(1, "M", 2, 5), "1\r\n2\r\n3\r\n4\r\n5");
  host.Release();
  EXPECT_EQ(Reason(host, "M", 2), files::PathText(file) + ": Datei existiert nicht");

  changed.modules.pop_back();
  temp.Write("a.xlsm", Zipped("xl/vbaProject.bin", changed));
  EXPECT_EQ(Reason(host, "M", 2), files::PathText(file) + ": Modul ist nicht mehr in der Datei");
  host.Release();
  changed.locked = true;
  temp.Write("a.xlsm", changed.Bin());
  EXPECT_EQ(Reason(host, "Tabelle1", 1), files::PathText(file) + ": Das Projekt ist gesperrt");
}

}  // namespace
}  // namespace quillmate::host
