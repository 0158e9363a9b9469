// Measures the window on a large project, without a screen:
//
//     scripts/blow-up /tmp/gross && bench_ui /tmp/gross [LAST.bas]
//
// prints the times from each command to the next state that the user can work with, and the memory of the process. The
// module that stands last in the tree is looked at first.

#include <QApplication>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTest>
#include <QTreeView>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include <quillmate/codedb/index_files.h>
#include <quillmate/settings/sources.h>
#include <quillmate/ui/main_window.h>

#include "settings/temp_folder.h"
#include "ui/recording_platform.h"

namespace {

using namespace quillmate;

class Stopwatch {
 public:
  Stopwatch() { timer_.start(); }
  void Print(const char* what) {
    std::printf("%-48s %8.1f ms\n", what, static_cast<double>(timer_.nsecsElapsed()) / 1e6);
    timer_.restart();
  }

 private:
  QElapsedTimer timer_;
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

void Measure(ui::MainWindow& window) {
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
  Stopwatch expand;
  tree.expandAll();
  QApplication::processEvents();
  expand.Print("expand all");
  const int count = model.rowCount();
  Stopwatch first;
  Click(tree, model.index(count - 1, 0));
  first.Print("first look at the last module");
  std::printf("%d lines\n", window.findChild<QPlainTextEdit*>("rtbHaupt")->blockCount());
  Stopwatch looks;
  for (int row = 0; row < count; ++row) Click(tree, model.index(row, 0));
  looks.Print("each module looked at");
  std::printf("%d modules\n", count);
  PrintMemory("after looking at each module");
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  testing::TempFolder folder;
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
  ui::MainWindow window({globals, mark, *store, platform, documents, documents});
  PrintMemory("empty window");
  Stopwatch watch;
  window.Load(false);
  watch.Print("start and listing");
  Measure(window);
  for (const ui::Message& message : platform.messages) std::printf("%s\n", qPrintable(message.text + message.detail));
  window.Unload();
}
