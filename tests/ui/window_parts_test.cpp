#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHelpEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSplitter>
#include <QStandardItemModel>
#include <QToolButton>
#include <QToolTip>
#include <QTreeView>
#include <QVBoxLayout>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "about_box.h"
#include "code_colours.h"
#include "cut_label.h"
#include "desktop_look.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

using ui::MessageIcon;

class PartsTest : public WindowTest {
 protected:
  QDialog* Dialog(const char* name) { return Window().findChild<QDialog*>(QString::fromLatin1(name)); }
};

TEST_F(PartsTest, HelpIsOpenedOrSaidToBeMissing) {
  Start();
  QTest::keyClick(&Window(), Qt::Key_F1);
  EXPECT_EQ(platform.TakeText(),
            "Die Hilfsdatei:\r\nQuillmate.chm\r\nkonnte nicht gefunden werden. \r\nDiese muss im selben Verzeichnis "
            "wie\r\nEQM_XT.exe\r\ninstalliert werden.\r\nBitte kopieren Sie also \r\nQuillmate.chm nach:\r\n" +
                Text(TemplateFile().parent_path()));
  files::WriteWholeFile(Folder("Quillmate.chm"), "Hilfe");
  Tree("treApp").setFocus();
  Trigger("mnuHilfe_Hilfe");
  EXPECT_EQ(platform.opened.back(), Text(Folder("Quillmate.chm")) + "::/hilfe/quellen.html");
  files::WriteWholeFile(Folder("Quillmate.html"), "Hilfe");
  platform.hasHelpViewer = false;
  Trigger("mnuHilfe_Hilfe");
  EXPECT_EQ(platform.opened.back(), Text(Folder("Quillmate.html")));
  EXPECT_EQ(platform.TakeText(), "");
  platform.canOpen = false;
  Trigger("mnuHilfe_Hilfe");
  EXPECT_TRUE(platform.TakeText().startsWith("Die Hilfe kann nicht angezeigt werden:"));
}

TEST_F(PartsTest, HelpOpensThePageOfTheFocusedArea) {
  StartWithProject();
  std::filesystem::create_directory(Folder("hilfe"));
  files::WriteWholeFile(Folder("Quillmate.html"), "Hilfe");
  files::WriteWholeFile(Folder("hilfe") / "code-lesen.html", "Hilfe");
  Window().findChild<QWidget*>("rtbHaupt")->setFocus();
  QTest::keyClick(Window().findChild<QWidget*>("rtbHaupt"), Qt::Key_F1);
  EXPECT_EQ(platform.opened.back(), Text(Folder("hilfe") / "code-lesen.html"));
  std::filesystem::remove(Folder("hilfe") / "code-lesen.html");
  Trigger("mnuHilfe_Hilfe");
  EXPECT_EQ(platform.opened.back(), Text(Folder("Quillmate.html")));
}

TEST_F(PartsTest, StartPageLeadsOn) {
  settings->WriteSetting("recent", "F0", files::PathText(Folder("Lager")));
  Start();
  auto* page = Window().findChild<QWidget*>("fraStart");
  auto* projects = page->findChild<QLabel*>("lblProjekte");
  auto* steps = page->findChild<QLabel*>("lblSchritte");
  EXPECT_TRUE(page->isVisible());
  EXPECT_TRUE(projects->isVisible());
  EXPECT_TRUE(projects->text().contains(">Lager</a>"));
  platform.messages.clear();
  emit projects->linkActivated("mnuOpenIndex0");
  EXPECT_EQ(platform.TakeText(), "Kein Gültiges Projekt");
  emit steps->linkActivated("mnuBearbeiten_Code");
  EXPECT_EQ(platform.TakeText(), "Bitte wählen Sie erst etwas aus");
  for (const QString& link : steps->text().split("href=\"").mid(1)) {
    EXPECT_NE(Window().findChild<QAction*>(link.section('"', 0, 0)), nullptr) << link.toStdString();
  }
  StartWithProject();
  EXPECT_FALSE(Window().findChild<QWidget*>("fraStart")->isVisible());
  EXPECT_TRUE(Window().findChild<QWidget*>("rtbHaupt")->isVisible());
}

