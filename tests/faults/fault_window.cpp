#include <QAbstractItemModel>
#include <QAction>
#include <QApplication>
#include <QTreeView>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <quillmate/files/paths.h>
#include <quillmate/files/work_folder.h>
#include <quillmate/settings/sources.h>
#include <quillmate/ui/main_window.h>

#include "ui/recording_platform.h"

/// fault_window save PROGRAM SOURCE PARENT NAME   starts the window in the program folder, reads the source and saves
/// it
///                                                as the project NAME in PARENT
/// fault_window mend FOLDER...                    brings to an end what a killed run left in the folders
/// Status 1 when the window said that something failed; the texts are on standard error.
namespace quillmate {
namespace {

namespace fs = std::filesystem;

int Save(const fs::path& program, const std::string& source, const char* parent, const char* name) {
  testing::RecordingPlatform platform;
  const auto settings = settings::MemorySettings();
  settings::SaveSources(*settings, {source});
  startup::AppGlobals globals;
  startup::BeginStart(globals, 1, {program, program / "mask_Quillmate.mdb"}, *settings);
  startup::InstanceMark mark(globals.TempFolder);
  host::DocumentHost documents;
  host::JoinedHost host({&documents});
  {
    ui::MainWindow window({globals, mark, *settings, platform, documents, host});
    window.Load(false);
    QAbstractItemModel& tree = *window.findChild<QTreeView*>(QStringLiteral("treApp"))->model();
    tree.setData(tree.index(0, 0), Qt::Checked, Qt::CheckStateRole);
    window.findChild<QAction*>(QStringLiteral("mnuBearbeiten_Code"))->trigger();
    platform.folders = {QString::fromUtf8(parent)};
    platform.typed = {QString::fromUtf8(name)};
    window.findChild<QAction*>(QStringLiteral("mnuSpeichern"))->trigger();
    window.Unload();
  }
  int status = 0;
  for (const ui::Message& message : platform.messages) {
    if (message.buttons != ui::Buttons::kOk) continue;
    std::fprintf(stderr, "%s\n", qPrintable(message.text + QStringLiteral(" ") + message.detail));
    status = 1;
  }
  return status;
}

}  // namespace
}  // namespace quillmate

int main(int argc, char** argv) {
  if (argc > 2 && std::strcmp(argv[1], "mend") == 0) {
    for (int i = 2; i < argc; ++i) quillmate::files::MendFolder(argv[i]);
    return 0;
  }
  if (argc != 6 || std::strcmp(argv[1], "save") != 0) return 2;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  return quillmate::Save(argv[2], argv[3], argv[4], argv[5]);
}
