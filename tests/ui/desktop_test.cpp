#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <stdexcept>

#include <gtest/gtest.h>

#include <quillmate/files/paths.h>
#include <quillmate/ui/platform.h>

#include "codedb/scratch.h"
#include "error_text.h"
#include "splitter.h"

namespace quillmate::ui {
namespace {

namespace fs = std::filesystem;

TEST(MessageBox, HasGermanButtonsAndHarmlessEscape) {
  const struct {
    Buttons buttons;
    QStringList captions;
    Answer escape;
  } kCases[] = {
      {Buttons::kOk, {"OK"}, Answer::kOk},
      {Buttons::kYesNo, {"&Ja", "&Nein"}, Answer::kNo},
      {Buttons::kYesNoCancel, {"&Ja", "&Nein", "Abbrechen"}, Answer::kCancel},
  };
  const auto platform = QtPlatform();
  for (const auto& c : kCases) {
    QStringList captions;
    QTimer::singleShot(0, [&captions] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->text(), "a\nb<c>");
      for (const QAbstractButton* button : box->buttons()) captions.append(button->text());
      QTest::keyClick(box, Qt::Key_Escape);
    });
    EXPECT_EQ(platform->Show({"Titel", "a\r\nb<c>", MessageIcon::kQuestion, c.buttons, {}}), c.escape);
    captions.sort();
    QStringList expected = c.captions;
    expected.sort();
    EXPECT_EQ(captions, expected);
  }
}

TEST(MessageBox, KeepsALongListToBeCopied) {
  QTimer::singleShot(0, [] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->detailedText(), "1\n2");
    box->reject();
  });
  QtPlatform()->Show({"Titel", "a", MessageIcon::kNone, Buttons::kOk, {}, "1\r\n2"});
}

TEST(FolderDialog, HasATitleOfOneLine) {
  QTimer::singleShot(0, [] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowTitle(), "Ordner, in dem");
    EXPECT_EQ(dialog->labelText(QFileDialog::FileName), "Ordner:");
    EXPECT_LT(dialog->height(), dialog->screen()->availableSize().height());
    dialog->reject();
  });
  EXPECT_EQ(QtPlatform()->ChooseFolder("Ordner,\r\nin dem", {}), "");
}

TEST(SaveDialog, GivesANameTheExtensionOfItsKind) {
  const files::ScratchFolder folder;
  const QString start = QString::fromStdString(files::PathText(folder.Path()));
  const QChar separator = QDir::separator();
  const struct {
    const char* typed;
    const char* filter;
    QString path;
  } kCases[] = {
      {"liste", nullptr, start + separator + "liste.csv"},
      {"liste", "Text (*.txt)", start + separator + "liste.txt"},
      {"liste.log", "Text (*.txt)", start + separator + "liste.log"},
      {"Lager 2.1", nullptr, start + separator + "Lager 2.1.csv"},
      {"Fa. Meier", "Text (*.txt)", start + separator + "Fa. Meier.txt"},
      {nullptr, nullptr, QString()},
  };
  const auto platform = QtPlatform();
  for (const auto& c : kCases) {
    QTimer::singleShot(0, [&c] {
      auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
      EXPECT_EQ(name->text(), "vorschlag");
      if (c.filter != nullptr) {
        dialog->selectNameFilter(c.filter);
        emit dialog->filterSelected(c.filter);
      }
      if (c.typed == nullptr) {
        dialog->reject();
      } else {
        name->setText(c.typed);
        QTest::keyClick(name, Qt::Key_Return);
      }
    });
    EXPECT_EQ(platform->ChooseSaveFile({"Speichern unter", start, "vorschlag", "CSV (*.csv);;Text (*.txt)", "csv"}),
              c.path);
  }
}

TEST(SaveDialog, TakesBackAnExtensionThatTheSystemAdded) {
  const struct {
    const char* file;
    const char* extension;
    const char* path;
  } kCases[] = {
      {"C:/a/Liste.xlsx.csv", "csv", "C:/a/Liste.xlsx"},
      {"C:/a/Liste.XLSX.csv", "csv", "C:/a/Liste.XLSX"},
      {"C:/a/Liste.csv", "csv", "C:/a/Liste.csv"},
      {"C:/a/Liste.log.csv", "csv", "C:/a/Liste.log.csv"},
      {"C:/a.xlsx/Liste.csv", "csv", "C:/a.xlsx/Liste.csv"},
      {"C:/a/Liste.csv.xlsx", "xlsx", "C:/a/Liste.csv"},
      {"C:/a/x.(.csv", "csv", "C:/a/x.(.csv"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(WithoutAddedExtension(c.file, "CSV-Tabelle (*.csv);;Mappe (*.xlsm *.xlsx)", c.extension), c.path);
  }
}

TEST(ErrorText, SpeaksGermanAboutFiles) {
  const fs::filesystem_error full("copy", "/x/M1.txt", std::make_error_code(std::errc::no_space_on_device));
  EXPECT_EQ(ErrorText(full), "/x/M1.txt\r\nDer Datenträger ist voll.");
  EXPECT_EQ(ErrorText(std::runtime_error("so")), "so");
}

TEST(Splitter, BarKeepsItsLimits) {
  const struct {
    double left;
    double container;
    bool allowed;
  } kCases[] = {{150, 9000, false}, {199, 9000, false},  {200, 9000, true},
                {8840, 9000, true}, {8841, 9000, false}, {400, 900, false}};
  for (const auto& c : kCases) EXPECT_EQ(MayStandAt(c.left, c.container, 60), c.allowed) << c.left;
}

TEST(Splitter, BarFollowsTheMouse) {
  Splitter splitter;
  for (int side = 0; side < 2; ++side) {
    auto* widget = new QWidget;
    widget->setMinimumWidth(1);
    splitter.addWidget(widget);
  }
  splitter.resize(800, 100);
  splitter.setSizes({300, 500});
  splitter.show();
  QSplitterHandle* bar = splitter.handle(1);
  const auto drag = [bar](int pixels) {
    const QPoint grip(1, 50);
    QTest::mousePress(bar, Qt::LeftButton, {}, grip);
    QMouseEvent move(QEvent::MouseMove, grip + QPointF(pixels, 0), bar->mapToGlobal(grip + QPointF(pixels, 0)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(bar, &move);
    QTest::mouseRelease(bar, Qt::LeftButton, {}, grip);
  };
  const int before = bar->x();
  drag(100);
  EXPECT_EQ(bar->x(), before + 100);
  drag(-before - 95);
  EXPECT_EQ(bar->x(), before + 100) << "too far left: stays";
}

}  // namespace
}  // namespace quillmate::ui
