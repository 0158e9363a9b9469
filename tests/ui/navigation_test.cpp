#include <QClipboard>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <QSplitter>
#include <QTextBlock>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>

#include "window_test.h"

namespace quillmate::testing {
namespace {

using ui::MessageIcon;

/// Three modules whose routines call each other; in the tree they are as "Lager", "Suche" and the class "Artikel".
class NavigationTest : public WindowTest {
 protected:
  void SetUp() override {
    WindowTest::SetUp();
    std::filesystem::remove_all(Sources());
    AddModule("a_Lager.bas",
              "Attribute VB_Name = \"Lager\"\r\nOption Explicit\r\nPrivate mBestand As Long\r\n\r\n"
              "Public Sub Zugang(ByVal n As Long)\r\n  mBestand = mBestand + n\r\n  Call Melden(\"Zugang\")\r\n"
              "  Ende\r\nEnd Sub\r\n\r\n"
              "Private Sub Melden(ByVal s As String)\r\n  Debug.Print s ' Zugang\r\nEnd Sub\r\n\r\n"
              "Public Sub Abgang()\r\n  Zugang -1\r\nEnd Sub\r\n");
    AddModule("b_Suche.bas",
              "Attribute VB_Name = \"Suche\"\r\nPublic Sub Melden()\r\n  Lager.Zugang 5\r\nEnd Sub\r\n\r\n"
              "Public Function Ende() As Boolean\r\n  Ende = True\r\nEnd Function\r\n");
    AddModule("c_Artikel.cls",
              "Attribute VB_Name = \"Artikel\"\r\nOption Explicit\r\n\r\nPublic Property Get Preis() As Double\r\n"
              "  Preis = 1\r\n  Melden\r\nEnd Property\r\n");
    StartWithProject();
    Tree("treProjekt").expandAll();
  }

  /// Puts the caret as a click would, and lets the button go.
  void PutCaret(int line, int column) {
    QTextCursor cursor(Code().document()->findBlockByNumber(line - 1));
    cursor.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, column);
    Code().setTextCursor(cursor);
    QTest::keyRelease(&Code(), Qt::Key_Shift);
  }
  int Line() { return Code().textCursor().blockNumber() + 1; }
  QString Place() { return Panel("Modul") + QLatin1Char('.') + Panel("Routine"); }
  QPlainTextEdit& Zoom() { return *Window().findChild<QPlainTextEdit*>(QStringLiteral("rtbZoom")); }
  QToolButton& Arrow(const char* key) { return *Window().findChild<QToolButton*>(QString::fromLatin1(key)); }
  QToolBar& Bar(const char* name) { return *Window().findChild<QToolBar*>(QString::fromLatin1(name)); }
  QString Steps() { return QString(Arrow("Back").isEnabled() ? "<" : "-") + (Arrow("Next").isEnabled() ? ">" : "-"); }
  void ClickRoutine(int module, int routine) { Click(Tree("treProjekt"), ProjectNode(module, routine)); }
  QModelIndex CallerNode(int module, int routine) {
    const QAbstractItemModel& model = *Tree("treRoutSuche").model();
    return model.index(routine, 0, model.index(module, 0));
  }
  /// Captions of the popup of the code, those that are off in brackets.
  QStringList MenuCaptions(QPlainTextEdit& code) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, code.viewport()->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(code.viewport(), &event);
    QStringList captions;
    auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (popup == nullptr) return captions;
    for (const QAction* action : popup->actions()) {
      if (action->menu() == nullptr) captions << (action->isEnabled() ? action->text() : "(" + action->text() + ")");
    }
    popup->close();
    return captions;
  }
};

TEST_F(NavigationTest, PanelFollowsTheCaret) {
  const struct {
    int line;
    const char* routine;
  } kRows[] = {{1, ""}, {4, "Zugang"}, {8, "Zugang"}, {9, ""}, {11, "Melden"}, {14, "Abgang"}, {2, ""}};
  for (const auto& row : kRows) {
    PutCaret(row.line, 0);
    EXPECT_EQ(Panel("Routine"), row.routine) << row.line;
  }
  QTest::keyClick(&Code(), Qt::Key_Down, Qt::NoModifier);
  QTest::keyClick(&Code(), Qt::Key_Down, Qt::NoModifier);
  EXPECT_EQ(Place(), "Lager.Zugang");
  QTest::mouseClick(Code().viewport(), Qt::LeftButton, {}, Code().cursorRect(QTextCursor(Code().document())).center());
  EXPECT_EQ(Place(), "Lager.");
  // Within one line the index is not asked: it could not answer.
  globals.CodeDb.CloseCodeDatabase();
  QTest::keyClick(&Code(), Qt::Key_Right);
  EXPECT_EQ(platform.TakeText(), "");
  QTest::keyClick(&Code(), Qt::Key_Down);
  EXPECT_NE(platform.TakeText(), "");
}

