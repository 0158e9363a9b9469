#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
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
  /// The path of a copy beside the folder of the sources: what is in that counts once.
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

TEST_F(StartTest, SaysThatTheHostIsNotOpenWhenAsked) {
  settings->RemoveSettingSection("quellen");
  Start();
  EXPECT_EQ(platform.TakeText(), "") << "no host runs here, and none is missed";
  QTest::keyClick(&Window(), Qt::Key_F5);
  ASSERT_EQ(platform.messages.size(), 1U);
  EXPECT_EQ(platform.messages[0].title, "Excel Quillmate 1.0");
  EXPECT_TRUE(platform.messages[0].text.startsWith("Excel ist im Moment nicht geöffnet."));
  EXPECT_EQ(platform.messages[0].icon, MessageIcon::kInformation);
}

TEST_F(StartTest, LookingAgainFindsWhatIsNewAndKeepsTheTicks) {
  Start();
  Tick(0, 1);
  QString listed = QStringLiteral("Quelle [Quelle]\n Form\n Zebra\n");
  for (const char* command : {"refresh", "mnuAnsicht_App_Aktualisieren"}) {
    // Another window has added a source meanwhile.
    const std::string name = std::string(command) + ".bas";
    std::filesystem::create_directories(Folder("daneben"));
    files::WriteWholeFile(Folder("daneben") / name, "Sub A()\r\n  x = 1\r\nEnd Sub\r\n");
    std::vector<std::string> sources = Remembered();
    sources.push_back(files::PathText(Folder("daneben") / name));
    settings::SaveSources(*settings, sources);
    Trigger(command);
    listed += QStringLiteral("%1 [%1.bas]\n %1\n").arg(QLatin1String(command));
    EXPECT_EQ(TextOf(*Tree("treApp").model()), listed);
    EXPECT_EQ(HostNode(0, 1).data(Qt::CheckStateRole), Qt::Checked) << command;
    EXPECT_EQ(HostNode(0, 0).data(Qt::CheckStateRole), Qt::Unchecked) << command;
  }
}

TEST_F(StartTest, AddedSourceIsInSightWhateverIsAroundIt) {
  for (const char* name : {"alt", "neu"}) {
    std::filesystem::create_directories(Folder(name));
    for (int module = 0; module < 80; ++module) {
      files::WriteWholeFile(Folder(name) / ("m" + std::to_string(module) + ".bas"), "Sub A()\r\n  x\r\nEnd Sub\r\n");
    }
  }
  settings::SaveSources(*settings, {files::PathText(Folder("alt"))});
  Start();
  Drop({Text(Folder("neu"))});
  const QTreeView& tree = Tree("treApp");
  EXPECT_EQ(tree.currentIndex().data(), "neu [neu]");
  for (const QModelIndex& shown : {tree.currentIndex(), HostNode(1, 0)}) {
    EXPECT_TRUE(tree.viewport()->rect().contains(tree.visualRect(shown).center()))
        << shown.data().toString().toStdString();
  }
}

