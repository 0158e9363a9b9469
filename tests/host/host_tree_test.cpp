#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/codedb/codes.h>
#include <quillmate/host/host_tree.h>

#include "host/fake_host.h"

namespace quillmate::host {
namespace {

constexpr const char* kThreeLines = "Sub A()\r\n\r\nEnd Sub";

FakeHost HostOfThree() {
  FakeHost host;
  host.projects = {
      {{"Gesperrt", "C:\\Daten\\Geheim.xls", true}, {{"Modul1", kStdModule, kThreeLines}}},
      {{"Lager", "C:\\Daten\\Bestand.xls", false},
       {{"Tabelle1", kHostDocument, "Option Explicit\r\n"},
        {"Modul1", kStdModule, kThreeLines},
        {"Kunde", kClassModule, kThreeLines},
        {"Leer", kStdModule, ""}}},
      {{"Neu", std::nullopt, false}, {}},
  };
  return host;
}

TEST(ListHostProjects, ListsWhatCanBeRead) {
  FakeHost host = HostOfThree();
  HostTree tree;
  tree.projects.resize(7);
  const ListResult result = ListHostProjects(host, false, tree);
  EXPECT_TRUE(result.attached);
  EXPECT_EQ(result.version, 9.0F);
  EXPECT_EQ(host.calls.back(), "Release");
  EXPECT_EQ(tree.lockedProjects, 1);
  ASSERT_EQ(tree.projects.size(), 2U);

  const HostProjectNode& lager = tree.projects[0];
  EXPECT_EQ(lager.key, "A2\\");
  EXPECT_EQ(lager.text, "Lager [Bestand.xls]");
  ASSERT_EQ(lager.modules.size(), 2U);
  EXPECT_EQ(lager.modules[0].key, "A2\\Modul1");
  EXPECT_EQ(lager.modules[0].position, 2);
  EXPECT_EQ(lager.modules[1].text, "Kunde");
  EXPECT_EQ(lager.modules[1].position, 3);
  EXPECT_EQ(tree.projects[1].text, "Neu [Nicht gespeichert]");
  EXPECT_EQ(std::count(host.calls.begin(), host.calls.end(), "ComponentCount 1"), 0);
}

TEST(ListHostProjects, FileNamesOfBothSystems) {
  FakeHost host;
  for (const char* file : {"C:\\Daten\\M\xC3\xA4rz.xls", "/home/a/b\\c.bas", "Mappe1", "https://server/x.xls"}) {
    host.projects.push_back({{"P", file, false}, {}});
  }
  HostTree tree;
  ListHostProjects(host, false, tree);
  std::vector<std::string> texts;
  for (const HostProjectNode& project : tree.projects) texts.push_back(project.text);
  EXPECT_EQ(texts,
            (std::vector<std::string>{"P [M\344rz.xls]", "P [b\\c.bas]", "P [Mappe1]", "P [https://server/x.xls]"}));
}

TEST(ListHostProjects, ARefusedCallLeavesAnEmptyTree) {
  for (const char* call : {"ProjectCount", "Project 1", "Project 3", "ComponentCount 2", "Component 4"}) {
    SCOPED_TRACE(call);
    FakeHost host = HostOfThree();
    host.version = 10;
    host.failAt = call;
    HostTree tree;
    const ListResult result = ListHostProjects(host, false, tree);
    EXPECT_EQ(std::count(host.calls.begin(), host.calls.end(), call), 1);
    EXPECT_FALSE(result.attached);
    EXPECT_EQ(result.version, 10.0F);
    EXPECT_TRUE(tree.projects.empty());
    EXPECT_EQ(tree.lockedProjects, 0);
    EXPECT_EQ(host.calls.back(), "Release");
  }
}

TEST(ListHostProjects, KindsAndPrefixes) {
  const struct {
    int type;
    const char* name;
    bool access;
    const char *text, *image;
    int kind;
  } cases[] = {
      {kHostDocument, "Form_Main", true, "Main", "M1", codedb::kDocument},
      {kHostDocument, "Report_Orders", true, "Orders", "M6", codedb::kDocument},
      {kHostDocument, "form_x", true, "", "M6", codedb::kDocument},
      {kHostDocument, "Form_Main", false, "Form_Main", "M5", codedb::kDocument},
      {kStdModule, "Form_Main", true, "Form_Main", "M2", codedb::kStandard},
      {kClassModule, "Kunde", true, "Kunde", "M3", codedb::kClass},
      {kMSForm, "Eingabe", false, "Eingabe", "M1", codedb::kForm},
      {kOtherComponent, "Designer1", false, "Designer1", "XXX", codedb::kOtherKind},
      {0, "Was", false, "Was", "XXX", codedb::kOtherKind},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.name);
    FakeHost host;
    host.projects = {{{"P", std::nullopt, false}, {{each.name, each.type, kThreeLines}}}};
    HostTree tree;
    ListHostProjects(host, each.access, tree);
    ASSERT_EQ(tree.projects.at(0).modules.size(), 1U);
    EXPECT_EQ(tree.projects[0].modules[0].text, each.text);
    EXPECT_EQ(tree.projects[0].modules[0].image, each.image);
    EXPECT_EQ(tree.projects[0].modules[0].key, std::string("A1\\") + each.name);
    EXPECT_EQ(tree.projects[0].modules[0].kind, each.image == std::string_view("M1") ? codedb::kForm : each.kind);
    EXPECT_EQ(ModuleKindOf(each.type), each.kind);
  }
}

TEST(RefreshMessage, SaysWhyThereIsNothingToRead) {
  HostTree filled;
  filled.projects.resize(1);
  EXPECT_EQ(RefreshMessage({true, 11}, filled, "Word"), "");

  EXPECT_EQ(
      RefreshMessage({true, 11}, HostTree{}, "Word"),
      "Word ist zwar im Moment geöffnet, aber es gibt keine auslesbaren Projekte.\r\n\r\nBitte öffnen Sie in Word die "
      "Datei, deren Code Sie einlesen möchten und klicken Sie danach auf Aktualisieren Word "
      "Projekte.\r\n\r\nAlternativ können Sie über Öffnen Projekte einlesen, die mit Quillmate erzeugt wurden.\r\n");

  const std::string refused =
      "Sie benutzen PowerPointXP.\r\nIhre Anwendung ist zwar geöffnet, aber der Zugriff wird verweigert.\r\nDies "
      "können Sie ändern, indem Sie in PowerPoint bei Extras - Makro - Sicherheit -vertrauenswürdige Quellen\r\nden "
      "Zugriff auf VBA-Projekte vertrauen anhaken.\r\nLesen Sie dazu unbedingt auch in der Hilfe die Informationen zu "
      "Office XP\r\n\r\nKlicken Sie nachdem Sie die Einstellungen vorgenommen haben auf Aktualisieren";
  EXPECT_EQ(RefreshMessage({false, 10.0F}, HostTree{}, "PowerPoint"), refused);

  const std::string notOpen =
      "PowerPoint ist im Moment nicht geöffnet. Es können daher keine Projekte aus PowerPoint angezeigt werden. "
      "\r\n\r\nBitte öffnen Sie PowerPoint und öffnen Sie die Mappe, deren Code Sie einlesen möchten !\r\nKlicken Sie "
      "danach auf Aktualisieren PowerPoint Projekte.\r\n\r\n\r\nAlternativ können Sie über Öffnen Projekte einlesen, "
      "die mit Quillmate erzeugt wurden.";
  EXPECT_EQ(RefreshMessage({false, 0}, HostTree{}, "PowerPoint"), notOpen);
  EXPECT_EQ(RefreshMessage({false, 9.0F}, HostTree{}, "PowerPoint"), notOpen);
}

}  // namespace
}  // namespace quillmate::host
