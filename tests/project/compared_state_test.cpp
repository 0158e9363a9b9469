#include <algorithm>

#include <gtest/gtest.h>

#include <quillmate/codedb/facts.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>
#include <quillmate/project/compared_state.h>

#include "project/read_project.h"

namespace quillmate::project {
namespace {

constexpr const char* kEins = "Attribute VB_Name = \"Eins\"\r\nSub A()\r\n  x = 1\r\nEnd Sub\r\n";
constexpr const char* kZwei = "Attribute VB_Name = \"Zwei\"\r\nSub B()\r\n  x = 1\r\nEnd Sub\r\n";
constexpr const char* kVbp = "Type=Exe\r\nModule=Eins; Eins.bas\r\nModule=Zwei; Zwei.bas\r\nName=\"P\"\r\n";

std::string WithSlashes(std::string text) {
  std::ranges::replace(text, '\\', '/');
  return text;
}

/// A state as a line: its modules, "partial" for each project that is, what it lacks, and what was complained of with
/// paths from the folder on.
std::string Describe(const std::filesystem::path& path, const std::filesystem::path& root) {
  std::string complaints;
  StateRequest request;
  request.path = path;
  request.complain = [&](const std::string& line) { complaints += "; " + line; };
  request.shown = [&](std::string text) {
    const std::string folder = files::PathText(root);
    for (std::size_t at = text.find(folder); at != text.npos; at = text.find(folder)) text.erase(at, folder.size());
    return text;
  };
  const ReadState read = ReadComparedState(request);
  std::string line;
  for (const symbols::ModuleInfo& module : read.state.index.Modules()) line += module.name + " ";
  for (const bool partial : read.state.partial) line += partial ? "partial " : "whole ";
  if (read.state.lacksProjects) line += "lacks ";
  if (!read.isWhole) line += "gaps ";
  if (!read.hasAllModules) line += "numbers ";
  return WithSlashes(line + complaints);
}

TEST(ComparedState, WhatASourceLacksIsAGapOfItsProjectAlone) {
  const files::ScratchFolder folder("Stand");
  folder.Write("ganz/Eins.bas", kEins);
  folder.Write("projekt/P.vbp", kVbp);
  folder.Write("projekt/Eins.bas", kEins);
  folder.Write("daneben/P.vbp", kVbp);
  folder.Write("daneben/Eins.bas", kEins);
  folder.Write("daneben/frei/Drei.bas", kZwei);
  folder.Write("kaputt/Eins.bas", kEins);
  folder.Write("kaputt/Mappe.xlsm", "x");
  folder.Write("halb/Eins.bas", kEins);
  folder.Write("halb/Zwei.bas", std::string("x\0\1", 3));
  folder.Write("nichts/Text.txt", "x");
  const struct {
    const char* path;
    const char* state;
  } kRows[] = {
      {"ganz", "Eins whole "},
      {"ganz/Eins.bas", "Eins whole "},
      {"halb", "Eins partial gaps ; /halb/Zwei.bas: "},
      // A module of a VB project, not one of the folder around it.
      {"projekt", "Eins partial gaps ; /projekt/Zwei.bas: Datei existiert nicht"},
      {"daneben", "Zwei Eins whole partial gaps ; /daneben/Zwei.bas: Datei existiert nicht"},
      {"kaputt", "Eins whole lacks gaps ; /kaputt/Mappe.xlsm: Datei ist keine Office-Datei"},
      {"nichts", "/nichts: Ordner enth\303\244lt keine Module"},
      {"weg", "/weg: Datei existiert nicht"},
  };
  for (const auto& row : kRows) {
    std::string told;
    try {
      told = Describe(folder / row.path, folder.Path());
    } catch (const files::Failure& error) {
      told = WithSlashes(error.what());
    }
    EXPECT_TRUE(told.starts_with(row.state)) << row.path << ": " << told;
  }
}

/// What could not be read is neither gone nor new.
TEST(ComparedState, AGapIsNoChange) {
  const files::ScratchFolder folder("Stand");
  for (const char* side : {"alt/", "neu/"}) {
    folder.Write(std::string(side) + "P.vbp", kVbp);
    folder.Write(std::string(side) + "Eins.bas", kEins);
  }
  folder.Write("alt/Zwei.bas", kZwei);
  for (const bool forth : {true, false}) {
    CompareProgress progress;
    ComparedProjects result;
    const auto sides = std::pair(folder / (forth ? "alt" : "neu"), folder / (forth ? "neu" : "alt"));
    ASSERT_TRUE(CompareProjects({sides.first, sides.second, {}, {}}, progress, result));
    EXPECT_EQ(progress.stage, CompareProgress::kDone);
    EXPECT_EQ(result.oldProblems.size() + result.newProblems.size(), 1U);
    for (const symbols::ModuleChange& module : result.comparison.modules) {
      EXPECT_EQ(symbols::Word(module.state), "same") << forth;
    }
  }
}

TEST(ComparedState, GivingUpIsNoFailure) {
  const ReadProject read(SourceFiles{{"Eins.bas", kEins}});
  for (const std::filesystem::path& path : {read.Folder(), read.Sources().Path()}) {
    CompareProgress progress;
    progress.cancelled = true;
    ComparedProjects result;
    EXPECT_FALSE(CompareProjects({path, path, {}, {}}, progress, result));
    EXPECT_EQ(progress.stage, CompareProgress::kDone);
  }
}

TEST(ComparedState, WhatASavedProjectLacksIsAGapOfItsProjectAlone) {
  const ReadProject read(SourceFiles{{"a/A.vbp", "Module=Eins; Eins.bas\r\nName=\"A\"\r\n"},
                                     {"a/Eins.bas", kEins},
                                     {"b/B.vbp", "Module=Zwei; Zwei.bas\r\nName=\"B\"\r\n"},
                                     {"b/Zwei.bas", kZwei}});
  const codedb::Facts facts = codedb::ReadFacts(read.Folder()).value();
  const std::string second = facts.projects.at(1).file;
  const struct {
    codedb::OmissionFact omission;
    const char* state;
  } kRows[] = {
      {{}, "Eins Zwei whole whole "},
      {{second, "B", "Drei", "kaputt"}, "Eins Zwei whole partial gaps ; /b/B.vbp: Drei: kaputt"},
      {{"", "A", "Drei", "kaputt"}, "Eins Zwei partial whole gaps ; A: Drei: kaputt"},
      {{"", "A", "", "gesperrt"}, "Eins Zwei whole whole lacks gaps ; A: gesperrt"},
      // Which project had named it nobody has kept.
      {{"/anderswo/Drei.bas", "", "", "fehlt"}, "Eins Zwei partial partial gaps ; /anderswo/Drei.bas: fehlt"},
      {{"/anderswo/Mappe.xlsm", "", "", "kaputt"}, "Eins Zwei whole whole lacks gaps ; /anderswo/Mappe.xlsm: kaputt"},
  };
  for (const auto& row : kRows) {
    codedb::Facts changed = facts;
    if (!row.omission.reason.empty()) changed.omissions = {row.omission};
    codedb::WriteFacts(read.Folder(), changed);
    EXPECT_EQ(Describe(read.Folder(), read.Sources().Path()), row.state);
  }
  codedb::WriteFacts(read.Folder(), facts);
  std::filesystem::remove(codedb::ModuleTextPath(read.Folder(), {2}));
  EXPECT_EQ(Describe(read.Folder(), read.Folder()),
            "Eins whole partial gaps numbers ; : Zwei: Der Text ist nicht lesbar");
}

}  // namespace
}  // namespace quillmate::project