TEST_F(PartsTest, StartPageIsReadableWhenTheDesktopTurnsDark) {
  Start();
  ui::UseLook(true);
  QCoreApplication::processEvents();
  const auto* page = Window().findChild<QWidget*>("fraStart");
  const QImage image = Window().grab(QRect(page->mapTo(&Window(), QPoint()), page->size())).toImage();
  const int ground = qGray(image.pixel(1, 1));
  int darker = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) darker += qGray(image.pixel(x, y)) < ground ? 1 : 0;
  }
  EXPECT_EQ(darker, 0);
  ui::UseLook(false);
}

TEST_F(PartsTest, AboutBoxNamesWhatRuns) {
  Start();
  Trigger("mnuHilfe_Info");
  QDialog* box = Dialog("frmInfo");
  ASSERT_NE(box, nullptr);
  files::WriteWholeFile(Folder("Quillmate.html"), "x");
  EXPECT_EQ(box->findChild<QLabel*>("lblTitel")->text(), "Excel Quillmate 1.0");
  const QString text = box->findChild<QPlainTextEdit*>("txtSystem")->toPlainText();
  for (const QString& part : {QStringLiteral("Ausgabe: Excel (EQM)"), QStringLiteral("Version: 1.0"),
                              QStringLiteral("Qt: ") + qVersion(), QStringLiteral("SQLite: 3.")}) {
    EXPECT_TRUE(text.contains(part)) << part.toStdString();
  }
  auto* link = box->findChild<QLabel*>("lblWeb");
  auto* tool = box->findChild<QAbstractButton*>("cmdSysInfo");
  for (const bool works : {true, false}) {
    platform.canOpen = works;
    emit link->linkActivated("hilfe");
    EXPECT_EQ(platform.TakeText().isEmpty(), works);
    tool->click();
    EXPECT_EQ(platform.TakeText().isEmpty(), works);
  }
  EXPECT_EQ(platform.opened.mid(0, 2), (QStringList{Text(Folder("Quillmate.html")), "Systeminformationen"}));
}

TEST_F(PartsTest, SpecialViewConvertsTheClipboardAndLeadsBackOrEnds) {
  for (const bool back : {true, false}) {
    Start();
    int ended = 0;
    QObject::connect(&Window(), &ui::MainWindow::Ended, [&ended] { ++ended; });
    Trigger("mnuAnsicht_Spezial");
    EXPECT_FALSE(Window().isVisible());
    QWidget* mini = Mini();
    ASSERT_NE(mini, nullptr);
    auto* html = mini->findChild<QToolButton*>("cmdHtml");
    platform.clipboard = {};
    platform.messages.clear();
    QTest::mouseClick(html, Qt::LeftButton);
    EXPECT_EQ(platform.TakeText(), "Kein Text in der Zwischenablage");
    platform.clipboard = {QStringLiteral("Dim x"), {}, {}};
    globals.Options.meld = false;
    QTest::mouseClick(html, Qt::LeftButton);
    EXPECT_TRUE(platform.clipboard.text.contains(">Dim</span> x</span></pre>"));
    if (back) {
      QTest::mouseClick(mini->findChild<QToolButton*>("cmdClose"), Qt::LeftButton);
      Trigger("mnuAnsicht_Spezial");
      ASSERT_NE(Mini(), nullptr) << "again, with the mark taken back";
      mini = Mini();
    }
    mini->close();
    EXPECT_EQ(ended, 1);
    EXPECT_FALSE(Window().isVisible());
  }
}

TEST_F(PartsTest, FocusIsWhereItWasAfterTheMiniWindow) {
  StartWithProject();
  // Wide enough for the whole toolbar: a field beyond its end can't take the focus.
  Window().resize(1600, 700);
  QCoreApplication::processEvents();
  for (const char* const name : {"txtSuche", "rtbHaupt", "treProjekt"}) {
    Window().findChild<QWidget*>(QString::fromLatin1(name))->setFocus();
    ASSERT_TRUE(QApplication::focusWidget() != nullptr && QApplication::focusWidget()->objectName() == name) << name;
    Trigger("mnuAnsicht_Spezial");
    ASSERT_NE(Mini(), nullptr) << name;
    EXPECT_NE(QApplication::focusWidget(), Window().focusWidget()) << name;
    QTest::mouseClick(Mini()->findChild<QToolButton*>("cmdClose"), Qt::LeftButton);
    QCoreApplication::processEvents();
    ASSERT_NE(QApplication::focusWidget(), nullptr) << name;
    EXPECT_EQ(QApplication::focusWidget()->objectName().toStdString(), name);
  }
}

