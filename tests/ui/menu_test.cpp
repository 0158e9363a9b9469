#include <QAbstractButton>
#include <QAccessible>
#include <QDockWidget>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QTabBar>
#include <algorithm>

#include "code_style.h"
#include "command_table.h"
#include "host/fake_host.h"
#include "window_test.h"

namespace quillmate::testing {
namespace {

const host::FakeComponent kModule{"Modul1", host::kStdModule, "Sub A()\r\n  x = 1\r\nEnd Sub"};

class MenuTest : public WindowTest {
 protected:
  /// The visible popup's items, those that are off in brackets.
  QStringList PopupItems() {
    auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (popup == nullptr) return {};
    QStringList items;
    for (const QAction* action : popup->findChildren<QAction*>()) {
      if (action->menu() != nullptr) continue;
      items.append(action->isEnabled() ? action->objectName() : "(" + action->objectName() + ")");
    }
    popup->close();
    return items;
  }
  void RightClick(QAbstractScrollArea& area, const QPoint& position) {
    QContextMenuEvent event(QContextMenuEvent::Mouse, position, area.viewport()->mapToGlobal(position));
    QApplication::sendEvent(area.viewport(), &event);
  }
};

TEST_F(MenuTest, KeysAndAccessKeysAreUnambiguous) {
  Start();
  QSet<QString> shortcuts;
  for (const ui::Command& command : ui::Commands()) {
    if (*command.shortcut == '\0') continue;
    const QKeySequence keys(QString::fromUtf8(command.shortcut));
    EXPECT_EQ(keys.count(), 1) << command.name;
    EXPECT_FALSE(shortcuts.contains(keys.toString())) << command.name;
    shortcuts.insert(keys.toString());
  }
  QList<QMenu*> menus = Window().menuBar()->findChildren<QMenu*>();
  ASSERT_FALSE(menus.isEmpty());
  for (const QMenu* menu : menus) {
    QSet<QChar> access;
    for (const QAction* action : menu->actions()) {
      const qsizetype mark = action->text().indexOf(QLatin1Char('&'));
      if (mark < 0) continue;
      const QChar key = action->text().at(mark + 1).toLower();
      EXPECT_FALSE(access.contains(key)) << action->text().toStdString();
      access.insert(key);
    }
  }
}

TEST_F(MenuTest, ContextMenusFitThePlace) {
  Start();
  QTreeView& hosts = Tree("treApp");
  RightClick(hosts, hosts.visualRect(HostNode(0)).center());
  EXPECT_EQ(PopupItems(), (QStringList{"mnuPopUpEinlesen_Clip", "mnuPopUpEinlesen_Code", "mnuPopUpEinlesen_Alle",
                                       "mnuPopUpEinlesen_Keine", "mnuPopUpEinlesen_Entfernen"}));
  RightClick(hosts, QPoint(5, hosts.viewport()->height() - 5));
  EXPECT_EQ(PopupItems(), (QStringList{"mnuPopUpEinlesen_Clip", "mnuPopUpEinlesen_Code", "mnuPopUpEinlesen_Alle",
                                       "mnuPopUpEinlesen_Keine", "(mnuPopUpEinlesen_Entfernen)"}));
  RightClick(Code(), QPoint(5, 5));
  EXPECT_EQ(PopupItems(), (QStringList{"mnuPopUpEinlesen_Clip", "mnuPopUpEinlesen_Code", "mnuPopUpEinlesen_Alle",
                                       "mnuPopUpEinlesen_Keine", "(mnuPopUpEinlesen_Entfernen)"}));
  Tick(0);
  Action("mnuPopUpEinlesen_Code").trigger();
  RightClick(Code(), QPoint(5, 5));
  EXPECT_EQ(PopupItems(),
            (QStringList{"mnuPopUpHaupt_Html_Index0", "mnuPopUpHaupt_Html_Index1", "mnuPopUpHaupt_Html_Index2",
                         "mnuPopUpHaupt_Html_Index3", "mnuPopUpHaupt_Copy_Modul", "mnuPopUpHaupt_Copy_Auswahl",
                         "(mnuPopUpHaupt_Definition)", "(mnuPopUpHaupt_Aufruf)", "mnuPopUpHaupt_Deklaration",
                         "mnuPopUpHaupt_Verwendungen", "mnuPopUpHaupt_Zoom"}));
}

/// Qt's own helpers inside of a control speak through that.
TEST_F(MenuTest, EveryControlHasANameForScreenReaders) {
  Start();
  Tick(0);
  Trigger("mnuBearbeiten_Code");
  for (const char* command : {"mnuExtras_Optionen", "mnuHilfe_Info", "mnuAnalyse_Kennzahlen", "mnuTest"})
    Trigger(command);
  AwaitKnowledge();
  for (QWidget* control : Window().findChildren<QWidget*>()) {
    const bool isOwn = !control->objectName().isEmpty() && !control->objectName().startsWith("qt_");
    if (!isOwn || control->focusPolicy() == Qt::NoFocus) continue;
    const QAccessibleInterface* access = QAccessible::queryAccessibleInterface(control);
    ASSERT_NE(access, nullptr);
    const bool isNamed = !access->text(QAccessible::Name).isEmpty() || control->focusProxy() != nullptr;
    EXPECT_TRUE(isNamed) << control->objectName().toStdString() << ' ' << control->metaObject()->className();
  }
  for (const QDockWidget* panel : Window().findChildren<QDockWidget*>()) {
    EXPECT_TRUE(panel->findChild<QAbstractButton*>("qt_dockwidget_closebutton")->toolTip().endsWith(" schließen"));
  }
}

/// What a screen reader can come to below an object, as "role: path of names"; what has no name.
QStringList Nameless(QAccessibleInterface* top) {
  constexpr QAccessible::Role kReachable[] = {
      QAccessible::Button,   QAccessible::CheckBox,  QAccessible::RadioButton, QAccessible::EditableText,
      QAccessible::ComboBox, QAccessible::Tree,      QAccessible::List,        QAccessible::Table,
      QAccessible::MenuItem, QAccessible::PageTab,   QAccessible::TreeItem,    QAccessible::ListItem,
      QAccessible::Cell,     QAccessible::ButtonMenu};
  QStringList nameless;
  QList<std::pair<QAccessibleInterface*, QString>> open = {{top, {}}};
  while (!open.isEmpty()) {
    const auto [node, path] = open.takeLast();
    if (node == nullptr || node->state().invisible) continue;
    const QString name = node->text(QAccessible::Name);
    const bool isReachable = node->state().focusable || std::ranges::count(kReachable, node->role()) > 0;
    // A separator of a menu is an item without a text.
    const auto* action = qobject_cast<QAction*>(node->object());
    const bool isSeparator = action != nullptr && action->isSeparator();
    // A cell after the first one may have nothing to say.
    const QAccessibleTableCellInterface* cell = node->tableCellInterface();
    if (cell != nullptr && cell->columnIndex() > 0) continue;
    const QString own = node->object() == nullptr ? QString() : node->object()->objectName();
    // Tabs are called after the one in front; without any there is nothing to come to.
    const auto* bar = qobject_cast<QTabBar*>(node->object());
    const bool isEmptyBar = bar != nullptr && bar->count() == 0;
    if (isReachable && name.isEmpty() && !isSeparator && !isEmptyBar) {
      nameless << QStringLiteral("%1 %2 (%3)").arg(int(node->role())).arg(own, path);
    }
    // The field of a box with a list speaks with its name.
    if (node->role() == QAccessible::ComboBox) continue;
    for (int child = 0; child < std::min(node->childCount(), 200); ++child) {
      open.append({node->child(child), path + u'/' + (name.isEmpty() ? own : name)});
    }
  }
  return nameless;
}

TEST_F(MenuTest, NothingThatCanBeReachedIsWithoutAName) {
  Start();
  EXPECT_EQ(Nameless(QAccessible::queryAccessibleInterface(&Window())).join(u'\n').toStdString(), "");
  StartWithProject();
  AwaitKnowledge();
  Click(Tree("treProjekt"), ProjectNode(1));
  for (const ui::Command& command : ui::Commands()) {
    // What opens a window or a panel of its own, and leaves the project alone.
    const bool opens = command.menu == ui::MenuId::kAnalysis || command.menu == ui::MenuId::kReading ||
                       QString::fromUtf8(command.caption).endsWith("...");
    const bool leaves = command.menu == ui::MenuId::kFile && command.id != ui::CommandId::kPrint;
    if (opens && !leaves) Trigger(command.name);
  }
  for (const char* name : {"mnuExtras_Optionen", "mnuHilfe_Info", "mnuTest", "mnuBearbeiten_Suchen_Alle"})
    Trigger(name);
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible()) continue;
    EXPECT_EQ(Nameless(QAccessible::queryAccessibleInterface(window)).join(u'\n').toStdString(), "")
        << window->objectName().toStdString();
  }
}

