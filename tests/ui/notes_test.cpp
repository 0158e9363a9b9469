#include <QDialog>
#include <QDockWidget>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

#include <quillmate/codedb/notes.h>

#include "code_editor.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

class NotesTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    std::filesystem::remove_all(Sources());
    WriteLager("");
    AddModule("b.bas", "Attribute VB_Name = \"Suche\"\r\nDim a\r\nSub Suchen()\r\nEnd Sub\r\n");
    Read();
  }
  void WriteLager(const std::string& above) {
    AddModule("a.bas", "Attribute VB_Name = \"Lager\"\r\n" + above +
                           "Sub Eins()\r\n  n = n + 1\r\n  n = n + 1\r\nEnd Sub\r\nSub Zwei()\r\n  n = n + 1 ' \374\r\n"
                           "End Sub\r\n");
  }
  void Read() {
    StartWithProject();
    AwaitKnowledge();
    QCoreApplication::processEvents();
  }
  void PutCaret(int line) {
    Code().setTextCursor(QTextCursor(Code().document()->findBlockByNumber(line - 1)));
    QTest::keyRelease(&Code(), Qt::Key_Shift);
  }
  void Write(int line, const QString& text) {
    PutCaret(line);
    Trigger("mnuLesen_Notiz");
    auto* dialog = Window().findChild<QDialog*>("frmNotiz");
    ASSERT_NE(dialog, nullptr);
    dialog->findChild<QPlainTextEdit*>("txtNotiz")->setPlainText(text);
    dialog->findChild<QPushButton*>("cmdOk")->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  /// What is beside the lines of the module on screen.
  QString Marks() {
    QStringList marks;
    for (int line = 0; line < Code().blockCount(); ++line) {
      const ui::LineMark* mark = static_cast<ui::CodeEditor&>(Code()).MarkAt(line);
      if (mark != nullptr) marks << QString::number(line + 1) + (mark->isBookmark ? "*" : "") + mark->note;
    }
    return marks.join(u'|');
  }
  QString Listed() {
    Trigger("mnuLesen_Notizen");
    QStringList rows;
    const auto& list = *Window().findChild<QTreeWidget*>("lstNotizen");
    for (int row = 0; row < list.topLevelItemCount(); ++row) {
      QStringList columns;
      for (int column = 0; column < 4; ++column) columns << list.topLevelItem(row)->text(column);
      rows << columns.join(u'/');
    }
    return rows.join(u'|');
  }
  int CaretLine() { return Code().textCursor().blockNumber() + 1; }
};

TEST_F(NotesTest, StandBesideTheirLinesAndAreListed) {
  EXPECT_TRUE(Listed().startsWith("Noch keine"));
  Write(3, "zweimal?");
  Write(1, "Kopf\nzwei Zeilen");
  PutCaret(6);
  Trigger("mnuLesen_Lesezeichen");
  EXPECT_EQ(Marks(), "1Kopf\nzwei Zeilen|3zweimal?|6*");
  EXPECT_EQ(Listed(), QStringLiteral("Lager.Eins/1/Notiz/Kopf zwei Zeilen|Lager.Eins/3/Notiz/zweimal?|"
                                     "Lager.Zwei/6/Lesezeichen/n = n + 1 ' \u00fc"));
  auto& list = *Window().findChild<QTreeWidget*>("lstNotizen");
  list.setCurrentItem(list.topLevelItem(1));
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(CaretLine(), 3);
  QTest::keyClick(&list, Qt::Key_Delete);
  EXPECT_EQ(Marks(), "1Kopf\nzwei Zeilen|6*");
  QTest::keyClick(&list, Qt::Key_Escape);
  EXPECT_FALSE(Window().findChild<QDockWidget*>("fraNotizen")->isVisible());
  EXPECT_TRUE(Code().hasFocus());
  Write(1, "");
  PutCaret(6);
  Trigger("mnuLesen_Lesezeichen");
  EXPECT_EQ(Marks(), "");
}

TEST_F(NotesTest, BookmarksAreSteppedThroughInTheOrderOfTheTree) {
  Trigger("mnuLesen_Lesezeichen_Vor");
  EXPECT_TRUE(Panel("Vorgang").contains("keine Lesezeichen"));
  for (const int line : {2, 3}) {
    PutCaret(line);
    QTest::keyClick(&Code(), Qt::Key_F2, Qt::ControlModifier);
  }
  Click(Tree("treProjekt"), ProjectNode(1));
  QTest::mouseClick(Code().findChild<QWidget*>("picRand"), Qt::LeftButton, {}, QPoint(2, 10));
  EXPECT_EQ(Marks(), "1*");
  QStringList way;
  for (int step = 0; step < 4; ++step) {
    QTest::keyClick(&Code(), Qt::Key_F2);
    way << Panel("Modul") + QString::number(CaretLine());
  }
  Trigger("mnuLesen_Lesezeichen_Zurück");
  way << Panel("Modul") + QString::number(CaretLine());
  EXPECT_EQ(way.join(u' '), "Lager2 Lager3 Suche1 Lager2 Suche1");
}

