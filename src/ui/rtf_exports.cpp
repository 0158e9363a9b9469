#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <utility>

#include <quillmate/export/project_export.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>

#include "exports.h"
#include "qt_text.h"
#include "save_dialog.h"

namespace quillmate::ui {
namespace {

const QString kExtension = QStringLiteral("RTF");
constexpr const char* kProjectActivity = "Erzeuge RTF-Projekt";
/// A project of more modules is written in the background.
constexpr std::size_t kModulesAtOnce = 200;

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
  ExportRtf(session_.Name(), kProjectActivity, [this](const text::CodeLook& look, const std::filesystem::path& target) {
    std::vector<output::ModuleEntry> modules = output::ReadModules(session_.Index());
    if (modules.size() <= kModulesAtOnce) {
      output::ExportProjectRtf(session_.Files(), modules, kModuleHeaders, look, target);
    } else {
      WriteRtfInBackground(std::move(modules), look, target);
    }
  });
}

void Exports::WriteRtfInBackground(std::vector<output::ModuleEntry> modules, const text::CodeLook& look,
                                   const std::filesystem::path& target) {
  const QString task = QStringLiteral("frmRtfFortschritt");
  if (!tasks_.IsFree(task)) return;
  const auto make = [source = session_.Files(), modules = std::move(modules), look, target](BackgroundJob& job) {
    job.Begin(kProjectActivity);
    files::ReplaceFile(target, [&](const files::Writer& write) {
      output::ProjectRtf(source, modules, kModuleHeaders, look, [&](std::string_view piece) {
        if (job.IsCancelled()) throw BackgroundJob::Cancelled();
        write(piece);
      });
    });
  };
  tasks_.Start({task, QStringLiteral("RTF-Projekt"), make,
                [this, target] { interaction_.ShowProgress("Gespeichert: " + files::PathText(target)); }});
}

}  // namespace quillmate::ui