TEST_F(MenuTest, TicksAllOrNothing) {
  Start();
  Trigger("mnuPopUpEinlesen_Alle");
  EXPECT_EQ(HostNode(0, 1).data(Qt::CheckStateRole), Qt::Checked);
  Trigger("mnuPopUpEinlesen_Keine");
  EXPECT_EQ(HostNode(0, 1).data(Qt::CheckStateRole), Qt::Unchecked);
}

TEST_F(MenuTest, RunningHostStandsBeforeTheSources) {
  host::FakeHost fake;
  host = &fake;
  documentsToo = true;
  fake.projects = {{{"P", "C:\\a\\P.xls", false}, {kModule}}, {{"Zu", {}, true}, {}}};
  Start();
  QTreeView& hosts = Tree("treApp");
  EXPECT_EQ(TextOf(*hosts.model()),
            "P [P.xls]\n Modul1\nQuelle [Quelle]\n Form\n Zebra\nZu \u2013 gesperrtes Projekt\n");
  RightClick(hosts, hosts.visualRect(HostNode(2)).center());
  EXPECT_EQ(PopupItems().last(), "(mnuPopUpEinlesen_Entfernen)") << "nor is a locked project one";
  RightClick(hosts, hosts.visualRect(HostNode(0, 0)).center());
  EXPECT_EQ(PopupItems().last(), "(mnuPopUpEinlesen_Entfernen)") << "there is no source to forget";

  Tick(0, 0);
  Tick(1, 1);
  Trigger("mnuBearbeiten_Code");
  EXPECT_EQ(ProjectNode(0).data().toString() + ProjectNode(1).data().toString(), "Modul1Zebra");
  Trigger("mnuNeu");
  platform.messages.clear();
  RightClick(hosts, hosts.visualRect(HostNode(1)).center());
  EXPECT_EQ(PopupItems().last(), "mnuPopUpEinlesen_Entfernen");
  Trigger("mnuPopUpEinlesen_Entfernen");
  EXPECT_EQ(TextOf(*hosts.model()), "P [P.xls]\n Modul1\nZu \u2013 gesperrtes Projekt\n");
  EXPECT_TRUE(settings::LoadSources(*settings).empty());
  EXPECT_EQ(platform.TakeText(), "");
}

