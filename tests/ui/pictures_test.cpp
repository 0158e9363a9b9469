#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QDialog>
#include <QImage>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableView>
#include <QWheelEvent>

#include "call_picture_view.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

/// "A" and "B" use each other and both "C"; "D" uses nobody.
class PicturesTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    std::filesystem::remove_all(Sources());
    AddModule("A.bas",
              "Attribute VB_Name = \"A\"\r\nPublic Sub Oben()\r\n  Mitte\r\n  Zweite\r\nEnd Sub\r\n\r\nPublic Sub "
              "Zweite()\r\n  Ziel = 1\r\nEnd Sub\r\n");
    AddModule("B.bas",
              "Attribute VB_Name = \"B\"\r\nPublic Sub Mitte()\r\n  Zweite\r\n  Unten\r\n  Unten\r\nEnd Sub\r\n\r\n");
    AddModule("C.bas",
              "Attribute VB_Name = \"C\"\r\nPublic Ziel As Long\r\nPublic Sub Unten()\r\n  Ziel = 2\r\nEnd Sub\r\n");
    AddModule("D.bas", "Attribute VB_Name = \"D\"\r\nPublic Sub Allein()\r\n  x = 1\r\nEnd Sub\r\n");
    StartWithProject();
    AwaitKnowledge();
    Tree("treProjekt").expandAll();
  }

  void ShowRoutine(int module, int routine) { Click(Tree("treProjekt"), ProjectNode(module, routine)); }
  QDialog* Dialog(const char* name) { return Window().findChild<QDialog*>(QString::fromLatin1(name)); }
  static QString Texts(const symbols::CallPicture& picture) {
    QStringList texts;
    for (const symbols::PictureNode& node : picture.nodes) {
      texts << QStringLiteral("%1 %2").arg(node.level).arg(QString::fromStdString(node.title));
    }
    return texts.join(QStringLiteral(", "));
  }
};

TEST_F(PicturesTest, CallsAreDrawnWalkedThroughAndSaved) {
  ShowRoutine(1, 0);
  QTest::keyClick(&Window(), Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
  QDialog& window = *Dialog("frmAufrufbild");
  auto& view = *window.findChild<ui::CallPictureView*>("picAufrufe");
  EXPECT_EQ(Texts(view.Picture()), "0 Mitte, -1 Oben, 1 Zweite, 1 Unten");
  window.findChild<QSpinBox*>("txtRuferEbenen")->setValue(0);
  EXPECT_EQ(Texts(view.Picture()), "0 Mitte, 1 Zweite, 1 Unten");

  QTest::keyClick(&view, Qt::Key_Right);
  const QString first = view.accessibleDescription();
  QTest::keyClick(&view, Qt::Key_Down);
  EXPECT_NE(view.accessibleDescription(), first);
  QTest::keyClick(&view, Qt::Key_Up);
  QTest::keyClick(&view, Qt::Key_Return);
  EXPECT_EQ(Panel("Routine"), first.section(u' ', 0, 0));
  const QRectF unten = view.PlaceOf(2);
  QTest::mouseClick(&view, Qt::LeftButton, {}, unten.center().toPoint());
  EXPECT_EQ(Panel("Routine"), "Unten");
  QTest::mouseMove(&view, unten.center().toPoint());

  const QPointF middle = view.rect().center();
  QWheelEvent wheel(middle, view.mapToGlobal(middle), {}, QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(&view, &wheel);
  EXPECT_GT(view.PlaceOf(2).width(), unten.width());
  const QPointF before = view.PlaceOf(2).topLeft();
  QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(5, 5));
  QTest::mouseMove(&view, QPoint(65, 45));
  QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(65, 45));
  EXPECT_EQ(view.PlaceOf(2).topLeft() - before, QPointF(60, 40));
  QTest::keyClick(&view, Qt::Key_0);
  EXPECT_EQ(view.PlaceOf(2), unten);

  platform.saveFiles = {Text(Folder("Bild.svg")), Text(Folder("Bild.png"))};
  for (int time = 0; time < 2; ++time) window.findChild<QAbstractButton*>("cmdSpeichern")->click();
  const std::string svg = files::ReadWholeFile(Folder("Bild.svg"));
  EXPECT_NE(svg.find("<title>Aufrufbild: B.Mitte</title>"), std::string::npos);
  EXPECT_NE(svg.find(">Unten</text>"), std::string::npos) << "text stays text";
  const QImage image(Text(Folder("Bild.png")));
  EXPECT_EQ(image.width(), qRound(std::ceil(view.Picture().width * 2)));
  window.findChild<QAbstractButton*>("cmdDrucken")->click();
  EXPECT_EQ(platform.prompts.last(), "Aufrufbild: B.Mitte");

  QTest::mouseDClick(&view, Qt::LeftButton, {}, view.PlaceOf(2).center().toPoint());
  EXPECT_EQ(Texts(view.Picture()), "0 Unten");
  Trigger("mnuAnalyse_Aufrufbild");
  EXPECT_EQ(Dialog("frmAufrufbild"), &window) << "one picture, which takes the next routine";
  LeaveProject();
  EXPECT_EQ(Dialog("frmAufrufbild"), nullptr);
  EXPECT_EQ(platform.TakeText().section(u'|', 0, 0).isEmpty(), false) << "the question before the project goes";
}

