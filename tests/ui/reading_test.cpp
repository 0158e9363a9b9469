#include <QScrollBar>
#include <QTextBlock>
#include <QToolButton>

#include "code_editor.h"
#include "desktop_look.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

/// One module of routines and blocks, long enough to be scrolled.
class ReadingTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    std::filesystem::remove_all(Sources());
    std::string code =
        "Attribute VB_Name = \"Lager\"\r\nType Posten\r\n  Nr As Long\r\nEnd Type\r\nSub Eins()\r\n"
        "  If a Then\r\n    For i = 1 To 2\r\n      b = i\r\n    Next i\r\n  Else: c = 1\r\n  End If\r\n"
        "  With x: .y = 1: End With\r\nEnd Sub\r\nSub Zwei( _\r\n  n)\r\n";
    for (int line = 0; line < 200; ++line) code += "  s = s + 1\r\n";
    code += "End Sub\r\nSub Drei()\r\n  Do\r\n  Loop\r\nEnd Sub\r\n";
    for (int line = 0; line < 100; ++line) code += "\r\n";
    AddModule("a.bas", code);
    AddModule("b.bas", "Attribute VB_Name = \"Suche\"\r\nSub Suchen()\r\n  x = 1\r\nEnd Sub\r\n");
    StartWithProject();
    AwaitKnowledge();
    QCoreApplication::processEvents();
  }
  ui::CodeEditor& Editor() { return static_cast<ui::CodeEditor&>(Code()); }
  /// 1-based numbers of the lines that are not hidden, without those of the long routine.
  QString Lines() {
    QStringList lines;
    for (QTextBlock block = Code().document()->begin(); block.blockNumber() < 14; block = block.next()) {
      if (block.isVisible()) lines << QString::number(block.blockNumber() + 1);
    }
    return lines.join(u' ');
  }
  void PutCaret(int line) {
    Code().setTextCursor(QTextCursor(Code().document()->findBlockByNumber(line - 1)));
    QTest::keyRelease(&Code(), Qt::Key_Shift);
  }
  int CaretLine() { return Code().textCursor().blockNumber() + 1; }
};

TEST_F(ReadingTest, RoutinesAndBlocksAreFolded) {
  const struct {
    int line;
    const char* folded;
  } kCases[] = {
      {7, "1 2 3 4 5 6 9 10 11 12 13 14"},      // the innermost one: For
      {10, "1 2 3 4 5 11 12 13 14"},            // If, up to its end
      {11, "1 2 3 4 13 14"},                    // With is on one line: the routine
      {2, "1 4 5 6 7 8 9 10 11 12 13 14"},      // Type
      {14, "1 2 3 4 5 6 7 8 9 10 11 12 13 14"}  // a header of two lines stays whole
  };
  for (const auto& c : kCases) {
    PutCaret(c.line);
    Trigger("mnuLesen_Klappen");
    EXPECT_EQ(Lines(), c.folded) << c.line;
    const int top = CaretLine();
    EXPECT_TRUE(Code().textCursor().block().isVisible());
    Trigger("mnuLesen_Klappen");
    EXPECT_EQ(Lines(), "1 2 3 4 5 6 7 8 9 10 11 12 13 14") << top;
  }
  Trigger("mnuLesen_Einklappen");
  EXPECT_EQ(Lines(), "1 4 13 14");
  // Keys go past what is hidden, jumps open it.
  PutCaret(4);
  QTest::keyClick(&Code(), Qt::Key_Down);
  EXPECT_EQ(CaretLine(), 13);
  QTest::keyClick(&Code(), Qt::Key_Up);
  EXPECT_EQ(CaretLine(), 4);
  platform.typed = {QStringLiteral("7")};
  Trigger("mnuBearbeiten_GeheZuZeile");
  EXPECT_EQ(CaretLine(), 7);
  EXPECT_EQ(Lines(), "1 4 5 6 7 8 9 10 11 12 13 14");
  Trigger("mnuLesen_Ausklappen");
  EXPECT_EQ(Lines(), "1 2 3 4 5 6 7 8 9 10 11 12 13 14");
  // Each module has its own, kept while another one is on screen.
  PutCaret(2);
  Trigger("mnuLesen_Klappen");
  Click(Tree("treProjekt"), ProjectNode(1));
  Trigger("mnuLesen_Einklappen");
  EXPECT_FALSE(Code().document()->findBlockByNumber(1).isVisible());
  Click(Tree("treProjekt"), ProjectNode(0));
  EXPECT_EQ(Lines(), "1 4 5 6 7 8 9 10 11 12 13 14");
}