TEST_F(MenuTest, RefusedAccessIsSaidBesideTheSources) {
  host::FakeHost fake;
  host = &fake;
  documentsToo = true;
  fake.running = false;
  fake.version = 16;
  fake.problem = "Excel verweigert den Zugriff";
  Start();
  EXPECT_EQ(TextOf(*Tree("treApp").model()), "Quelle [Quelle]\n Form\n Zebra\n");
  EXPECT_EQ(platform.TakeText(), "") << "no message at each start";
  EXPECT_EQ(Panel("Vorgang"), "Excel verweigert den Zugriff");
  QTest::keyClick(&Window(), Qt::Key_F5);
  EXPECT_EQ(platform.TakeText(), "Folgendes konnte nicht gelesen werden:\r\n\r\nExcel verweigert den Zugriff");
  EXPECT_EQ(Panel("Vorgang"), "Excel verweigert den Zugriff");
  fake.problem.clear();
  QTest::keyClick(&Window(), Qt::Key_F5);
  EXPECT_EQ(platform.TakeText() + Panel("Vorgang"), "") << "a host that is not open is no news";
}

TEST_F(MenuTest, RefreshKeySaysWhatTheHostSays) {
  host::FakeHost fake;
  host = &fake;
  fake.projects = {{{"P", "C:\\a\\P.xls", false}, {kModule}}, {{"Zu", {}, true}, {}}, {{"Neu", {}, false}, {kModule}}};
  Start();
  EXPECT_EQ(TextOf(*Tree("treApp").model()),
            "P [P.xls]\n Modul1\nNeu [Nicht gespeichert]\n Modul1\nZu \u2013 gesperrtes Projekt\n");
  EXPECT_EQ(Panel("Vorgang"), "1 gesperrtes Projekt ausgelassen");
  EXPECT_EQ(platform.TakeText(), "");
  const struct {
    bool running;
    float version;
    const char* text;
  } kCases[] = {{true, 9, "Excel ist zwar im Moment geöffnet"},
                {false, 10, "Sie benutzen ExcelXP."},
                {false, 9, "Excel ist im Moment nicht geöffnet."}};
  fake.projects.clear();
  for (const auto& c : kCases) {
    fake.running = c.running;
    fake.version = c.version;
    QTest::keyClick(&Window(), Qt::Key_F5);
    EXPECT_TRUE(platform.TakeText().startsWith(QString::fromUtf8(c.text))) << c.text;
    EXPECT_EQ(Tree("treApp").model()->rowCount(), 0);
    EXPECT_EQ(Panel("Vorgang"), "");
  }
}