TEST_F(NavigationTest, ClickedRoutineIsTrackedAgainFromItsFirstLine) {
  PutCaret(4, 0);
  ClickRoutine(1, 0);
  EXPECT_EQ(Place(), "Suche.Ende");
  PutCaret(4, 0);
  EXPECT_EQ(Place(), "Suche.") << "another module, but the same line number";
}

TEST_F(NavigationTest, HistoryGoesBackAndOn) {
  EXPECT_EQ(Steps(), "--");
  ClickRoutine(0, 2);
  EXPECT_EQ(Steps(), "--");
  ClickRoutine(1, 0);
  ClickRoutine(2, 0);
  EXPECT_EQ(Place(), "Artikel.Preis");
  EXPECT_EQ(Steps(), "<-");
  QTest::keyClick(&Window(), Qt::Key_F4);
  EXPECT_EQ(Place(), "Suche.Ende");
  EXPECT_EQ(Code().textCursor().selectedText(), "Public");
  EXPECT_TRUE(ProjectNode(1).data(Qt::UserRole).toBool());
  EXPECT_EQ(Steps(), "<>");
  QTest::mouseClick(&Arrow("Back"), Qt::LeftButton);
  EXPECT_EQ(Place(), "Lager.Zugang");
  EXPECT_EQ(Steps(), "->");
  QTest::mousePress(Code().viewport(), Qt::ForwardButton);
  EXPECT_EQ(Place(), "Suche.Ende");
  QMouseEvent quick(QEvent::MouseButtonDblClick, QPointF(5, 5), Code().mapToGlobal(QPointF(5, 5)), Qt::BackButton,
                    Qt::BackButton, Qt::NoModifier);
  QApplication::sendEvent(&Tree("treProjekt"), &quick);
  EXPECT_EQ(Place(), "Lager.Zugang");
  QTest::keyClick(&Window(), Qt::Key_F4, Qt::ControlModifier);
  EXPECT_EQ(Place(), "Suche.Ende");
  Click(Tree("treProjekt"), ProjectNode(2));
  EXPECT_EQ(Steps(), "<>") << "a module is no place";
  ClickRoutine(0, 0);
  EXPECT_EQ(Steps(), "<-");
  EXPECT_FALSE(Action("mnuBearbeiten_RouBew4").isEnabled());
  EXPECT_TRUE(Action("mnuBearbeiten_RouBew3").isEnabled());
}

TEST_F(NavigationTest, PlacesOfAProjectThatIsGoneAreLeftAlone) {
  ClickRoutine(2, 0);
  ClickRoutine(1, 0);
  LeaveProject();
  Trigger("mnuBearbeiten_RouBew3");
  EXPECT_EQ(platform.TakeText(), "Projekt wurde nicht gespeichert !\r\nProjekt jetzt speichern ?");
  EXPECT_EQ(Place(), ".");
  EXPECT_EQ(Code().toPlainText(), "");
  EXPECT_EQ(Steps(), "--");
  Tick(0);
  Trigger("doit");
  EXPECT_EQ(Steps(), "--");
}

TEST_F(NavigationTest, BackFromADefinitionLeadsToWhereTheJumpBegan) {
  for (const bool visited : {false, true}) {
    // Right after the load there is no place yet; later there may be one in another module.
    if (visited) {
      ClickRoutine(1, 0);
      Click(Tree("treProjekt"), ProjectNode(0));
    }
    PutCaret(6, 9);
    Trigger("mnuBearbeiten_Definition");
    EXPECT_EQ(Place(), "Lager.Melden");
    Trigger("mnuBearbeiten_RouBew3");
    EXPECT_EQ(Place(), "Lager.Zugang");
    EXPECT_EQ(Line(), 6);
  }
}

