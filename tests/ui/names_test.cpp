#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTextBlock>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <tuple>

#include "background_job.h"
#include "code_editor.h"
#include "list_model.h"
#include "name_matcher.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

/// Two modules, a class and a form; in the tree they are as "Maske", "Lager", "Suche" and the class "Artikel".
class NamesTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    std::filesystem::remove_all(Sources());
    AddModule("a_Lager.bas",
              "Attribute VB_Name = \"Lager\"\r\nOption Explicit\r\n' H\366chster Bestand\r\n"
              "Public Const Grenze As Long = 40\r\nPublic Bestand As Long\r\n\r\n"
              "Public Sub Zugang(ByVal n As Long)\r\n  Bestand = Bestand + n\r\n  If Bestand > Grenze Then Stop\r\n"
              "End Sub\r\n\r\nPublic Sub Doppelt(): Dim leer As Long\r\nEnd Sub\r\n");
    AddModule("b_Suche.bas",
              "Attribute VB_Name = \"Suche\"\r\nPublic Sub Suchen()\r\n  Dim a As Artikel\r\n  Set a = New Artikel\r\n"
              "  a.Preis = Grenze: Zugang 5\r\n  MsgBox a.Preis\r\n  Call Doppelt\r\nEnd Sub\r\n");
    AddModule("c_Zwei.bas", "Attribute VB_Name = \"Zwei\"\r\nPublic Sub Doppelt()\r\nEnd Sub\r\n\r\n");
    AddModule("d_Artikel.cls",
              "VERSION 1.0 CLASS\r\nBEGIN\r\nEND\r\nAttribute VB_Name = \"Artikel\"\r\nPrivate m As Double\r\n"
              "Public Property Get Preis() As Double\r\n  Preis = m\r\nEnd Property\r\n"
              "Public Property Let Preis(ByVal v As Double)\r\n  m = v\r\nEnd Property\r\n");
    StartWithProject();
    AwaitKnowledge();
    Tree("treProjekt").expandAll();
  }

  void ShowModule(const QString& name) {
    const QAbstractItemModel& model = *Tree("treProjekt").model();
    for (int row = 0; row < model.rowCount(); ++row) {
      if (model.index(row, 0).data() == name) Click(Tree("treProjekt"), model.index(row, 0));
    }
  }
  QTextCursor CursorAt(int line, int column) {
    QTextCursor cursor(Code().document()->findBlockByNumber(line - 1));
    cursor.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, column - 1);
    return cursor;
  }
  void PutCaret(const QString& module, int line, int column) {
    ShowModule(module);
    Code().setTextCursor(CursorAt(line, column));
    QTest::keyRelease(&Code(), Qt::Key_Shift);
  }
  /// Where the selection begins and what is selected.
  QString Here() {
    const QTextCursor cursor = Code().textCursor();
    QTextCursor start(Code().document());
    start.setPosition(cursor.selectionStart());
    return QStringLiteral("%1 %2:%3 %4")
        .arg(Panel("Modul"))
        .arg(start.blockNumber() + 1)
        .arg(start.positionInBlock() + 1)
        .arg(cursor.selectedText());
  }
  /// Waits for the rows of a list, which are found in the background.
  QWidget& AwaitList(const char* name) {
    QWidget& window = *Window().findChild<QWidget*>(QString::fromLatin1(name));
    const QLabel& count = *window.findChild<QLabel*>("lblListe");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !count.text().endsWith("..."); }, 60'000));
    return window;
  }
  QLineEdit& Field(const char* name) { return *Window().findChild<QLineEdit*>(QString::fromLatin1(name)); }
};

