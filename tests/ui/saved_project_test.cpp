#include <QLineEdit>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/project/saved_projects.h>

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
      {Folder("kaputt"), codedb::BrokenProject(Folder("kaputt")).what()},
  };
  // After the question whether to save what is on screen, where that gets as far.
  const auto told = [this] {
    const ui::Message message = platform.messages.back();
    platform.TakeText();
    EXPECT_EQ(message.icon, ui::MessageIcon::kExclamation);
    return message.text.toStdString();
  };
  for (const auto& c : kCases) {
    platform.answers = {ui::Answer::kNo};
    Open(c.folder);
    EXPECT_EQ(told(), c.text);
    EXPECT_EQ(Window().windowTitle(), title);
    EXPECT_EQ(globals.TempFolder, globals.RunTempFolder);
    Tree("treProjekt").expandAll();
    Click(Tree("treProjekt"), ProjectNode(1, 0));
    EXPECT_EQ(Panel("Routine"), "Adler") << "tree and index still belong together";
    Click(Tree("treProjekt"), ProjectNode(0));
  }
  // The list names the broken one; choosing it is told the same way, with and without a project on screen.
  platform.answers = {ui::Answer::kNo};
  Trigger("mnuOpenIndex0");
  EXPECT_EQ(told(), kCases[1].text);
  fs::remove_all(Folder("kaputt"));
  Trigger("mnuOpenIndex0");
  EXPECT_EQ(told(), kCases[0].text);
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
    const auto index = codedb::CodeDbPath(folder);
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
    EXPECT_TRUE(platform.TakeText().startsWith("Im Ordner „TempDateien“ räumt das Programm selbst auf."));
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

TEST_F(SavedProjectTest, OnlyTheProjectsOwnFilesAreReplaced) {
  StartWithProject();
  const fs::path own = Folder("Ziel") / "Lager";
  const fs::path foreign = Folder("Ziel") / "Bilder";
  fs::create_directories(foreign);
  files::WriteWholeFile(foreign / "M1.txt", "fremd");
  SaveAs("Bilder", Folder("Ziel"));
  EXPECT_TRUE(platform.TakeText().startsWith("Dieser Ordner ist kein Projekt und nicht leer:\r\n"));
  EXPECT_TRUE(Window().windowTitle().contains('[')) << "nothing was asked, nothing was saved";
  EXPECT_EQ(files::Names(foreign), "M1.txt");
  SaveAs("Lager", Folder("Ziel"));
  files::WriteWholeFile(own / "M7.txt", "fremd");
  files::WriteWholeFile(own / "Notiz.txt", "fremd");
  StartWithProject();
  platform.answers = {ui::Answer::kYes};
  SaveAs("Lager", Folder("Ziel"));
  EXPECT_EQ(Window().windowTitle(), "Excel Quillmate 1.0 Projekt: Lager");
  EXPECT_EQ(files::Names(own), "Fakten.db M1.txt M2.txt M7.txt Notiz.txt Quillmate.mdb");
}

TEST_F(SavedProjectTest, SourcesAreNeverWrittenTo) {
  StartWithProject();
  const fs::path source = fs::directory_iterator(Sources())->path();
  const std::string code = files::ReadWholeFile(source);
  fs::create_hard_link(source, Folder("a.RTF"));
  fs::create_hard_link(codedb::ModuleTextPath(globals.TempFolder, {1}), Folder("b.RTF"));
  for (const char* const name : {"a.RTF", "b.RTF"}) {
    platform.saveFiles = {Text(Folder(name))};
    Trigger("mnuRtf_Projekt");
    EXPECT_TRUE(platform.TakeText().startsWith("Aus dieser Datei wird gelesen")) << name;
  }
  EXPECT_EQ(files::ReadWholeFile(source), code);
}

}  // namespace
}  // namespace quillmate::testing
