#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMainWindow>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>
#include <QScreen>
#include <QStandardPaths>
#include <algorithm>
#include <iterator>

#include <quillmate/ui/platform.h>

#include "desktop_programs.h"

namespace quillmate::ui {
namespace {

#ifdef Q_OS_WIN
constexpr const char* kRtfFormat = "Rich Text Format";
#else
constexpr const char* kRtfFormat = "text/rtf";
#endif

/// The desktops' tools for system information; the first one that is installed is taken.
constexpr const char* kSystemTools[] = {"msinfo32", "kinfocenter", "hardinfo2", "hardinfo", "xfce4-about"};

QMessageBox::Icon BoxIcon(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::kNone:
      return QMessageBox::NoIcon;
    case MessageIcon::kInformation:
      return QMessageBox::Information;
    case MessageIcon::kExclamation:
      return QMessageBox::Warning;
    case MessageIcon::kCritical:
      return QMessageBox::Critical;
    case MessageIcon::kQuestion:
      return QMessageBox::Question;
  }
  return QMessageBox::NoIcon;
}

void AddButtons(QMessageBox& box, Buttons buttons) {
  switch (buttons) {
    case Buttons::kOk:
      box.setStandardButtons(QMessageBox::Ok);
      return;
    case Buttons::kYesNo:
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
      box.setEscapeButton(QMessageBox::No);
      return;
    case Buttons::kYesNoCancel:
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
      box.setEscapeButton(QMessageBox::Cancel);
      return;
  }
}

Answer AnswerOf(int button) {
  switch (button) {
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::No:
      return Answer::kNo;
    case QMessageBox::Cancel:
      return Answer::kCancel;
    default:
      return Answer::kOk;
  }
}

QString DialogText(QString text) { return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")); }

/// A title bar has one line.
QString DialogTitle(QString text) { return text.replace(QStringLiteral("\r\n"), QStringLiteral(" ")); }

QString ExistingFolder(const QString& start) {
  return !start.isEmpty() && QDir(start).exists() ? start : QDir::homePath();
}

/// The 1 of "Lager 2.1" is no extension, though a dot is before it.
bool HasExtension(const QString& file) {
  const QString suffix = QFileInfo(file).suffix();
  return suffix.size() >= 2 && suffix.size() <= 4 &&
         std::all_of(suffix.begin(), suffix.end(), [](QChar c) { return c.isLetter(); });
}

/// What a dialog appears over. Right after a dialog of the system's own no window of the program is active.
QWidget* Owner() {
  if (QWidget* active = QApplication::activeWindow()) return active;
  if (QWidget* asking = QApplication::activeModalWidget()) return asking;
  const QWidgetList windows = QApplication::topLevelWidgets();
  const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget* window) {
    return window->isVisible() && qobject_cast<const QMainWindow*>(window) != nullptr;
  });
  return found == windows.end() ? nullptr : *found;
}

/// What the user chooses. The toolkit's own dialog, where the system has none, keeps its size for all screens.
QStringList ChosenIn(QFileDialog& dialog) {
  dialog.resize(dialog.size().boundedTo(dialog.screen()->availableSize() * 9 / 10));
  if (dialog.exec() != QDialog::Accepted) return {};
  QStringList files = dialog.selectedFiles();
  for (QString& file : files) file = QDir::toNativeSeparators(file);
  return files;
}

/// The hourglass belongs to the work, not to a question in between.
class ArrowCursor {
 public:
  ArrowCursor() : shown_(QApplication::overrideCursor() != nullptr) {
    if (shown_) QApplication::setOverrideCursor(Qt::ArrowCursor);
  }
  ~ArrowCursor() {
    if (shown_) QApplication::restoreOverrideCursor();
  }
  ArrowCursor(const ArrowCursor&) = delete;
  ArrowCursor& operator=(const ArrowCursor&) = delete;

 private:
  bool shown_;
};

void SetUp(QPrinter& printer, const QString& title) {
  printer.setDocName(title);
  printer.setCreator(QStringLiteral("Quillmate"));
  printer.setPageSize(QPageSize(QPageSize::A4));
  printer.setPageMargins(QMarginsF(20, 15, 15, 15), QPageLayout::Millimeter);
}

class RealPlatform : public Platform {
 public:
  RealPlatform() { clock_.start(); }

  Answer Show(const Message& message) override {
    const ArrowCursor arrow;
    QMessageBox box(BoxIcon(message.icon), message.title, DialogText(message.text), QMessageBox::NoButton, Owner());
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(DialogText(message.detail));
    box.setDetailedText(DialogText(message.list));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    AddButtons(box, message.buttons);
    return AnswerOf(box.exec());
  }

  std::optional<QString> AskText(const QString& title, const QString& prompt, const QString& preset) override {
    const ArrowCursor arrow;
    bool accepted = false;
    const QString text =
        QInputDialog::getText(Owner(), title, DialogText(prompt), QLineEdit::Normal, preset, &accepted);
    return accepted ? std::optional(text) : std::nullopt;
  }

