#include <QAbstractButton>
#include <QCheckBox>
#include <QDialog>
#include <QProgressDialog>
#include <QRadioButton>

#include "window_test.h"

namespace quillmate::testing {
namespace {

namespace fs = std::filesystem;

class HandOverTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    StartWithProject();
    AwaitKnowledge();
    fs::create_directories(Folder("Ziel"));
  }
  /// Gives the command and answers its dialog.
  void HandOver(bool zipped, std::initializer_list<const char*> without = {}) {
    Trigger("mnuDatei_Uebergabe");
    QDialog& dialog = *Window().findChild<QDialog*>("frmUebergabe");
    for (const char* part : without) dialog.findChild<QCheckBox*>(QString::fromLatin1(part))->setChecked(false);
    if (zipped) dialog.findChild<QRadioButton*>("optUebergabeZip")->setChecked(true);
    dialog.findChild<QAbstractButton*>("cmdUebergabe")->click();
  }
  std::vector<std::string> Names(const char* folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(Folder("Ziel") / files::PathFromText(folder))) {
      names.push_back(files::PathText(entry.path().filename()));
    }
    std::sort(names.begin(), names.end());
    return names;
  }
};

TEST_F(HandOverTest, DialogIsNeverTooLowForItsText) {
  Trigger("mnuDatei_Uebergabe");
  QDialog& dialog = *Window().findChild<QDialog*>("frmUebergabe");
  // As it is opened where the screen is small.
  dialog.resize(dialog.width(), dialog.height() - 40);
  QCoreApplication::processEvents();
  int wrapped = 0;
  for (const QLabel* const label : dialog.findChildren<QLabel*>()) {
    wrapped += label->wordWrap() ? 1 : 0;
    EXPECT_GE(label->height(), label->heightForWidth(label->width())) << label->text().toStdString();
  }
  EXPECT_GT(wrapped, 0);
}

TEST_F(HandOverTest, FolderHoldsEverythingAndOpensAgain) {
  platform.folders = {Text(Folder("Ziel")), Text(Folder("Ziel"))};
  Click(Tree("treProjekt"), ProjectNode(0));
  Trigger("mnuLesen_Lesezeichen");
  HandOver(false);
  AwaitTasks();
  const std::vector<std::string> folders = Names("");
  ASSERT_EQ(folders.size(), 1U);
  EXPECT_TRUE(platform.TakeText().startsWith("Die Übergabe liegt in"));
  EXPECT_EQ(Names(folders[0].c_str()),
            (std::vector<std::string>{"Code.pdf", "Dokumentation", "Listen.xlsx", "Projekt", "Übersicht.html"}));
  const fs::path made = Folder("Ziel") / files::PathFromText(folders[0]);
  const std::string cover = files::ReadWholeFile(made / files::PathFromText("Übersicht.html"));
  EXPECT_NE(cover.find("<a href=\"Dokumentation/index.html\">"), std::string::npos);
  EXPECT_NE(cover.find(files::PathText(Sources())), std::string::npos) << "where the code came from";
  EXPECT_NE(cover.find("<td>(Lesezeichen)</td>"), std::string::npos);
  EXPECT_TRUE(fs::exists(made / "Projekt" / "Notizen.db"));
  EXPECT_TRUE(fs::exists(made / "Dokumentation" / "index.html"));
  EXPECT_TRUE(files::ReadWholeFile(made / "Code.pdf").starts_with("%PDF"));
  Trigger("mnuBearbeiten_Suchen_Alle");

  HandOver(false, {"chkUebergabeSeiten", "chkUebergabePdf", "chkUebergabeProjekt"});
  AwaitTasks();
  EXPECT_EQ(Names("").size(), 2U) << "an earlier one stays";
  EXPECT_EQ(Names((folders[0] + " (2)").c_str()), (std::vector<std::string>{"Listen.xlsx", "Übersicht.html"}));
  LeaveProject();
  platform.messages.clear();
  platform.folders = {Text(made / "Projekt")};
  Trigger("mnuÖffnen");
  EXPECT_EQ(platform.TakeText(), "");
  EXPECT_EQ(Tree("treProjekt").model()->rowCount(), 2);
}