TEST_F(PartsTest, SplitterStandsWhereItWasLeft) {
  const auto splitter = [this]() -> QSplitter& { return *Window().findChild<QSplitter*>("fraContainer"); };
  Start();
  splitter().setSizes({412, splitter().width() - 412 - splitter().handleWidth()});
  const int left = splitter().sizes().value(0);
  Window().close();
  const struct {
    std::string stored;
    bool used;
  } kCases[] = {{settings->ReadSetting("ansicht", "teiler"), true}, {"100", false}, {"9999999", false}, {"x", false}};
  for (const auto& c : kCases) {
    settings->WriteSetting("ansicht", "teiler", c.stored);
    Start();
    EXPECT_EQ(splitter().sizes().value(0) == left, c.used) << c.stored;
  }
}

TEST_F(PartsTest, UnusedRoutinesAreListedShownCopiedAndSaved) {
  AddModule("Form.frm",
            "VERSION 5.00\r\nBegin VB.Form Form\r\nEnd\r\nAttribute VB_Name = \"Form\"\r\nSub Laden()\r\n  x = "
            "\"Ziel\"\r\nEnd Sub\r\nPrivate Sub Form_Load()\r\n"
            "End Sub\r\nSub Ziel()\r\nEnd Sub\r\n");
  StartWithProject();
  Trigger("mnuTest");
  ASSERT_TRUE(QTest::qWaitFor([this] { return Dialog("frmUnbenutzt") != nullptr; }, 60'000));
  QDialog* list = Dialog("frmUnbenutzt");
  ASSERT_NE(list, nullptr);
  auto& tree = *list->findChild<QTreeView*>("treUnbenutzt");
  ASSERT_TRUE(QTest::qWaitFor([&] { return tree.model()->rowCount() > 0; }, 60'000)) << "found in the background";
  QAbstractItemModelTester tester(tree.model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  const QString all = TextOf(*tree.model());
  EXPECT_EQ(all, "Form\n Laden\n Ziel\n Form_Load\nZebra\n Zahl\n");
  EXPECT_EQ(tree.model()->index(1, 1, tree.model()->index(0, 0)).data().toString(), "per Text");
  EXPECT_EQ(list->findChild<QLabel*>("lblErgebnis")->text(),
            "Routinen ohne Aufruf: 4 (2 sicher, 1 vom Host, 1 per Text)");

  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                    tree.visualRect(tree.model()->index(0, 0, tree.model()->index(1, 0))).center());
  EXPECT_EQ(Panel("Modul"), "Zebra");
  EXPECT_EQ(Panel("Routine"), "Zahl");

  const auto press = [list](const char* name) { list->findChild<QAbstractButton*>(name)->click(); };
  press("cmdKopieren");
  EXPECT_EQ(platform.clipboard.text,
            "Form\tLaden\tsicher\nForm\tZiel\tper Text\nForm\tForm_Load\tvom Host\nZebra\tZahl\tsicher\n");
  EXPECT_EQ(platform.TakeText(), "Liste in Zwischenablage");
  press("chkNurSicher");
  EXPECT_EQ(TextOf(*tree.model()), "Form\n Laden\nZebra\n Zahl\n");
  platform.saveFiles = {{}, Text(Folder("Liste.CSV")), Text(Folder("Liste.txt")), Text(Folder("fehlt") / "x.txt")};
  for (int time = 0; time < 4; ++time) press("cmdSpeichern");
  EXPECT_EQ(files::ReadWholeFile(Folder("Liste.CSV")),
            "\xEF\xBB\xBFModul;Routine;Klasse\r\nForm;Laden;sicher\r\nZebra;Zahl;sicher\r\n");
  EXPECT_EQ(files::ReadWholeFile(Folder("Liste.txt")), "Form\tLaden\tsicher\nZebra\tZahl\tsicher\n");
  EXPECT_TRUE(platform.TakeText().endsWith("Datei oder Ordner existiert nicht."));

  LeaveProject();
  EXPECT_EQ(Dialog("frmUnbenutzt"), nullptr) << "the list goes with its project";
}

/// The strongest line in the part of a picture where a box is drawn, against the ground in its corner.
double StrongestContrast(const QImage& image, QRect part) {
  const QColor ground = image.pixelColor(part.topLeft());
  double best = 1;
  for (int y = part.top(); y <= part.bottom(); ++y) {
    for (int x = part.left(); x <= part.right(); ++x) {
      best = std::max(best, ui::ContrastOf(image.pixelColor(x, y), ground));
    }
  }
  return best;
}

TEST(DesktopLook, ShowsBoxesThatAreNotTicked) {
  for (const bool dark : {false, true}) {
    ui::UseLook(dark);
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    QStandardItemModel model;
    model.appendRow(new QStandardItem);
    model.item(0)->setCheckable(true);
    auto* tree = new QTreeView;
    tree->setHeaderHidden(true);
    tree->setRootIsDecorated(false);
    tree->setModel(&model);
    // A row in the colour of the selection would hide what the ground is.
    tree->setFocusPolicy(Qt::NoFocus);
    QWidget* const boxes[] = {new QCheckBox, new QRadioButton, tree};
    for (QWidget* box : boxes) layout->addWidget(box);
    window.show();
    for (QWidget* box : boxes) {
      const QRect part = box == tree ? tree->visualRect(model.index(0, 0)) : box->rect();
      const QWidget& painted = box == tree ? *tree->viewport() : *box;
      const QImage image = const_cast<QWidget&>(painted).grab().toImage();
      const QRect looked = part.intersected(QRect(0, 0, 24, 24)).intersected(image.rect());
      EXPECT_GE(StrongestContrast(image, looked), 3) << box->metaObject()->className() << (dark ? " dark" : " light");
    }
  }
  ui::UseLook(false);
}

TEST(DesktopLook, ButtonsOfADialogHaveNoPictures) {
  QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  for (const QAbstractButton* button : box.buttons())
    EXPECT_TRUE(button->icon().isNull()) << button->text().toStdString();
}

TEST(CutLabel, SaysThatItIsCutAndKeepsItsText) {
  ui::CutLabel label(QStringLiteral("Einlesen von einem Ordner mit sehr vielen Modulen"));
  label.setToolTip(QStringLiteral("Aktueller Vorgang"));
  const auto picture = [&label](int width) {
    label.resize(width, 24);
    return label.grab().toImage();
  };
  const QImage narrow = picture(120);
  const QString all = label.text();
  // The same picture as of the text with its "…", and another one than of the text that is cut in the middle.
  label.setText(label.fontMetrics().elidedText(all, Qt::ElideRight, 120));
  EXPECT_EQ(picture(120), narrow);
  EXPECT_TRUE(label.text().endsWith(QChar(0x2026)));
  label.setText(all);
  QHelpEvent ask(QEvent::ToolTip, QPoint(3, 3), label.mapToGlobal(QPoint(3, 3)));
  QApplication::sendEvent(&label, &ask);
  EXPECT_EQ(QToolTip::text(), all + QStringLiteral("\n(Aktueller Vorgang)"));
  QToolTip::hideText();
}

TEST(DesktopLook, IsReadableInTheDarkAndComesBack) {
  const QPalette before = QApplication::palette();
  ui::UseLook(true);
  const QPalette dark = QApplication::palette();
  const struct {
    QPalette::ColorRole text;
    QPalette::ColorRole ground;
  } kPairs[] = {{QPalette::WindowText, QPalette::Window},         {QPalette::Text, QPalette::Base},
                {QPalette::ButtonText, QPalette::Button},         {QPalette::ToolTipText, QPalette::ToolTipBase},
                {QPalette::HighlightedText, QPalette::Highlight}, {QPalette::Link, QPalette::Base},
                {QPalette::PlaceholderText, QPalette::Base}};
  for (const auto& pair : kPairs) {
    EXPECT_GT(qGray(dark.color(pair.text).rgb()) - qGray(dark.color(pair.ground).rgb()), 90) << pair.text;
  }
  ui::UseLook(false);
  EXPECT_EQ(QApplication::palette().color(QPalette::Window), before.color(QPalette::Window));
}

}  // namespace
}  // namespace quillmate::testing
