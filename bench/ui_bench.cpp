// Measures the window on a large project, without a screen:
//
//     scripts/blow-up /tmp/gross && bench_ui /tmp/gross [LAST.bas]
//
// prints the times from each command to the next state that the user can work with, elapsed and of the processor, and
// the memory of the process. The module that is last in the tree is looked at first. QUILLMATE_NAME=Zaehler lists the
// uses of that name, too.

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTest>
#include <QTreeView>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>

#include <quillmate/codedb/index_files.h>
#include <quillmate/settings/sources.h>
#include <quillmate/ui/main_window.h>

#include "codedb/scratch.h"
#include "ui/recording_platform.h"

namespace {

using namespace quillmate;

/// Elapsed time, and the processor's time of all threads, which says more on a busy machine.
class Stopwatch {
 public:
  Stopwatch() { timer_.start(); }
  void Print(const char* what) {
    const double elapsed = static_cast<double>(timer_.nsecsElapsed()) / 1e6;
    const double busy = static_cast<double>(std::clock() - clock_) * 1e3 / CLOCKS_PER_SEC;
    std::printf("%-48s %8.1f ms %8.1f ms cpu\n", what, elapsed, busy);
    std::fflush(stdout);
    timer_.restart();
    clock_ = std::clock();
  }

 private:
  QElapsedTimer timer_;
  std::clock_t clock_ = std::clock();
};

void PrintMemory(const char* what) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.starts_with("VmRSS:") || line.starts_with("VmHWM:")) std::printf("%-40s %s\n", what, line.c_str());
  }
}

/// A click and what it takes until the result is painted.
void Click(QTreeView& tree, const QModelIndex& node) {
  tree.scrollTo(node);
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(node).center());
  QApplication::processEvents();
}

/// A key and what it takes until the result is painted.
void Press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
  QTest::keyClick(&widget, key, modifiers);
  QApplication::processEvents();
}

void Trigger(ui::MainWindow& window, const char* command) {
  window.findChild<QAction*>(QString::fromLatin1(command))->trigger();
  QApplication::processEvents();
}

/// Looks for a text that no module has.
void MeasureSearch(ui::MainWindow& window, const char* what) {
  QAction& inProject = *window.findChild<QAction*>("mnuBearbeiten_Suchen_Projekt");
  if (!inProject.isChecked()) inProject.trigger();
  window.findChild<QLineEdit*>("txtSuche")->setText(QStringLiteral("gibt es nirgends"));
  Stopwatch search;
  Trigger(window, "mnuBearbeiten_Suchen");
  search.Print(what);
  PrintMemory("after the search");
}

void MeasureFilter(ui::MainWindow& window, const char* what) {
  auto& filter = *window.findChild<QLineEdit*>("txtFilter");
  Stopwatch typed;
  QTest::keyClicks(&filter, QStringLiteral("lad"));
  QApplication::processEvents();
  typed.Print(what);
  filter.clear();
  QApplication::processEvents();
}

