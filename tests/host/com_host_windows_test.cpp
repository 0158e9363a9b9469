#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/records.h>
#include <quillmate/files/paths.h>
#include <quillmate/host/com_host.h>
#include <quillmate/host/document_host.h>
#include <quillmate/host/host_tree.h>
#include <quillmate/host/joined_host.h>
#include <quillmate/host/project_reader.h>

#include "codedb/scratch.h"
#include "host/com_stand_in_windows.h"
#include "places.h"

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

/// Whoever stays busy is asked once; whoever is only slow, like the machine, is waited for.
constexpr ComHost::Patience kAskOnce{0ms, 1h};
constexpr ComHost::Patience kPatient{1h, 1h};

/// "key text: image text, image text; ..." of each project with its modules.
std::string Nodes(const HostTree& tree) {
  std::string nodes;
  for (const HostProjectNode& project : tree.projects) {
    nodes += project.key + project.text + ": ";
    for (const HostModuleNode& module : project.modules) nodes += module.image + " " + module.text + ", ";
  }
  return nodes;
}

/// Ticks all modules, or those of one name only, and their projects.
HostTree Ticked(HostTree tree, const std::string& only = "") {
  for (HostProjectNode& project : tree.projects) {
    project.checked = true;
    for (HostModuleNode& module : project.modules) module.checked = only.empty() || module.text == only;
  }
  return tree;
}

class RunningHost : public testing::Test {
 protected:
  RunningHost() {
    request_.folder = scratch_.Path();
    request_.templateFile = codedb::TemplateFile();
  }

  ListResult List(HostAutomation& host) { return ListHostProjects(host, false, tree_); }
  ReadReport Read(HostAutomation& host, const HostTree& tree) {
    return ReadCheckedModules(host, tree, database_, request_);
  }

  files::ScratchFolder scratch_{"TempDateien/T_1"};
  codedb::CodeDatabase database_;
  ReadRequest request_;
  HostTree tree_;
};

TEST_F(RunningHost, EachEditionSeesItsOwnProgram) {
  const std::string first = "A2\\Pr\374fstand [Pr\374fung M\344rz.xls]: ";
  const std::string others = "M2 mod\304nderung, M3 clsKunde, M1 frmEingabe, A3\\Neu [Nicht gespeichert]: M2 Modul1, ";
  for (const std::string edition : {"Excel", "Word", "Access", "PowerPoint", "VisualBasic"}) {
    SCOPED_TRACE(edition);
    const StandInHost standIn("--locked --unsaved --edition " + edition);
    ComHost host(edition, kPatient);
    const bool isAccess = edition == "Access";
    const ListResult result = ListHostProjects(host, isAccess, tree_);
    EXPECT_TRUE(result.attached);
    EXPECT_EQ(result.version, 16.0F);
    EXPECT_EQ(result.problem, "");
    EXPECT_EQ(Nodes(tree_), first + (isAccess ? "M1 Main, M6 Orders, " : "M5 Tabelle1, ") + others);
    EXPECT_EQ(tree_.lockedProjects, 1);
    EXPECT_EQ(tree_.projects[0].modules[isAccess ? 2 : 1].position, 3);

    const ReadReport report = Read(host, Ticked(tree_));
    EXPECT_EQ(report.outcome, ReadOutcome::kDone) << report.detail;
    EXPECT_EQ(report.modules, isAccess ? 6 : 5);
    EXPECT_EQ(report.projectText, "Neu [Nicht gespeichert]");

    // Another edition's program is none of its own.
    ComHost other(edition == "Excel" ? "Word" : "Excel");
    EXPECT_FALSE(List(other).attached);
    EXPECT_EQ(other.Problem(), "");
  }
}

TEST_F(RunningHost, WhyThereIsNothingToList) {
  const struct {
    const char* standIn;
    bool attached;
    float version;
    const char* problem;
  } cases[] = {
      {"--edition word", false, 0, ""},
      {"--refuse-access", false, 16,
       "Excel verweigert den Zugriff auf seine Projekte (Programmatic access to the Visual Basic project is not "
       "trusted)"},
      {"--refuse-access --version 9.0", false, 9,
       "Excel verweigert den Zugriff auf seine Projekte (Programmatic access to the Visual Basic project is not "
       "trusted)"},
      {"--version 11.0", true, 11, ""},
      {"--busy 1000000", false, 0,
       "Excel ist beschäftigt: Vielleicht wird gerade eine Zelle bearbeitet, oder ein Dialog ist offen"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.standIn);
    const StandInHost standIn(each.standIn);
    ComHost host("Excel", kAskOnce);
    const ListResult result = List(host);
    EXPECT_EQ(result.attached, each.attached);
    EXPECT_EQ(result.version, each.version);
    EXPECT_EQ(result.problem, each.problem);
    EXPECT_EQ(RefreshMessage(result, tree_, "Excel"), RefreshMessage({each.attached, each.version}, tree_, "Excel"));
    EXPECT_EQ(tree_.projects.empty(), !each.attached);
    EXPECT_EQ(host.HostVersion(), 0);
  }
}

