#include <QApplication>
#include <QTimer>

#include <quillmate/host/com_host.h>
#include <quillmate/host/joined_host.h>
#include <quillmate/startup/edition.h>
#include <quillmate/ui/main_window.h>
#include <quillmate/ui/run_program.h>

#include "desktop_look.h"
#include "german.h"
#include "icons.h"
#include "qt_text.h"
#include "quit_signals.h"

/// Resources of a static library have to be asked for, outside of every namespace.
static void UseIcons() { Q_INIT_RESOURCE(icons); }

namespace quillmate::ui {
namespace {

/// What the user wrote after the program's name, without the toolkit's own options.
std::string CommandLine() { return ToUtf8(QApplication::arguments().mid(1).join(QLatin1Char(' '))); }

}  // namespace

int RunProgram(int selector, int argc, char** argv) {
  UseIcons();
  QApplication app(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Quillmate"));
  // A message box may be the only window for a while; the main window itself ends the program.
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setWindowIcon(LoadIcon(QStringLiteral("4A")));
  SpeakGerman(app);
  UseProgramStyle();
  FollowDesktopLook(app);

  startup::AppGlobals globals;
  const auto settings = settings::OpenSettings(startup::SettingsRootOf(selector));
  startup::BeginStart(globals, selector, startup::FindProgramPlaces(ToPath(QApplication::applicationDirPath())),
                      *settings);
  startup::InstanceMark mark(globals.TempFolder);
  const std::unique_ptr<Platform> platform = QtPlatform();
  host::DocumentHost documents;
  host::ComHost running(globals.HostName);
  host::JoinedHost joined({&running, &documents});
  MainWindow window({globals, mark, *settings, *platform, documents, joined});
  QObject::connect(&window, &MainWindow::Ended, &app, &QApplication::quit);
  // The end of the user's session, of which the window hears nothing else on some systems.
  QObject::connect(&app, &QCoreApplication::aboutToQuit, &window, &MainWindow::Unload);
  QuitWithSignals();
  // Whatever asks the program to end is heard from the event loop on, also by a message at the start.
  QTimer::singleShot(0, &window, [&window] {
    const std::string command = CommandLine();
    const bool mini = startup::IsMiniWindowCommand(command);
    window.Load(mini);
    if (!mini && !command.empty()) window.RefuseCommandLine(FromUtf8(command));
  });
  const int status = QApplication::exec();
  window.Unload();
  return status;
}

}  // namespace quillmate::ui