void Measure(ui::MainWindow& window) {
  constexpr int kMostLooks = 1000;
  auto& hosts = *window.findChild<QTreeView*>("treApp");
  auto& tree = *window.findChild<QTreeView*>("treProjekt");
  QAbstractItemModel& projects = *hosts.model();
  for (int row = 0; row < projects.rowCount(); ++row) {
    projects.setData(projects.index(row, 0), Qt::Checked, Qt::CheckStateRole);
  }
  Stopwatch watch;
  window.PressToolButton("doit");
  QApplication::processEvents();
  watch.Print("Code Lesen, first module shown");
  PrintMemory("after reading");

  const QAbstractItemModel& model = *tree.model();
  Stopwatch knowledge;
  // Modules tell their files as soon as it is known what the code means.
  const bool isKnown =
      QTest::qWaitFor([&] { return !model.index(0, 0).data(Qt::ToolTipRole).toString().isEmpty(); }, 60'000);
  knowledge.Print(isKnown ? "behind that, what the code means" : "what the code means: never");
  PrintMemory("with what the code means");
  Stopwatch expand;
  tree.expandAll();
  QApplication::processEvents();
  expand.Print("expand all");
  MeasureFilter(window, "three letters into the filter of the tree");
  const int count = model.rowCount();
  Stopwatch first;
  Click(tree, model.index(count - 1, 0));
  first.Print("first look at the last module");
  std::printf("%d lines\n", window.findChild<QPlainTextEdit*>("rtbHaupt")->blockCount());
  MeasureSearch(window, "search to the end of the project, first");
  MeasureSearch(window, "search to the end of the project, again");
  const int step = std::max(1, count / kMostLooks);
  Stopwatch looks;
  for (int row = 0; row < count; row += step) Click(tree, model.index(row, 0));
  looks.Print("a look at each module, or at 1000 of them");
  std::printf("%d modules\n", count);
  PrintMemory("after looking at modules");
}

/// Asks for the definition of one name after the other until one leads to another module.
void MeasureDefinition(ui::MainWindow& window, QPlainTextEdit& code) {
  const QRegularExpression name(QStringLiteral("\\b[A-Z]\\w+[a-z]\\d+\\b"),
                                QRegularExpression::UseUnicodePropertiesOption);
  const auto& module = *window.findChild<QLabel*>("Modul");
  const QString from = module.text();
  QTextDocument* document = code.document();
  for (QTextCursor found = document->find(name); !found.isNull(); found = document->find(name, found)) {
    QTextCursor behind = found;
    behind.setPosition(found.selectionEnd());
    code.setTextCursor(behind);
    Press(code, Qt::Key_Shift);
    Stopwatch definition;
    Press(code, Qt::Key_F12);
    if (code.document() == document) continue;
    definition.Print(qPrintable(QStringLiteral("Definition, from %1 to %2").arg(from, module.text())));
    return;
  }
}

void MeasureNavigation(ui::MainWindow& window) {
  auto& tree = *window.findChild<QTreeView*>("treProjekt");
  auto& code = *window.findChild<QPlainTextEdit*>("rtbHaupt");
  const QAbstractItemModel& model = *tree.model();
  const auto module = [&model](int row) { return model.index(row, 0); };
  Click(tree, model.index(0, 0, module(0)));
  constexpr int kMoves = 100;
  Stopwatch moves;
  for (int i = 0; i < kMoves; ++i) Press(code, Qt::Key_Down);
  moves.Print("100 moves of the caret to a new line, painted");

  Click(tree, module(model.rowCount() / 2));
  MeasureDefinition(window, code);
  Click(tree, model.index(0, 0, module(model.rowCount() - 2)));
  Stopwatch back;
  Press(window, Qt::Key_F4);
  back.Print("Back");
  Press(window, Qt::Key_F4);
  Stopwatch next;
  Press(window, Qt::Key_F4, Qt::ControlModifier);
  next.Print("Next");

  for (const char* time : {"first", "again"}) {
    Click(tree, model.index(1, 0, module(0)));
    Stopwatch callers;
    Press(code, Qt::Key_F12, Qt::ShiftModifier);
    callers.Print(qPrintable(QStringLiteral("callers of %1, %2")
                                 .arg(window.findChild<QLabel*>("Routine")->text(), QString::fromLatin1(time))));
    Trigger(window, "mnuAnsicht_RouClose");
  }
  PrintMemory("after the callers");
}

void MeasureHits(ui::MainWindow& window) {
  auto& text = *window.findChild<QLineEdit*>("txtSuche");
  auto& hits = *window.findChild<QTreeView*>("lstTreffer");
  for (const char* searched : {"Bestand", "e"}) {
    text.setText(QString::fromLatin1(searched));
    Stopwatch list;
    Trigger(window, "mnuBearbeiten_Suchen_Alle");
    list.Print(qPrintable(QStringLiteral("list of %1 hits").arg(hits.model()->rowCount())));
    PrintMemory("with the list");
  }
  window.findChild<QCheckBox*>("chkRegulaer")->setChecked(true);
  text.setText(QStringLiteral("^\\s*Dim \\w+ As String$"));
  Stopwatch list;
  Trigger(window, "mnuBearbeiten_Suchen_Alle");
  list.Print(qPrintable(QStringLiteral("list of %1 hits of a pattern").arg(hits.model()->rowCount())));
}

/// What is known of names: how long it takes until it is there, and its answers.
void MeasureNames(ui::MainWindow& window) {
  auto& tree = *window.findChild<QTreeView*>("treProjekt");
  auto& code = *window.findChild<QPlainTextEdit*>("rtbHaupt");
  Click(tree, tree.model()->index(0, 0, tree.model()->index(tree.model()->rowCount() / 2, 0)));
  Press(code, Qt::Key_Right, Qt::ControlModifier);
  Press(code, Qt::Key_Right, Qt::ControlModifier);
  const QPoint place = code.cursorRect().center() + QPoint(3, 0);
  for (const char* time : {"first", "again"}) {
    QHelpEvent help(QEvent::ToolTip, place, code.viewport()->mapToGlobal(place));
    Stopwatch hover;
    QApplication::sendEvent(code.viewport(), &help);
    hover.Print(qPrintable(QStringLiteral("name under the mouse, %1").arg(QString::fromLatin1(time))));
  }
  Stopwatch uses;
  Trigger(window, "mnuBearbeiten_Verwendungen");
  uses.Print("all uses");
  Stopwatch calls;
  Trigger(window, "mnuAnalyse_Hierarchie");
  calls.Print("first level of the call hierarchy");
  Stopwatch open;
  Trigger(window, "mnuBearbeiten_GeheZuName");
  open.Print("quick open, first");
  auto& field = *window.findChild<QLineEdit*>("txtGeheZu");
  for (const QChar letter : QStringLiteral("best")) {
    Stopwatch key;
    QTest::keyClicks(&field, QString(letter));
    QApplication::processEvents();
    key.Print(qPrintable(QStringLiteral("quick open, \"%1\"").arg(field.text())));
  }
  Press(field, Qt::Key_Escape);
  for (const char* command : {"mnuAnalyse_Unbenutztes", "mnuAnalyse_Kennzahlen", "mnuTest"}) {
    Stopwatch list;
    Trigger(window, command);
    list.Print(command);
  }
  PrintMemory("after names and lists");
}

/// The uses of one name, which may be a million: QUILLMATE_NAME.
void MeasureUses(ui::MainWindow& window, const QString& name) {
  Trigger(window, "mnuBearbeiten_GeheZuName");
  auto& field = *window.findChild<QLineEdit*>("txtGeheZu");
  QTest::keyClicks(&field, name);
  Press(field, Qt::Key_Return);
  auto& list = *window.findChild<QTreeView*>("lstVerwendungen");
  auto& kinds = *window.findChild<QComboBox*>("cboArt");
  Stopwatch watch;
  Trigger(window, "mnuBearbeiten_Verwendungen");
  QApplication::processEvents();
  watch.Print(qPrintable(window.findChild<QLabel*>("lblVerwendungen")->text()));
  kinds.setCurrentIndex(1);
  emit kinds.activated(1);
  QApplication::processEvents();
  watch.Print(qPrintable(QStringLiteral("only ") + kinds.currentText()));
  kinds.setCurrentIndex(0);
  emit kinds.activated(0);
  QApplication::processEvents();
  watch.Print("all of them again");
  list.expandAll();
  QApplication::processEvents();
  watch.Print("all unfolded");
  list.scrollToBottom();
  QApplication::processEvents();
  watch.Print("scrolled to the end");
  list.verticalScrollBar()->setValue(list.verticalScrollBar()->maximum() / 2);
  QApplication::processEvents();
  watch.Print("scrolled to the middle");
  for (int step = 0; step < 10; ++step) Trigger(window, "mnuBearbeiten_Verwendung_Vor");
  QApplication::processEvents();
  watch.Print("ten uses on");
  PrintMemory("with the uses");
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  files::ScratchFolder folder;
  testing::RecordingPlatform platform;
  const auto store = settings::MemorySettings();
  std::vector<std::string> sources;
  for (const QString& argument : QApplication::arguments().mid(1)) sources.push_back(argument.toStdString());
  settings::SaveSources(*store, sources);
  startup::AppGlobals globals;
  startup::BeginStart(globals, 1, {folder.Path(), std::filesystem::path(QUILLMATE_BIN_DIR) / codedb::kTemplateFile},
                      *store);
  startup::InstanceMark mark(globals.TempFolder);
  host::DocumentHost documents;
  host::JoinedHost joined({&documents});
  ui::MainWindow window({globals, mark, *store, platform, documents, joined});
  PrintMemory("empty window");
  Stopwatch watch;
  window.Load(false);
  watch.Print("start and listing");
  Measure(window);
  // From here on messages belong to the course of things: what was looked for and not found.
  for (const ui::Message& message : platform.messages) std::printf("%s\n", qPrintable(message.text + message.detail));
  MeasureNavigation(window);
  MeasureHits(window);
  MeasureNames(window);
  if (qEnvironmentVariableIsSet("QUILLMATE_NAME")) MeasureUses(window, qEnvironmentVariable("QUILLMATE_NAME"));
  window.Unload();
}
