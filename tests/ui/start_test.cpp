#include <QToolButton>
#include <fstream>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "office/vba_writer.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

using ui::Answer;
using ui::MessageIcon;

class StartTest : public WindowTest {
 protected:
  std::vector<std::string> Remembered() { return settings::LoadSources(*settings); }
  /// The path of a copy beside the folder of the sources: what lies in that counts once.
  std::string Beside(const char* name) const {
    std::filesystem::create_directories(Folder("daneben"));
    std::filesystem::copy_file(Sources() / name, Folder("daneben") / name,
                               std::filesystem::copy_options::overwrite_existing);
    return files::PathText(Folder("daneben") / name);
  }
  std::string Path(const char* name) { return files::PathText(Sources() / name); }
};

TEST_F(StartTest, ListsTheSourcesAllExpandedAndUnticked) {
  Start();
  EXPECT_EQ(platform.TakeText(), "");
  EXPECT_EQ(Window().windowTitle(), "Excel Quillmate 1.0");
  EXPECT_TRUE(Window().isVisible());
  EXPECT_TRUE(Tree("treApp").isVisible());
  EXPECT_EQ(TextOf(*Tree("treApp").model()), "Quelle [Quelle]\n Form\n Zebra\n");
  EXPECT_TRUE(Tree("treApp").isExpanded(HostNode(0)));
  EXPECT_EQ(HostNode(0).data(Qt::CheckStateRole), Qt::Unchecked);
  EXPECT_EQ(Action("mnuAnsicht_App_Aktualisieren").text(), "&Aktualisieren Excel VBA Projekte");
  EXPECT_EQ(Action("refresh").toolTip(), "Aktualisieren Excel VBA Projekte (F5)");
}

TEST_F(StartTest, SaysThatTheHostIsNotOpenWithoutSources) {
  settings->RemoveSettingSection("quellen");
  Start();
  ASSERT_EQ(platform.messages.size(), 1U);
  EXPECT_EQ(platform.messages[0].title, "Excel Quillmate 1.0");
  EXPECT_TRUE(platform.messages[0].text.startsWith("Excel ist im Moment nicht geöffnet."));
  EXPECT_EQ(platform.messages[0].icon, MessageIcon::kInformation);
}

TEST_F(StartTest, OffersToForgetSourcesThatAreGone) {
  const std::string lost = Path("weg.bas");
  for (const Answer answer : {Answer::kNo, Answer::kYes}) {
    settings::SaveSources(*settings, {lost, files::PathText(Sources())});
    platform.answers = {Answer::kOk, answer};
    Start();
    ASSERT_EQ(platform.messages.size(), 2U);
    EXPECT_TRUE(platform.messages[0].text.contains(QString::fromStdString(lost) + ": "))
        << platform.messages[0].text.toStdString();
    EXPECT_TRUE(platform.messages[1].text.contains("Aus der Liste entfernen ?"));
    EXPECT_EQ(Remembered().size(), answer == Answer::kNo ? 2U : 1U);
    platform.messages.clear();
  }
}

TEST_F(StartTest, OffersToForgetSourcesThatCannotBeReadWhenAskedToLookAgain) {
  files::WriteWholeFile(Sources() / "leer.xlsm", "");
  std::filesystem::create_directories(Folder("Ohne"));
  const std::vector<std::string> unreadable = {Path("leer.xlsm"), files::PathText(Folder("Ohne"))};
  settings::SaveSources(*settings, {unreadable[0], files::PathText(Sources()), unreadable[1]});
  Start();
  EXPECT_EQ(platform.messages.size(), 1U) << "not at each start";
  for (const Answer answer : {Answer::kNo, Answer::kYes}) {
    platform.messages.clear();
    platform.answers = {Answer::kOk, answer};
    Trigger(answer == Answer::kNo ? "refresh" : "mnuAnsicht_App_Aktualisieren");
    ASSERT_EQ(platform.messages.size(), 2U);
    EXPECT_EQ(platform.messages[1].text.toStdString(), "Diese Quellen lassen sich nicht lesen:\r\n\r\n" +
                                                           unreadable[0] + "\r\n" + unreadable[1] +
                                                           "\r\n\r\nAus der Liste entfernen ?");
    EXPECT_EQ(Remembered().size(), answer == Answer::kNo ? 3U : 1U);
  }
}

