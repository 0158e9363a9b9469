#include <string>

#include <gtest/gtest.h>

#include <quillmate/inventory/inventory.h>
#include <quillmate/inventory/link_target.h>
#include <quillmate/inventory/merge.h>
#include <quillmate/inventory/scan.h>

#include "files/scratch.h"
#include "inventory/own_program.h"
#include "inventory/table.h"
#include "office/document_writer.h"
#include "office/signature_writer.h"
#include "office/vba_writer.h"

namespace quillmate::inventory {
namespace {

namespace fs = std::filesystem;
using namespace office;

TEST(LinkTargets, AreToldFromTheirFolder) {
  const struct {
    const char *target, *folder, *path, *name;
  } cases[] = {
      {"Liste.xlsx", "/mnt/Ablage", "/mnt/ablage/liste.xlsx", "liste.xlsx"},
      {"..\\..\\..\\A B.xlsx", "/mnt/Ablage", "/a b.xlsx", "a b.xlsx"},
      {"./x/../A%20B.xlsx", "/mnt", "/mnt/a b.xlsx", "a b.xlsx"},
      {"100%25.xlsx", "/mnt", "/mnt/100%.xlsx", "100%.xlsx"},
      {"file:///C:\\Daten\\Gr%C3%96%C3%9Fe.xlsx", "D:\\x", "c:/daten/größe.xlsx", "größe.xlsx"},
      {"FILE:///\\\\Server\\Ablage\\x.xls", "C:\\", "//server/ablage/x.xls", "x.xls"},
      {"file://server/ablage/x.xls", "C:\\", "//server/ablage/x.xls", "x.xls"},
      {"file:///mnt/x.xls", "/", "/mnt/x.xls", "x.xls"},
      {"..\\x.bas", "\\\\Server\\Ablage\\unten", "//server/ablage/x.bas", "x.bas"},
      {"x.bas", "/", "/x.bas", "x.bas"},
      {"C:", "/", "c:", "c:"},
      {"https://firma.example/x.xlsx", "/", "", ""},
      {"mailto:a@b.example", "/", "", ""},
      {"ODBC;DSN=Lager", "/", "", ""},
      {";DATABASE=\\\\srv\\db\\Lager.accdb;TABLE=x", "/", "//srv/db/lager.accdb", "lager.accdb"},
      {"", "/", "", ""},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(TargetPath(each.target, each.folder), each.path) << each.target;
    EXPECT_EQ(TargetName(each.target), each.name) << each.target;
  }
}

class Links : public testing::Test {
 protected:
  std::string Found() {
    return Ask(scratch / "b",
               "SELECT d.name, z.art, z.befund, t.name FROM zieldatei z JOIN datei d ON d.nr = z.datei LEFT JOIN datei "
               "t ON t.nr = z.ist ORDER BY d.name, z.folge");
  }
  const files::ScratchFolder scratch;
  const std::string code = "Sub A()\r\nEnd Sub\r\n";
};

TEST_F(Links, OfProjectsLeadToTheirModules) {
  scratch.Write(
      "r/p/Lager.vbp",
      "Type=Exe\r\nReference=*\\G{00020430-0000-0000-C000-000000000046}#2.0#0#C:\\Windows\\stdole2.tlb#OLE\r\n"
      "Reference=*\\G{00020431-0000-0000-C000-000000000046}#1.0#0#..\\lib\\Eigen.tlb#Eigen\r\n"
      "Reference=*\\A..\\weg\\Anderes.vbp\r\n"
      "Module=Haupt; ..\\gemeinsam\\HAUPT.bas\r\nForm=frmDa.frm\r\nClass=Fort; Fort.cls\r\n"
      "Name=\"Lager\"\r\n");
  scratch.Write("r/gemeinsam/Haupt.bas", code);
  scratch.Write("r/p/frmDa.frm",
                "VERSION 5.00\r\nBegin VB.Form frmDa\r\nEnd\r\nAttribute VB_Name = \"frmDa\"\r\n" + code);
  scratch.Write("r/anderswo/Fort.cls", code + "' anders");
  scratch.Write("r/p/leer.vbp", "kein Projekt");
  Scan(scratch / "b", Options(scratch / "r"));
  EXPECT_EQ(Found(),
            "Lager.vbp|modul|da|Haupt.bas\nLager.vbp|modul|da|frmDa.frm\nLager.vbp|modul|nicht da|-\n"
            "Lager.vbp|bibliothek|nicht da|-\nLager.vbp|verweis|nicht da|-\n");
  EXPECT_EQ(Ask(scratch / "b",
                "SELECT projekt, format, zustand, module, codezeilen FROM v_datei WHERE pfad LIKE '%Lager.vbp'"),
            "Lager|projekt|makros|0|0\n");
  EXPECT_EQ(Ask(scratch / "b", "SELECT zustand FROM v_datei WHERE pfad LIKE '%leer.vbp'"), "keine\n");
  // Each module once, with the project that names it.
  EXPECT_EQ(Ask(scratch / "b",
                "SELECT projekt, count(*), sum(module) FROM v_datei WHERE format = 'modul' GROUP BY 1 ORDER BY 1"),
            "|1|1\nLager|2|2\n");
  EXPECT_EQ(Ask(scratch / "b", "SELECT name, grund FROM v_kaputter_verweis ORDER BY name"),
            "Anderes|nicht da\nEigen|nicht da\n");
  Inventory inventory(scratch / "b");
  EXPECT_EQ(inventory.Count({.question = Question::kBroken}), 1);
  EXPECT_EQ(inventory.Count({.question = Question::kDeadLinks}), 1);
  const Overview overview = inventory.Summarize();
  for (const Question question : {Question::kBroken, Question::kDeadLinks}) {
    EXPECT_EQ(overview.questions.at(static_cast<std::size_t>(question) - 1).files, 1) << TitleOf(question);
  }
  const FileLine project = inventory.Files({.text = "Lager.vbp"}).at(0);
  const FileDetails details = inventory.DetailsOf(project.number);
  EXPECT_EQ(details.tables.at(0).rows.at(2),
            (std::vector<std::string>{"Anderes", "", "..\\weg\\Anderes.vbp", "nicht da"}));
  EXPECT_EQ(details.tables.at(1).rows.at(0), (std::vector<std::string>{"modul", "..\\gemeinsam\\HAUPT.bas", "da"}));
}

TEST_F(Links, SayOnlyWhatSomebodyHasSeen) {
  scratch.Write("r/p/a.vbp",
                "Module=A; ..\\weg\\fort.bas\r\nModule=B; ..\\aus\\a.bas\r\nModule=C; Z:\\x\\anders.bas\r\n"
                "Module=D; Z:\\x\\nirgends.bas\r\nModule=E; neu.bas\r\nModule=F; ..\\..\\oben.bas\r\n");
  scratch.Write("r/q/anders.bas", code);
  scratch.Write("r/aus/a.bas", code);
  ScanOptions options = Options(scratch / "r");
  options.exclude = {"AUS"};
  Scan(scratch / "b", options);
  const std::string start = "a.vbp|modul|nicht da|-\n", end = "a.vbp|modul|nicht im Bestand|-\n";
  EXPECT_EQ(Found(), start + end + "a.vbp|modul|gleicher Name|-\n" + end + start + end);
  // Nothing is looked for again when nothing has changed.
  Ask(scratch / "b", "UPDATE zieldatei SET befund = 'alt'");
  Scan(scratch / "b", options);
  EXPECT_EQ(Ask(scratch / "b", "SELECT DISTINCT befund FROM zieldatei"), "alt\n");
  scratch.Write("r/p/neu.bas", code);
  options.exclude = {};
  Scan(scratch / "b", options);
  EXPECT_EQ(Found(),
            start + "a.vbp|modul|da|a.bas\na.vbp|modul|gleicher Name|-\n" + end + "a.vbp|modul|da|neu.bas\n" + end);
  fs::remove(scratch / "r/p/neu.bas");
  Scan(scratch / "b", options);
  EXPECT_NE(Found().find(end + start + end), std::string::npos);

  // One part of two has not seen everything; both have.
  fs::remove(scratch / "b");
  for (unsigned shard = 1; shard <= 2; ++shard) {
    ScanOptions part = Options(scratch / "r");
    part.shard = shard;
    part.shards = 2;
    Scan(scratch / ("teil" + std::to_string(shard)), part);
    EXPECT_EQ(
        Ask(scratch / ("teil" + std::to_string(shard)), "SELECT count(*) FROM zieldatei WHERE befund = 'nicht da'"),
        "0\n");
  }
  Merge(scratch / "b", {scratch / "teil2", scratch / "teil1"});
  EXPECT_NE(Found().find(end + start + end), std::string::npos);
}

TEST_F(Links, SignersAreTold) {
  WrittenProject project;
  project.modules = {{"Module", "Modul1", StandardModule("Modul1", code)}};
  PackageWriter writer;
  writer.Add("xl/vbaProject.bin", project.Bin())
      .Add("xl/workbook.xml", "<workbook/>")
      .Relate("", "officeDocument", "/xl/workbook.xml")
      .Relate("xl/vbaProject.bin", "vbaProjectSignature", "vbaProjectSignature.bin")
      .Add("xl/vbaProjectSignature.bin", WrittenSignature{{{{"Ada", "Muster"}, {"Wurzel", ""}}}}.Blob());
  scratch.Write("r/a.xlsm", writer.File());
  scratch.Write("r/b.bas", code);
  Scan(scratch / "b", Options(scratch / "r"));
  EXPECT_EQ(Ask(scratch / "b", "SELECT unterzeichner, aussteller, gueltig_von, gueltig_bis FROM v_signatur"),
            "Ada, Muster|Wurzel|2024-01-01|2027-12-31\n");
  Inventory inventory(scratch / "b");
  EXPECT_EQ(inventory.Count({.question = Question::kSigned}), 1);
  EXPECT_EQ(inventory.Summarize().questions.at(static_cast<std::size_t>(Question::kSigned) - 1).files, 1);
}

/// The tables of the version before.
constexpr const char* kOlder =
    "DROP VIEW v_datei; DROP VIEW v_makros; DROP VIEW v_ungelesen; DROP VIEW v_modul; DROP VIEW v_routine; DROP VIEW "
    "v_befund; DROP VIEW v_64bit; DROP VIEW v_selbststart; DROP VIEW v_aussen; DROP VIEW v_kopie; DROP VIEW "
    "v_nur_kopien; DROP VIEW v_verweis; DROP VIEW v_verknuepfung; DROP VIEW v_tote_verknuepfung; DROP VIEW v_api; DROP "
    "VIEW v_autor; DROP VIEW v_signatur; DROP VIEW v_projektmodul; DROP VIEW v_kaputter_verweis; DROP INDEX "
    "zieldatei_ist; DROP INDEX verweis_bruch; DROP INDEX datei_da; CREATE INDEX datei_inhalt ON datei(inhalt); DROP "
    "TABLE zieldatei; ALTER TABLE lauf DROP COLUMN ausgelassen; ALTER TABLE inhalt DROP COLUMN "
    "unterzeichner; ALTER TABLE inhalt DROP COLUMN aussteller; ALTER TABLE inhalt DROP COLUMN gueltig_von; ALTER TABLE "
    "inhalt DROP COLUMN gueltig_bis; ALTER TABLE verweis DROP COLUMN bruch; CREATE VIEW v_datei AS SELECT 1; CREATE "
    "VIEW eigene AS SELECT 2; PRAGMA user_version = 1; UPDATE inhalt SET fassung = 1; UPDATE datei SET zustand = "
    "'fremd', inhalt = NULL WHERE "
    "name LIKE '%.vbp'";

TEST_F(Links, AnOlderInventoryIsBroughtUpToDateByAScan) {
  scratch.Write("r/a.vbp", "Module=A; a.bas\r\nModule=B; b.bas\r\nName=P\r\n");
  scratch.Write("r/a.bas", code);
  Scan(scratch / "b", Options(scratch / "r"));
  const std::string found = Found(), schema = "SELECT name FROM sqlite_master WHERE name <> 'eigene' ORDER BY name";
  const std::string names = Ask(scratch / "b", schema);
  Ask(scratch / "b", kOlder);
  EXPECT_NE(files::MessageOf([&] { Inventory(scratch / "b"); }).find("älteren Fassung"), std::string::npos);
  EXPECT_NE(files::MessageOf([&] { Merge(scratch / "ganz", {scratch / "b"}); }).find("älteren Fassung"),
            std::string::npos);
  EXPECT_EQ(Scan(scratch / "b", Options(scratch / "r")).read, 2);
  EXPECT_EQ(Found(), found);
  EXPECT_EQ(Ask(scratch / "b", schema), names);
  EXPECT_EQ(Ask(scratch / "b", "SELECT * FROM eigene"), "2\n");
  EXPECT_EQ(Inventory(scratch / "b").Count({}), 2);
}

}  // namespace
}  // namespace quillmate::inventory