TEST_F(NamesTest, EveryNameLeadsToItsDeclaration) {
  const struct {
    const char* module;
    int line, column;
    const char* place;
  } kRows[] = {
      {"Suche", 4, 14, "Lager 3:14 Grenze"}, {"Suche", 4, 24, "Lager 6:12 Zugang"},
      {"Lager", 7, 5, "Lager 4:8 Bestand"},  {"Lager", 7, 23, "Lager 6:25 n"},
      {"Suche", 5, 10, "Suche 2:7 a"},       {"Suche", 3, 16, "Artikel 1:1 "},
      {"Suche", 4, 8, "Artikel 5:21 Preis"}, {"Suche", 5, 15, "Artikel 2:21 Preis"},
      {"Lager", 3, 16, "Lager 3:14 Grenze"},
  };
  for (const auto& row : kRows) {
    PutCaret(row.module, row.line, row.column);
    const QString from = QStringLiteral("%1 %2:%3 ").arg(row.module).arg(row.line).arg(row.column);
    QTest::keyClick(&Window(), Qt::Key_F2, Qt::ShiftModifier);
    EXPECT_EQ(Here(), row.place) << from.toStdString();
    Trigger("mnuBearbeiten_RouBew3");
    EXPECT_EQ(Here(), from) << "back to the very place";
  }
  PutCaret("Suche", 5, 4);
  QTest::keyClick(&Window(), Qt::Key_F2, Qt::ShiftModifier);
  EXPECT_TRUE(Panel("Vorgang").startsWith("„MsgBox“ ist im Projekt nicht deklariert"))
      << Panel("Vorgang").toStdString();
  EXPECT_EQ(platform.TakeText(), "");
}

TEST_F(NamesTest, SeveralCandidatesAreAListToChooseFrom) {
  PutCaret("Suche", 6, 10);
  QTest::keyClick(&Window(), Qt::Key_F2, Qt::ShiftModifier);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  QStringList captions;
  for (const QAction* action : menu->actions()) captions << action->text();
  EXPECT_EQ(captions, (QStringList{"Lager.Doppelt (Sub)", "Zwei.Doppelt (Sub)"}));
  QTest::keyClick(menu, Qt::Key_Down);
  QTest::keyClick(menu, Qt::Key_Return);
  EXPECT_EQ(Here(), "Zwei 1:12 Doppelt");
}

TEST_F(NamesTest, MouseTellsAndLeads) {
  PutCaret("Suche", 1, 1);
  auto& editor = *Window().findChild<ui::CodeEditor*>("rtbHaupt");
  const QPoint at = editor.cursorRect(CursorAt(4, 15)).center();
  const QPoint beside = editor.cursorRect(CursorAt(4, 29)).center() + QPoint(80, 0);
  for (const bool onName : {true, false}) {
    const QPoint place = onName ? at : beside;
    QHelpEvent help(QEvent::ToolTip, place, editor.viewport()->mapToGlobal(place));
    QApplication::sendEvent(editor.viewport(), &help);
    if (onName) {
      for (const char* part :
           {"Public Const Grenze As Long = 40", "Höchster Bestand", "Konstante in Lager, 2 Verwendungen"}) {
        EXPECT_TRUE(QToolTip::text().contains(QString::fromUtf8(part))) << QToolTip::text().toStdString();
      }
    }
    QMouseEvent move(QEvent::MouseMove, place, editor.viewport()->mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                     Qt::ControlModifier);
    QApplication::sendEvent(editor.viewport(), &move);
    EXPECT_EQ(editor.extraSelections().size(), onName ? 1 : 0);
  }
  QTest::mouseClick(editor.viewport(), Qt::LeftButton, Qt::ControlModifier, at);
  EXPECT_EQ(Here(), "Lager 3:14 Grenze");
}