TEST_F(StartTest, AddsFilesAndFoldersAndForgetsWhatIsNoSource) {
  Start();
  files::WriteWholeFile(Sources() / "bild.png", std::string("\0\1\2", 3));
  Tick(0, 1);
  platform.files = {QString::fromStdString(Beside("Zebra.bas")), QString::fromStdString(Path("bild.png"))};
  Trigger("mnuDatei_Dateien");
  EXPECT_EQ(TextOf(*Tree("treApp").model()), "Quelle [Quelle]\n Form\n Zebra\nZebra [Zebra.bas]\n Zebra\n");
  EXPECT_EQ(HostNode(0, 1).data(Qt::CheckStateRole), Qt::Checked) << "adding a source unticks nothing";
  EXPECT_EQ(Remembered(), (std::vector<std::string>{files::PathText(Sources()), Beside("Zebra.bas")}));
  EXPECT_TRUE(platform.TakeText().contains("bild.png: "));
  EXPECT_EQ(Tree("treApp").currentIndex().data(), "Zebra [Zebra.bas]");

  platform.folders = {QString::fromStdString(files::PathText(Sources()) + "/")};
  Trigger("mnuDatei_Ordner");
  EXPECT_EQ(Remembered().size(), 2U) << "a known source is not added twice";
  Drop({QString::fromStdString(Beside("Form.frm"))});
  EXPECT_EQ(Tree("treApp").model()->rowCount(), 3);
}

TEST_F(StartTest, AddingASourceLeavesTheProject) {
  const QStringList form = {QString::fromStdString(Beside("Form.frm"))};
  StartWithProject();
  platform.answers = {Answer::kCancel};
  Drop(form);
  EXPECT_TRUE(Tree("treProjekt").isVisible());
  // Dropped while a question is open: it is taken afterwards.
  platform.onShow = [&] { Drop(form); };
  LeaveProject();
  EXPECT_EQ(Tree("treApp").model()->rowCount(), 1);
  QApplication::processEvents();
  EXPECT_EQ(Tree("treApp").model()->rowCount(), 2);
  Tick(0);
  Trigger("doit");
  platform.answers = {Answer::kNo};
  Drop({QString::fromStdString(Beside("Zebra.bas"))});
  EXPECT_TRUE(Tree("treApp").isVisible());
  EXPECT_EQ(Tree("treApp").currentIndex().data(), "Zebra [Zebra.bas]");
}

TEST_F(StartTest, SingleDocumentIsReadAtOnceAndNotLostUnasked) {
  office::WrittenProject project;
  project.name = "Kasse";
  project.modules.push_back({"Module", "Tag", office::StandardModule("Tag", "Sub Eins()\r\nEnd Sub\r\n\r\n")});
  office::CompoundWriter file;
  project.AddTo(file, "_VBA_PROJECT_CUR/");
  const QStringList document = {Text(Folder("Kasse.xls"))};
  files::WriteWholeFile(Folder("Kasse.xls"), file.File());
  Start();
  Drop(document);
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Tag\n Eins\n");
  // What was read and not saved is asked about, however it would be lost.
  const QString question = QStringLiteral("Projekt wurde nicht gespeichert !\r\nProjekt jetzt speichern ?");
  std::filesystem::create_directories(Folder("anderes"));
  std::filesystem::copy_file(TemplateFile(), Folder("anderes") / "Quillmate.mdb");
  const std::function<void()> losses[] = {[this] { Window().close(); }, [this] { Trigger("mnuEnde"); },
                                          [this] { Drop({Text(Folder("anderes"))}); }, [&] { Drop(document); }};
  for (const auto& lose : losses) {
    platform.answers = {Answer::kCancel};
    lose();
    EXPECT_EQ(platform.TakeText(), question);
    EXPECT_TRUE(Window().isVisible());
    EXPECT_TRUE(Tree("treProjekt").isVisible());
  }
  LeaveProject();
  Trigger("mnuDatei_Sofort");
  EXPECT_EQ(settings->ReadSetting("ansicht", "sofortlesen"), "0");
  Drop(document);
  EXPECT_TRUE(Tree("treApp").isVisible());
}

TEST_F(StartTest, ListsAllThatCannotBeRead) {
  std::vector<std::string> sources;
  for (char name = 'a'; name < 'a' + 10; ++name) sources.push_back(Path(std::string(1, name).c_str()));
  settings::SaveSources(*settings, sources);
  platform.answers = {Answer::kOk, Answer::kNo};
  Start();
  EXPECT_TRUE(platform.messages[0].detail.endsWith("... und 2 weitere"));
  EXPECT_EQ(platform.messages[0].list.count("\r\n"), 9);
}

