#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QTreeWidget>

#include "compare/compare_side.h"
#include "compare/compare_strip.h"
#include "compare/compare_window.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

constexpr const char* kHead = "Attribute VB_Name = \"M\"\r\nOption Explicit\r\n\r\n";

/// Routines that fill more than the screen, all the same in both states.
std::string Filling(const char* name, int lines) {
  std::string code = "Private Sub " + std::string(name) + "()\r\n";
  for (int i = 0; i < lines; ++i) code += "  Zeile " + std::to_string(i) + "\r\n";
  return code + "End Sub\r\n\r\n";
}

class CompareWindowTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    const std::string start = "Public Sub Start()\r\n  Tue Grenze, 1\r\n  Weg\r\nEnd Sub\r\n\r\n";
    const std::string act = "Private Sub Tue(a, b)\r\n  Debug.Print a + b\r\nEnd Sub\r\n";
    WriteState("alt", "M.bas", kHead + ("Const Grenze = 1\r\n\r\n" + start) + Filling("Lang", 200) + act);
    WriteState("alt", "Weg.bas", "Attribute VB_Name = \"W\"\r\nPublic Sub Weg()\r\nEnd Sub\r\n");
    WriteState("neu", "M.bas",
               kHead + ("Const Grenze = 2\r\n\r\n" + start) + Filling("Lang", 200) +
                   "Private Sub Tue(a, b)\r\n  Debug.Print a - b\r\n  Beep\r\nEnd Sub\r\n");
    WriteState("neu", "Neu.bas", "Attribute VB_Name = \"N\"\r\nPublic Sub Frisch()\r\n  Start\r\nEnd Sub\r\n");
  }

  void WriteState(const char* state, const char* name, const std::string& code) const {
    std::filesystem::create_directories(Folder(state));
    files::WriteWholeFile(Folder(state) / name, code);
  }

  template <typename Widget>
  Widget& Part(const char* name) {
    return *Shown().findChild<Widget*>(QString::fromUtf8(name));
  }
  ui::CompareWindow& Shown() { return *Window().findChild<ui::CompareWindow*>(); }

  /// Chooses two states in the dialog, by their paths, and waits for the answer.
  void Compare(const QString& oldPath, const QString& newPath, const std::function<void(QDialog&)>& more = {}) {
    Trigger("mnuExtras_Vergleichen");
    auto* dialog = Window().findChild<QDialog*>("frmVergleichWahl");
    ASSERT_NE(dialog, nullptr);
    if (!oldPath.isNull()) dialog->findChild<QComboBox*>("cmbAlt")->setEditText(oldPath);
    if (!newPath.isNull()) dialog->findChild<QComboBox*>("cmbNeu")->setEditText(newPath);
    if (more) more(*dialog);
    ASSERT_TRUE(dialog->findChild<QPushButton*>("cmdVergleichen")->isEnabled());
    dialog->findChild<QPushButton*>("cmdVergleichen")->click();
    Await();
  }
  void Await() {
    ASSERT_TRUE(QTest::qWaitFor([this] { return Shown().IsDone(); }, 60'000));
  }
  void CompareFolders() {
    Start();
    Compare(Text(Folder("alt")), Text(Folder("neu")));
  }

  QTreeView& Changes() { return Part<QTreeView>("treAenderungen"); }
  std::string Tree() { return TextOf(*Changes().model()).toStdString(); }
  void Choose(const QString& text) {
    const QModelIndexList found = Changes().model()->match(Changes().model()->index(0, 0), Qt::DisplayRole, text, 1,
                                                           Qt::MatchExactly | Qt::MatchRecursive);
    ASSERT_FALSE(found.isEmpty()) << text.toStdString();
    Changes().setCurrentIndex(found.front());
  }
  QString LineAt(const char* side) { return Part<QPlainTextEdit>(side).textCursor().block().text(); }
};

TEST_F(CompareWindowTest, TreeAndItsFilters) {
  CompareFolders();
  EXPECT_EQ(TooLarge(Shown()).toStdString(), "");
  const QAbstractItemModelTester tester(Changes().model());
  const std::string all =
      "M\n Außerhalb der Routinen\n Konstante Grenze\n Sub Tue\nW\n Sub Weg\nN\n Sub Frisch\nJetzt unbenutzt\n"
      " Sub Frisch\nNicht mehr unbenutzt\n Sub Start\n";
  EXPECT_EQ(Tree(), all);
  Part<QCheckBox>("chkGeaendert").click();
  EXPECT_EQ(Tree(), "W\n Sub Weg\nN\n Sub Frisch\n");
  Part<QCheckBox>("chkNeu").click();
  EXPECT_EQ(Tree(), "W\n Sub Weg\n");
  Part<QCheckBox>("chkEntfallen").click();
  EXPECT_EQ(Tree(), "");
  for (const char* box : {"chkGeaendert", "chkNeu", "chkEntfallen"}) Part<QCheckBox>(box).click();
  EXPECT_EQ(Tree(), all);
  auto& filter = Part<QLineEdit>("txtVergleichFilter");
  filter.setText("FRI");
  EXPECT_EQ(Tree(), "N\n Sub Frisch\nJetzt unbenutzt\n Sub Frisch\n");
  filter.setText("w");
  EXPECT_EQ(Tree(), "W\n Sub Weg\n");
  EXPECT_FALSE(Part<QCheckBox>("chkUmbenannt").isEnabled());
  for (QWidget* control : Shown().findChildren<QWidget*>()) {
    const bool isOwn = !control->objectName().isEmpty() && !control->objectName().startsWith("qt_");
    if (!isOwn || control->focusPolicy() == Qt::NoFocus) continue;
    const QAccessibleInterface* access = QAccessible::queryAccessibleInterface(control);
    EXPECT_FALSE(access->text(QAccessible::Name).isEmpty()) << control->objectName().toStdString();
  }
}

/// Keys lead through all changes, from one module to the next one; both sides go along, and the tree does.
TEST_F(CompareWindowTest, StepsThroughAllChanges) {
  CompareFolders();
  const struct {
    const char *node, *oldLine, *newLine;
  } kSteps[] = {
      {"Außerhalb der Routinen", "Const Grenze = 1", "Const Grenze = 2"},
      {"Sub Tue", "  Debug.Print a + b", "  Debug.Print a - b"},
      {"Sub Weg", "Public Sub Weg()", ""},
      {"Sub Frisch", "", "Public Sub Frisch()"},
  };
  const auto expect = [&](const auto& step) {
    EXPECT_EQ(Changes().currentIndex().data().toString(), QString::fromUtf8(step.node));
    EXPECT_EQ(LineAt("rtbAlt"), step.oldLine);
    EXPECT_EQ(LineAt("rtbNeu"), step.newLine);
  };
  for (const auto& step : kSteps) {
    QTest::keyClick(&Shown(), Qt::Key_F8);
    expect(step);
  }
  QTest::keyClick(&Shown(), Qt::Key_Down, Qt::AltModifier);
  EXPECT_EQ(Part<QLabel>("lblStelle").text(), "Das war die letzte Änderung.");
  for (std::size_t at = std::size(kSteps) - 1; at-- > 0;) {
    QTest::keyClick(&Shown(), Qt::Key_F8, Qt::ShiftModifier);
    expect(kSteps[at]);
  }
}

TEST_F(CompareWindowTest, SidesScrollTogetherAndGiveTheirCode) {
  CompareFolders();
  auto &olds = Part<QPlainTextEdit>("rtbAlt"), &news = Part<QPlainTextEdit>("rtbNeu");
  Choose("Sub Tue");
  QTest::keyClick(&Shown(), Qt::Key_F8);
  const QString line = LineAt("rtbNeu");
  // Keywords have their colour on both sides, names have none.
  for (const QPlainTextEdit* side : {&olds, &news}) {
    const QTextBlock header = side->document()->find("Private Sub Tue").block();
    QString coloured;
    for (const auto& range : header.layout()->formats()) {
      if (range.format.hasProperty(QTextFormat::ForegroundBrush))
        coloured += header.text().mid(range.start, range.length);
    }
    EXPECT_EQ(coloured, "PrivateSub") << side->objectName().toStdString();
  }
  const int before = news.blockCount();
  Part<QCheckBox>("chkGleiches").click();
  EXPECT_GT(news.blockCount(), before + 190);
  EXPECT_EQ(news.blockCount(), olds.blockCount());
  EXPECT_EQ(LineAt("rtbNeu"), line) << "the place stays";
  news.verticalScrollBar()->setValue(0);
  EXPECT_EQ(olds.verticalScrollBar()->value(), 0);
  olds.verticalScrollBar()->setValue(50);
  EXPECT_EQ(news.verticalScrollBar()->value(), 50);
  QTest::mouseClick(&Part<ui::CompareStrip>("picAenderungen"), Qt::LeftButton, {},
                    {5, Part<ui::CompareStrip>("picAenderungen").height() - 1});
  EXPECT_GT(news.verticalScrollBar()->value(), 50);
  Part<QCheckBox>("chkGleiches").click();
  olds.selectAll();
  olds.copy();
  EXPECT_EQ(QApplication::clipboard()->text(),
            "Option Explicit\n\nConst Grenze = 1\n\nPrivate Sub Tue(a, b)\n  Debug.Print a + b\nEnd Sub");
}

TEST_F(CompareWindowTest, UsesOfWhatHasChanged) {
  CompareFolders();
  auto& uses = Part<QTreeWidget>("lstVergleichVerwendungen");
  const auto told = [&uses] {
    QStringList rows;
    for (int row = 0; row < uses.topLevelItemCount(); ++row) {
      const QTreeWidgetItem& item = *uses.topLevelItem(row);
      rows += QStringLiteral("%1 %2 %3").arg(item.text(0), item.text(1), item.text(2));
    }
    return rows.join('|').toStdString();
  };
  const struct {
    const char *node, *uses, *title;
  } kRows[] = {
      {"Konstante Grenze", "M.Start 6 Tue Grenze, 1", "Verwendungen von Konstante Grenze (neuer Stand): 1"},
      {"Sub Weg", "M.Start 7 Weg", "Verwendungen von Sub Weg (alter Stand): 1"},
      {"Sub Frisch", "", "Sub Frisch (neuer Stand) wird nirgends verwendet"},
      {"Sub Tue", "M.Start 6 Tue Grenze, 1", "Verwendungen von Sub Tue (neuer Stand): 1"},
  };
  for (const auto& row : kRows) {
    Choose(row.node);
    EXPECT_EQ(told(), row.uses);
    EXPECT_EQ(Part<QLabel>("lblVerwendungen").text(), QString::fromUtf8(row.title));
  }
  EXPECT_FALSE(Part<QCheckBox>("chkGleiches").isChecked());
  QTest::mouseClick(uses.viewport(), Qt::LeftButton, {},
                    uses.visualItemRect(uses.topLevelItem(0)).topLeft() + QPoint(5, 5));
  EXPECT_EQ(LineAt("rtbNeu"), "  Tue Grenze, 1") << "what is the same is shown where a place is in it";
  EXPECT_TRUE(Part<QCheckBox>("chkGleiches").isChecked());
}

TEST_F(CompareWindowTest, ReportIsWrittenBesideWhatIsRead) {
  CompareFolders();
  platform.saveFiles = {Text(Folder("alt") / "M.bas"), Text(Folder("bericht.html"))};
  Part<QPushButton>("cmdBericht").click();
  EXPECT_TRUE(platform.TakeText().startsWith("Aus dieser Datei wird gelesen"));
  EXPECT_EQ(platform.opened, QStringList());
  Part<QPushButton>("cmdBericht").click();
  EXPECT_NE(files::ReadWholeFile(Folder("bericht.html")).find("<ins>-</ins>"), std::string::npos);
  EXPECT_EQ(platform.opened, QStringList{Text(Folder("bericht.html"))});
}

/// The project on screen is one of the states; its places lead to the window until it goes.
TEST_F(CompareWindowTest, LoadedProjectIsTheNewState) {
  settings::SaveSources(*settings, {files::PathText(Folder("neu"))});
  StartWithProject();
  AwaitKnowledge();
  Compare(Text(Folder("alt")), {});
  Choose("Sub Tue");
  QTest::keyClick(&Shown(), Qt::Key_F8);
  Part<QPushButton>("cmdHauptfenster").click();
  EXPECT_EQ(Code().textCursor().block().text(), "  Debug.Print a - b");
  Part<QPushButton>("cmdTauschen").click();
  Await();
  Choose("Sub Tue");
  EXPECT_TRUE(Part<QPushButton>("cmdHauptfenster").isEnabled());
  LeaveProject();
  EXPECT_TRUE(Part<QPushButton>("cmdHauptfenster").isHidden());
  Part<QPushButton>("cmdNaechste").click();
  EXPECT_EQ(LineAt("rtbAlt"), "  Debug.Print a - b") << "what was compared stays";
}

TEST_F(CompareWindowTest, TwoDroppedFilesAreOffered) {
  Start();
  namespace fs = std::filesystem;
  const fs::path olds = Folder("alt") / "M.bas", news = Folder("neu") / "M.bas";
  fs::last_write_time(olds, fs::last_write_time(news) - std::chrono::hours(1));
  platform.messages.clear();
  platform.answers = {ui::Answer::kCancel, ui::Answer::kYes, ui::Answer::kNo};
  Drop({Text(news), Text(olds)});
  EXPECT_EQ(Window().findChild<ui::CompareWindow*>(), nullptr);
  Drop({Text(news), Text(olds)});
  Await();
  EXPECT_EQ(Tree(), "M\n Außerhalb der Routinen\n Konstante Grenze\n Sub Tue\n");
  QTest::keyClick(&Shown(), Qt::Key_F8);
  EXPECT_EQ(LineAt("rtbAlt"), "Const Grenze = 1");
  const int before =
      ui::Answer::kNo == platform.answers.front() ? this->WindowTest::Tree("treApp").model()->rowCount() : -1;
  Drop({Text(news), Text(olds)});
  EXPECT_EQ(this->WindowTest::Tree("treApp").model()->rowCount(), before + 2);
  EXPECT_EQ(platform.messages.size(), 3U);
  Drop({Text(news), Text(Folder("alt"))});
  EXPECT_EQ(platform.messages.size(), 3U) << "a file and a folder are no two states";
}

TEST_F(CompareWindowTest, WhatCantBeReadAndWhatIsIgnored) {
  Start();
  Trigger("mnuExtras_Vergleichen");
  auto* dialog = Window().findChild<QDialog*>("frmVergleichWahl");
  dialog->findChild<QComboBox*>("cmbAlt")->setEditText(Text(Folder("nirgends")));
  dialog->findChild<QComboBox*>("cmbNeu")->setEditText(Text(Folder("neu")));
  EXPECT_FALSE(dialog->findChild<QPushButton*>("cmdVergleichen")->isEnabled());
  EXPECT_TRUE(dialog->findChild<QLabel*>("lblVergleichProblem")->text().startsWith("Das gibt es nicht"));
  delete dialog;

  // A side that gives nothing is told; one that lacks a module makes it neither gone nor new.
  WriteState("leer", "x.txt", "nichts");
  Compare(Text(Folder("leer")), Text(Folder("neu")));
  EXPECT_TRUE(Part<QLabel>("lblVergleichStand").text().endsWith("Ordner enthält keine Module"));
  EXPECT_FALSE(Part<QPushButton>("cmdBericht").isEnabled());
  delete &Shown();
  WriteState("neu", "Weg.bas", std::string("Sub W()\0End Sub\n", 16));
  Compare(Text(Folder("alt")), Text(Folder("neu")));
  EXPECT_EQ(Tree().find("Sub Weg"), std::string::npos);
  EXPECT_NE(Tree().find("Nicht verglichen\n W\n"), std::string::npos);
  platform.messages.clear();
  Part<QPushButton>("cmdUnlesbar").click();
  EXPECT_TRUE(platform.messages.at(0).list.contains("Weg.bas"));
  delete &Shown();

  WriteState("form", "M.bas", files::ReadWholeFile(Folder("alt") / "M.bas") + "' Ende\r\n\r\n");
  WriteState("form", "Weg.bas", files::ReadWholeFile(Folder("alt") / "Weg.bas"));
  for (const bool ignored : {false, true}) {
    Compare(Text(Folder("alt")), Text(Folder("form")), [ignored](QDialog& choice) {
      for (const char* box : {"chkLayout", "chkKommentare"}) {
        choice.findChild<QCheckBox*>(box)->setChecked(ignored);
      }
    });
    EXPECT_EQ(Part<QLabel>("lblZusammenfassung").text() == "Keine Unterschiede.", ignored);
    delete &Shown();
  }
}

/// Closing the window gives up what is not done.
TEST_F(CompareWindowTest, ClosesWhileItCompares) {
  Start();
  Trigger("mnuExtras_Vergleichen");
  auto* dialog = Window().findChild<QDialog*>("frmVergleichWahl");
  dialog->findChild<QComboBox*>("cmbAlt")->setEditText(Text(Folder("alt")));
  dialog->findChild<QComboBox*>("cmbNeu")->setEditText(Text(Folder("neu")));
  dialog->findChild<QPushButton*>("cmdVergleichen")->click();
  Shown().close();
  EXPECT_TRUE(QTest::qWaitFor([this] { return Window().findChild<ui::CompareWindow*>() == nullptr; }));
}

}  // namespace
}  // namespace quillmate::testing
