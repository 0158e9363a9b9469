#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTreeWidget>

#include <quillmate/inventory/scan.h>

#include "inventory/inventory_window.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

class InventoryTest : public WindowTest {
 protected:
  ui::InventoryWindow& Shown() { return *Window().findChild<ui::InventoryWindow*>(); }
  template <typename Widget>
  Widget& Part(const char* name) {
    return *Shown().findChild<Widget*>(QString::fromLatin1(name));
  }
  /// An inventory of the sources, made as the window's own scan makes it.
  std::filesystem::path MakeInventory() {
    AddModule("Kopie.bas", files::ReadWholeFile(Sources() / "Zebra.bas"));
    inventory::ScanOptions options;
    options.roots = {Sources()};
    options.readerCommand = inventory::ReaderCommand(tests::ProgramFolder());
    options.jobs = 1;
    const std::filesystem::path database = Folder("bestand.sqlite");
    EXPECT_EQ(inventory::Scan(database, options).read, 4);
    return database;
  }
  QString Paths() {
    const QAbstractItemModel& model = *Part<QTreeView>("lstBestand").model();
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row) {
      names += model.index(row, 0).data().toString().section(QLatin1Char('/'), -1);
    }
    return names.join(QLatin1Char(' '));
  }
};

TEST_F(InventoryTest, DroppedInventoryIsOpenedFilteredAndHandedOn) {
  Start();
  const std::filesystem::path database = MakeInventory();
  Drop({Text(database)});
  const QAbstractItemModelTester tester(Part<QTreeView>("lstBestand").model());
  Part<QComboBox>("cmbFrage").setCurrentIndex(0);
  EXPECT_EQ(Paths(), "Form.frm Kopie.bas Kurz.bas Zebra.bas");
  Part<QComboBox>("cmbFrage").setCurrentIndex(static_cast<int>(inventory::Question::kCopies));
  EXPECT_EQ(Paths(), "Kopie.bas Zebra.bas");
  Part<QComboBox>("cmbFrage").setCurrentIndex(0);
  Part<QLineEdit>("txtBestandSuche").setText("ZEBRA");
  QTest::keyClick(&Part<QLineEdit>("txtBestandSuche"), Qt::Key_Return);
  EXPECT_EQ(Paths(), "Zebra.bas");
  EXPECT_GT(Part<QTreeWidget>("treEinzelheiten").topLevelItemCount(), 3);

  platform.saveFiles = {Text(database), Text(Folder("b.html")), Text(Folder("b.xlsx"))};
  Part<QPushButton>("cmdBestandBericht").click();
  EXPECT_TRUE(platform.TakeText().startsWith("Aus dieser Datei wird gelesen"));
  Part<QPushButton>("cmdBestandBericht").click();
  EXPECT_NE(files::ReadWholeFile(Folder("b.html")).find("Zebra.bas"), std::string::npos);
  EXPECT_EQ(platform.opened, QStringList{Text(Folder("b.html"))});
  Part<QPushButton>("cmdBestandMappe").click();
  EXPECT_TRUE(files::ReadWholeFile(Folder("b.xlsx")).starts_with("PK"));

  platform.answers = {ui::Answer::kNo};
  emit Part<QTreeView>("lstBestand").activated(Part<QTreeView>("lstBestand").currentIndex());
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()).section(QLatin1Char('\n'), 0, 0), "Zebra");
  EXPECT_EQ(settings::LoadSources(*settings), std::vector{files::PathText(Sources())});

  // What can't be read any more is told, and the list of sources stays.
  const auto choose = [this] {
    platform.messages.clear();
    platform.answers = {ui::Answer::kNo};
    emit Part<QTreeView>("lstBestand").activated(Part<QTreeView>("lstBestand").currentIndex());
    return platform.TakeText().section(QLatin1Char('|'), -1);
  };
  files::WriteWholeFile(Sources() / "Zebra.bas", std::string("\0\1\2", 3));
  EXPECT_TRUE(choose().startsWith("Folgendes konnte nicht gelesen werden:\r\n\r\n" + Text(Sources() / "Zebra.bas")));
  std::filesystem::remove(Sources() / "Zebra.bas");
  EXPECT_EQ(choose(), "Die Datei ist nicht mehr da:\r\n" + Text(Sources() / "Zebra.bas"));
  EXPECT_TRUE(TextOf(*Tree("treApp").model()).startsWith("Quelle [Quelle]\n"));
}

TEST_F(InventoryTest, FoldersAreChosenAndLookedThrough) {
  Start();
  Trigger("mnuExtras_Bestand");
  EXPECT_FALSE(Part<QPushButton>("cmdBestandBericht").isEnabled());
  Part<QPushButton>("cmdOrdnerDurchsuchen").click();
  auto* choice = Shown().findChild<QDialog*>("frmBestandWahl");
  ASSERT_NE(choice, nullptr);
  platform.folders = {Text(Sources())};
  choice->findChild<QPushButton*>("cmdOrdnerDazu")->click();
  EXPECT_FALSE(choice->findChild<QPushButton*>("cmdDurchsuchen")->isEnabled());
  choice->findChild<QLineEdit*>("txtBestand")->setText(Text(Folder("neu.sqlite")));
  ASSERT_TRUE(choice->findChild<QPushButton*>("cmdDurchsuchen")->isEnabled());
  choice->reject();

  // The program that reads is elsewhere for tests.
  ui::InventoryWindow window(nullptr, Shown().Desk(), tests::ProgramFolder());
  const ui::InventoryOrder order{
      .database = Folder("neu.sqlite"), .roots = {Sources(), Folder("fehlt")}, .exclude = {"Kurz*"}};
  const auto await = [&window] { return QTest::qWaitFor([&window] { return !window.IsScanning(); }, 60'000); };
  // However far a run came, the next one goes on.
  window.Scan(order);
  EXPECT_TRUE(window.IsScanning());
  window.findChild<QPushButton*>("cmdDurchsuchenEnde")->click();
  ASSERT_TRUE(await());
  platform.messages.clear();
  window.Scan(order);
  window.Open(Folder("neu.sqlite"));
  EXPECT_TRUE(platform.TakeText().startsWith("Die Ordner werden noch durchsucht."));
  ASSERT_TRUE(await());
  EXPECT_EQ(platform.TakeText(), "Nicht alle Ordner ließen sich durchsuchen.");
  window.findChild<QComboBox*>("cmbFrage")->setCurrentIndex(0);
  EXPECT_EQ(window.findChild<QTreeView*>("lstBestand")->model()->rowCount(), 2);
  window.Scan({.database = Sources(), .roots = {Sources()}, .exclude = {}});
  ASSERT_TRUE(await());
  EXPECT_TRUE(window.findChild<QLabel*>("lblBestand")->text().startsWith(Text(Sources()) + ": Die Datei kann nicht"));
  // Its end is the end of what runs.
  window.Scan(order);
}

}  // namespace
}  // namespace quillmate::testing