TEST_F(PicturesTest, MatrixListsTheUsesOfACell) {
  Trigger("mnuAnalyse_Abhaengigkeiten");
  QDialog& window = *Dialog("frmAbhaengigkeiten");
  auto& table = *window.findChild<QTableView*>("lstAbhaengigkeiten");
  const QAbstractItemModelTester tester(table.model());
  const auto rows = [&table] {
    QStringList text;
    for (int row = 0; row < table.model()->rowCount(); ++row) {
      text << table.model()->headerData(row, Qt::Vertical).toString() + QLatin1Char(':');
      for (int column = 0; column < table.model()->columnCount(); ++column) {
        const QString cell = table.model()->index(row, column).data().toString();
        text << (cell.isEmpty() ? QStringLiteral("-") : cell);
      }
    }
    return text.join(u' ');
  };
  EXPECT_EQ(rows(), "A: - 1 1 - B: 1 - 2 - C: - - - - D: - - - -");
  table.setCurrentIndex(table.model()->index(1, 2));
  EXPECT_EQ(window.findChild<QLabel*>("lblZelle")->text(), "B benutzt C 2-mal");
  QTest::keyClick(&table, Qt::Key_Return);
  EXPECT_EQ(TextOf(*Tree("lstVerwendungen").model()), "B (2)\n Mitte (2)\n  Zeile 3\n  Zeile 4\n");
  EXPECT_TRUE(table.model()->index(0, 1).data(Qt::ToolTipRole).toString().endsWith("Kreises"));
  window.findChild<QAbstractButton*>("chkKreise")->click();
  EXPECT_EQ(rows(), "A: - 1 B: 1 -");
  platform.saveFiles = {Text(Folder("Matrix.xlsx"))};
  window.findChild<QAbstractButton*>("cmdSpeichern")->click();
  EXPECT_TRUE(files::ReadWholeFile(Folder("Matrix.xlsx")).starts_with("PK"));
  window.findChild<QAbstractButton*>("cmdKopieren")->click();
  EXPECT_EQ(platform.clipboard.text, "A\tB\t1\t1\nA\tC\t1\t\nB\tA\t1\t1\nB\tC\t2\t\n");
  window.findChild<QLineEdit*>("txtModule")->setText("gibt es nicht");
  EXPECT_EQ(window.findChild<QLabel*>("lblZelle")->text(), "Kein Modul heißt so.");
}

}  // namespace
}  // namespace quillmate::testing
