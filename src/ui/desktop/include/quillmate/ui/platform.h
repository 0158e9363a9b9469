#pragma once

#include <QByteArray>
#include <QMimeData>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>

class QPagedPaintDevice;
class QWidget;

/// The desktop as the commands see it. Everything that would stop a test (a dialog) or leave traces outside the
/// program (clipboard, browser) goes through here; tests put a recording stand-in in its place.
namespace quillmate::ui {

enum class MessageIcon { kNone, kInformation, kExclamation, kCritical, kQuestion };
enum class Buttons { kOk, kYesNo, kYesNoCancel };
enum class Answer { kOk, kYes, kNo, kCancel };

struct Message {
  QString title;
  /// Plain text; lines end with CR LF.
  QString text;
  MessageIcon icon = MessageIcon::kNone;
  Buttons buttons = Buttons::kOk;
  /// What went wrong in detail, shown below the text; usually empty.
  QString detail;
  /// A list too long for the text, one entry a line, to be looked through and copied; usually empty.
  QString list{};
};

/// What a save dialog starts with.
struct SaveRequest {
  QString title;
  /// A folder that does not exist means the user's home.
  QString folder;
  QString fileName;
  /// As in "Texte (*.txt *.log);;Alle Dateien (*)".
  QString filter;
  /// Given to a name without an extension.
  QString extension;
};

/// Undoes what the system's own dialog may do where it doesn't know a kind of file: "Liste.xlsx.csv" is "Liste.xlsx"
/// again where `filter` offers xlsx and `extension` is csv.
QString WithoutAddedExtension(const QString& file, const QString& filter, const QString& extension);

/// What goes onto the clipboard together. Empty parts are left out.
struct ClipboardContent {
  QString text;
  /// A complete RTF document, Windows-1252.
  QByteArray rtf;
  QString html;
};

/// The content under the names that other programs look for: the RTF is "Rich Text Format" on Windows and "text/rtf"
/// elsewhere.
std::unique_ptr<QMimeData> MakeMimeData(const ClipboardContent& content);

class Platform {
 public:
  virtual ~Platform() = default;

  /// Shows a message box and waits for its answer. Closing the box counts as the most harmless of its buttons.
  virtual Answer Show(const Message& message) = 0;
  /// Input box; nothing when the user cancels.
  virtual std::optional<QString> AskText(const QString& title, const QString& prompt, const QString& preset) = 0;
  /// The chosen folder, empty when the user cancels. A start folder that does not exist means the user's home. Paths
  /// from dialogs have the system's own separators.
  virtual QString ChooseFolder(const QString& title, const QString& start) = 0;
  /// The chosen files, empty when the user cancels. `filter` as in "Texte (*.txt *.log);;Alle Dateien (*)".
  virtual QStringList ChooseFiles(const QString& title, const QString& start, const QString& filter) = 0;

  /// The chosen file, empty when the user cancels. An existing file was confirmed by the user.
  virtual QString ChooseSaveFile(const SaveRequest& request) = 0;

  virtual void SetClipboard(const ClipboardContent& content) = 0;
  virtual QString ClipboardText() = 0;
  virtual void ClearClipboard() = 0;

  /// Opens a file in the program that the desktop has for it: a page in the user's browser. False when there is none.
  virtual bool OpenInBrowser(const QString& file) = 0;
  /// Opens compiled help (.chm) at one of its pages, named as in the file ("hilfe/suche.html"); at its start when
  /// `page` is empty. False when there is no viewer.
  virtual bool OpenHelp(const QString& file, const QString& page) = 0;
  /// Asks for a printer and its settings and hands it over, with pages of A4 to begin with; nothing happens when the
  /// user cancels.
  virtual void Print(const QString& title, const std::function<void(QPagedPaintDevice&)>& print) = 0;
  /// Shows the pages as a printer would have them; from there they can be printed.
  virtual void Preview(const QString& title, const std::function<void(QPagedPaintDevice&)>& print) = 0;
  /// Starts the desktop's tool for system information; false when there is none.
  virtual bool StartSystemInformation() = 0;
  /// A clock that only goes forward, in milliseconds.
  virtual qint64 Milliseconds() = 0;
};

/// The real desktop. Dialogs appear over the active window of the program.
std::unique_ptr<Platform> QtPlatform();

}  // namespace quillmate::ui