TEST_F(NavigationTest, DefinitionLooksAtHomeFirst) {
  ClickRoutine(0, 2);
  PutCaret(6, 9);
  Trigger("mnuBearbeiten_Definition");
  EXPECT_EQ(Place(), "Lager.Melden") << "private, but in the same module";
  EXPECT_EQ(Line(), 10);
  EXPECT_EQ(Code().textCursor().selectedText(), "Private");
  Trigger("mnuBearbeiten_RouBew3");
  EXPECT_EQ(Line(), 6) << "back to where the jump began, not to the routine's head";
  EXPECT_EQ(Place(), "Lager.Zugang");

  PutCaret(7, 6);
  QTest::keyClick(&Code(), Qt::Key_F12);
  EXPECT_EQ(Place(), "Suche.Ende");
  EXPECT_TRUE(ProjectNode(1).data(Qt::UserRole).toBool());
  EXPECT_TRUE(Code().hasFocus());
  Trigger("mnuBearbeiten_RouBew3");
  EXPECT_EQ(Place(), "Lager.Zugang");
  EXPECT_EQ(Line(), 7);
  Trigger("mnuBearbeiten_RouBew4");
  EXPECT_EQ(Place(), "Suche.Ende");

  Click(Tree("treProjekt"), ProjectNode(2));
  PutCaret(5, 8);
  Trigger("mnuBearbeiten_Definition");
  EXPECT_EQ(Place(), "Suche.Melden") << "the private one of another module is not seen";
}

TEST_F(NavigationTest, DefinitionSaysWhatItDoesNotKnow) {
  PutCaret(5, 6);
  Trigger("mnuBearbeiten_Definition");
  ExpectMessage("Bezeichner unter Cursor nicht erkannt", MessageIcon::kNone);
  EXPECT_EQ(Line(), 5);
  EXPECT_EQ(Steps(), "--");
  PutCaret(6, 2);
  Trigger("mnuBearbeiten_Definition");
  EXPECT_EQ(platform.TakeText(), "") << "in front of a word there is none";
}

TEST_F(NavigationTest, WordIsMeantBySelectingClickingOrFindingIt) {
  const auto middle = [this](int line, int column) {
    QTextCursor cursor(Code().document()->findBlockByNumber(line - 1));
    cursor.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, column);
    return Code().cursorRect(cursor).center();
  };
  QTest::mouseDClick(Code().viewport(), Qt::LeftButton, {}, middle(6, 9));
  EXPECT_EQ(Code().textCursor().selectedText(), "Melden");
  QTest::mousePress(Code().viewport(), Qt::RightButton, {}, middle(6, 10));
  EXPECT_EQ(Code().textCursor().selectedText(), "Melden") << "a menu for the selection";
  QTest::keyClick(&Code(), Qt::Key_F12);
  EXPECT_EQ(Place(), "Lager.Melden");
  Trigger("mnuBearbeiten_Definition");
  EXPECT_EQ(platform.TakeText(), "") << "the word selected by a jump is nobody's choice";

  Code().verticalScrollBar()->setValue(0);
  QTest::mousePress(Code().viewport(), Qt::RightButton, {}, middle(7, 4));
  EXPECT_EQ(MenuCaptions(Code()),
            (QStringList{"&Definition : Ende", "Aufrufe: Zugang", "D&eklaration", "Alle Ver&wendungen", "&Zoom"}));

  Window().findChild<QLineEdit*>("txtSuche")->setText("Meld");
  Trigger("su_a");
  Trigger("mnuBearbeiten_Definition");
  EXPECT_EQ(Place(), "Lager.Melden");
}

TEST_F(NavigationTest, NameThatIsCutOffIsShownUnderTheMouse) {
  QTreeView& tree = Tree("treProjekt");
  for (const int width : {400, 70}) {
    Window().findChild<QSplitter*>("fraContainer")->setSizes({width, 600});
    const QPoint place = tree.visualRect(ProjectNode(0, 0)).center();
    QHelpEvent event(QEvent::ToolTip, place, tree.viewport()->mapToGlobal(place));
    QApplication::sendEvent(tree.viewport(), &event);
    EXPECT_EQ(QToolTip::text(), width < 100 ? "Abgang" : "");
  }
}

