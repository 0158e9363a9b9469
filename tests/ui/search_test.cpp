#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QWheelEvent>

#include "hit_list.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

/// The modules "Lager" and "Suche", in the tree and in the index in this order.
class SearchTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    std::filesystem::remove_all(Sources());
    AddModule("a.bas",
              "Attribute VB_Name = \"Lager\"\r\nPublic Sub Laden()\r\n  Menge = 1\r\n  mengen = 2\r\nEnd Sub\r\n\r\n"
              "Public Sub Ablegen()\r\n  \304rger = menge\r\nEnd Sub\r\n");
    AddModule("b.bas",
              "Attribute VB_Name = \"Suche\"\r\nPublic Sub Suchen()\r\n  Call Laden\r\n  x = Menge\r\nEnd Sub\r\n");
    StartWithProject();
  }

  QLineEdit& Field(const char* name) { return *Window().findChild<QLineEdit*>(QString::fromLatin1(name)); }
  void SearchFor(const char* text) {
    Field("txtSuche").setFocus();
    Field("txtSuche").setText(QString::fromUtf8(text));
  }
  /// Where the selection begins: module, 1-based line and column, and the selected text.
  QString Found() {
    const QTextCursor cursor = Code().textCursor();
    QTextCursor start(Code().document());
    start.setPosition(cursor.selectionStart());
    return QStringLiteral("%1 %2:%3 %4")
        .arg(Panel("Modul"))
        .arg(start.blockNumber() + 1)
        .arg(start.positionInBlock() + 1)
        .arg(cursor.selectedText());
  }
  void ExpectNotFound(const char* text) {
    ExpectMessage(QString::fromUtf8(text), ui::MessageIcon::kExclamation);
    EXPECT_TRUE(Code().hasFocus());
  }
  QTreeView& Hits() { return Tree("lstTreffer"); }
  /// The list of hits, a line each.
  QStringList HitRows() {
    const QAbstractItemModel& model = *Hits().model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < model.columnCount(); ++column) {
        cells.append(model.index(row, column).data().toString());
      }
      rows.append(cells.join(QLatin1Char('|')));
    }
    return rows;
  }
  void ListHits(const char* text, bool pattern = false) {
    Window().findChild<QCheckBox*>("chkRegulaer")->setChecked(pattern);
    Field("txtTreffer").setText(QString::fromUtf8(text));
    QTest::keyClick(&Field("txtTreffer"), Qt::Key_Return);
  }
};

TEST_F(SearchTest, FindsFromTheTopAndOnInTheModule) {
  SearchFor(" menge ");
  QTest::keyClick(&Field("txtSuche"), Qt::Key_Return);
  EXPECT_EQ(Found(), "Lager 2:3 Menge");
  EXPECT_EQ(Panel("Routine"), "Laden");
  EXPECT_TRUE(Code().hasFocus());
  QTest::keyClick(&Window(), Qt::Key_F3, Qt::ControlModifier);
  EXPECT_EQ(Found(), "Lager 3:3 menge");
  Trigger("su_w");
  EXPECT_EQ(Found(), "Lager 7:11 menge");
  EXPECT_EQ(Panel("Routine"), "Ablegen");
  Trigger("su_w");
  ExpectNotFound("Der Suchtext\r\nwurde ausgehend von  der letzten Position \r\nim Modul nicht gefunden .\r\n");
  EXPECT_EQ(Found(), "Lager 7:11 menge") << "no wrap, and the place stays";
  QTest::keyClick(&Window(), Qt::Key_F3);
  EXPECT_EQ(Found(), "Lager 2:3 Menge");
}

TEST_F(SearchTest, SwitchesAreMirroredAndObeyed) {
  for (const auto& [item, button] :
       {std::pair("mnuBearbeiten_Suchen_GanzWort", "su_g"), std::pair("mnuBearbeiten_Suchen_Projekt", "su_p")}) {
    Trigger(item);
    EXPECT_TRUE(Action(item).isChecked());
    EXPECT_TRUE(Action(button).isChecked());
    Trigger(button);
    EXPECT_FALSE(Action(item).isChecked());
    EXPECT_FALSE(Action(button).isChecked());
    Trigger(button);
  }
  SearchFor("MENGE");
  Trigger("su_a");
  Trigger("su_w");
  EXPECT_EQ(Found(), "Lager 7:11 menge") << "mengen is another word";
  Trigger("su_w");
  EXPECT_EQ(Found(), "Suche 3:7 Menge");
  EXPECT_TRUE(ProjectNode(1).data(Qt::UserRole).toBool());
  Trigger("su_w");
  EXPECT_EQ(Found(), "Lager 2:3 Menge") << "once around";
  SearchFor("gibt es nicht");
  Trigger("su_w");
  ExpectNotFound("Der Suchtext wurde nicht gefunden");
  Trigger("su_a");
  ExpectNotFound("Der Suchtext wurde im gesamten Projekt nicht gefunden");
}

