#include <QLineEdit>
#include <map>
#ifdef __unix__
#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#endif

#include <quillmate/project/saved_projects.h>

#include "project_folder.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

namespace fs = std::filesystem;

class SavedProjectTest : public WindowTest {
 protected:
  void Open(const fs::path& folder) {
    platform.folders = {Text(folder)};
    Trigger("open");
  }
  QStringList RecentItems() {
    QStringList items;
    for (int item = 0; item < 10; ++item) {
      const QAction& action = Action(qPrintable(QStringLiteral("mnuOpenIndex%1").arg(item)));
      if (action.isVisible()) items.append(action.text());
    }
    return items;
  }
};

TEST_F(SavedProjectTest, OpensWhatWasSaved) {
  StartWithProject();
  SaveAs("Lager", Folder("Ziel"));
  Trigger("mnuNeu");
  EXPECT_EQ(RecentItems(), QStringList("&0 - Lager"));
  Open(Folder("Ziel") / "Lager");
  EXPECT_EQ(platform.prompts.back(), "Bitte Projekt auswählen");
  EXPECT_EQ(Window().windowTitle(), "Excel Quillmate 1.0 Projekt: Lager");
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Form\n Laden\nZebra\n Adler\n Zahl\n");
  EXPECT_TRUE(Code().toPlainText().startsWith("Sub Laden"));
  EXPECT_TRUE(Action("mnuRtf").isEnabled());
  EXPECT_EQ(RecentItems(), (QStringList{"&0 - Lager", "&1 - Lager"})) << "a project may stand there twice";
  EXPECT_EQ(settings->ReadSetting("recent", "F0"), files::PathText(Folder("Ziel") / "Lager" / ""));
  EXPECT_EQ(settings->ReadSetting("recent", "F0"), settings->ReadSetting("recent", "F1"));
  EXPECT_EQ(platform.TakeText(), "");
  // Leaving it does not touch its files.
  Trigger("mnuNeu");
  EXPECT_TRUE(fs::exists(codedb::CodeDbPath(Folder("Ziel") / "Lager")));
  EXPECT_FALSE(Action("mnuRtf").isEnabled());
  Start();
  Trigger("mnuOpenIndex1");
  EXPECT_EQ(Window().windowTitle(), "Excel Quillmate 1.0 Projekt: Lager") << "the list is there after a new start";
}

TEST_F(SavedProjectTest, WhatIsNoProjectOrBrokenLeavesEverythingAsItWas) {
  StartWithProject();
  const QString title = Window().windowTitle();
  fs::create_directories(Folder("kaputt"));
  files::WriteWholeFile(codedb::CodeDbPath(Folder("kaputt")), "x");
  const struct {
    fs::path folder;
    std::string text;
  } kCases[] = {
      {Sources(), "Kein Gültiges Projekt"},
      {Folder("kaputt"), codedb::BrokenProjectMessage(Folder("kaputt"))},
  };
  for (const auto& c : kCases) {
    Open(c.folder);
    ExpectMessage(QString::fromStdString(c.text), ui::MessageIcon::kExclamation);
    EXPECT_EQ(Window().windowTitle(), title);
    EXPECT_EQ(globals.TempFolder, globals.RunTempFolder);
    Tree("treProjekt").expandAll();
    Click(Tree("treProjekt"), ProjectNode(1, 0));
    EXPECT_EQ(Panel("Routine"), "Adler") << "tree and index still belong together";
    Click(Tree("treProjekt"), ProjectNode(0));
  }
  // The list names the broken one; choosing it is told the same way, with and without a project on screen.
  Trigger("mnuOpenIndex0");
  EXPECT_EQ(platform.TakeText().toStdString(), kCases[1].text);
  fs::remove_all(Folder("kaputt"));
  Trigger("mnuOpenIndex0");
  EXPECT_EQ(platform.TakeText().toStdString(), kCases[0].text);
  LeaveProject();
  platform.messages.clear();
  Open({});
  Trigger("mnuOpenIndex0");
  EXPECT_TRUE(Tree("treApp").isVisible());
}