TEST_F(NavigationTest, CallersTakeThePlaceOfTheTree) {
  ClickRoutine(0, 2);
  EXPECT_FALSE(Action("mnuAnsicht_RouClose").isEnabled());
  QTest::mouseDClick(Window().findChild<QLabel*>("Routine"), Qt::LeftButton);
  QTreeView& callers = Tree("treRoutSuche");
  EXPECT_EQ(TextOf(*callers.model()), "Lager\n Zugang\n Abgang\nSuche\n Melden\n");
  EXPECT_TRUE(callers.isVisible());
  EXPECT_FALSE(Tree("treProjekt").isVisible());
  EXPECT_TRUE(Bar("tobSuche").isVisible());
  EXPECT_FALSE(Bar("tobSymb1").isVisible());
  EXPECT_EQ(Panel("lblRoutSuche"), "Aufrufe: Zugang");

  EXPECT_TRUE(callers.hasFocus());
  EXPECT_EQ(callers.currentIndex().data().toString(), "Lager");
  callers.setCurrentIndex(CallerNode(1, 0));
  QTest::keyClicks(&callers, "l");
  EXPECT_EQ(Place(), "Lager.Zugang");
  QTest::keyClick(&callers, Qt::Key_Return);
  EXPECT_EQ(Place(), "Suche.Melden");
  EXPECT_EQ(Steps(), "<-");
  Click(callers, CallerNode(0, 1));
  EXPECT_EQ(Place(), "Lager.Abgang");
  QTest::keyClick(&Window(), Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(Window().findChild<QLineEdit*>("txtSuche")->hasFocus());

  EXPECT_EQ(Action("close").toolTip(), "Schliesst die Routinensuche");
  Trigger("close");
  EXPECT_TRUE(Tree("treProjekt").isVisible());
  EXPECT_TRUE(Bar("tobSymb1").isVisible());
  EXPECT_FALSE(Bar("tobSuche").isVisible());
  EXPECT_FALSE(Action("mnuAnsicht_RouClose").isEnabled());
  EXPECT_EQ(callers.model()->rowCount(), 0);
}

TEST_F(NavigationTest, PrivateRoutineIsSoughtAtHome) {
  ClickRoutine(0, 1);
  QTest::keyClick(&Window(), Qt::Key_F12, Qt::ShiftModifier);
  EXPECT_EQ(TextOf(*Tree("treRoutSuche").model()), "Lager\n Zugang\n Melden\n");
  QTest::keyClick(&Window(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_TRUE(Code().hasFocus());
}

TEST_F(NavigationTest, CallersSayWhyThereAreNone) {
  Trigger("mnuBearbeiten_Rout");
  EXPECT_EQ(platform.TakeText(), "") << "no routine at the caret";
  ClickRoutine(2, 0);
  Trigger("mnuBearbeiten_Rout");
  ExpectMessage("Property wird von der Routinensuche nicht unterstützt", MessageIcon::kExclamation);
  ClickRoutine(0, 2);
  globals.CodeDb.ExecuteSql("DELETE FROM td_rout WHERE td_rout.rou_name = 'Zugang'");
  Trigger("mnuBearbeiten_Rout");
  ExpectMessage("Infos zu Routine nicht gefunden", MessageIcon::kExclamation);
  globals.CodeDb.CloseCodeDatabase();
  Trigger("mnuBearbeiten_Rout");
  ExpectMessage("Routine nicht gefunden", MessageIcon::kNone);
  EXPECT_TRUE(Tree("treProjekt").isVisible());
}

TEST_F(NavigationTest, LeavingTheProjectClosesItsResults) {
  ClickRoutine(0, 2);
  Trigger("mnuBearbeiten_Rout");
  Trigger("mnuAnsicht_Zoom");
  LeaveProject();
  EXPECT_TRUE(Tree("treApp").isVisible());
  EXPECT_TRUE(Tree("treApp").hasFocus());
  EXPECT_TRUE(Bar("tobSymb1").isVisible());
  EXPECT_FALSE(Action("zoom").isChecked());
  EXPECT_TRUE(Window().findChild<QWidget*>("fraStart")->isVisible());
}

TEST_F(NavigationTest, ContextMenuNamesWhatStandsAtTheCaret) {
  EXPECT_EQ(MenuCaptions(Code()),
            (QStringList{"(&Definition )", "(Aufrufe)", "D&eklaration", "Alle Ver&wendungen", "&Zoom"}));
  PutCaret(6, 9);
  EXPECT_EQ(MenuCaptions(Code()),
            (QStringList{"&Definition : Melden", "Aufrufe: Zugang", "D&eklaration", "Alle Ver&wendungen", "&Zoom"}));
  Trigger("mnuPopUpHaupt_Definition");
  EXPECT_EQ(Place(), "Lager.Melden");
  Trigger("mnuPopUpHaupt_Aufruf");
  EXPECT_TRUE(Tree("treRoutSuche").isVisible());
}

TEST_F(NavigationTest, ZoomShowsTheRoutineAndFollows) {
  PutCaret(15, 3);
  Trigger("zoom");
  EXPECT_TRUE(Action("mnuAnsicht_Zoom").isChecked());
  EXPECT_TRUE(Action("zoom").isChecked());
  EXPECT_TRUE(Zoom().hasFocus());
  EXPECT_FALSE(Code().isVisible());
  EXPECT_EQ(Zoom().toPlainText(), "Public Sub Abgang()\n  Zugang -1\nEnd Sub");
  ClickRoutine(1, 0);
  EXPECT_EQ(Zoom().toPlainText(), "Public Function Ende() As Boolean\n  Ende = True\nEnd Function");
  ClickRoutine(0, 1);
  QTest::keyClick(&Window(), Qt::Key_F4);
  EXPECT_TRUE(Zoom().toPlainText().startsWith("Public Function Ende()"));
  EXPECT_TRUE(Zoom().hasFocus());
  Click(Tree("treProjekt"), ProjectNode(0));
  EXPECT_TRUE(Zoom().toPlainText().startsWith("Option Explicit\nPrivate mBestand As Long")) << "the declarations";

  EXPECT_EQ(MenuCaptions(Zoom()).mid(MenuCaptions(Zoom()).size() - 2), (QStringList{"&Zoom Kopieren", "&Zoom Aus"}));
  Trigger("mnuPopUp_Zoom_Aus");
  EXPECT_TRUE(Code().hasFocus());
  EXPECT_FALSE(Action("zoom").isChecked());
  EXPECT_EQ(Zoom().toPlainText(), "");
}

TEST_F(NavigationTest, WholeModuleCommandsRefuseInZoom) {
  Window().findChild<QLineEdit*>("txtSuche")->setText("Zugang");
  PutCaret(6, 9);
  Trigger("mnuAnsicht_Zoom");
  for (const char* command :
       {"mnuBearbeiten_Kopieren_Modul", "mnuBearbeiten_Definition", "mnuBearbeiten_Suchen", "su_w"}) {
    Trigger(command);
    ExpectMessage("Steht im Zoom Modus nicht zur Verfügung", MessageIcon::kInformation);
  }
  EXPECT_TRUE(Zoom().isVisible());
}

TEST_F(NavigationTest, CopyTakesTheSelectionOfTheZoomView) {
  PutCaret(15, 0);
  Trigger("mnuAnsicht_Zoom");
  Zoom().selectAll();
  Trigger("mnuPopUp_Zoom_Copy");
  EXPECT_EQ(QApplication::clipboard()->text(), "Public Sub Abgang()\n  Zugang -1\nEnd Sub");
  Trigger("mnuAnsicht_Zoom");
  auto& field = *Window().findChild<QLineEdit*>("txtSuche");
  field.setText("Suchtext");
  field.setFocus();
  field.selectAll();
  QTest::keyClick(&field, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "Suchtext") << "the key belongs to the field first";
  PutCaret(13, 0);
  QTest::keyClick(&Code(), Qt::Key_Right, Qt::ShiftModifier);
  Tree("treProjekt").setFocus();
  QTest::keyClick(&Tree("treProjekt"), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "\n");
  Trigger("mnuBearbeiten_Kopieren_Modul");
  EXPECT_TRUE(QApplication::clipboard()->text().startsWith("Option Explicit"));
}

TEST_F(NavigationTest, IndexThatFailsLeavesZoomOff) {
  globals.CodeDb.CloseCodeDatabase();
  Trigger("zoom");
  EXPECT_NE(platform.TakeText(), "");
  EXPECT_FALSE(Action("zoom").isChecked());
  EXPECT_FALSE(Action("mnuAnsicht_Zoom").isChecked());
  EXPECT_TRUE(Code().isVisible());
}

}  // namespace
}  // namespace quillmate::testing