TEST_F(StartTest, RemovesASource) {
  settings::SaveSources(*settings, {Beside("Form.frm"), files::PathText(Sources())});
  Start();
  Tick(1, 0);
  Tree("treApp").setCurrentIndex(HostNode(0, 0));
  Trigger("mnuPopUpEinlesen_Entfernen");
  EXPECT_EQ(TextOf(*Tree("treApp").model()), "Quelle [Quelle]\n Form\n Zebra\n");
  EXPECT_EQ(HostNode(0, 0).data(Qt::CheckStateRole), Qt::Checked);
  EXPECT_EQ(Remembered(), std::vector<std::string>{files::PathText(Sources())});
  Tree("treApp").setCurrentIndex(HostNode(0));
  Trigger("mnuPopUpEinlesen_Entfernen");
  EXPECT_EQ(Tree("treApp").model()->rowCount(), 0);
  EXPECT_EQ(platform.TakeText(), "");
}

TEST_F(StartTest, AppliesTheStoredDisplaySize) {
  const struct {
    const char* usb;
    const char* bis;
    bool maximized;
    QString message;
  } kCases[] = {
      {"0", "MAX", false, ""},
      {"-1", "MAX", true, ""},
      {"-1", "100;200", false, "Falsche Bildschirmdaten"},
      {"-1", "0;0;-5;900", false, "Falsche Bildschirmdaten"},
      {"-1", "900000;0;9000;9000", false, "Falsche Bildschirmdaten"},
  };
  for (const auto& c : kCases) {
    settings->WriteSetting("optionen", "usb", c.usb);
    settings->WriteSetting("optionen", "bis", c.bis);
    Start();
    EXPECT_EQ(Window().isMaximized(), c.maximized) << c.bis;
    EXPECT_EQ(platform.TakeText(), c.message) << c.bis;
  }
}

TEST_F(StartTest, StoresTheDisplaySizeInTwips) {
  Start();
  const double twips = 1440.0 / Window().logicalDpiX();
  Window().move(32, 48);
  Window().resize(640, 400);
  platform.answers = {Answer::kNo};
  Trigger("mnuExtras_Screen_define");
  EXPECT_EQ(settings->ReadSetting("optionen", "bis"), "");
  EXPECT_EQ(platform.TakeText(), "Aktuelle Anzeigegrösse als Standard festlegen ?");
  Trigger("mnuExtras_Screen_define");
  EXPECT_EQ(QString::fromStdString(settings->ReadSetting("optionen", "bis")),
            QStringLiteral("%1;%2;%3;%4").arg(32 * twips).arg(48 * twips).arg(640 * twips).arg(400 * twips));
  const QRect stored = Window().geometry();
  Window().showMaximized();
  Trigger("mnuExtras_Screen_call");
  EXPECT_FALSE(Window().isMaximized());
  EXPECT_EQ(Window().geometry(), stored);
  Window().showMaximized();
  Trigger("mnuExtras_Screen_define");
  EXPECT_EQ(settings->ReadSetting("optionen", "bis"), "max");
}

TEST_F(StartTest, EndsTheRunOnce) {
  Start();
  int ended = 0;
  QObject::connect(&Window(), &ui::MainWindow::Ended, [&ended] { ++ended; });
  EXPECT_TRUE(std::filesystem::exists(globals.RunTempFolder));
  Trigger("mnuEnde");
  Window().Unload();
  EXPECT_EQ(ended, 1);
  EXPECT_FALSE(std::filesystem::exists(globals.RunTempFolder));
}

TEST_F(StartTest, MiniWindowLeadsBackOrEnds) {
  for (const bool back : {true, false}) {
    Start(true);
    int ended = 0;
    QObject::connect(&Window(), &ui::MainWindow::Ended, [&ended] { ++ended; });
    EXPECT_FALSE(Window().isVisible());
    QWidget* mini = Mini();
    ASSERT_NE(mini, nullptr);
    EXPECT_EQ(mini->pos(), QPoint(0, 0));
    EXPECT_TRUE(mini->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    if (back) {
      QTest::mouseClick(mini->findChild<QToolButton*>("cmdClose"), Qt::LeftButton);
    } else {
      mini->close();
    }
    EXPECT_FALSE(mini->isVisible());
    EXPECT_EQ(Window().isVisible(), back);
    EXPECT_EQ(ended, back ? 0 : 1);
  }
}

}  // namespace
}  // namespace quillmate::testing
