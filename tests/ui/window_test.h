#pragma once

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QProgressDialog>
#include <QStringList>
#include <QTest>
#include <QTreeView>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <quillmate/codedb/index_files.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/settings/sources.h>
#include <quillmate/ui/main_window.h>

#include "code_knowledge.h"
#include "codedb/scratch.h"
#include "places.h"
#include "recording_platform.h"

namespace quillmate::testing {

/// The real window over a program folder of its own, with the desktop replaced.
class WindowTest : public ::testing::Test {
 private:
  // The first member: it goes when nothing in it is open any more.
  files::ScratchFolder folder_;

 protected:
  void SetUp() override {
    std::filesystem::copy_file(tests::ProgramFolder() / codedb::kTemplateFile, TemplateFile());
    AddModule("Zebra.bas",
              "Attribute VB_Name = \"Zebra\"\r\nOption Explicit\r\n\r\nPublic Sub Zahl()\r\n"
              "  Call Adler ' \344\366\374\r\nEnd Sub\r\n\r\nPrivate Sub Adler()\r\n  s = \"x\"\r\nEnd Sub\r\n");
    AddModule("Form.frm", "Attribute VB_Name = \"Form\"\r\nSub Laden()\r\n  x = 1\r\nEnd Sub\r\n");
    AddModule("Kurz.bas", "Attribute VB_Name = \"Kurz\"\r\nOption Explicit\r\n\r\n");
    settings::SaveSources(*settings, {files::PathText(Sources())});
  }

  std::filesystem::path Sources() const { return folder_.Path() / "Quelle"; }
  std::filesystem::path TemplateFile() const { return folder_.Path() / codedb::kTemplateFile; }
  std::filesystem::path Folder(const char* name) const { return folder_.Path() / name; }
  static QString Text(const std::filesystem::path& path) { return QString::fromStdString(files::PathText(path)); }

  void AddModule(const char* name, const std::string& code) const {
    std::filesystem::create_directories(Sources());
    files::WriteWholeFile(Sources() / name, code);
  }

  /// Starts the program up to the visible window.
  ui::MainWindow& Start(bool mini = false) {
    startup::BeginStart(globals, 1, {folder_.Path(), TemplateFile()}, *settings);
    mark_ = std::make_unique<startup::InstanceMark>(globals.TempFolder);
    std::vector<host::HostAutomation*> parts;
    if (host != nullptr) parts.push_back(host);
    if (host == nullptr || documentsToo) parts.push_back(&documents_);
    joined_ = std::make_unique<host::JoinedHost>(std::move(parts));
    window_ =
        std::make_unique<ui::MainWindow>(ui::Services{globals, *mark_, *settings, platform, documents_, *joined_});
    window_->Load(mini);
    QApplication::setActiveWindow(window_.get());
    return *window_;
  }
  /// The same, and everything read.
  ui::MainWindow& StartWithProject() {
    Start();
    platform.messages.clear();
    Tick(0);
    Trigger("mnuBearbeiten_Code");
    return *window_;
  }