TEST_F(NamesTest, UsesAreListedSteppedThroughAndSaved) {
  PutCaret("Lager", 4, 9);
  QTest::keyClick(&Window(), Qt::Key_F12, Qt::AltModifier | Qt::ShiftModifier);
  QTreeView& tree = Tree("lstVerwendungen");
  const QAbstractItemModelTester tester(tree.model());
  EXPECT_EQ(TextOf(*tree.model()), "Lager (3)\n Zugang (3)\n  Zeile 7\n  Zeile 7\n  Zeile 8\n");
  EXPECT_EQ(Window().findChild<QDockWidget*>("fraVerwendungen")->windowTitle(), "Alle Verwendungen: Lager.Bestand (3)");
  QTest::keyClick(&tree, Qt::Key_Return);
  EXPECT_EQ(Here(), "Lager 7:3 Bestand");
  QTest::keyClick(&Window(), Qt::Key_F8);
  EXPECT_EQ(Here(), "Lager 7:13 Bestand");
  QTest::keyClick(&Window(), Qt::Key_F8, Qt::ShiftModifier);
  QTest::keyClick(&Window(), Qt::Key_F8, Qt::ShiftModifier);
  EXPECT_EQ(Here(), "Lager 8:6 Bestand") << "once around";

  auto& kinds = *Window().findChild<QComboBox*>("cboArt");
  EXPECT_EQ(kinds.itemText(2), "schreibt (1)");
  kinds.setCurrentIndex(2);
  emit kinds.activated(2);
  EXPECT_EQ(TextOf(*tree.model()), "Lager (1)\n Zugang (1)\n  Zeile 7\n");
  Window().findChild<QAbstractButton*>("cmdVerwendungenKopieren")->click();
  EXPECT_EQ(platform.clipboard.text, "Lager\tZugang\t7\tschreibt\tsicher\tBestand = Bestand + n\n");
  platform.saveFiles = {Text(Folder("Liste.csv"))};
  Window().findChild<QAbstractButton*>("cmdVerwendungenSpeichern")->click();
  EXPECT_TRUE(files::ReadWholeFile(Folder("Liste.csv"))
                  .ends_with(";Lager;Zugang;7;3;schreibt;sicher;Bestand = Bestand + n\r\n"));

  PutCaret("Artikel", 2, 22);
  Trigger("mnuBearbeiten_Verwendungen");
  EXPECT_EQ(TextOf(*tree.model()), "Suche (2)\n Suchen (2)\n  Zeile 4\n  Zeile 5\nArtikel (1)\n Preis (1)\n  Zeile 3\n")
      << "Get and Let are one name";
  LeaveProject();
  EXPECT_FALSE(Window().findChild<QDockWidget*>("fraVerwendungen")->isVisible());
  EXPECT_EQ(tree.model()->rowCount(), 0);
}

TEST_F(NamesTest, PlacesAreThoseOnScreenWithEveryDisplayOption) {
  for (const char* option : {"leer", "vor", "rer", "rle", "einr"}) settings->WriteSetting("optionen", option, "-1");
  StartWithProject();
  AwaitKnowledge();
  ShowModule("Suche");
  QTextCursor name = Code().document()->find("Grenze", 0, QTextDocument::FindCaseSensitively);
  ASSERT_FALSE(name.isNull());
  name.setPosition(name.selectionStart() + 1);
  Code().setTextCursor(name);
  Trigger("mnuBearbeiten_Deklaration");
  EXPECT_EQ(Panel("Modul"), "Lager");
  EXPECT_EQ(Code().textCursor().selectedText(), "Grenze");
  Trigger("mnuBearbeiten_Verwendungen");
  for (const char* module : {"Suche", "Lager", "Suche"}) {
    Trigger("mnuBearbeiten_Verwendung_Vor");
    EXPECT_EQ(Panel("Modul"), module);
    EXPECT_EQ(Code().textCursor().selectedText(), "Grenze");
  }
}