TEST_F(RunningHost, ABusyProgramIsAskedAgain) {
  const StandInHost standIn("--busy 7");
  ComHost host("Excel", kPatient);
  EXPECT_TRUE(List(host).attached) << host.Problem();
  EXPECT_EQ(tree_.projects.size(), 1U);
}

TEST_F(RunningHost, WhatIsWithheldHidesNothingElse) {
  const struct {
    const char* standIn;
    const char* problem;
    const char* nodes;
  } cases[] = {
      {"--withhold-code clsKunde", "Das Modul clsKunde gibt seinen Code nicht heraus (Can't load the module)",
       "A1\\Pr\374fstand [Pr\374fung M\344rz.xls]: M5 Tabelle1, M2 mod\304nderung, M1 frmEingabe, "},
      {"--unsaved --withhold-code Prüfstand",
       "Prüfstand: Das Projekt gibt seine Module nicht heraus (Can't perform operation since the project is protected)",
       "A1\\Pr\374fstand [Pr\374fung M\344rz.xls]: A2\\Neu [Nicht gespeichert]: M2 Modul1, "},
  };
  for (const auto& each : cases) {
    const StandInHost standIn(each.standIn);
    ComHost host("Excel", kPatient);
    const ListResult result = List(host);
    EXPECT_TRUE(result.attached);
    EXPECT_EQ(result.problem, each.problem);
    EXPECT_EQ(Nodes(tree_), each.nodes);
  }
}

TEST_F(RunningHost, FailedReadsSayWhatHappened) {
  const struct {
    const char* standIn;
    const char* module;
    const char* detail;
  } cases[] = {
      {"--vanish modÄnderung", "mod\304nderung", "modÄnderung: Das Modul ist nicht mehr vorhanden"},
      {"--unsaved --unsaved --close Neu", "Modul1",
       "Modul1: Das Projekt Neu [Nicht gespeichert] ist nicht mehr geöffnet"},
      {"--die-at clsKunde", "clsKunde", "clsKunde: Excel antwortet nicht mehr"},
      {"--shorten-at clsKunde", "clsKunde", "clsKunde: Das Modul wurde geändert, während es gelesen wurde"},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.standIn);
    StandInHost standIn(each.standIn);
    ComHost host("Excel", kPatient);
    EXPECT_TRUE(List(host).attached);
    const ReadReport report = Read(host, Ticked(tree_, each.module));
    EXPECT_EQ(report.outcome, ReadOutcome::kFailed);
    EXPECT_EQ(report.detail, each.detail);
    EXPECT_EQ(files::Names(scratch_.Path()), "");
    // What is left can be listed again; a program that ended is simply no longer there.
    standIn.End();
    EXPECT_FALSE(List(host).attached);
    EXPECT_EQ(Read(host, Ticked(tree_, each.module)).outcome, ReadOutcome::kNothingChecked);
  }
}

TEST_F(RunningHost, ClosedProjectsLeadToNoOtherOnes) {
  // Both projects after the closed one move up; its modules' place holds another module then.
  const StandInHost standIn("--many 2 --unsaved --vanish Tabelle1 --close Großprojekt");
  ComHost host("Excel", kPatient);
  EXPECT_TRUE(List(host).attached);
  ReadReport report = Read(host, Ticked(tree_, "Modul1"));
  EXPECT_EQ(report.leftOut, Texts{"Modul1: Das Projekt Großprojekt [C:\\Daten\\Groß.xlsm] ist nicht mehr geöffnet"});

  tree_.projects.erase(tree_.projects.begin() + 1);
  tree_.projects[0].modules.erase(tree_.projects[0].modules.begin());
  report = Read(host, Ticked(tree_));
  EXPECT_EQ(report.outcome, ReadOutcome::kDone) << report.detail;
  EXPECT_EQ(report.modules, 4);
  database_.OpenCodeDatabase(scratch_.Path());
  Texts routines;
  for (const codedb::ModuleRecord& module : database_.ReadIndex()) {
    for (const codedb::RoutineRecord& routine : module.routines) routines.push_back(routine.name);
  }
  database_.CloseCodeDatabase();
  EXPECT_EQ(routines, (Texts{"\304ndern", "Pr\374fen", "Laden", "OK_Click", "Start"}));
}