TEST_F(StartTest, UnreadableSourcesAreGreyAndGoOneByOne) {
  files::WriteWholeFile(Folder("leer.xlsm"), "");
  const std::vector<std::string> unreadable = {files::PathText(Folder("weg.bas")),
                                               files::PathText(Folder("leer.xlsm"))};
  settings::SaveSources(*settings, {unreadable[0], files::PathText(Sources()), unreadable[1]});
  Start();
  EXPECT_EQ(platform.TakeText(), "") << "no box at each start";
  QTreeView& tree = Tree("treApp");
  ASSERT_EQ(tree.model()->rowCount(), 3);
  EXPECT_TRUE(HostNode(1).data().toString().startsWith("weg.bas \u2013 "))
      << HostNode(1).data().toString().toStdString();
  EXPECT_TRUE(HostNode(2).data(Qt::ToolTipRole).toString().startsWith(QString::fromStdString(unreadable[1])));
  EXPECT_FALSE(HostNode(1).data(Qt::CheckStateRole).isValid());
  EXPECT_EQ(HostNode(1).data(Qt::ForegroundRole).value<QBrush>().color(),
            QApplication::palette().color(QPalette::Disabled, QPalette::Text));
  Trigger("mnuPopUpEinlesen_Alle");
  Trigger("mnuAnsicht_App_Aktualisieren");
  ASSERT_EQ(platform.messages.size(), 1U) << "asked for, they are told";
  EXPECT_EQ(HostNode(0, 0).data(Qt::CheckStateRole), Qt::Checked) << "what is still there stays ticked";
  platform.messages.clear();
  tree.setCurrentIndex(HostNode(2));
  Trigger("mnuPopUpEinlesen_Entfernen");
  EXPECT_EQ(Remembered(), (std::vector<std::string>{unreadable[0], files::PathText(Sources())}));
  EXPECT_TRUE(Panel("Vorgang").endsWith("leer.xlsm"));
  EXPECT_EQ(platform.TakeText(), "");
}

TEST_F(StartTest, SourcesAreFilteredCountedAndReadAllAtOnce) {
  Start();
  auto& filter = *Window().findChild<QLineEdit*>("txtQuellenFilter");
  auto& count = *Window().findChild<QLabel*>("lblQuellen");
  const auto press = [this](const char* name) {
    QTest::mouseClick(Window().findChild<QAbstractButton*>(name), Qt::LeftButton);
  };
  EXPECT_EQ(count.text(), "1 Projekt, 2 Module, 0 angekreuzt");
  filter.setText("zeb");
  EXPECT_EQ(TextOf(*Tree("treApp").model()), "Quelle [Quelle]\n Zebra\n");
  press("cmdAlle");
  EXPECT_EQ(count.text(), "1 Projekt, 2 Module, 1 angekreuzt");
  filter.clear();
  EXPECT_EQ(HostNode(0, 0).data(Qt::CheckStateRole), Qt::Unchecked);
  EXPECT_EQ(HostNode(0, 1).data(Qt::CheckStateRole), Qt::Checked);
  press("cmdKeine");
  EXPECT_EQ(count.text(), "1 Projekt, 2 Module, 0 angekreuzt");
  press("cmdAlleLesen");
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Form\n Laden\nZebra\n Adler\n Zahl\n");
}

TEST_F(StartTest, FileAndItsFolderAreOneSource) {
  settings::SaveSources(*settings, {Path("Zebra.bas")});
  Start();
  EXPECT_EQ(TextOf(*Tree("treApp").model()), "Zebra [Zebra.bas]\n Zebra\n");
  Drop({Text(Sources())});
  EXPECT_EQ(TextOf(*Tree("treApp").model()), "Quelle [Quelle]\n Form\n Zebra\n");
  EXPECT_EQ(Remembered(), std::vector<std::string>{files::PathText(Sources())});
  Drop({QString::fromStdString(Path("Form.frm"))});
  EXPECT_EQ(Remembered().size(), 1U);

  // A project in the folder goes only with the folder, after a question that names all of it.
  files::WriteWholeFile(Sources() / "Eins.vbp", "Module=Zebra; Zebra.bas\r\nName=\"Eins\"\r\n");
  Start();
  ASSERT_EQ(TextOf(*Tree("treApp").model()), "Quelle [Quelle]\n Form\nEins [Eins.vbp]\n Zebra\n");
  for (const Answer answer : {Answer::kNo, Answer::kYes}) {
    platform.answers = {answer};
    Tree("treApp").setCurrentIndex(HostNode(1));
    Trigger("mnuPopUpEinlesen_Entfernen");
    const QString text = platform.TakeText();
    for (const QString& part : {Text(Sources()), QStringLiteral("Quelle [Quelle]"), QStringLiteral("Eins [Eins.vbp]"),
                                Text(Sources() / "Eins.vbp") + "\r\nliegt darin"})
      EXPECT_TRUE(text.contains(part)) << text.toStdString();
    EXPECT_EQ(Remembered().size(), answer == Answer::kNo ? 1U : 0U);
  }
}