TEST_F(NamesTest, NameAtTheCaretIsLitInItsModule) {
  PutCaret("Lager", 7, 4);
  auto& editor = *Window().findChild<ui::CodeEditor*>("rtbHaupt");
  ASSERT_TRUE(QTest::qWaitFor([&] { return !editor.Highlights().empty(); }, 60'000));
  EXPECT_EQ(editor.Highlights().size(), 4U) << "the declaration and three uses";
  EXPECT_TRUE(editor.findChild<QWidget*>("picStellen")->isVisible());
  PutCaret("Lager", 9, 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return editor.Highlights().empty(); }, 60'000));
}

TEST_F(NamesTest, NamesAreFoundByTheirParts) {
  QTest::keyClick(&Window(), Qt::Key_K, Qt::ControlModifier);
  auto& dialog = *Window().findChild<QDialog*>("frmGeheZu");
  ASSERT_TRUE(dialog.isVisible());
  QLineEdit& field = *dialog.findChild<QLineEdit*>("txtGeheZu");
  QTreeView& list = *dialog.findChild<QTreeView*>("lstGeheZu");
  const QAbstractItemModelTester tester(list.model());
  QTest::keyClicks(&field, "zug");
  EXPECT_EQ(list.model()->index(0, 0).data(), "Zugang");
  EXPECT_EQ(list.model()->index(0, 1).data(), "Sub");
  field.setText("artikel.preis");
  EXPECT_EQ(TextOf(*list.model()), "Preis\nPreis\n");
  QTest::keyClick(&field, Qt::Key_Down);
  QTest::keyClick(&field, Qt::Key_Return);
  EXPECT_EQ(Here(), "Artikel 5:21 Preis");
  EXPECT_FALSE(dialog.isVisible());
  QTest::keyClick(&Window(), Qt::Key_K, Qt::ControlModifier);
  EXPECT_EQ(TextOf(*list.model()), "Preis\n") << "what was chosen last";
  QTest::keyClick(&dialog, Qt::Key_Escape);

  platform.typed = {QStringLiteral("3"), QStringLiteral("99")};
  QTest::keyClick(&Window(), Qt::Key_G, Qt::ControlModifier);
  EXPECT_EQ(Here(), "Artikel 3:1 ");
  QTest::keyClick(&Window(), Qt::Key_G, Qt::ControlModifier);
  EXPECT_EQ(Here(), "Artikel 3:1 ");
  EXPECT_EQ(platform.TakeText(), "Bitte eine Zahl von 1 bis 9 angeben.");
}

TEST_F(NamesTest, HierarchyUnfoldsCallersAndCallees) {
  PutCaret("Lager", 7, 1);
  QTest::keyClick(&Window(), Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
  QTreeView& tree = Tree("treHierarchie");
  const QAbstractItemModelTester tester(tree.model());
  const auto unfold = [&tree] {
    for (int level = 0; level < 4; ++level) tree.expandToDepth(level);
    return TextOf(*tree.model());
  };
  EXPECT_EQ(unfold(), "Zugang\n Suchen (Wurzel)\n");
  QTest::keyClick(&tree, Qt::Key_Return);
  EXPECT_TRUE(Here().endsWith(" Zugang")) << Here().toStdString();
  tree.setFocus();
  QTest::keyClick(&tree, Qt::Key_Down);
  QTest::keyClick(&tree, Qt::Key_Return);
  EXPECT_EQ(Here(), "Suche 4:3 ");
  PutCaret("Suche", 2, 1);
  Trigger("mnuAnalyse_Hierarchie");
  Window().findChild<QComboBox*>("cboRichtung")->setCurrentIndex(1);
  EXPECT_EQ(unfold(), "Suchen\n Zugang\n Preis\n Preis\n möglich (2)\n  Doppelt\n  Doppelt\n");
  LeaveProject();
  EXPECT_EQ(tree.model()->rowCount(), 0);
}

TEST_F(NamesTest, ListsAreSortedFilteredAndLead) {
  Trigger("mnuAnalyse_Kennzahlen");
  QWidget& window = AwaitList("frmKennzahlen");
  QTreeView& list = *window.findChild<QTreeView*>("lstListe");
  const QAbstractItemModelTester tester(list.model());
  const auto rows = [&list] {
    QStringList text;
    for (int row = 0; row < list.model()->rowCount(); ++row) text << list.model()->index(row, 1).data().toString();
    return text.join(u' ');
  };
  EXPECT_EQ(rows(), "Zugang Doppelt Suchen Doppelt Preis Preis");
  list.sortByColumn(3, Qt::DescendingOrder);
  EXPECT_EQ(rows(), "Suchen Zugang Preis Preis Doppelt Doppelt") << "by lines";
  list.sortByColumn(1, Qt::AscendingOrder);
  EXPECT_EQ(rows(), "Doppelt Doppelt Preis Preis Suchen Zugang");
  QTest::keyClicks(window.findChild<QLineEdit*>("txtListe"), "ARTIKEL");
  EXPECT_EQ(rows(), "Preis Preis");
  EXPECT_EQ(window.findChild<QLabel*>("lblListe")->text(), "Zeilen: 2 von 6");
  Click(list, list.model()->index(1, 0));
  EXPECT_EQ(Here(), "Artikel 5:21 Preis");
  platform.saveFiles = {Text(Folder("Zahlen.csv"))};
  window.findChild<QAbstractButton*>("cmdSpeichern")->click();
  const std::string csv = files::ReadWholeFile(Folder("Zahlen.csv"));
  EXPECT_TRUE(csv.starts_with("\xEF\xBB\xBFModul;Routine;Art;")) << csv;
  EXPECT_TRUE(csv.find("\r\nArtikel;Preis;Property Get;3;3;0;") != std::string::npos) << csv;

  Trigger("mnuAnalyse_Befunde");
  QTreeView& findings = *AwaitList("frmBefunde").findChild<QTreeView*>("lstListe");
  ASSERT_GT(findings.model()->rowCount(), 0);
  EXPECT_EQ(findings.model()->index(0, 7).data(), "option-explicit-fehlt") << "the module Suche has none";
  QStringList severities;
  for (int row = 0; row < findings.model()->rowCount(); ++row) {
    severities << findings.model()->index(row, 0).data().toString();
  }
  severities.erase(std::unique(severities.begin(), severities.end()), severities.end());
  EXPECT_EQ(severities.join(' '), "Warnung Hinweis") << "the most severe come first";
  Trigger("mnuAnalyse_Unbenutztes");
  QWidget& unused = AwaitList("frmUnbenutztes");
  QTreeView& all = *unused.findChild<QTreeView*>("lstListe");
  EXPECT_EQ(all.model()->index(0, 5).data(), "möglich") << "one of two of that name";
  LeaveProject();
  EXPECT_EQ(Window().findChild<QWidget*>("frmUnbenutztes"), nullptr);
}

TEST_F(NamesTest, ListsAreFoundInTheBackground) {
  Trigger("mnuAnalyse_Kennzahlen");
  QPointer<QWidget> window = Window().findChild<QWidget*>("frmKennzahlen");
  QTreeView& list = *window->findChild<QTreeView*>("lstListe");
  QAbstractButton& save = *window->findChild<QAbstractButton*>("cmdSpeichern");
  // What is found arrives with the next events, however fast it was.
  EXPECT_EQ(window->findChild<QLabel*>("lblListe")->text(), "Kennzahlen werden ermittelt ...");
  EXPECT_EQ(list.model()->rowCount(), 0);
  EXPECT_FALSE(save.isEnabled());
  Trigger("mnuAnalyse_Kennzahlen");
  EXPECT_EQ(Window().findChildren<QWidget*>("frmKennzahlen"), QList<QWidget*>{window}) << "the same";
  const auto jobs = [this] { return Window().findChildren<ui::BackgroundJob*>(Qt::FindDirectChildrenOnly).size(); };
  EXPECT_EQ(jobs(), 1);
  list.sortByColumn(3, Qt::DescendingOrder);
  window->findChild<QLineEdit*>("txtListe")->setText("lager");
  EXPECT_EQ(window->findChild<QLabel*>("lblListe")->text(), "Kennzahlen werden ermittelt ...");
  AwaitList("frmKennzahlen");
  EXPECT_EQ(TextOf(*list.model()), "Lager\nLager\n") << "as it was filtered meanwhile";
  EXPECT_EQ(list.model()->index(0, 1).data(), "Zugang") << "as it was sorted meanwhile";
  EXPECT_TRUE(save.isEnabled());

  Trigger("mnuAnalyse_Befunde");
  Window().findChild<QWidget*>("frmBefunde")->close();
  Trigger("mnuAnalyse_Befunde");
  AwaitList("frmBefunde");
  Trigger("mnuAnalyse_Unbenutztes");
  LeaveProject();
  EXPECT_TRUE(window.isNull());
  EXPECT_TRUE(QTest::qWaitFor([&] { return jobs() == 0; }, 60'000)) << "what nobody wants any more ends";
  EXPECT_EQ(Window().findChild<QWidget*>("frmUnbenutztes"), nullptr);
}

TEST(ListModel, EachColumnHasItsOrder) {
  ui::ListSource source;
  source.columns = {{"Schwere", 10, false, {}, true}, {"Name"}, {"Zeile", 5, true}};
  ui::ListModel model(source, nullptr);
  const QAbstractItemModelTester tester(&model);
  const std::vector<std::tuple<int, const char*, qlonglong>> cells = {
      {2, "Zebra", 9}, {0, "Öl", 100}, {1, "ofen", 20}, {0, "Ofen", 9}, {2, "äpfel", 1000}};
  const std::array words = {"fehler", "warnung", "hinweis"};
  ui::ListRows rows;
  rows.count = cells.size();
  rows.cell = [&](std::size_t row, int column) -> QVariant {
    const auto& [rank, name, line] = cells[row];
    if (column == 2) return line;
    return QString::fromUtf8(column == 0 ? words[static_cast<std::size_t>(rank)] : name);
  };
  rows.rank = [&](std::size_t row) { return std::get<0>(cells[row]); };
  const struct {
    int column;
    Qt::SortOrder order;
    const char* lines;
  } kOrders[] = {{0, Qt::AscendingOrder, "100 9 20 9 1000"},
                 {0, Qt::DescendingOrder, "9 1000 20 100 9"},
                 {1, Qt::AscendingOrder, "1000 20 9 100 9"},
                 {2, Qt::AscendingOrder, "9 9 20 100 1000"},
                 {-1, Qt::AscendingOrder, "9 100 20 9 1000"}};
  const auto lines = [&model] {
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row) all << model.index(row, 2).data().toString();
    return all.join(u' ');
  };
  // Whether its keys are made when they are needed or before.
  for (const bool before : {false, true}) {
    model.SetRows(rows);
    if (before) model.SetKeys(ui::KeysOf(source, rows, nullptr));
    for (const auto& order : kOrders) {
      model.sort(order.column, order.order);
      EXPECT_EQ(lines(), order.lines) << order.column << ' ' << order.order;
    }
    model.SetFilter(QStringLiteral("OFEN"));
    EXPECT_EQ(lines(), "20 9");
    model.sort(2, Qt::AscendingOrder);
    EXPECT_EQ(lines(), "9 20");
    model.SetFilter({});
  }
}

/// Whatever is typed before, and however often a name is declared.
TEST_F(NamesTest, NamesAreFoundAsIfEachWereLookedAt) {
  const auto known = Window().findChild<ui::CodeKnowledge*>()->Get();
  const symbols::ReferenceIndex& index = known->Index();
  const auto isLocal = [&index](symbols::SymbolId id) {
    const symbols::Symbol& symbol = index.SymbolAt(id);
    return symbol.kind == symbols::SymbolKind::kParameter || symbol.kind == symbols::SymbolKind::kLabel ||
           (symbol.parent != symbols::kNone && symbol.kind == symbols::SymbolKind::kVariable);
  };
  const auto expected = [&](const std::string& typed, const QString& module, std::size_t most) {
    std::vector<std::pair<int, symbols::SymbolId>> fits;
    for (symbols::SymbolId id = 0; id < index.SymbolCount(); ++id) {
      const QString name = QString::fromUtf8(index.Name(id).data(), static_cast<qsizetype>(index.Name(id).size()));
      const QString in = QString::fromStdString(index.Modules()[index.SymbolAt(id).module].name);
      if (!in.contains(module, Qt::CaseInsensitive)) continue;
      const int fit = typed.empty() ? 1 : ui::FitOf(index.Name(id), name.toLower().toStdString(), typed);
      if (fit > 0) fits.emplace_back(-fit + (isLocal(id) ? 150 : 0), id);
    }
    std::ranges::sort(fits);
    std::vector<symbols::SymbolId> ids;
    for (std::size_t i = 0; i < std::min(most, fits.size()); ++i) ids.push_back(fits[i].second);
    return ids;
  };
  ui::NameMatcher matcher(known);
  for (const std::size_t most : {std::size_t{1}, std::size_t{3}, std::size_t{1000}}) {
    for (const char* typed : {"p", "pr", "pre", "e", "m", "d", "do", "dop", "x", "a", "ar", "a"}) {
      EXPECT_EQ(matcher.Find(typed, most), expected(typed, {}, most)) << typed << ' ' << most;
    }
    EXPECT_EQ(matcher.Find("ART.", most), expected("", "Art", most));
    EXPECT_EQ(matcher.Find("art.p", most), expected("p", "Art", most));
  }
}

TEST(NameMatcher, BetterFitsComeFirst) {
  const struct {
    const char* typed;
    std::vector<const char*> names;  // the best one first, the last one does not fit
  } kRows[] = {
      {"zug", {"zug", "Zugang", "MeinZug", "Abzug", "Zuordnung", "Lager"}},
      {"zb", {"zB", "ZugangBuchen", "Kurzbrief", "Zahlbar", "Buchen"}},
      {"kl", {"Kl", "KundeLesen", "kunde_lesen", "Tickliste", "Kanzlei", "Lk"}},
  };
  const auto fit = [](const char* name, const char* typed) {
    return ui::FitOf(name, QString::fromUtf8(name).toLower().toStdString(), typed);
  };
  for (const auto& row : kRows) {
    for (std::size_t i = 1; i < row.names.size(); ++i) {
      EXPECT_GT(fit(row.names[i - 1], row.typed), fit(row.names[i], row.typed))
          << row.names[i - 1] << ' ' << row.names[i];
    }
    EXPECT_EQ(fit(row.names.back(), row.typed), 0);
  }
}

}  // namespace
}  // namespace quillmate::testing
