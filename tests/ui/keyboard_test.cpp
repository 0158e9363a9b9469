#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QHash>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QTabBar>

#include "command_table.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

/// Everything is reached, done and left without a mouse.
class KeyboardTest : public WindowTest {
 protected:
  /// Dialogs and windows beside the main one.
  QList<QWidget*> OtherWindows() {
    QList<QWidget*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget != &Window() && widget->isVisible() && qobject_cast<QDialog*>(widget) != nullptr) windows << widget;
    }
    return windows;
  }

  /// What somebody who sees the window expects to come to.
  static QSet<QWidget*> Expected(QWidget& window) {
    QSet<QWidget*> expected;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
      const bool isOther = widget->window() != &window || !widget->isVisible() || !widget->isEnabled();
      if (isOther || (widget->focusPolicy() & Qt::TabFocus) == 0 || widget->focusProxy() != nullptr) continue;
      // Of a group one has the keys; the arrows lead to the others. A field is its box's, a row of tabs without tabs is
      // none, and handles between panes and the toolbar's "more" are for the mouse.
      const auto* radio = qobject_cast<QRadioButton*>(widget);
      const auto* tabs = qobject_cast<QTabBar*>(widget);
      const bool isPart = qobject_cast<QComboBox*>(widget->parentWidget()) != nullptr;
      const bool isOff = (radio != nullptr && !radio->isChecked()) || (tabs != nullptr && tabs->count() < 2);
      if (!isOff && !isPart) expected.insert(widget);
    }
    return expected;
  }

  /// What Tab does not come to, and where it gets stuck.
  static QStringList Unreached(QWidget& window) {
    QApplication::setActiveWindow(&window);
    QSet<QWidget*> reached;
    for (int step = 0; step < 80; ++step) {
      QWidget* focus = window.focusWidget();
      if (focus == nullptr) focus = &window;
      for (QWidget* each = focus; each != nullptr && each != &window; each = each->parentWidget()) reached.insert(each);
      QTest::keyClick(focus, Qt::Key_Tab);
    }
    QStringList names;
    for (const QWidget* widget : Expected(window) - reached) {
      names << QStringLiteral("%1 %2").arg(widget->metaObject()->className(), widget->objectName());
    }
    names.sort();
    return names;
  }
};

/// The access keys that two controls of a window share.
QString SharedKeys(const QWidget& window) {
  QHash<QChar, QStringList> captions;
  const auto add = [&captions](const QString& caption) {
    const QKeySequence key = QKeySequence::mnemonic(caption);
    if (!key.isEmpty()) captions[key.toString().back()] << caption;
  };
  for (const auto* button : window.findChildren<QAbstractButton*>()) {
    if (button->isVisible()) add(button->text());
  }
  for (const auto* label : window.findChildren<QLabel*>()) {
    if (label->isVisible() && label->buddy() != nullptr) add(label->text());
  }
  for (const auto* tabs : window.findChildren<QTabBar*>()) {
    for (int i = 0; tabs->isVisible() && i < tabs->count(); ++i) add(tabs->tabText(i));
  }
  QString shared;
  for (const QStringList& each : captions) {
    if (each.size() > 1) shared += each.join(u'|') + u'\n';
  }
  return shared;
}

struct Opened {
  const char* command;
  const char* window;
  /// What Enter does; null where a list has the keys.
  const char* button = nullptr;
};

constexpr Opened kOpened[] = {
    {"mnuDatei_Drucken", "frmDrucken", "cmdDrucken"},
    {"mnuDatei_Pdf", "frmDrucken", "cmdDrucken"},
    {"mnuDatei_Uebergabe", "frmUebergabe", "cmdUebergabe"},
    {"mnuExtras_Vergleichen", "frmVergleichWahl", "cmdVergleichen"},
    {"mnuExtras_Optionen", "frmOptionen", "cmdOK"},
    {"mnuLesen_Notiz", "frmNotiz", "cmdOk"},
    {"mnuBearbeiten_GeheZuName", "frmGeheZu"},
    {"mnuExtras_Bestand", "frmBestand"},
    {"mnuAnalyse_Befunde", "frmBefunde"},
    {"mnuAnalyse_Unbenutztes", "frmUnbenutztes"},
    {"mnuAnalyse_Kennzahlen", "frmKennzahlen"},
    {"mnuTest", "frmUnbenutzt"},
    {"mnuAnalyse_Aufrufbild", "frmAufrufbild"},
    {"mnuAnalyse_Abhaengigkeiten", "frmAbhaengigkeiten"},
    {"mnuHilfe_Info", "frmInfo"},
};