TEST_F(SearchTest, WhatCannotBeFoundIsToldAndBlanksAreNothing) {
  for (const char* text : {"Public", "\u0416", "?"}) {
    SearchFor(text);
    Trigger("mnuBearbeiten_Suchen");
    if (std::string(text) == "Public") {
      EXPECT_EQ(Found(), "Lager 6:1 Public") << "not the one that the module begins with";
    } else {
      ExpectNotFound("Der Suchtext\r\nwurde im Modul nicht gefunden .\r\n");
    }
  }
  SearchFor("   ");
  Trigger("su_a");
  Trigger("su_w");
  EXPECT_EQ(platform.TakeText(), "");
}

TEST_F(SearchTest, SelectionBecomesTheSearchText) {
  Tree("treProjekt").expandAll();
  Click(Tree("treProjekt"), ProjectNode(0, 0));
  Trigger("su_i");
  EXPECT_EQ(Field("txtSuche").text(), "Public");
  Click(Tree("treProjekt"), ProjectNode(0));
  Trigger("mnuBearbeiten_Suchen_Auswahl");
  EXPECT_EQ(Field("txtSuche").text(), "Public") << "nothing selected";
  EXPECT_EQ(Field("txtSuche").toolTip(), "Text für Suche");
  QTest::keyClick(&Window(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(Field("txtSuche").hasFocus());
  QTest::keyClicks(&Field("txtSuche"), "rger");
  EXPECT_EQ(Field("txtSuche").text(), "rger");
  QTest::keyClick(&Field("txtSuche"), Qt::Key_Escape);
  EXPECT_TRUE(Code().hasFocus());
}

/// A place far to the right is scrolled to, and stays on screen when the window grows.
TEST_F(SearchTest, HitStaysInSightWhenTheWindowGrows) {
  LeaveProject();
  AddModule("c.bas", "Sub Lang()\r\n  x = \"" + std::string(300, 'y') + " Ziel\"\r\nEnd Sub\r\n");
  Trigger("refresh");
  Tick(0);
  Trigger("mnuBearbeiten_Code");
  Window().resize(420, 360);
  SearchFor("Ziel");
  Trigger("mnuBearbeiten_Suchen_Projekt");
  Trigger("su_a");
  for (const int width : {420, 1000}) {
    Window().resize(width, 360);
    QApplication::processEvents();
    EXPECT_EQ(Code().textCursor().selectedText(), "Ziel");
    EXPECT_TRUE(Code().viewport()->rect().contains(Code().cursorRect().center())) << width;
  }
}

TEST_F(SearchTest, ListsEveryHit) {
  SearchFor("menge");
  QTest::keyClick(&Window(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  const QAbstractItemModelTester tester(Hits().model());
  EXPECT_TRUE(Window().findChild<QDockWidget*>("fraTreffer")->isVisible());
  EXPECT_EQ(HitRows(), (QStringList{"Lager|Laden|2|Menge = 1", "Lager|Laden|3|mengen = 2",
                                    "Lager|Ablegen|7|Ärger = menge", "Suche|Suchen|3|x = Menge"}));
  EXPECT_EQ(Panel("lblTreffer"), "4 Treffer");
  EXPECT_TRUE(Hits().hasFocus());
  QTest::keyClick(&Hits(), Qt::Key_End);
  QTest::keyClick(&Hits(), Qt::Key_Return);
  EXPECT_EQ(Found(), "Suche 3:7 Menge");
  EXPECT_EQ(Panel("Routine"), "Suchen");
  Click(Hits(), Hits().model()->index(2, 3));
  EXPECT_EQ(Found(), "Lager 7:11 menge");
  Trigger("mnuBearbeiten_RouBew3");
  EXPECT_EQ(Panel("Modul"), "Suche");

  QTest::keyClick(&Field("txtTreffer"), Qt::Key_Down);
  EXPECT_TRUE(Hits().hasFocus());
  QTest::keyClick(&Hits(), Qt::Key_Down);
  QTest::keyClick(&Hits(), Qt::Key_Enter);
  EXPECT_EQ(Found(), "Suche 3:7 Menge");
  QTest::keyClick(&Hits(), Qt::Key_Escape);
  EXPECT_FALSE(Window().findChild<QDockWidget*>("fraTreffer")->isVisible());
  Trigger("mnuBearbeiten_Suchen_Alle");

  ListHits("PUBLIC SUB S");
  EXPECT_EQ(HitRows(), (QStringList{"Suche|Suchen|1|Public Sub Suchen()"})) << "from the first character on";
  EXPECT_EQ(Panel("lblTreffer"), "1 Treffer");
  Trigger("su_g");
  ListHits("meng");
  EXPECT_EQ(HitRows(), QStringList());
  EXPECT_EQ(Panel("lblTreffer"), "Keine Treffer");
  EXPECT_TRUE(Field("txtTreffer").hasFocus());
  QTest::keyClick(&Field("txtTreffer"), Qt::Key_Escape);
  EXPECT_FALSE(Window().findChild<QDockWidget*>("fraTreffer")->isVisible());
  EXPECT_TRUE(Code().hasFocus());
}

TEST_F(SearchTest, ListsHitsOfPatterns) {
  Trigger("mnuBearbeiten_Suchen_Alle");
  const struct {
    const char* pattern;
    bool wholeWord;
    QStringList rows;
  } kRows[] = {
      {"^end\\ssub$", false, {"Lager||4|End Sub", "Lager||8|End Sub", "Suche||4|End Sub"}},
      {"m.nge.", false, {"Lager|Laden|2|Menge = 1", "Lager|Laden|3|mengen = 2"}},
      {"rger|lad", true, {}},
      {"\u00e4rger|laden",
       true,
       {"Lager|Laden|1|Public Sub Laden()", "Lager|Ablegen|7|Ärger = menge", "Suche|Suchen|2|Call Laden"}},
      {"x*", false, {"Suche|Suchen|3|x = Menge"}},
      {"\\(\\)\\r\\n\\s+call", false, {"Suche|Suchen|1|Public Sub Suchen()"}},
  };
  for (const auto& row : kRows) {
    if (Action("su_g").isChecked() != row.wholeWord) Trigger("su_g");
    ListHits(row.pattern, true);
    QStringList found = HitRows();
    // Whether an end line belongs to its routine is the index's affair.
    for (QString& hit : found)
      hit.replace("|Laden|4|", "||4|").replace("|Ablegen|8|", "||8|").replace("|Suchen|4|", "||4|");
    EXPECT_EQ(found, row.rows) << row.pattern << found.join('\n').toStdString();
  }
  ListHits("a(b", true);
  EXPECT_EQ(Panel("lblTreffer"), "Der reguläre Ausdruck ist an Stelle 3 fehlerhaft");
  EXPECT_EQ(HitRows(), QStringList());
  EXPECT_EQ(platform.TakeText(), "");
}

TEST_F(SearchTest, HitsAreNarrowedSortedAndHandedOn) {
  AddModule("b.bas",
            "Attribute VB_Name = \"Suche\"\r\nPublic Sub Suchen() ' Laden\r\n  s = \"laden\" & \"x\"\r\n  Call "
            "Laden\r\nEnd Sub\r\n");
  StartWithProject();
  const auto box = [this](const char* name) { return Window().findChild<QCheckBox*>(QString::fromLatin1(name)); };
  // Chosen by the user, not only marked by the program.
  Code().setTextCursor(Code().document()->find("Menge"));
  Trigger("mnuBearbeiten_Suchen_Alle");
  EXPECT_EQ(Field("txtTreffer").text(), "Menge");
  auto& within = *Window().findChild<QComboBox*>("cboTrefferIn");
  const QString lager = "Lager|Laden|1|Public Sub Laden()", call = "Suche|Suchen|3|Call Laden";
  const QString comment = "Suche|Suchen|1|Public Sub Suchen() ' Laden", string = "Suche|Suchen|2|s = \"laden\" & \"x\"";
  const struct {
    int within;
    bool matchCase, pattern;
    QStringList rows;
  } kRows[] = {{0, false, false, {lager, comment, string, call}},
               {0, true, false, {lager, comment, call}},
               {1, false, false, {lager, string, call}},
               {1, true, true, {lager, call}},
               {2, false, true, {string}},
               {3, false, false, {comment}}};
  for (const auto& row : kRows) {
    within.setCurrentIndex(row.within);
    box("chkGrossKlein")->setChecked(row.matchCase);
    ListHits("Laden", row.pattern);
    EXPECT_EQ(HitRows(), row.rows) << row.within << row.pattern;
  }
  within.setCurrentIndex(0);
  ListHits("laden");
  const QModelIndex text = Hits().model()->index(2, ui::HitList::kText);
  EXPECT_EQ(text.data(ui::HitList::kMatchRole).toPoint(), QPoint(5, 5));
  Hits().sortByColumn(ui::HitList::kText, Qt::DescendingOrder);
  EXPECT_EQ(HitRows(), (QStringList{string, comment, lager, call}));
  Hits().sortByColumn(ui::HitList::kLine, Qt::AscendingOrder);
  EXPECT_EQ(HitRows(), (QStringList{lager, comment, string, call}));
  QTest::keyClick(&Hits(), Qt::Key_End);
  QTest::keyClick(&Hits(), Qt::Key_Return);
  EXPECT_EQ(Found(), "Suche 3:8 Laden");
  Window().findChild<QAbstractButton*>("cmdTrefferKopieren")->click();
  EXPECT_TRUE(platform.clipboard.text.endsWith("\nSuche\tSuchen\t3\t8\tCall Laden\n"));
  box("chkGanzesWort")->click();
  EXPECT_TRUE(Action("su_g").isChecked());
  Trigger("su_g");
  EXPECT_FALSE(box("chkGanzesWort")->isChecked());
}

TEST_F(SearchTest, PatternThatNeverEndsIsGivenUp) {
  AddModule("a.bas",
            "Attribute VB_Name = \"Lager\"\r\nPublic Sub Laden()\r\n  '" + std::string(400, 'a') + "b\r\nEnd Sub\r\n");
  StartWithProject();
  Trigger("mnuBearbeiten_Suchen_Alle");
  ListHits("(a+)+$", true);
  EXPECT_EQ(Panel("lblTreffer"), "Der reguläre Ausdruck ist zu aufwendig");
}

TEST_F(SearchTest, FarHitIsShownWithItsSurroundings) {
  std::string code = "Attribute VB_Name = \"Lager\"\r\nSub Lang()\r\n";
  for (int i = 0; i < 500; ++i) code += i == 250 ? "  Ziel = 1\r\n" : "  x = 1\r\n";
  AddModule("a.bas", code + "End Sub\r\n");
  StartWithProject();
  SearchFor("ziel");
  Trigger("su_a");
  EXPECT_EQ(Code().textCursor().blockNumber(), 251);
  const int middle = Code().viewport()->height() / 2;
  EXPECT_NEAR(Code().cursorRect().center().y(), middle, Code().cursorRect().height() * 2);
  SearchFor("x");
  Trigger("su_w");
  EXPECT_NEAR(Code().cursorRect().center().y(), middle, Code().cursorRect().height() * 3) << "what is seen stays";
}

TEST_F(SearchTest, HitInZoomShowsItsRoutine) {
  Trigger("mnuAnsicht_Zoom");
  SearchFor("x =");
  Trigger("mnuBearbeiten_Suchen_Alle");
  QTest::keyClick(&Hits(), Qt::Key_Return);
  auto& zoom = *Window().findChild<QPlainTextEdit*>("rtbZoom");
  EXPECT_EQ(zoom.textCursor().selectedText(), "x =");
  EXPECT_TRUE(zoom.hasFocus());
  LeaveProject();
  EXPECT_EQ(HitRows(), QStringList());
  EXPECT_FALSE(Window().findChild<QDockWidget*>("fraTreffer")->isVisible());
}

TEST_F(SearchTest, FilterLeavesWhatHasTheLetters) {
  QTreeView& tree = Tree("treProjekt");
  const QAbstractItemModelTester tester(tree.model());
  tree.setExpanded(ProjectNode(1), true);
  const QString all = TextOf(*tree.model());
  QTest::keyClick(&Window(), Qt::Key_T, Qt::ControlModifier);
  QLineEdit& filter = Field("txtFilter");
  EXPECT_TRUE(filter.hasFocus());
  QTest::keyClicks(&filter, "LAD");
  EXPECT_EQ(TextOf(*tree.model()), "Lager\n Laden\n");
  EXPECT_TRUE(tree.isExpanded(ProjectNode(0)));
  EXPECT_EQ(tree.currentIndex().data(), "Laden");
  QTest::keyClick(&filter, Qt::Key_Return);
  EXPECT_EQ(Panel("Routine"), "Laden");
  EXPECT_TRUE(Code().hasFocus());
  EXPECT_TRUE(ProjectNode(0).data(Qt::UserRole).toBool());

  filter.setText("such");
  EXPECT_EQ(TextOf(*tree.model()), "Suche\n Suchen\n") << "a module with all its routines";
  EXPECT_EQ(tree.currentIndex().data(), "Suche") << "the shorter name is meant";
  filter.setText("xyz");
  EXPECT_EQ(tree.model()->rowCount(), 0);
  QTest::keyClick(&filter, Qt::Key_Return);
  EXPECT_EQ(Panel("Routine"), "Laden");
  QTest::keyClick(&filter, Qt::Key_Escape);
  EXPECT_EQ(TextOf(*tree.model()), all);
  EXPECT_FALSE(tree.isExpanded(ProjectNode(0)));
  EXPECT_TRUE(tree.isExpanded(ProjectNode(1)));
  EXPECT_TRUE(ProjectNode(0).data(Qt::UserRole).toBool());
}

TEST_F(SearchTest, FilterGoesWithItsProject) {
  Field("txtFilter").setText("lad");
  LeaveProject();
  EXPECT_EQ(Field("txtFilter").text(), "");
  Tick(0);
  Trigger("doit");
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Lager\n Ablegen\n Laden\nSuche\n Suchen\n");
}

TEST_F(SearchTest, RoutinesComeInTheOrderOfTheSource) {
  // Numbers count by kind.
  AddModule("c.bas", "Attribute VB_Name = \"Teil\"\r\nFunction Zwei()\r\nEnd Function\r\nSub Eins()\r\nEnd Sub\r\n");
  StartWithProject();
  QTreeView& tree = Tree("treProjekt");
  tree.setExpanded(ProjectNode(0), true);
  Click(tree, ProjectNode(0, 0));
  Trigger("mnuAnsicht_Quellreihenfolge");
  EXPECT_EQ(TextOf(*tree.model()), "Lager\n Laden\n Ablegen\nSuche\n Suchen\nTeil\n Zwei\n Eins\n");
  EXPECT_TRUE(tree.isExpanded(ProjectNode(0)));
  EXPECT_EQ(tree.currentIndex().data(), "Ablegen");
  EXPECT_EQ(settings->ReadSetting("ansicht", "quellreihenfolge"), "-1");
  Click(tree, ProjectNode(0, 0));
  EXPECT_EQ(Panel("Routine"), "Laden");
  StartWithProject();
  EXPECT_EQ(TextOf(*Tree("treProjekt").model()), "Lager\n Laden\n Ablegen\nSuche\n Suchen\nTeil\n Zwei\n Eins\n");
  Trigger("mnuExtras_Struktur");
  EXPECT_EQ(platform.clipboard.text,
            "Lager\r\n\tAblegen\r\n\tLaden\r\nSuche\r\n\tSuchen\r\nTeil\r\n\tEins\r\n\tZwei\r\n");
}

TEST_F(SearchTest, ExactOutlineHasTheRoutinesOfTheCode) {
  AddModule("c.bas",
            "Attribute VB_Name = \"Teil\"\r\n#If VBA7 Then\r\nFunction Breite() As LongPtr\r\n#Else\r\n"
            "Function Breite() As Long\r\n#End If\r\nEnd Function\r\nSub Aus()\r\nEnd Sub\r\n");
  StartWithProject();
  AwaitKnowledge();
  QTreeView& tree = Tree("treProjekt");
  const QAbstractItemModelTester tester(tree.model());
  const QString fixed = TextOf(*tree.model());
  EXPECT_TRUE(Panel("Vorgang").startsWith("Gliederung abweichend: 1 Routine"));
  EXPECT_TRUE(ProjectNode(2).data(Qt::ToolTipRole).toString().endsWith(Panel("Vorgang")));
  EXPECT_TRUE(ProjectNode(0).data(Qt::ToolTipRole).toString().endsWith("a.bas"));
  tree.setExpanded(ProjectNode(2), true);
  Trigger("mnuAnsicht_Gliederung");
  EXPECT_EQ(TextOf(*tree.model()), "Lager\n Ablegen\n Laden\nSuche\n Suchen\nTeil\n Aus\n Breite\n");
  EXPECT_TRUE(tree.isExpanded(ProjectNode(2)));
  Click(tree, ProjectNode(2, 1));
  EXPECT_EQ(Found(), "Teil 2:1 Function");
  EXPECT_EQ(Panel("Routine"), "Breite");
  Trigger("mnuAnsicht_Quellreihenfolge");
  EXPECT_EQ(TextOf(*tree.model()), "Lager\n Laden\n Ablegen\nSuche\n Suchen\nTeil\n Breite\n Aus\n");
  Trigger("mnuAnsicht_Quellreihenfolge");
  Trigger("mnuAnsicht_Gliederung");
  EXPECT_EQ(TextOf(*tree.model()), fixed);
}

TEST_F(SearchTest, LineNumbersAreRemembered) {
  const auto width = [this] { return Code().findChild<QWidget*>("picZeilen")->width(); };
  EXPECT_TRUE(Action("mnuAnsicht_Zeilennummern").isChecked());
  EXPECT_GT(width(), 0);
  Trigger("mnuAnsicht_Zeilennummern");
  EXPECT_EQ(width(), 0);
  EXPECT_FALSE(Action("mnuAnsicht_Zeilennummern").isChecked());
  StartWithProject();
  EXPECT_EQ(width(), 0);
  Trigger("mnuAnsicht_Zeilennummern");
  EXPECT_GT(width(), 0);
}

TEST_F(SearchTest, WheelWithCtrlZoomsTheFont) {
  const int size = Code().font().pointSize();
  const auto turn = [this](int delta) {
    QWheelEvent event(QPointF(5, 5), Code().viewport()->mapToGlobal(QPointF(5, 5)), {}, {0, delta}, Qt::NoButton,
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(Code().viewport(), &event);
  };
  turn(60);
  EXPECT_EQ(Code().font().pointSize(), size);
  turn(60);
  turn(120);
  EXPECT_EQ(Code().font().pointSize(), size + 2);
  EXPECT_EQ(Code().document()->defaultFont().pointSize(), size + 2);
  StartWithProject();
  EXPECT_EQ(Code().document()->defaultFont().pointSize(), size + 2) << "remembered";
  turn(-120);
  EXPECT_EQ(Code().font().pointSize(), size + 1);
  Trigger("mnuAnsicht_Schrift_Minus");
  Trigger("mnuAnsicht_Schrift_Minus");
  EXPECT_EQ(Code().font().pointSize(), size - 1);
  Trigger("mnuAnsicht_Schrift_Normal");
  EXPECT_EQ(Code().font().pointSize(), size);
}

TEST(HitList, KeepsManyHits) {
  navigation::CodeViews views;
  std::vector<navigation::ModuleHits> modules(2);
  for (int module = 0; module < 2; ++module) {
    modules[static_cast<std::size_t>(module)].view = {module};
    modules[static_cast<std::size_t>(module)].hits.resize(50000, {{0, 1}, {module + 1}, -1});
  }
  ui::HitList list;
  const QAbstractItemModelTester tester(&list);
  list.SetHits(std::move(modules), {QStringLiteral("A"), QStringLiteral("B")}, &views);
  EXPECT_EQ(list.rowCount(), 100000);
  EXPECT_EQ(list.index(49999, 0).data(), "A");
  EXPECT_EQ(list.index(50000, 0).data(), "B");
  EXPECT_EQ(list.index(50000, 2).data(), 2);
  EXPECT_EQ(list.index(99999, 3).data(), "") << "the view is not there";
  EXPECT_EQ(list.headerData(3, Qt::Horizontal, Qt::DisplayRole), "Text");
}

}  // namespace
}  // namespace quillmate::testing