TEST_F(SavedProjectTest, AProjectThatIsWrittenAnewMeanwhileIsNoticed) {
  StartWithProject();
  SaveAs("Lager", Folder("Ziel"));
  platform.messages.clear();
  // The texts are read ahead.
  QApplication::processEvents();
  const fs::path folder = Folder("Ziel") / "Lager";
  const auto write = [&folder] {
    files::WriteWholeFile(codedb::ModuleTextPath(folder, {2}), "Sub Neu()\r\nEnd Sub\r\n");
    const auto index = codedb::DatabasePath(folder);
    fs::last_write_time(index, fs::last_write_time(index) + std::chrono::hours(1));
  };
  for (const ui::Answer answer : {ui::Answer::kNo, ui::Answer::kYes}) {
    write();
    platform.answers = {answer};
    Click(Tree("treProjekt"), ProjectNode(1));
    ExpectMessage("Das Projekt wurde inzwischen von einem anderen Programm neu geschrieben:\r\n" + Text(folder) +
                      "\r\nNeu laden ?",
                  ui::MessageIcon::kQuestion);
    Click(Tree("treProjekt"), ProjectNode(1));
    EXPECT_EQ(platform.TakeText(), "") << "one question is enough";
    EXPECT_EQ(Code().toPlainText().startsWith("Option"), answer == ui::Answer::kNo);
    Trigger("mnuHtml_Modul");
    EXPECT_EQ(platform.TakeText().contains("neu geschrieben"), answer == ui::Answer::kNo)
        << "no file of another project is exported";
  }
}

TEST_F(SavedProjectTest, AScratchFolderIsNoPlaceForAProject) {
  StartWithProject();
  for (const fs::path& path : {globals.RunTempFolder, globals.ProgramFolder / "TempDateien"}) {
    SaveAs("Lager", path);
    EXPECT_TRUE(platform.TakeText().startsWith("Im Ordner \"TempDateien\" räumt das Programm selbst auf."));
    EXPECT_FALSE(fs::exists(path / "Lager"));
  }
  EXPECT_TRUE(Window().windowTitle().contains('['));
  EXPECT_EQ(RecentItems(), QStringList());
}

TEST_F(SavedProjectTest, AFileOfTheNameStaysAndALinkStaysALink) {
  StartWithProject();
  fs::create_directories(Folder("Ziel"));
  files::WriteWholeFile(Folder("Ziel") / "Lager", "wichtig");
  SaveAs("Lager", Folder("Ziel"));
  EXPECT_TRUE(platform.TakeText().startsWith("Unter diesem Namen gibt es schon eine Datei:\r\n"));
  EXPECT_EQ(files::ReadWholeFile(Folder("Ziel") / "Lager"), "wichtig");
  EXPECT_TRUE(Window().windowTitle().contains('['));
#ifdef __unix__
  fs::create_directories(Folder("Wirklich"));
  fs::create_directory_symlink(Folder("Wirklich"), Folder("Ziel") / "Link");
  SaveAs("Link", Folder("Ziel"));
  EXPECT_TRUE(fs::is_symlink(Folder("Ziel") / "Link"));
  EXPECT_TRUE(fs::exists(codedb::CodeDbPath(Folder("Wirklich"))));
#endif
}

TEST_F(SavedProjectTest, StandardFolderIsUsedUnaskedWhenItExists) {
  StartWithProject();
  globals.Options.stapro = true;
  globals.LastProjectFolder = files::PathText(Sources());
  platform.typed = {QStringLiteral("Lager")};
  Trigger("save");
  EXPECT_TRUE(fs::exists(codedb::CodeDbPath(Sources() / "Lager")));
  EXPECT_EQ(platform.prompts, QStringList("Bitte Projektnamen angeben"));
}

TEST_F(SavedProjectTest, DroppedProjectIsOpened) {
  StartWithProject();
  SaveAs("Lager", Folder("Ziel"));
  Trigger("mnuNeu");
  for (const QLineEdit* field : Window().findChildren<QLineEdit*>()) {
    EXPECT_FALSE(field->acceptDrops()) << field->objectName().toStdString() << " would keep the file for itself";
  }
  Drop({Text(Folder("Ziel") / "Lager")});
  EXPECT_TRUE(Tree("treProjekt").isVisible());
  EXPECT_EQ(settings::LoadSources(*settings).size(), 1U) << "it has not become a source";
}

TEST_F(SavedProjectTest, RecentListHasTenPlacesWithoutGaps) {
  const auto folder = [this](int number) {
    const fs::path path = Folder("Projekte") / ("P" + std::to_string(number));
    fs::create_directories(path);
    return files::PathText(path) + "/";
  };
  std::vector<std::string> expected;
  for (int number = 0; number < 12; ++number) {
    expected.insert(expected.begin(), folder(number));
    if (expected.size() > 10) expected.pop_back();
    EXPECT_EQ(project::AddRecent(*settings, folder(number)), expected);
  }
  EXPECT_EQ(settings->SettingKeys("recent").size(), 10U);
  for (const int gone : {8, 5}) fs::remove_all(files::PathFromText(folder(gone)));
  Start();
  EXPECT_EQ(RecentItems().size(), 10) << "only the next new entry drops what is gone";
  const std::vector<std::string> list = project::AddRecent(*settings, folder(11));
  EXPECT_EQ(list, (std::vector<std::string>{folder(11), folder(11), folder(10), folder(9), folder(7), folder(6),
                                            folder(4), folder(3)}));
  EXPECT_EQ(project::LoadRecent(*settings), list);
  EXPECT_EQ(project::ProjectNameOf("/a/b c/"), "b c");
  EXPECT_EQ(project::ProjectNameOf("/a/b c"), "b c");
}

