#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include <quillmate/startup/edition.h>
#include <quillmate/startup/session.h>
#include <quillmate/text/operations.h>

#include "codedb/scratch.h"
#include "startup/folder_link.h"

namespace quillmate::startup {
namespace {

namespace fs = std::filesystem;
using testing::MakeFolderLink;

void Write(const fs::path& file) { std::ofstream(file) << "x"; }

/// A run up to its scratch folder.
struct ProgramRun {
  explicit ProgramRun(const fs::path& programFolder) {
    BeginStart(globals, kPowerPoint, {.programFolder = programFolder, .templateFile = {}}, *store);
    mark = std::make_unique<InstanceMark>(globals.TempFolder);
  }
  void MakeFolder() {
    MakeRunFolder(globals, *mark, *store);
    Write(globals.RunTempFolder / "M1.txt");
  }
  std::unique_ptr<settings::SettingsStore> store = settings::MemorySettings();
  AppGlobals globals;
  std::unique_ptr<InstanceMark> mark;
};

TEST(Session, EditionsAndTheirTexts) {
  const files::ScratchFolder folder;
  const std::map<int, std::string> cases = {
      {0, ""}, {1, "Excel EQM"}, {2, "Word WQM"}, {3, "Access AQM"}, {4, "PowerPoint PPQM"}, {9, "VisualBasic VB"},
      {5, ""}};
  for (const auto& [selector, texts] : cases) {
    AppGlobals globals;
    BeginStart(globals, selector, {.programFolder = folder.Path(), .templateFile = {}}, *settings::MemorySettings());
    EXPECT_EQ(globals.HostName, text::TextBefore(texts, " "));
    EXPECT_EQ(globals.EditionCode, text::TextAfterLast(texts, " "));
    EXPECT_EQ(globals.SettingsRoot, "Qm_Quillmate\\Qm_Quill_" + globals.HostName);
    EXPECT_EQ(globals.AppTitle, globals.HostName + " Quillmate " + ProgramVersion());
  }
}

TEST(Session, CommandLineForTheMiniWindow) {
  for (const char* yes : {"/a", "/A"}) EXPECT_TRUE(IsMiniWindowCommand(yes));
  for (const char* no : {"", "/", "/a ", " /a", "/a x", "/ab", "-a"}) EXPECT_FALSE(IsMiniWindowCommand(no)) << no;
}

TEST(Session, LastProjectFolderComesFromTheSettings) {
  const files::ScratchFolder folder;
  ProgramRun run(folder.Path());
  for (const auto& [stored, expected] :
       std::map<std::string, std::string>{{"", "C:\\"},
                                          {"C", "C:\\"},
                                          {"\xC3\xA4", "C:\\"},
                                          {"/p", "/p"},
                                          {"D:\\Pr\xC3\xB6j\\", "D:\\Pr\xC3\xB6j\\"}}) {
    run.store->WriteSetting("proj", "proj_pf", stored);
    BeginStart(run.globals, kExcel, {.programFolder = folder.Path(), .templateFile = {}}, *run.store);
    EXPECT_EQ(run.globals.LastProjectFolder, expected);
    EXPECT_EQ(run.globals.DefaultFolder, "C:\\");
  }
}

TEST(Session, RunFolderIsMadeBelowTheRootAndRemovedAtTheEnd) {
  const files::ScratchFolder folder;
  // Left by a run that had to go elsewhere and was killed.
  const fs::path dead =
      fs::temp_directory_path() / (".Quillmate-TempDateien-" + folder.Path().parent_path().filename().string());
  fs::create_directory(dead);
  Write(dead / "M1.txt");
  ProgramRun run(folder.Path() / "neu");
  const fs::path root = folder.Path() / "neu" / "TempDateien";
  EXPECT_EQ(run.globals.TempFolder, root);
  EXPECT_TRUE(fs::is_directory(root));
  EXPECT_TRUE(run.globals.RunTempFolder.empty());

  run.store->WriteSetting("optionen", "tab", "9");
  run.MakeFolder();
  EXPECT_EQ(run.globals.Options.tab, 9);
  EXPECT_FALSE(fs::exists(dead));
  EXPECT_EQ(run.globals.TempFolder, run.globals.RunTempFolder);
  EXPECT_EQ(run.globals.RunTempFolder.parent_path(), root);
  const std::string name = run.globals.RunTempFolder.filename().string();
  const int number = std::stoi(name.substr(2));
  EXPECT_EQ("T_" + std::to_string(number), name);
  EXPECT_TRUE(number >= 1 && number <= 300000) << number;

  EndRun(run.globals);
  EXPECT_FALSE(fs::exists(run.globals.RunTempFolder));
  EXPECT_TRUE(fs::is_directory(root));
}

TEST(Session, SavedProjectIsNotTouchedAtTheEnd) {
  const files::ScratchFolder folder;
  ProgramRun run(folder.Path());
  run.MakeFolder();
  run.globals.TempFolder = folder.Path() / "TempDateien" / "Projekt";
  fs::create_directory(run.globals.TempFolder);
  Write(run.globals.TempFolder / "M1.txt");
  EndRun(run.globals);
  EXPECT_TRUE(fs::exists(folder.Path() / "TempDateien" / "Projekt" / "M1.txt"));
  EXPECT_FALSE(fs::exists(run.globals.RunTempFolder));
  EXPECT_EQ(run.globals.TempFolder, run.globals.RunTempFolder);
}

TEST(Session, WithoutAScratchRootTheRunUsesTheSystemsTemporaryFolder) {
  const files::ScratchFolder folder;
  Write(folder.Path() / "file");
  ProgramRun run(folder.Path() / "file");
  EXPECT_FALSE(run.mark->IsAlone());
  run.MakeFolder();
  const fs::path made = run.globals.RunTempFolder;
  EXPECT_TRUE(fs::exists(made / "M1.txt"));
  EXPECT_TRUE(fs::equivalent(made.parent_path().parent_path(), fs::temp_directory_path() / "."));
#ifndef _WIN32  // where the temporary folder is the user's own
  EXPECT_EQ(fs::status(made.parent_path()).permissions(), fs::perms::owner_all);
#endif
  EndRun(run.globals);
  EXPECT_FALSE(fs::exists(made.parent_path()));
}

TEST(Session, CleaningStaysInsideTheRoot) {
  const files::ScratchFolder folder;
  const fs::path root = folder.Path() / "TempDateien", outside = folder.Path() / "outside";
  fs::create_directory(folder.Path() / "other");
  for (const fs::path& made : {outside, root / "T_1", root / "T_2", root / "T_3" / "deep"}) {
    fs::create_directories(made);
    Write(made / "file");
  }
  Write(root / "leftover.htm");
  Write(root / kInstanceFile);
  std::error_code ignored;
  fs::create_symlink(outside / "file", root / "link.txt", ignored);
  const bool linked = MakeFolderLink(outside, root / "T_4") && MakeFolderLink(outside, root / "T_2" / "link") &&
                      MakeFolderLink(outside / "missing", root / "broken") &&
                      MakeFolderLink(outside, folder.Path() / "other" / "TempDateien");

  CleanScratchRoot(root);
  std::set<fs::path> left;
  for (const auto& entry : fs::directory_iterator(root)) left.insert(entry.path().filename());
  EXPECT_EQ(left, (std::set<fs::path>{kInstanceFile, "T_3"}));

  CleanScratchRoot(outside);
  CleanScratchRoot(folder.Path() / "other" / "TempDateien");
  CleanScratchRoot(folder.Path() / "missing" / "TempDateien");
  EXPECT_TRUE(fs::exists(outside / "file"));
  if (!linked) GTEST_SKIP() << "cleaned without links: none can be made here";
}

/// What FindProgramPlaces takes for the user's data folder.
fs::path UserFolder(const fs::path& home) {
#ifdef _WIN32
  static_cast<void>(home);
  return fs::path(_wgetenv(L"LOCALAPPDATA")) / "quillmate";
#else
  setenv("XDG_DATA_HOME", home.c_str(), 1);
  return home / "quillmate";
#endif
}

TEST(Session, ProgramAndTemplateFolders) {
  const files::ScratchFolder folder;
  const fs::path bin = folder.Path() / "bin", data = folder.Path() / "share" / "quillmate";
  const fs::path user = UserFolder(folder.Path() / "home");
  const auto expectPlaces = [&](const fs::path& programFolder, const fs::path& templateFolder) {
    const ProgramPlaces places = FindProgramPlaces(bin);
    EXPECT_EQ(places.programFolder, programFolder);
    EXPECT_EQ(places.templateFile, templateFolder / "mask_Quillmate.mdb");
  };
  expectPlaces(user, bin);
  fs::create_directory(bin);
  expectPlaces(bin, bin);
  fs::create_directories(data);
  Write(data / "mask_Quillmate.mdb");
  expectPlaces(user, data);
  Write(bin / "mask_Quillmate.mdb");
  expectPlaces(bin, bin);
  EXPECT_EQ(std::distance(fs::directory_iterator(bin), fs::directory_iterator()), 1);
}

}  // namespace
}  // namespace quillmate::startup