TEST_F(RunningHost, TheSampleGivesTheSameIndexAsItsFiles) {
  const fs::path samples = tests::SourceFolder() / "samples";
  const Texts sources{files::PathText(samples / "Lagerverwaltung"), files::PathText(samples / "Kasse/Kasse.vbp")};
  const StandInHost standIn("--sources \"" + sources[0] + "\" \"" + sources[1] + "\"");
  ComHost host("Excel", kPatient);
  EXPECT_TRUE(List(host).attached);
  EXPECT_EQ(tree_.projects.size(), 2U);
  ReadReport report = Read(host, Ticked(tree_));
  EXPECT_EQ(report.outcome, ReadOutcome::kDone) << report.detail;
  EXPECT_GT(report.modules, 20);
  std::map<std::string, std::string> fromHost = files::FilesIn(scratch_.Path());

  DocumentHost documents;
  documents.SetSources({files::PathFromText(sources[0]), files::PathFromText(sources[1])});
  EXPECT_TRUE(List(documents).attached);
  report = Read(documents, Ticked(tree_));
  EXPECT_EQ(report.outcome, ReadOutcome::kDone) << report.detail;
  std::map<std::string, std::string> fromFiles = files::FilesIn(scratch_.Path());
  // Only files have lines before the code, designers and paths.
  for (auto* const files : {&fromHost, &fromFiles}) EXPECT_EQ(files->erase("Fakten.db"), 1U);
  EXPECT_EQ(fromHost.size(), static_cast<std::size_t>(report.modules) + 1);
  ASSERT_EQ(fromHost.size(), fromFiles.size());
  for (const auto& [name, bytes] : fromFiles) EXPECT_TRUE(fromHost.at(name) == bytes) << name;
}

TEST_F(RunningHost, AModuleIsOneCall) {
  StandInHost standIn("--many 50 --long 20000");
  ComHost host("Excel", kPatient);
  EXPECT_TRUE(List(host).attached);
  ASSERT_EQ(tree_.projects.size(), 2U);
  EXPECT_EQ(tree_.projects[1].modules.size(), 51U);

  EXPECT_TRUE(host.AttachHost());
  EXPECT_EQ(host.ComponentByName(2, "Lang", 51).lineCount, 20000);
  const std::string code = host.Lines(2, "Lang", 51, 20000);
  EXPECT_TRUE(code.starts_with("Sub Lang()\r\n  Summe = Summe + Wert(2)\r\n"));
  EXPECT_TRUE(code.ends_with("Wert(19999)\r\nEnd Sub"));
  EXPECT_EQ(host.Lines(2, "Modul7", 7, 2), "Public Sub Nummer7()\r\n  ' \334berpr\374fung");
  // A line without text at the end counts.
  EXPECT_TRUE(host.Lines(1, "mod\304nderung", 3, 10).ends_with("End Sub\r\n"));
  host.Release();

  // Each member's name is looked up once for each attaching, not once for each object.
  EXPECT_EQ(standIn.End(), "names 26 lines 3");
}

TEST_F(RunningHost, BesideFiles) {
  const files::ScratchFolder folder("Quelle");
  DocumentHost documents;
  documents.SetSources({folder.Write("Datei.bas", "Sub M()\r\n\r\nEnd Sub\r\n")});
  ComHost excel("Excel");
  JoinedHost joined({&excel, &documents});
  {
    const StandInHost standIn("--refuse-access");
    const ListResult result = List(joined);
    EXPECT_TRUE(result.attached);
    EXPECT_TRUE(result.problem.starts_with("Excel verweigert den Zugriff")) << result.problem;
    EXPECT_EQ(tree_.projects.size(), 1U);
  }
  const StandInHost standIn("--die-at frmEingabe");
  EXPECT_TRUE(List(joined).attached);
  ASSERT_EQ(tree_.projects.size(), 2U);
  EXPECT_EQ(tree_.projects[0].key, "A1\\");
  EXPECT_EQ(joined.IndexIn(documents, 2), 1);
  EXPECT_EQ(Read(joined, Ticked(tree_, "Datei")).outcome, ReadOutcome::kDone);
  EXPECT_EQ(Read(joined, Ticked(tree_, "clsKunde")).outcome, ReadOutcome::kDone);
  // What the program that ended no longer tells is left out; the file is read.
  const ReadReport report = Read(joined, Ticked(tree_));
  EXPECT_EQ(report.outcome, ReadOutcome::kDone);
  EXPECT_FALSE(report.leftOut.empty());
  EXPECT_TRUE(List(joined).attached);
  EXPECT_EQ(tree_.projects.size(), 1U);
}

}  // namespace
}  // namespace quillmate::host