TEST_F(ReadingTest, MarginFoldsAndScrollsWithWhatIsHidden) {
  QWidget& margin = *Code().findChild<QWidget*>("picRand");
  const int height = Code().fontMetrics().height();
  QString signs;
  for (int line = 0; line < 14; ++line) signs += Editor().CanFold(line) ? QLatin1Char('+') : QLatin1Char('.');
  EXPECT_EQ(signs, "+..+++.......+") << "a sign beside the first lines only";
  QTest::mouseClick(&margin, Qt::LeftButton, {}, QPoint(margin.width() * 3 / 4, 2 * height + height / 2));
  EXPECT_EQ(Lines(), "1 2 3 4 5 6 7 8 9 10 11 12 13 14");
  QTest::mouseClick(&margin, Qt::LeftButton, {}, QPoint(margin.width() * 3 / 4, 3 * height + height / 2));
  EXPECT_EQ(Lines(), "1 2 3 4 13 14");
  Editor().FoldAll(true);
  EXPECT_LT(Code().verticalScrollBar()->maximum(), 120);
  // A jump far down is where it should, although the lines above are folded.
  platform.typed = {QStringLiteral("216")};
  Trigger("mnuBearbeiten_GeheZuZeile");
  EXPECT_EQ(CaretLine(), 216);
  EXPECT_TRUE(Code().viewport()->rect().contains(Code().cursorRect().center()));
}

TEST_F(ReadingTest, StepsFromRoutineToRoutineAndBack) {
  const auto press = [this](Qt::Key key) { QTest::keyClick(&Code(), key, Qt::ControlModifier); };
  PutCaret(8);
  press(Qt::Key_Down);
  EXPECT_EQ(CaretLine(), 13);
  press(Qt::Key_Down);
  EXPECT_EQ(CaretLine(), 216);
  press(Qt::Key_Down);
  EXPECT_EQ(CaretLine(), 216);
  EXPECT_TRUE(Panel("Vorgang").contains("keine Routine mehr"));
  press(Qt::Key_Up);
  press(Qt::Key_Up);
  EXPECT_EQ(CaretLine(), 4);
  for (const int line : {13, 216, 13, 8}) {
    Trigger("mnuBearbeiten_RouBew3");
    EXPECT_EQ(CaretLine(), line) << "back leads to the very place";
  }
}

TEST_F(ReadingTest, PlaceAndHeaderAreTold) {
  const auto part = [this](const char* name) { return Window().findChild<QToolButton*>(name); };
  auto& header = *Code().findChild<ui::StickyHeader*>();
  EXPECT_EQ(header.Routine(), nullptr);
  PutCaret(100);
  EXPECT_EQ(part("cmdOrtProjekt")->text() + "/" + part("cmdOrtModul")->text() + "/" + part("cmdOrtRoutine")->text(),
            "Quelle/Lager/Zwei");
  Code().verticalScrollBar()->setValue(99);
  ASSERT_NE(header.Routine(), nullptr);
  EXPECT_EQ(header.Routine()->name, "Zwei");
  const int top = Code().viewport()->y();
  QTest::mouseClick(&header, Qt::LeftButton);
  EXPECT_EQ(CaretLine(), 13);
  PutCaret(100);
  part("cmdOrtRoutine")->click();
  EXPECT_EQ(CaretLine(), 13);
  part("cmdOrtModul")->click();
  EXPECT_EQ(CaretLine(), 1);
  EXPECT_FALSE(part("cmdOrtRoutine")->isEnabled());
  part("cmdOrtProjekt")->click();
  EXPECT_TRUE(Tree("treProjekt").hasFocus());
  Trigger("mnuLesen_Kopf");
  EXPECT_LT(Code().viewport()->y(), top);
  EXPECT_EQ(settings->ReadSetting("ansicht", "routinenkopf"), "0");
}

TEST_F(ReadingTest, DarkDesktopGetsDarkCodeThatIsReadable) {
  PutCaret(11);
  Trigger("mnuLesen_Klappen");
  const ui::CodeColours light = Editor().Colours();
  EXPECT_EQ(light.paper, QColor(Qt::white));
  EXPECT_EQ(light.keyword, ui::FromColourValue(globals.Options.fkey));
  ui::UseLook(true);
  QCoreApplication::processEvents();
  const ui::CodeColours dark = Editor().Colours();
  EXPECT_EQ(Code().palette().color(QPalette::Base), dark.paper);
  EXPECT_EQ(Lines(), "1 2 3 4 13 14") << "what was folded stays it";
  for (const QColor& text : {dark.ink, dark.keyword, dark.comment, dark.string, dark.note, dark.link}) {
    EXPECT_GE(ui::ContrastOf(text, dark.paper), 7) << text.name().toStdString();
  }
  for (const QColor& text : {dark.ink, dark.keyword, dark.comment, dark.string}) {
    EXPECT_GE(ui::ContrastOf(text, dark.occurrence), 4.5) << text.name().toStdString();
  }
  for (const ui::CodeColours& colours : {light, dark}) {
    EXPECT_GE(ui::ContrastOf(colours.number, colours.margin), 4.5);
    EXPECT_GE(ui::ContrastOf(colours.selectedInk, colours.selection), 7);
    EXPECT_GE(ui::ContrastOf(colours.note, colours.paper), 7);
  }
  // What is copied is for white paper.
  Code().selectAll();
  Code().copy();
  EXPECT_FALSE(platform.clipboard.html.contains(dark.keyword.name()));
  ui::UseLook(false);
  QCoreApplication::processEvents();
  EXPECT_EQ(Editor().Colours().paper, QColor(Qt::white));
}

}  // namespace
}  // namespace quillmate::testing
