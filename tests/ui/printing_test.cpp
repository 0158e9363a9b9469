#include <QFontMetricsF>
#include <QPaintEngine>
#include <QPdfWriter>
#include <vector>

#include <gtest/gtest.h>

#include "code_printing.h"
#include "qt_text.h"

namespace quillmate::testing {
namespace {

struct Printed {
  int page;
  QRectF place;
  QString text;
};

/// Keeps what text is drawn where.
class TextEngine : public QPaintEngine {
 public:
  TextEngine() : QPaintEngine(QPaintEngine::AllFeatures) {}
  bool begin(QPaintDevice*) override { return true; }
  bool end() override { return true; }
  void updateState(const QPaintEngineState&) override {}
  void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
  void drawPath(const QPainterPath&) override {}
  void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
  Type type() const override { return User; }
  void drawTextItem(const QPointF& at, const QTextItem& item) override {
    printed.push_back({page, QRectF(at.x(), at.y() - item.ascent(), item.width(), item.ascent()), item.text()});
  }

  int page = 1;
  std::vector<Printed> printed;
};

/// Nothing is written: all goes to the engine.
class Paper : public QPdfWriter {
 public:
  Paper() : QPdfWriter(QString()) {}
  bool newPage() override { return ++engine.page, true; }
  QPaintEngine* paintEngine() const override { return &engine; }

  mutable TextEngine engine;

 protected:
  int metric(PaintDeviceMetric metric) const override {
    switch (metric) {
      case PdmWidth:
        return kWidth * fineness;
      case PdmHeight:
        return kHeight * fineness;
      case PdmDpiX:
      case PdmDpiY:
      case PdmPhysicalDpiX:
      case PdmPhysicalDpiY:
        return 96 * fineness;
      case PdmDevicePixelRatio:
        return 1;
      case PdmDevicePixelRatioScaled:
        return 0x10000;
      default:
        return 0;
    }
  }

 public:
  static constexpr int kWidth = 700, kHeight = 900;
  /// A printer has more dots than the desktop.
  int fineness = 1;
};

class PrintingTest : public ::testing::Test {
 protected:
  void Print(const std::string& code, const QString& title) {
    view = navigation::CodeView(code);
    job.project = QStringLiteral("Lager");
    job.parts = 1;
    job.part = [this, title](std::size_t) { return ui::PrintedPart{title, &view, &runs, 0, view.LineCount(), {}}; };
    finished = ui::PrintCode(paper, job);
  }
  /// Where the text is that contains a piece.
  QRectF PlaceOf(const QString& piece) {
    for (const Printed& one : paper.engine.printed) {
      if (one.text.contains(piece)) return one.place;
    }
    ADD_FAILURE() << piece.toStdString() << " is nowhere";
    return {};
  }

  Paper paper;
  navigation::CodeView view;
  std::vector<navigation::StyleRun> runs;
  ui::PrintJob job;
  bool finished = false;
};

TEST_F(PrintingTest, BrokenLinesGoOnFurtherIn) {
  Print("Sub A()\r\n    AAAA" + std::string(400, 'x') + " BBBB" + std::string(400, 'y') + "ZZZZ\r\nEnd Sub\r\n",
        "Modul");
  ASSERT_TRUE(finished);
  const double left = PlaceOf("Sub A").left();
  EXPECT_GT(PlaceOf("BBBB").left(), PlaceOf("AAAA").left());
  EXPECT_GT(PlaceOf("ZZZZ").left(), left);
  EXPECT_EQ(PlaceOf("End Sub").left(), left);
  for (const Printed& one : paper.engine.printed) {
    EXPECT_LE(one.place.right(), Paper::kWidth + 1) << one.text.toStdString();
  }
}

TEST_F(PrintingTest, TabsAreAsWideAsFourBlanksOnEveryDevice) {
  for (const int fineness : {1, 10}) {
    paper.engine.printed.clear();
    paper.fineness = fineness;
    Print("Sub A()\r\n\tLeft\r\n    tfeL\r\n\t\tOnce\r\n        ecnO\r\n", "Modul");
    // Blanks are drawn with the word after them, tabs are not: the ends are compared, the words have the same letters.
    const auto rightOf = [this](const char* piece) { return PlaceOf(QString::fromLatin1(piece)).right(); };
    EXPECT_NEAR(rightOf("Left"), rightOf("tfeL"), 2.0 * fineness);
    EXPECT_NEAR(rightOf("Once"), rightOf("ecnO"), 2.0 * fineness);
  }
}

TEST_F(PrintingTest, LongNamesLeaveRoomForDateAndPage) {
  job.time = QDateTime(QDate(2026, 11, 22), QTime(12, 0));
  job.contents = true;
  Print("Sub A()\r\nEnd Sub\r\n", QString(200, QLatin1Char('M')));
  ASSERT_TRUE(finished);
  const QRectF date = PlaceOf("22.11.2026");
  int names = 0;
  for (const Printed& one : paper.engine.printed) {
    if (!one.text.contains(QStringLiteral("MMM"))) continue;
    ++names;
    EXPECT_LT(one.place.right(), date.right());
    EXPECT_TRUE(one.place.top() != date.top() || one.place.right() < date.left());
  }
  EXPECT_GE(names, 2) << "in the contents and above the code";
}

TEST_F(PrintingTest, NumbersAreThereOrTheirRoomIsUsed) {
  for (const bool numbers : {true, false}) {
    paper.engine.printed.clear();
    job.lineNumbers = numbers;
    Print("Sub A()\r\nEnd Sub\r\n", "Modul");
    EXPECT_EQ(PlaceOf("Sub A").left() > 1, numbers);
  }
}

TEST_F(PrintingTest, EndsWhereItIsToEnd) {
  std::string code = "Sub A()\r\n";
  for (int line = 0; line < 1000; ++line) code += "  x = 1\r\n";
  job.mostPages = 2;
  Print(code, "Modul");
  EXPECT_FALSE(finished);
  EXPECT_EQ(paper.engine.page, 2);
  paper.engine.page = 1;
  job.mostPages = 0;
  job.progress = [](int page, int pages) { return page < 4 && pages > 4; };
  Print(code, "Modul");
  EXPECT_FALSE(finished);
  EXPECT_EQ(paper.engine.page, 3);
  paper.engine.page = 1;
  paper.engine.printed.clear();
  job.counted = [](std::size_t) { return false; };
  Print(code, "Modul");
  EXPECT_TRUE(paper.engine.printed.empty()) << "given up while pages were counted";
}

}  // namespace
}  // namespace quillmate::testing