  /// What the code means is found out in the background.
  void AwaitKnowledge() {
    auto& knowledge = *window_->findChild<ui::CodeKnowledge*>();
    ASSERT_TRUE(QTest::qWaitFor([&] { return knowledge.Get() != nullptr; }, 60'000));
  }

  /// Long commands go on in the background, each with a window that tells how far it is.
  void AwaitTasks() {
    ASSERT_TRUE(QTest::qWaitFor([&] { return window_->findChild<QProgressDialog*>() == nullptr; }, 60'000));
  }

  ui::MainWindow& Window() { return *window_; }
  QAction& Action(const char* name) { return *window_->findChild<QAction*>(QString::fromUtf8(name)); }
  void Trigger(const char* name) { Action(name).trigger(); }
  QTreeView& Tree(const char* name) { return *window_->findChild<QTreeView*>(QString::fromLatin1(name)); }
  QPlainTextEdit& Code() { return *window_->findChild<QPlainTextEdit*>(QStringLiteral("rtbHaupt")); }
  /// The smallest that the window can be, in characters and lines: "" when it fits a screen of 1366x768 at twice the
  /// scale.
  static QString TooLarge(const QWidget& window) {
    constexpr int kCharacters = 105;
    constexpr int kLines = 25;
    const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
    const int characters = least.width() / window.fontMetrics().averageCharWidth();
    const int lines = least.height() / window.fontMetrics().lineSpacing();
    const bool fits = characters <= kCharacters && lines <= kLines;
    return fits ? QString() : QStringLiteral("%1 characters, %2 lines").arg(characters).arg(lines);
  }
  QString Panel(const char* key) { return window_->findChild<QLabel*>(QString::fromLatin1(key))->text(); }

  /// A node of the host tree by its position: project, module in it (-1: the project itself).
  QModelIndex HostNode(int project, int module = -1) {
    const QAbstractItemModel& model = *Tree("treApp").model();
    const QModelIndex top = model.index(project, 0);
    return module < 0 ? top : model.index(module, 0, top);
  }
  void Tick(int project, int module = -1, bool ticked = true) {
    Tree("treApp").model()->setData(HostNode(project, module), ticked ? Qt::Checked : Qt::Unchecked,
                                    Qt::CheckStateRole);
  }
  QModelIndex ProjectNode(int module, int routine = -1) {
    const QAbstractItemModel& model = *Tree("treProjekt").model();
    const QModelIndex top = model.index(module, 0);
    return routine < 0 ? top : model.index(routine, 0, top);
  }
  void Click(QTreeView& tree, const QModelIndex& index) {
    tree.scrollTo(index);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(index).center());
  }

  /// Lets files and folders fall on the window.
  void Drop(const QStringList& files) {
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& file : files) urls.append(QUrl::fromLocalFile(file));
    data.setUrls(urls);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    // Sending would ask for a drag in progress.
    static_cast<QObject&>(Window()).event(&drop);
    QApplication::processEvents();
  }
  /// Saves the loaded project as a folder below another one, which is made unless something is there.
  void SaveAs(const char* name, const std::filesystem::path& path) {
    if (!std::filesystem::exists(path)) std::filesystem::create_directories(path);
    platform.folders = {Text(path)};
    platform.typed = {QString::fromUtf8(name)};
    Trigger("mnuSpeichern");
  }
  /// Leaves the loaded project, which is not saved.
  void LeaveProject() {
    platform.answers = {ui::Answer::kNo};
    Trigger("mnuNeu");
  }
  /// There was one message since the last look at them.
  void ExpectMessage(const QString& text, ui::MessageIcon icon) {
    ASSERT_EQ(platform.messages.size(), 1U);
    EXPECT_EQ(platform.messages[0].icon, icon);
    EXPECT_EQ(platform.TakeText(), text);
  }
  /// The small window that is on the screen; none when there is none.
  static QWidget* Mini() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == "frmMin" && widget->isVisible()) return widget;
    }
    return nullptr;
  }

  /// What a tree shows, one node a line, children after their parent with a blank in front.
  static QString TextOf(const QAbstractItemModel& model, const QModelIndex& parent = {}, const QString& indent = {}) {
    QString text;
    for (int row = 0; row < model.rowCount(parent); ++row) {
      const QModelIndex index = model.index(row, 0, parent);
      text += indent + index.data().toString() + QLatin1Char('\n') + TextOf(model, index, indent + QLatin1Char(' '));
    }
    return text;
  }

  RecordingPlatform platform;
  std::unique_ptr<settings::SettingsStore> settings = settings::MemorySettings();
  startup::AppGlobals globals;
  /// Read in place of the documents, or before them.
  host::HostAutomation* host = nullptr;
  bool documentsToo = false;

 private:
  std::unique_ptr<startup::InstanceMark> mark_;
  host::DocumentHost documents_;
  std::unique_ptr<host::JoinedHost> joined_;
  std::unique_ptr<ui::MainWindow> window_;
};

}  // namespace quillmate::testing