TEST_F(StartTest, StartPageIsScrolledWhereItDoesNotFit) {
  Start();
  Window().resize(683, 384);
  QCoreApplication::processEvents();
  for (const char* name : {"lblStart", "lblSchritte", "lblAblage"}) {
    const auto& label = *Window().findChild<QLabel*>(QString::fromLatin1(name));
    EXPECT_GE(label.height(), label.heightForWidth(label.width())) << name << " is cut";
  }
}

TEST_F(StartTest, SampleIsReadWithoutBecomingASource) {
  std::filesystem::create_directories(Folder("Beispiel"));
  std::filesystem::copy(Sources(), Folder("Beispiel") / "Lagerverwaltung");
  Start();
  emit Window().findChild<QLabel*>("lblSchritte")->linkActivated("mnuHilfe_Beispiel");
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Form\n Laden\nZebra\n Adler\n Zahl\n");
  EXPECT_EQ(Remembered(), std::vector<std::string>{files::PathText(Sources())});
  LeaveProject();
  EXPECT_EQ(Tree("treApp").model()->rowCount(), 1);
  std::filesystem::remove_all(Folder("Beispiel"));
  Trigger("mnuHilfe_Beispiel");
  EXPECT_TRUE(platform.messages.back().text.startsWith("Das Beispielprojekt ist nicht installiert"));
}

TEST_F(StartTest, ReadsModuleFilesInTheCodePageOfTheOptions) {
  Start();
  Trigger("mnuExtras_Optionen");
  auto& dialog = *Window().findChild<QDialog*>("frmOptionen");
  auto& pages = *dialog.findChild<QComboBox*>("cboZeichensatz");
  pages.setCurrentIndex(pages.findData(1251));
  dialog.findChild<QAbstractButton*>("chkExcel4")->setChecked(true);
  dialog.findChild<QAbstractButton*>("cmdOK")->click();
  EXPECT_EQ(settings->ReadSetting("lesen", "zeichensatz") + settings->ReadSetting("lesen", "excel4"), "1251-1");
  StartWithProject();
  Click(Tree("treProjekt"), ProjectNode(1));
  AwaitKnowledge();
  // Cyrillic letters are none of the index, and told.
  EXPECT_TRUE(Code().toPlainText().contains("Call Adler ' ???")) << Code().toPlainText().toStdString();
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

TEST_F(StartTest, MoreModulesThanViewsAreNotRead) {
  Start();
  globals.MostViews = 1;
  Tick(0);
  Trigger("doit");
  EXPECT_TRUE(platform.TakeText().startsWith("Mehr als 1 Module kann das Fenster nicht zeigen."));
  EXPECT_TRUE(Tree("treApp").isVisible());
  globals.MostViews = 2;
  Trigger("doit");
  EXPECT_FALSE(Tree("treApp").isVisible());
  // The command line saves projects of any size.
  SaveAs("Lager", Folder("Ziel"));
  globals.MostViews = 1;
  platform.messages.clear();
  Drop({Text(Folder("Ziel") / "Lager")});
  ExpectMessage("Mehr als 1 Module kann das Fenster nicht zeigen.\r\n" + Text(Folder("Ziel") / "Lager"),
                MessageIcon::kExclamation);
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Form\n Laden\nZebra\n Adler\n Zahl\n") << "what was there stays";
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
  Start();
  EXPECT_TRUE(platform.messages.empty());
  Trigger("refresh");
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

TEST_F(StartTest, FilesOnTheCommandLineAreRefusedAloud) {
  Start().RefuseCommandLine(QStringLiteral("/tmp/Mappe.xlsm"));
  EXPECT_EQ(Panel("Vorgang"),
            "Dateien werden auf der Befehlszeile nicht gelesen; ziehen Sie sie auf das Fenster: /tmp/Mappe.xlsm");
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
