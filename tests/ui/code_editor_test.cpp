#include "code_editor.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <deque>
#include <string>

#include <gtest/gtest.h>

#include <quillmate/text/markers.h>

#include "code_clip.h"

namespace quillmate::ui {
namespace {

using navigation::CodeView;
using navigation::PlainModule;
using navigation::StripMarkers;

const std::string kMarked =
    "|\237k|' \304rger|n\237|\r\n"
    "|\237x||\237f|Sub|n\237| A()|y\237|\r\n"
    "\ts = |\237s|\"<x>\"|n\237|\r\n"
    "|\237x||\237f|End Sub|n\237||y\237|\r\n";

class CodeEditorTest : public ::testing::Test {
 protected:
  CodeEditorTest() { editor.SetStyle(StyleOf(settings::Options(), 96)); }
  void Show(int index = 0) { editor.ShowView(index, view, module.runs); }

  PlainModule module = StripMarkers(kMarked);
  CodeView view{module.text};
  CodeEditor editor;
};

TEST_F(CodeEditorTest, ColoursEachLine) {
  Show();
  ASSERT_EQ(editor.blockCount(), 5);
  const struct {
    int line;
    int column;
    const char* colour;
    bool bold;
  } kRuns[] = {{0, 2, "#008000", false},
               {1, 0, "#000080", true},
               {1, 4, "", true},
               {2, 6, "#800000", false},
               {3, 0, "#000080", true}};
  for (const auto& expected : kRuns) {
    QString colour;
    bool bold = false;
    for (const auto& range : editor.document()->findBlockByNumber(expected.line).layout()->formats()) {
      if (range.start > expected.column || range.start + range.length <= expected.column) continue;
      if (range.format.hasProperty(QTextFormat::ForegroundBrush)) colour = range.format.foreground().color().name();
      bold = bold || range.format.fontWeight() == QFont::Bold;
    }
    EXPECT_EQ(colour, expected.colour) << expected.line;
    EXPECT_EQ(bold, expected.bold) << expected.line;
  }
}

TEST_F(CodeEditorTest, CaretAndSelectionAreThoseOfTheView) {
  Show();
  // In the view a line break counts two characters, on screen one.
  view.GoToLine({4});
  editor.ShowSelection();
  EXPECT_EQ(editor.textCursor().selectedText(), "End");
  EXPECT_EQ(view.SelText(), "End");

  QTest::keyClick(&editor, Qt::Key_Up);
  QTest::keyClick(&editor, Qt::Key_Home);
  EXPECT_EQ(view.SelStart(), view.LineStart(2));
  QTest::keyClick(&editor, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(view.SelText(), "\ts = \"<x>\"\r\n");
  QTest::keyClick(&editor, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(view.SelLength(), view.Length());
  QTest::keyClicks(&editor, "x");
  QTest::keyClick(&editor, Qt::Key_Delete);
  EXPECT_EQ(editor.toPlainText().size(), static_cast<qsizetype>(module.text.size()) - 4) << "nothing can be typed";
}

TEST_F(CodeEditorTest, ComingBackFindsTheSelectionAgain) {
  CodeView other(std::string("a\r\nb\r\n"));
  const std::vector<navigation::StyleRun> none;
  Show(0);
  view.GoToLine({2});
  editor.ShowSelection();
  editor.ShowView(1, other, none);
  EXPECT_EQ(editor.toPlainText(), "a\nb\n");
  EXPECT_EQ(editor.textCursor().position(), 0);
  Show(0);
  EXPECT_EQ(editor.textCursor().selectedText(), "Sub");
  EXPECT_EQ(view.SelText(), "Sub");
}

TEST_F(CodeEditorTest, KeepsABoundedNumberOfDocuments) {
  const std::vector<navigation::StyleRun> none;
  std::deque<CodeView> views;
  for (int i = 0; i < 30; ++i) {
    views.emplace_back(std::to_string(i));
    editor.ShowView(i, views.back(), none);
  }
  EXPECT_EQ(editor.KeptDocuments(), 20U);
  for (const int i : {29, 0, 15}) {
    editor.ShowView(i, views[static_cast<std::size_t>(i)], none);
    EXPECT_EQ(editor.toPlainText(), QString::number(i));
  }
  std::string large;
  for (int i = 0; i < 70000; ++i) large += "x\r\n";
  views.emplace_back(large);
  editor.ShowView(99, views.back(), none);
  EXPECT_EQ(editor.KeptDocuments(), 1U);
  editor.Forget();
  EXPECT_EQ(editor.KeptDocuments(), 0U);
  EXPECT_EQ(editor.toPlainText(), "");
}

TEST_F(CodeEditorTest, CopyKeepsTheColours) {
  Show();
  view.Select(2, module.text.size() - 4);
  editor.ShowSelection();
  editor.copy();
  const QMimeData& data = *QApplication::clipboard()->mimeData();
  EXPECT_EQ(data.text(), QStringLiteral("Ärger\nSub A()\n\ts = \"<x>\"\nEnd Sub"));
#ifdef Q_OS_WIN
  const QByteArray rtf = data.data("Rich Text Format");
#else
  const QByteArray rtf = data.data("text/rtf");
#endif
  EXPECT_TRUE(rtf.startsWith("{\\rtf1\\ansi"));
  EXPECT_TRUE(rtf.contains("\\cf2 \304rger\\cf0 "));
  EXPECT_TRUE(data.html().contains("<span style=\"color:#800000;\">&quot;&lt;x&gt;&quot;</span>"));
  EXPECT_TRUE(data.html().contains("<span style=\"color:#000080;font-weight:bold;\">End Sub</span>"));
  // In all forms LF; lines of RTF end in a word of its own.
  EXPECT_FALSE(data.html().contains('\r'));
  EXPECT_TRUE(data.html().contains("</span>\n<span"));
  EXPECT_EQ(rtf.count("\\par"), 3 + 1);
}

TEST_F(CodeEditorTest, AnyStretchMarksUpToItself) {
  for (std::size_t start = 0; start <= module.text.size(); ++start) {
    for (std::size_t length = 0; start + length <= module.text.size(); ++length) {
      const std::string part = module.text.substr(start, length);
      EXPECT_EQ(StripMarkers(MarkedUp({module.text, module.runs, start, length})).text, part);
    }
  }
}

}  // namespace
}  // namespace quillmate::ui