TEST_F(KeyboardTest, EveryWindowIsWalkedThroughAndLeft) {
  StartWithProject();
  AwaitKnowledge();
  Click(Tree("treProjekt"), ProjectNode(1, 0));
  Code().setFocus();
  for (const Opened& opened : kOpened) {
    Trigger(opened.command);
    ASSERT_EQ(OtherWindows().size(), 1) << opened.command;
    QWidget& window = *OtherWindows().front();
    EXPECT_EQ(window.objectName(), opened.window);
    if (opened.button != nullptr) {
      for (const QPushButton* button : window.findChildren<QPushButton*>()) {
        EXPECT_EQ(button->isDefault(), button->objectName() == opened.button)
            << opened.window << ' ' << button->text().toStdString();
      }
    }
    EXPECT_EQ(Unreached(window).join(u'\n').toStdString(), "") << opened.window;
    EXPECT_EQ(SharedKeys(window).toStdString(), "") << opened.window;
    EXPECT_EQ(TooLarge(window).toStdString(), "") << opened.window;
    QTest::keyClick(window.focusWidget() != nullptr ? window.focusWidget() : &window, Qt::Key_Escape);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(OtherWindows().size(), 0) << opened.window << " is left by Esc";
    EXPECT_EQ(Window().focusWidget(), &Code()) << opened.window;
  }
  EXPECT_EQ(platform.TakeText(), "");
}

TEST_F(KeyboardTest, TheMainWindowHasNoDeadEnd) {
  Start();
  EXPECT_EQ(Unreached(Window()).join(u'\n').toStdString(), "") << "without a project";
  platform.messages.clear();
  Tick(0);
  Trigger("mnuBearbeiten_Code");
  AwaitKnowledge();
  Click(Tree("treProjekt"), ProjectNode(1, 0));
  // From "Public Sub" to the name.
  for (int word = 0; word < 2; ++word) QTest::keyClick(&Code(), Qt::Key_Right, Qt::ControlModifier);
  EXPECT_EQ(Unreached(Window()).join(u'\n').toStdString(), "") << "with a project";
  const struct {
    const char* command;
    const char* panel;
  } kPanels[] = {{"mnuBearbeiten_Suchen_Alle", "fraTreffer"},
                 {"mnuBearbeiten_Verwendungen", "fraVerwendungen"},
                 {"mnuAnalyse_Hierarchie", "fraHierarchie"},
                 {"mnuLesen_Notizen", "fraNotizen"}};
  for (const auto& row : kPanels) {
    auto* panel = Window().findChild<QDockWidget*>(row.panel);
    ASSERT_NE(panel, nullptr) << row.panel;
    Trigger(row.command);
    ASSERT_TRUE(panel->isVisible()) << row.panel;
    EXPECT_TRUE(panel->isAncestorOf(Window().focusWidget())) << row.panel << " takes the keys";
    EXPECT_EQ(Unreached(Window()).join(u'\n').toStdString(), "") << row.panel;
    // From wherever in it.
    const QSet<QWidget*> all = Expected(Window());
    for (QWidget* widget : all) {
      if (!panel->isAncestorOf(widget)) continue;
      Trigger(row.command);
      widget->setFocus();
      QTest::keyClick(Window().focusWidget(), Qt::Key_Escape);
      EXPECT_FALSE(panel->isVisible()) << row.panel << ' ' << widget->objectName().toStdString();
      EXPECT_EQ(Window().focusWidget(), &Code()) << row.panel << ' ' << widget->objectName().toStdString();
    }
  }
  Trigger("mnuBearbeiten_Rout");
  EXPECT_EQ(Unreached(Window()).join(u'\n').toStdString(), "") << "with callers";
}

TEST_F(KeyboardTest, NotesAreTakenWithoutLeavingTheText) {
  StartWithProject();
  AwaitKnowledge();
  Click(Tree("treProjekt"), ProjectNode(1, 0));
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    Trigger("mnuLesen_Notiz");
    QWidget& dialog = *Window().findChild<QDialog*>("frmNotiz");
    auto& text = *dialog.findChild<QPlainTextEdit*>("txtNotiz");
    QTest::keyClicks(&text, QStringLiteral("x"));
    QTest::keyClick(&text, key);
    EXPECT_TRUE(dialog.isVisible()) << "a new line";
    QApplication::setActiveWindow(&dialog);
    QTest::keyClick(&text, key, Qt::ControlModifier);
    EXPECT_FALSE(dialog.isVisible());
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  Trigger("mnuLesen_Notiz");
  EXPECT_EQ(Window().findChild<QDialog*>("frmNotiz")->findChild<QPlainTextEdit*>("txtNotiz")->toPlainText(), "xx");
}

TEST_F(KeyboardTest, TheMenuKeyOpensTheMenuOfThePlace) {
  Start();
  const auto popup = [](QAbstractScrollArea& area) {
    // Where the toolkit takes the place from.
    const QPoint place = area.inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, place, area.mapToGlobal(place));
    QApplication::sendEvent(&area, &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    const QString first = menu == nullptr ? QString() : menu->actions().front()->text();
    if (menu != nullptr) menu->close();
    return first;
  };
  Tree("treApp").setCurrentIndex(HostNode(0));
  EXPECT_EQ(popup(Tree("treApp")), "&HTML Zwischenablage");
  EXPECT_TRUE(Action("mnuPopUpEinlesen_Entfernen").isEnabled()) << "of the node that is current";
  Tick(0);
  Trigger("mnuBearbeiten_Code");
  EXPECT_EQ(popup(Code()), "&HTML");
}

}  // namespace
}  // namespace quillmate::testing
