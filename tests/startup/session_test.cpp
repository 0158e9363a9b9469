#include <cstdlib>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include <quillmate/startup/edition.h>
#include <quillmate/startup/session.h>

#include "settings/temp_folder.h"

namespace quillmate::startup {
namespace {

namespace fs = std::filesystem;

void Write(const fs::path& file) { std::ofstream(file) << "x"; }

void Start(AppGlobals& globals, const fs::path& programFolder, const settings::SettingsStore& store) {
  BeginStart(globals, kPowerPoint, {.programFolder = programFolder, .templateFile = "t"}, store);
}

TEST(Session, EditionsAndTheirTexts) {
  const struct {
    int selector;
    std::string host, code, root, title;
  } cases[] = {
      {1, "Excel", "EQM", "Qm_Quillmate\\Qm_Quill_Excel", "Excel Quillmate "},
      {2, "Word", "WQM", "Qm_Quillmate\\Qm_Quill_Word", "Word Quillmate "},
      {3, "Access", "AQM", "Qm_Quillmate\\Qm_Quill_Access", "Access Quillmate "},
      {4, "PowerPoint", "PPQM", "Qm_Quillmate\\Qm_Quill_PowerPoint", "PowerPoint Quillmate "},
      {9, "VisualBasic", "VB", "Qm_Quillmate\\Qm_Quill_VisualBasic", "VisualBasic Quillmate "},
      {5, "", "", "Qm_Quillmate\\Qm_Quill_", " Quillmate "},
      {0, "", "", "Qm_Quillmate\\Qm_Quill_", " Quillmate "},
  };
  const testing::TempFolder folder;
  for (const auto& test : cases) {
    AppGlobals globals;
    BeginStart(globals, test.selector, {.programFolder = folder.Path(), .templateFile = {}},
               *settings::MemorySettings());
    EXPECT_EQ(globals.hostSelector, test.selector);
    EXPECT_EQ(globals.HostName, test.host);
    EXPECT_EQ(globals.EditionCode, test.code);
    EXPECT_EQ(globals.SettingsRoot, test.root);
    EXPECT_EQ(globals.AppTitle, test.title + ProgramVersion());
  }
  EXPECT_EQ(ProgramVersion().find_first_not_of("0123456789."), std::string::npos);
}

TEST(Session, CommandLineForTheMiniWindow) {
  for (const char* yes : {"/a", "/A"}) EXPECT_TRUE(IsMiniWindowCommand(yes));
  for (const char* no : {"", "/", "/a ", " /a", "/a x", "/ab", "-a"}) EXPECT_FALSE(IsMiniWindowCommand(no)) << no;
}

TEST(Session, CaptionsOfTheRefreshCommand) {
  EXPECT_EQ(RefreshCaption("Word"), "&Aktualisieren Word VBA Projekte");
  EXPECT_EQ(RefreshTooltip("Word"), "Aktualisieren Word VBA Projekte (F5)");
}

TEST(Session, LastProjectFolderComesFromTheSettings) {
  const testing::TempFolder folder;
  const auto store = settings::MemorySettings();
  const std::pair<std::string, std::string> cases[] = {
      {"", "C:\\"}, {"C", "C:\\"}, {"\xC3\xA4", "C:\\"}, {"/p", "/p"}, {"D:\\Pr\xC3\xB6j\\", "D:\\Pr\xC3\xB6j\\"}};
  for (const auto& [stored, expected] : cases) {
    store->WriteSetting("proj", "proj_pf", stored);
    AppGlobals globals;
    Start(globals, folder.Path(), *store);
    EXPECT_EQ(globals.LastProjectFolder, expected);
    EXPECT_EQ(globals.DefaultFolder, "C:\\");
  }
}

TEST(Session, RunFolderIsMadeBelowTheRootAndRemovedAtTheEnd) {
  const testing::TempFolder folder;
  const auto store = settings::MemorySettings();
  store->WriteSetting("optionen", "tab", "9");
  AppGlobals globals;
  Start(globals, folder.Path() / "neu", *store);
  const fs::path root = folder.Path() / "neu" / "TempDateien";
  EXPECT_EQ(globals.TempFolder, root);
  EXPECT_TRUE(fs::is_directory(root));
  EXPECT_TRUE(globals.RunTempFolder.empty());
  EXPECT_EQ(globals.Options.tab, 5);

  InstanceMark mark(globals.TempFolder);
  MakeRunFolder(globals, mark, *store);
  const fs::path run = globals.RunTempFolder;
  EXPECT_EQ(globals.TempFolder, run);
  EXPECT_EQ(run.parent_path(), root);
  EXPECT_TRUE(fs::is_directory(run));
  const std::string name = run.filename().string();
  EXPECT_EQ(name.substr(0, 2), "T_");
  const int number = std::stoi(name.substr(2));
  EXPECT_EQ("T_" + std::to_string(number), name);
  EXPECT_TRUE(number >= 1 && number <= 300000) << number;
  EXPECT_EQ(globals.Options.tab, 9);

  Write(run / "M1.txt");
  EndRun(globals);
  EXPECT_FALSE(fs::exists(run));
  EXPECT_TRUE(fs::is_directory(root));
}

TEST(Session, SavedProjectIsNotTouchedAtTheEnd) {
  const testing::TempFolder folder;
  const auto store = settings::MemorySettings();
  AppGlobals globals;
  Start(globals, folder.Path(), *store);
  InstanceMark mark(globals.TempFolder);
  MakeRunFolder(globals, mark, *store);
  const fs::path project = folder.Path() / "TempDateien" / "Projekt";
  fs::create_directory(project);
  Write(project / "M1.txt");
  Write(globals.RunTempFolder / "M1.txt");
  globals.TempFolder = project;
  EndRun(globals);
  EXPECT_TRUE(fs::exists(project / "M1.txt"));
  EXPECT_FALSE(fs::exists(globals.RunTempFolder));
  EXPECT_EQ(globals.TempFolder, globals.RunTempFolder);
}

TEST(Session, WithoutAScratchRootTheRunUsesTheSystemsTemporaryFolder) {
  const testing::TempFolder folder;
  const auto store = settings::MemorySettings();
  Write(folder.Path() / "file");
  AppGlobals globals;
  Start(globals, folder.Path() / "file", *store);
  InstanceMark mark(globals.TempFolder);
  EXPECT_FALSE(mark.IsAlone());
  MakeRunFolder(globals, mark, *store);
  const fs::path run = globals.RunTempFolder;
  EXPECT_EQ(globals.TempFolder, run);
  EXPECT_TRUE(fs::equivalent(run.parent_path().parent_path(), fs::temp_directory_path()));
  EXPECT_EQ(fs::status(run.parent_path()).permissions(), fs::perms::owner_all);
  EXPECT_TRUE(fs::is_directory(run));
  Write(run / "M1.txt");
  EndRun(globals);
  EXPECT_FALSE(fs::exists(run.parent_path()));
}

TEST(Session, CleaningStaysInsideTheRoot) {
  const testing::TempFolder folder;
  const fs::path root = folder.Path() / "TempDateien", outside = folder.Path() / "outside";
  for (const fs::path& made : {outside, root / "T_1", root / "T_2", root / "T_3" / "deep"}) {
    fs::create_directories(made);
    Write(made / "file");
  }
  Write(root / "leftover.htm");
  Write(root / kInstanceFile);
  fs::create_directory_symlink(outside, root / "T_4");
  fs::create_directory_symlink(outside, root / "T_2" / "link");
  fs::create_symlink(outside / "file", root / "link.txt");
  fs::create_directory_symlink(outside / "missing", root / "broken");

  CleanScratchRoot(root);
  std::string left;
  for (const auto& entry : fs::directory_iterator(root)) left += entry.path().filename().string() + " ";
  EXPECT_EQ(left.find("T_1"), std::string::npos);
  EXPECT_EQ(fs::exists(root / "T_3" / "deep" / "file"), true);
  EXPECT_EQ(left.size(), std::string("T_3 Quillmate.lock ").size()) << left;
  EXPECT_TRUE(fs::exists(outside / "file"));

  CleanScratchRoot(outside);
  fs::create_directory(folder.Path() / "other");
  fs::create_directory_symlink(outside, folder.Path() / "other" / "TempDateien");
  CleanScratchRoot(folder.Path() / "other" / "TempDateien");
  CleanScratchRoot(folder.Path() / "missing" / "TempDateien");
  EXPECT_TRUE(fs::exists(outside / "file"));
}

#ifndef _WIN32
TEST(Session, ProgramAndTemplateFolders) {
  const testing::TempFolder folder;
  setenv("XDG_DATA_HOME", (folder.Path() / "home").c_str(), 1);
  const fs::path bin = folder.Path() / "bin", data = folder.Path() / "share" / "quillmate";
  const fs::path user = folder.Path() / "home" / "quillmate";
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
#endif

}  // namespace
}  // namespace quillmate::startup
