#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QUrl>
#include <cstdio>

#include <quillmate/ui/main_window.h>

#include "command_table.h"
#include "icons.h"
#include "qt_text.h"
#include "shell.h"

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

}  // namespace

MainWindow::MainWindow(const Services& services) : services_(services) {
  setObjectName(QStringLiteral("frmHaupt"));
  setAcceptDrops(true);
  resize(StartSize());
  shell_ = std::make_unique<Shell>(*this, services);
  connect(shell_.get(), &Shell::EndWanted, this, &MainWindow::Unload);
  // A file dropped on a text field is for the window, too.
  for (QLineEdit* field : findChildren<QLineEdit*>()) field->setAcceptDrops(false);
}

MainWindow::~MainWindow() = default;

void MainWindow::Load(bool mini) {
  setWindowIcon(LoadIcon(QStringLiteral("4A")));
  startup::MakeRunFolder(services_.globals, services_.mark, services_.settings);
  shell_->Load(mini);
}

void MainWindow::RefuseCommandLine(const QString& text) {
  const QString what =
      QStringLiteral("Dateien werden auf der Befehlszeile nicht gelesen; ziehen Sie sie auf das Fenster: ");
  std::fputs((ToUtf8(what + text) + "\n").c_str(), stderr);
  shell_->Say(what + text);
}

void MainWindow::Unload() {
  if (unloaded_) return;
  unloaded_ = true;
  shell_->Unload();
  startup::EndRun(services_.globals);
  emit Ended();
}

void MainWindow::PressToolButton(std::string_view key) {
  const ToolButton* button = FindToolButton(key);
  if (button != nullptr) shell_->Commands().Button(button->id).trigger();
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (!unloaded_ && !shell_->MayClose()) {
    event->ignore();
    return;
  }
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
      this, [this, files] { shell_->TakeDropped(files); }, Qt::QueuedConnection);
}

bool MainWindow::event(QEvent* event) {
  const bool handled = QMainWindow::event(event);
  if (event->type() == QEvent::ApplicationPaletteChange && shell_ != nullptr) shell_->ApplyOptions();
  if (event->type() == QEvent::WindowActivate && shell_ != nullptr) shell_->LookForChanges();
  return handled;
}

}  // namespace quillmate::ui