TEST_F(HandOverTest, ZipIsWholeOrNotThere) {
  const fs::path zip = Folder("Ziel") / "Alles.zip";
  platform.saveFiles = {Text(zip), Text(zip)};
  HandOver(true);
  Window().findChild<QProgressDialog*>()->findChild<QAbstractButton*>()->click();
  Trigger("mnuDatei_Uebergabe");
  EXPECT_EQ(Window().findChild<QDialog*>("frmUebergabe"), nullptr) << "one at a time";
  AwaitTasks();
  EXPECT_EQ(Names(""), std::vector<std::string>());
  EXPECT_EQ(platform.TakeText(), "") << "who cancels needs no message";
  HandOver(true);
  AwaitTasks();
  EXPECT_EQ(Names(""), std::vector<std::string>{"Alles.zip"});
  const std::string bytes = files::ReadWholeFile(zip);
  for (const char* name : {"Alles/Code.pdf", "Alles/Dokumentation/index.html", "Alles/Projekt/Quillmate.mdb"}) {
    EXPECT_NE(bytes.find(name), std::string::npos) << name;
  }
}

TEST_F(HandOverTest, TheProjectMayBeLeftMeanwhile) {
  platform.folders = {Text(Folder("Ziel"))};
  HandOver(false);
  LeaveProject();
  EXPECT_EQ(Tree("treProjekt").model()->rowCount(), 0);
  platform.messages.clear();
  AwaitTasks();
  EXPECT_TRUE(platform.TakeText().startsWith("Die Übergabe liegt in"));
  const fs::path made = Folder("Ziel") / files::PathFromText(Names("").at(0));
  platform.folders = {Text(made / "Projekt")};
  Trigger("mnuÖffnen");
  EXPECT_EQ(Tree("treProjekt").model()->rowCount(), 2);
  EXPECT_TRUE(fs::exists(made / "Dokumentation" / "index.html"));
}

TEST_F(HandOverTest, TheWindowAsksBeforeItEndsWhatIsNotDone) {
  platform.folders = {Text(Folder("Ziel"))};
  HandOver(false, {"chkUebergabeSeiten", "chkUebergabePdf"});
  // Nothing is done for the window before it hears of it.
  platform.answers = {ui::Answer::kNo};
  Window().close();
  EXPECT_TRUE(Window().isVisible());
  EXPECT_EQ(platform.TakeText(), "Noch nicht fertig: Übergabe.\r\nAbbrechen und beenden ?");
  AwaitTasks();
  EXPECT_EQ(Names("").size(), 1U) << "it goes on";

  platform.messages.clear();
  platform.folders = {Text(Folder("Ziel"))};
  HandOver(false, {"chkUebergabeSeiten", "chkUebergabePdf"});
  platform.answers = {ui::Answer::kYes, ui::Answer::kNo};
  Window().close();
  EXPECT_FALSE(Window().isVisible());
  EXPECT_EQ(Window().findChild<QProgressDialog*>(), nullptr);
  for (const std::string& name : Names("")) EXPECT_FALSE(name.starts_with('.')) << "what was begun is gone";
}

TEST_F(HandOverTest, WhatCantBeMadeLeavesNothing) {
  platform.folders = {Text(Folder("Ziel"))};
  fs::remove(globals.TempFolder / codedb::ModuleTextPath({}, {1}));
  HandOver(false);
  AwaitTasks();
  EXPECT_EQ(platform.messages.size(), 1U);
  EXPECT_EQ(Names(""), std::vector<std::string>());
  EXPECT_EQ(Window().findChild<QProgressDialog*>(), nullptr);
}

}  // namespace
}  // namespace quillmate::testing