TEST_F(MenuTest, HostThatEndedMeanwhileIsToldWithTheListCleared) {
  host::FakeHost fake;
  host = &fake;
  fake.projects = {{{"P", {}, false}, {kModule}}};
  Start();
  Tick(0);
  fake.running = false;
  Trigger("mnuBearbeiten_Code");
  EXPECT_TRUE(platform.TakeText().startsWith("Excel ist im Moment nicht geöffnet."));
  EXPECT_EQ(Tree("treApp").model()->rowCount(), 0);
  EXPECT_TRUE(Action("doit").isEnabled());
}

TEST(CodeStyle, FollowsTheOptions) {
  settings::Options options;
  options.fkey = 255;
  options.fkom = 65280;
  options.fstr = 16711680;
  options.fontName = "Gibt es nicht";
  options.fontSize = 14;
  const struct {
    std::int16_t millimetres;
    double pixels;
  } kTabs[] = {{5, 283 / 15.0}, {10, 567 / 15.0}, {0, 48}};
  for (const auto& tab : kTabs) {
    options.tab = tab.millimetres;
    const ui::CodeStyle style = ui::StyleOf(options, 96);
    EXPECT_DOUBLE_EQ(style.tabStop, tab.pixels);
    EXPECT_EQ(style.keyword, QColor(255, 0, 0));
    EXPECT_EQ(style.comment, QColor(0, 255, 0));
    EXPECT_EQ(style.string, QColor(0, 0, 255));
    EXPECT_EQ(style.font.pointSize(), 14);
    EXPECT_EQ(style.look.fontName, "Gibt es nicht");
    EXPECT_EQ(style.look.tabWidth, tab.millimetres);
  }
}

}  // namespace
}  // namespace quillmate::testing