  QString ChooseFolder(const QString& title, const QString& start) override {
    QFileDialog dialog(Owner(), DialogTitle(title), ExistingFolder(start));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setLabelText(QFileDialog::FileName, QStringLiteral("Ordner:"));
    return ChosenIn(dialog).value(0);
  }

  QStringList ChooseFiles(const QString& title, const QString& start, const QString& filter) override {
    QFileDialog dialog(Owner(), title, ExistingFolder(start), filter);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    return ChosenIn(dialog);
  }

  QString ChooseSaveFile(const SaveRequest& request) override {
    const ArrowCursor arrow;
    QFileDialog dialog(Owner(), request.title, ExistingFolder(request.folder), request.filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(request.extension);
    // Another kind of file brings its own extension.
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](const QString& filter) {
      const QString extension = filter.section(QStringLiteral("*."), 1).section(QRegularExpression("[ )]"), 0, 0);
      if (!extension.isEmpty() && extension != QLatin1String("*")) dialog.setDefaultSuffix(extension);
    });
    dialog.selectFile(request.fileName);
    const QStringList chosen = ChosenIn(dialog);
    if (chosen.isEmpty()) return {};
#ifdef Q_OS_WIN
    const QString file = WithoutAddedExtension(chosen.front(), request.filter, dialog.defaultSuffix());
    if (file != chosen.front()) return WithExtension(file);
#else
    const QString& file = chosen.front();
#endif
    return HasExtension(file) ? file : WithExtension(file + QLatin1Char('.') + dialog.defaultSuffix());
  }

  void SetClipboard(const ClipboardContent& content) override {
    QApplication::clipboard()->setMimeData(MakeMimeData(content).release());
  }
  QString ClipboardText() override { return QApplication::clipboard()->text(); }
  void ClearClipboard() override { QApplication::clipboard()->clear(); }

  bool OpenInBrowser(const QString& file) override { return OpenFile(file); }
  bool OpenHelp(const QString& file, const QString& page) override { return OpenCompiledHelp(file, page); }
  void Print(const QString& title, const std::function<void(QPagedPaintDevice&)>& print) override {
    QPrinter printer(QPrinter::HighResolution);
    SetUp(printer, title);
    QPrintDialog dialog(&printer, QApplication::activeWindow());
    dialog.setWindowTitle(QStringLiteral("Drucken"));
    const ArrowCursor cursor;
    if (dialog.exec() == QDialog::Accepted) print(printer);
  }
  void Preview(const QString& title, const std::function<void(QPagedPaintDevice&)>& print) override {
    QPrinter printer(QPrinter::HighResolution);
    SetUp(printer, title);
    QPrintPreviewDialog dialog(&printer, QApplication::activeWindow());
    dialog.setWindowTitle(QStringLiteral("Druckvorschau"));
    const QSize size = QApplication::activeWindow() == nullptr ? QSize(900, 700) : QApplication::activeWindow()->size();
    dialog.resize(size.boundedTo(dialog.screen()->availableSize() * 9 / 10));
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested, &dialog,
                     [&print](QPrinter* pages) { print(*pages); });
    const ArrowCursor cursor;
    dialog.exec();
  }
  bool StartSystemInformation() override {
    return std::any_of(std::begin(kSystemTools), std::end(kSystemTools), [](const char* tool) {
      const QString program = QStandardPaths::findExecutable(QString::fromLatin1(tool));
      return !program.isEmpty() && QProcess::startDetached(program, {});
    });
  }
  qint64 Milliseconds() override { return clock_.elapsed(); }

 private:
  /// The dialog knew nothing of the extension, nor of a file with it.
  QString WithExtension(const QString& file) {
    const QString question = file + QStringLiteral("\r\nexistiert schon\r\nÜberschreiben ?");
    const bool mayWrite =
        !QFileInfo::exists(file) ||
        Show({QStringLiteral("Speichern unter"), question, MessageIcon::kQuestion, Buttons::kYesNo, {}}) ==
            Answer::kYes;
    return mayWrite ? file : QString();
  }

  QElapsedTimer clock_;
};

}  // namespace

QString WithoutAddedExtension(const QString& file, const QString& filter, const QString& extension) {
  const QString added = QLatin1Char('.') + extension;
  if (!file.endsWith(added, Qt::CaseInsensitive)) return file;
  const QString typed = file.chopped(added.size());
  const QString suffix = QFileInfo(typed).suffix();
  const QRegularExpression offered(QStringLiteral("\\*\\.%1[ )]").arg(QRegularExpression::escape(suffix)),
                                   QRegularExpression::CaseInsensitiveOption);
  return !suffix.isEmpty() && filter.contains(offered) ? typed : file;
}

std::unique_ptr<QMimeData> MakeMimeData(const ClipboardContent& content) {
  auto data = std::make_unique<QMimeData>();
  data->setText(content.text);
  if (!content.rtf.isEmpty()) data->setData(QString::fromLatin1(kRtfFormat), content.rtf);
  if (!content.html.isEmpty()) data->setHtml(content.html);
  return data;
}

std::unique_ptr<Platform> QtPlatform() { return std::make_unique<RealPlatform>(); }

}  // namespace quillmate::ui
