#include <gtest/gtest.h>
#include <sqlite3.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "scratch.h"

namespace quillmate::codedb {
namespace {

class FactsTest : public ::testing::Test {
 protected:
  const std::filesystem::path& Folder() const { return scratch_.Path(); }

 private:
  files::ScratchFolder scratch_;
};

Facts SomeFacts() {
  Facts facts;
  facts.projects.resize(2);
  facts.projects[0].name = "Lager";
  facts.projects[0].file = "/q/Läger \"neu\".xlsm";
  facts.projects[0].host = "excel";
  facts.projects[0].codePage = 1252;
  facts.projects[0].references = {{"VBA", "4.2", "C:\\vbe7.dll", -1}, {"Zweites", "", "", 1}};
  facts.projects[0].constants = {{"DEBUGMODE", -1}};
  facts.projects[0].document = {{"Autor", "Jörg"}};
  facts.projects[1].locked = true;
  facts.modules.resize(2);
  ModuleFacts& module = facts.modules[0];
  module.number = 1;
  module.name = "Tabelle1";
  module.kind = "document";
  module.outsideName = "Kunden";
  module.predeclared = true;
  module.replacedCharacters = 2;
  module.code = "Sub A()\nEnd Sub";
  module.lines = {{1, 1, 2, 4}, {4, 3, 7, -1}, {11, 10, 1, 0}};
  module.hidden = {{1, "Attribute VB_Name = \"Tabelle1\""}, {2, "Attribute A.VB_Description = \"x\""}};
  module.attributes = {{1, "A", "VB_Description", "\"x\""}};
  module.controls = {{"cmdStart", "CommandButton", "Start", "", false, 10, 20, {}, {}, 0}};
  facts.modules[1].project = 1;
  facts.modules[1].name = "Kurz";
  facts.bindings = {{0, "", "[0]!Tabelle1.A", "Schaltfläche auf Blatt Kunden", "schaltfläche"}};
  facts.omissions = {{"/q/zu.xls", "VBAProject", "Tabelle2", "Das Projekt ist gesperrt"}};
  return facts;
}

TEST_F(FactsTest, ComeBackAsTheyWereWritten) {
  EXPECT_FALSE(ReadFacts(Folder()));
  WriteFacts(Folder(), {});
  WriteFacts(Folder(), SomeFacts());
  const auto facts = ReadFacts(Folder());
  ASSERT_TRUE(facts);
  const ProjectFacts& project = facts->projects.at(0);
  EXPECT_EQ(project.file, "/q/Läger \"neu\".xlsm");
  EXPECT_EQ(project.references.at(0).project, -1);
  EXPECT_EQ(project.references.at(1).project, 1);
  EXPECT_EQ(project.constants.at(0).value, -1);
  EXPECT_EQ(project.document.at(0).value, "Jörg");
  EXPECT_TRUE(facts->projects.at(1).locked);
  const ModuleFacts& module = facts->modules.at(0);
  EXPECT_EQ(module.lines, SomeFacts().modules[0].lines);
  EXPECT_EQ(module.code, "Sub A()\nEnd Sub");
  EXPECT_EQ(module.predeclared, true);
  EXPECT_FALSE(module.exposed);
  EXPECT_EQ(module.hidden.at(1).line, 2);
  EXPECT_EQ(module.attributes.at(0).value, "\"x\"");
  EXPECT_EQ(module.controls.at(0).top, 20);
  EXPECT_FALSE(module.controls.at(0).width);
  EXPECT_EQ(facts->modules.at(1).number, 0);
  EXPECT_FALSE(facts->modules.at(1).code);
  EXPECT_EQ(facts->bindings.at(0).place, "Schaltfläche auf Blatt Kunden");
  EXPECT_EQ(facts->omissions.at(0).module, "Tabelle2");
  EXPECT_EQ(facts->omissions.at(0).reason, "Das Projekt ist gesperrt");
}

/// What another tool may have made of the file: refused, never followed.
TEST_F(FactsTest, NonsenseIsRefused) {
  for (const char* const change :
       {"PRAGMA user_version = 99", "UPDATE modul SET projekt = 7", "UPDATE modul SET nr = nr + 5",
        "UPDATE modul SET zeilenplan = '1:x*3'", "UPDATE verweis SET ziel = -4", "DROP TABLE attribut",
        "UPDATE steuerelement SET modul = 9223372036854775807", "DELETE FROM projekt"}) {
    WriteFacts(Folder(), SomeFacts());
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(files::PathText(FactsPath(Folder())).c_str(), &database), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(database, change, nullptr, nullptr, nullptr), SQLITE_OK) << change;
    sqlite3_close(database);
    EXPECT_THROW(ReadFacts(Folder()), files::Failure) << change;
  }
  files::WriteWholeFile(FactsPath(Folder()), "no database at all, but long enough to look like one to a hasty reader");
  EXPECT_THROW(ReadFacts(Folder()), files::Failure);
}

TEST(FactLines, HiddenLinesAreBackInTheirPlaces) {
  const std::vector<HiddenLines> hidden = {{1, "VERSION 1.0 CLASS\nEND"}, {2, "Attribute A.x = 1"}, {9, "Attribute e"}};
  EXPECT_EQ(WithHiddenLines("Sub A()\r\nEnd Sub", hidden),
            "VERSION 1.0 CLASS\nEND\nSub A()\r\nAttribute A.x = 1\nEnd Sub\nAttribute e\n");
  EXPECT_EQ(WithHiddenLines("a\nb\n", {}), "a\nb\n");
}

TEST(FactLines, MatchTheLayout) {
  using Runs = std::vector<LineRun>;
  EXPECT_EQ(MatchLines("a\r\nb", "a\r\nb\r\n"), (Runs{{1, 1, 2, 0}}));
  // Empty lines removed, bodies indented.
  EXPECT_EQ(MatchLines("Sub A()\n\n  x\n\n\ny\nEnd Sub\n", "Sub A()\r\n\tx\r\n\ty\r\nEnd Sub"),
            (Runs{{1, 1, 1, 0}, {2, 3, 1, -1}, {3, 6, 1, 1}, {4, 7, 1, 0}}));
  // One inserted before a routine, where the code has one already or none.
  EXPECT_EQ(MatchLines("a\nSub B()\nEnd Sub\n\nSub C()", "a\n\nSub B()\nEnd Sub\n\n\nSub C()\n"),
            (Runs{{1, 1, 1, 0}, {3, 2, 2, 0}, {6, 4, 2, 0}}));
}

}  // namespace
}  // namespace quillmate::codedb
