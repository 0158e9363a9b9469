#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <quillmate/export/project_export.h>

#include "code_style.h"
#include "commands.h"
#include "html_delivery.h"
#include "qt_text.h"
#include "save_dialog.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

const QString kExtension = QStringLiteral("RTF");

/// The last three characters give way to the extension, whatever the user typed. Another file that this hits is not
/// overwritten unasked.
QString WithExtension(Shell& shell, const QString& chosen) {
  QString path = chosen.chopped(std::min<qsizetype>(chosen.size(), kExtension.size())) + kExtension;
  const bool hitsAnother = path != chosen && QFileInfo::exists(path) && QFileInfo(path) != QFileInfo(chosen);
  if (!hitsAnother) return path;
  const std::string question = ToUtf8(QDir::toNativeSeparators(path)) + "\r\nexistiert schon\r\nÜberschreiben ?";
  return shell.Show(question, MessageIcon::kQuestion, Buttons::kYesNo) == Answer::kYes ? path : QString();
}

/// Asks for the file and runs the export into it.
template <typename Export>
void ExportRtf(Shell& shell, const QString& fileName, std::string_view activity, Export run) {
  const QString chosen = SaveFileDialog(shell, kExtension, "RTF-Dokument:RTF;", QDir::currentPath(), fileName);
  if (chosen.isEmpty()) return;
  const QString path = WithExtension(shell, chosen);
  if (path.isEmpty()) return;
  // The dialog goes away before the work begins.
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  const Working working(shell);
  shell.ShowProgress(activity);
  run(settings::LookOf(shell.Globals().Options), ToPath(path));
}

}  // namespace

void ExportModuleRtf(Shell& shell) {
  ExportRtf(shell, shell.staBar->Text(StatusPanels::kModule), "Erzeuge RTF-Modul",
            [&shell](const text::CodeLook& look, const std::filesystem::path& target) {
              output::ExportModuleRtf(shell.Globals().TempFolder, shell.views.Current() + 1, look, target);
            });
}

void ExportProjectRtf(Shell& shell) {
  ExportRtf(shell, shell.ProjectName(), "Erzeuge RTF-Projekt",
            [&shell](const text::CodeLook& look, const std::filesystem::path& target) {
              startup::AppGlobals& globals = shell.Globals();
              output::ExportProjectRtf(globals.TempFolder, output::ReadModules(globals.CodeDb), kModuleHeaders, look,
                                       target);
            });
}

}  // namespace quillmate::ui