/// Saves are broken off at each of their steps.
class BrokenSaveTest : public ::testing::Test {
 protected:
  using Files = std::map<std::string, std::string>;

  static void Fill(const fs::path& folder, const Files& files) {
    fs::create_directories(folder);
    for (const auto& [name, text] : files) files::WriteWholeFile(folder / name, text);
  }
  /// A fresh pair of folders for each attempt.
  void Prepare(bool existed) {
    base_ = temp_.Path() / std::to_string(++attempt_);
    Fill(base_ / "von", fresh_);
    if (!existed) return;
    Fill(base_ / "nach", old_);
    Fill(base_ / "nach" / "Eigenes", {{"x", "bleibt"}});
  }
  bool IsWhole(bool existed) {
    const Files files = files::FilesIn(base_ / "nach");
    return files == fresh_ || files == (existed ? old_ : Files());
  }

  const Files fresh_ = {
      {"Quillmate.mdb", std::string(5000, 'n')}, {"M1.txt", "neu"}, {"M2.txt", std::string(9000, 'm')}};
  const Files old_ = {{"Quillmate.mdb", "alt"}, {"M1.txt", "alt"}, {"M7.txt", "alt"}};
  files::ScratchFolder temp_;
  fs::path base_;
  int attempt_ = 0;
};

TEST_F(BrokenSaveTest, AnErrorAtAnyStepLeavesOneProjectWhole) {
  for (const bool existed : {true, false}) {
    bool done = false;
    for (int failing = 1; !done; ++failing) {
      Prepare(existed);
      int step = 0;
      bool thrown = false;
      fs::path left;
      try {
        left = ui::ReplaceProjectFolder(base_ / "von", base_ / "nach", [&step, failing] {
          if (++step == failing)
            throw fs::filesystem_error("copy", std::make_error_code(std::errc::no_space_on_device));
        });
      } catch (const fs::filesystem_error&) {
        thrown = true;
      }
      done = step < failing;
      EXPECT_EQ(files::FilesIn(base_ / "nach"), !thrown ? fresh_ : existed ? old_ : Files()) << failing;
      // Half a copy is removed; what stays of the old project is told.
      const std::string beside = left.empty() ? "" : files::PathText(left.filename()) + " ";
      EXPECT_EQ(files::Names(base_), (existed || !thrown ? "nach " : "") + beside + "von");
    }
    EXPECT_EQ(files::Names(base_), "nach von") << "nothing is left beside the project";
    EXPECT_EQ(files::Names(base_ / "nach"), std::string(existed ? "Eigenes " : "") + "M1.txt M2.txt Quillmate.mdb");
  }
  EXPECT_THROW(ui::ReplaceProjectFolder(base_ / "fehlt", base_ / "nach"), fs::filesystem_error);
  EXPECT_EQ(files::FilesIn(base_ / "nach"), fresh_);
}

#ifdef __unix__

/// Runs a save in a process of its own and says whether it came to its end.
template <typename Work>
bool SurvivesInChild(Work work) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(BrokenSaveTest, AKillAtAnyStepLeavesOneProjectWhole) {
  for (const bool existed : {true, false}) {
    int killed = 0;
    bool survived = false;
    while (!survived) {
      Prepare(existed);
      survived = SurvivesInChild([this, left = killed]() mutable {
        ui::ReplaceProjectFolder(base_ / "von", base_ / "nach", [&left] {
          if (left-- == 0) raise(SIGKILL);
        });
      });
      EXPECT_TRUE(IsWhole(existed)) << killed;
      EXPECT_EQ(files::FilesIn(base_ / "von"), fresh_);
      if (!survived) ++killed;
    }
    EXPECT_EQ(files::FilesIn(base_ / "nach"), fresh_);
    EXPECT_GE(killed, existed ? 10 : 5) << "every step was tried";
  }
}

TEST_F(BrokenSaveTest, AFullDiskLeavesTheOldProject) {
  Prepare(true);
  EXPECT_TRUE(SurvivesInChild([this] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{6000, 6000};
    setrlimit(RLIMIT_FSIZE, &limit);
    try {
      ui::ReplaceProjectFolder(base_ / "von", base_ / "nach");
    } catch (const fs::filesystem_error&) {
      _exit(0);
    }
    _exit(1);
  }));
  EXPECT_EQ(files::FilesIn(base_ / "nach"), old_);
  EXPECT_FALSE(fs::exists(base_ / "nach.neu"));
}

#endif

}  // namespace
}  // namespace quillmate::testing
