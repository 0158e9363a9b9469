#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QUrl>

#include <quillmate/ui/main_window.h>

#include "command_table.h"
#include "commands.h"
#include "host_list.h"
#include "icons.h"
#include "mini_view.h"
#include "qt_text.h"
#include "recent_projects.h"
#include "saved_project.h"
#include "shell.h"
#include "splitter_memory.h"
#include "view_settings.h"

namespace quillmate::ui {
namespace {

QStringList LocalFiles(const QMimeData& data) {
  QStringList files;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) files.append(url.toLocalFile());
  }
  return files;
}

/// Four fifths of the screen, but not larger than the code needs, nor so small that the toolbar hides its end.
QSize StartSize() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const QSize available = screen == nullptr ? QSize(1024, 768) : screen->availableSize();
  const QSize least = QSize(800, 560).boundedTo(available);
  return QSize(1280, 860).boundedTo(available * 4 / 5).expandedTo(least);
}

void SetHostCaptions(Shell& shell) {
  const std::string& host = shell.Globals().HostName;
  shell.commands->Item(CommandId::kRefreshProjects).setText(FromUtf8(startup::RefreshCaption(host)));
  shell.commands->Button(ButtonId::kRefresh).setToolTip(FromUtf8(startup::RefreshTooltip(host)));
}

/// A folder that holds a saved project is opened, everything else becomes a source.
void TakeDropped(Shell& shell, const QStringList& files) {
  const std::filesystem::path first = ToPath(files.front());
  if (files.size() == 1 && IsProjectFolder(first)) {
    OpenProjectFolder(shell, first);
  } else {
    AddSources(shell, files);
  }
}

}  // namespace

MainWindow::MainWindow(const Surroundings& surroundings) {
  setObjectName(QStringLiteral("frmHaupt"));
  setAcceptDrops(true);
  resize(StartSize());
  shell_ = std::make_unique<Shell>(*this, surroundings);
  // A file dropped on a text field is for the window, too.
  for (QLineEdit* field : findChildren<QLineEdit*>()) field->setAcceptDrops(false);
}

MainWindow::~MainWindow() = default;

void MainWindow::Load(bool mini) {
  Shell& shell = *shell_;
  setWindowIcon(LoadIcon(QStringLiteral("4A")));
  LoadRecentMenu(shell);
  startup::MakeRunFolder(shell.Globals(), shell.around.mark, shell.around.settings);
  SetHostCaptions(shell);
  shell.ApplyOptions();
  LoadViewSettings(shell);
  LoadSplitterPlace(shell);
  shell.SetCaption();
  shell.SetMode(0);
  LoadUserSources(shell);
  shell.Guarded([&shell] { ListAtStart(shell); });
  if (mini) {
    ShowMini(shell);
    return;
  }
  if (shell.Globals().Options.usb) shell.Guarded([&shell] { ApplyStoredDisplaySize(shell); });
  show();
}

void MainWindow::Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  SaveSplitterPlace(*shell_);
  startup::EndRun(shell_->Globals());
  if (onEnd) onEnd();
}

void MainWindow::PressToolButton(std::string_view key) {
  const ToolButton* button = FindToolButton(key);
  if (button != nullptr) shell_->commands->Button(button->id).trigger();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->accept();
  Unload();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!LocalFiles(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QStringList files = LocalFiles(*event->mimeData());
  if (files.isEmpty()) return;
  event->acceptProposedAction();
  // Questions to the user must not hold up the program that the files come from.
  QMetaObject::invokeMethod(
      this, [this, files] { shell_->Guarded([this, &files] { TakeDropped(*shell_, files); }); }, Qt::QueuedConnection);
}

}  // namespace quillmate::ui
