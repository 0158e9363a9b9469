#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <algorithm>

#include <quillmate/export/project_export.h>

#include "exports.h"
#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

const QString kExtension = QStringLiteral("RTF");

}  // namespace

/// The last three characters give way to the extension, whatever the user typed. Another file that this hits is not
/// overwritten unasked.
QString Exports::WithExtension(const QString& chosen) {
  QString path = chosen.chopped(std::min<qsizetype>(chosen.size(), kExtension.size())) + kExtension;
  const bool hitsAnother = path != chosen && QFileInfo::exists(path) && QFileInfo(path) != QFileInfo(chosen);
  if (!hitsAnother) return path;
  const std::string question = ToUtf8(QDir::toNativeSeparators(path)) + "\r\nexistiert schon\r\nÜberschreiben ?";
  return interaction_.Show(question, MessageIcon::kQuestion, Buttons::kYesNo) == Answer::kYes ? path : QString();
}

/// Asks for the file and runs the export into it. `fileName`: UTF-8.
void Exports::ExportRtf(const std::string& fileName, std::string_view activity,
                        const std::function<void(const text::CodeLook&, const std::filesystem::path&)>& run) {
  const QString chosen =
      SaveFileDialog(interaction_, kExtension, "RTF-Dokument:RTF;", QDir::currentPath(), FromUtf8(fileName));
  if (chosen.isEmpty()) return;
  const QString path = WithExtension(chosen);
  if (path.isEmpty()) return;
  // The dialog goes away before the work begins.
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  const Working working(interaction_);
  interaction_.ShowProgress(activity);
  readFiles_.Check({ToPath(path)});
  run(settings::LookOf(globals_.Options), ToPath(path));
}

void Exports::ExportModuleRtf() {
  ExportRtf(ToUtf8(FromCode(session_.Module())), "Erzeuge RTF-Modul",
            [this](const text::CodeLook& look, const std::filesystem::path& target) {
              output::ExportModuleRtf(session_.Files(), session_.VisibleModule(), look, target);
            });
}

void Exports::ExportProjectRtf() {
  ExportRtf(
      session_.Name(), "Erzeuge RTF-Projekt", [this](const text::CodeLook& look, const std::filesystem::path& target) {
        output::ExportProjectRtf(session_.Files(), output::ReadModules(session_.Index()), kModuleHeaders, look, target);
      });
}

}  // namespace quillmate::ui