TEST_F(NotesTest, LiveInTheSavedProjectAndSurviveANewRead) {
  const std::filesystem::path folder = Folder("Ziel") / "Lager";
  Write(3, "die zweite");
  Write(5, "Kopf von Zwei");
  SaveAs("Lager", Folder("Ziel"));
  EXPECT_EQ(codedb::LoadNotes(folder).size(), 2U);
  Write(2, "die erste");
  EXPECT_EQ(codedb::LoadNotes(folder).size(), 3U) << "stored with each change";

  // The code has grown, and one routine has lost its line; the project is saved over.
  WriteLager("' neu\r\nDim x\r\n");
  Read();
  EXPECT_EQ(Marks(), "");
  SaveAs("Lager", Folder("Ziel"));
  EXPECT_EQ(Marks(), "4die erste|5die zweite|7Kopf von Zwei");
  AddModule("a.bas", "Attribute VB_Name = \"Lager\"\r\nOption Explicit\r\nSub Eins()\r\n  n = n + 1\r\nEnd Sub\r\n");
  Read();
  SaveAs("Lager", Folder("Ziel"));
  EXPECT_EQ(Marks(), "1Kopf von Zwei|3die zweite\ndie erste");
  std::filesystem::remove(Sources() / "a.bas");
  Read();
  SaveAs("Lager", Folder("Ziel"));
  EXPECT_EQ(Marks(), "");
  EXPECT_TRUE(Listed().startsWith("Lager.Eins//Notiz/"));
  EXPECT_EQ(codedb::LoadNotes(folder).size(), 3U) << "nothing is lost";
}

TEST_F(NotesTest, DamagedFileIsToldAndLeftAlone) {
  SaveAs("Lager", Folder("Ziel"));
  const std::filesystem::path file = Folder("Ziel") / "Lager" / codedb::kNotesFile;
  files::WriteWholeFile(file, "keine Datenbank, aber lang genug, um so auszusehen");
  platform.messages.clear();
  PutCaret(2);
  Trigger("mnuLesen_Lesezeichen");
  EXPECT_TRUE(platform.TakeText().contains("Notizen.db"));
  EXPECT_EQ(Marks(), "");
  EXPECT_EQ(std::filesystem::file_size(file), 50U);
}

TEST_F(NotesTest, StandInTheDocumentation) {
  Write(2, "mit <Lager> klären\nbis Freitag");
  std::filesystem::create_directories(Folder("Doku"));
  platform.folders = {Text(Folder("Doku"))};
  Trigger("mnuHtml_Dokumentation");
  AwaitTasks();
  const std::string page = files::ReadWholeFile(Folder("Doku") / "modul-Lager.html");
  EXPECT_NE(page.find("<a href=\"#z2\">Zeile 2</a></td><td>mit &lt;Lager&gt; klären<br>bis Freitag</td>"), page.npos);
  EXPECT_NE(page.find("id=\"z2\""), page.npos);
  EXPECT_EQ(files::ReadWholeFile(Folder("Doku") / "modul-Suche.html").find("Notizen"), page.npos);
}

TEST_F(NotesTest, ArePrintedBelowTheirLines) {
  Write(2, QStringLiteral("Zeile\n").repeated(100) + "Ende");
  platform.saveFiles = {Text(Folder("Code.pdf"))};
  Trigger("mnuDatei_Pdf");
  auto* dialog = Window().findChild<QDialog*>("frmDrucken");
  ASSERT_NE(dialog, nullptr);
  dialog->findChild<QAbstractButton*>("optModul")->click();
  dialog->findChild<QAbstractButton*>("cmdDrucken")->click();
  AwaitTasks();
  const std::string pdf = files::ReadWholeFile(Folder("Code.pdf"));
  const std::size_t pages = pdf.find("/Count ");
  ASSERT_NE(pages, std::string::npos);
  EXPECT_NE(pdf.substr(pages, 8), "/Count 1");
}

}  // namespace
}  // namespace quillmate::testing
