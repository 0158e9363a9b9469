#include <functional>
#include <stdexcept>

#include <quillmate/files/paths.h>
#include <quillmate/host/project_reader.h>

#include "commands.h"
#include "host_list.h"
#include "project_view.h"
#include "qt_text.h"
#include "shell.h"
#include "zoom_view.h"

namespace quillmate::ui {
namespace {

using Reader = std::function<host::ReadReport(const host::ReadRequest&)>;

/// A view index has 16 bits.
constexpr std::size_t kMostViews = 32767;
constexpr const char* kTooManyModulesText =
    "Mehr als 32767 Module kann das Fenster nicht zeigen.\r\nBitte wählen Sie weniger aus !";

host::ReadRequest RequestOf(Shell& shell) {
  const startup::AppGlobals& globals = shell.Globals();
  host::ReadRequest request;
  request.folder = globals.RunTempFolder;
  request.templateFile = globals.TemplatePath;
  request.options = settings::LayoutOf(globals.Options);
  request.progress = [&shell](const std::string& text) { shell.ShowProgress(text); };
  return request;
}

std::string NoFolderMessage(const startup::AppGlobals& globals) {
  return "Der Arbeitsordner konnte nicht angelegt werden in\r\n" +
         files::PathText(globals.ProgramFolder / startup::kScratchRoot);
}

std::string NoDatabaseMessage(const std::filesystem::path& folder) {
  return "Die Projektdatenbank konnte nicht angelegt werden in\r\n" + files::PathText(folder);
}

/// What happens after a read that did not succeed.
void TellFailure(Shell& shell, const host::ReadReport& report) {
  switch (report.outcome) {
    case host::ReadOutcome::kNothingChecked:
      shell.Show(report.message, MessageIcon::kInformation);
      return;
    case host::ReadOutcome::kNoTemplate:
      shell.Show(report.message.empty() ? NoDatabaseMessage(shell.Globals().RunTempFolder) : report.message,
                 MessageIcon::kCritical);
      return;
    case host::ReadOutcome::kFailed:
      shell.Show(report.message, MessageIcon::kExclamation, Buttons::kOk, report.detail);
      break;
    default:
      break;
  }
  RefreshKeepingTicks(shell);
}

/// Reads the ticked modules and shows the project. A project on screen gives way first: the read empties the scratch
/// folder that its modules may lie in.
void ReadProject(Shell& shell, const Reader& read) {
  startup::AppGlobals& globals = shell.Globals();
  if (globals.RunTempFolder.empty()) throw std::runtime_error(NoFolderMessage(globals));
  if (shell.hostModel->Tree().CheckedModules() > kMostViews) {
    shell.Show(kTooManyModulesText, MessageIcon::kExclamation);
    return;
  }
  if (shell.mode != 0 && shell.hostModel->Tree().AnyChecked()) {
    if (!ConfirmUnsaved(shell)) return;
    ResetProject(shell);
  }
  host::ReadReport report;
  {
    const Working working(shell);
    report = read(RequestOf(shell));
  }
  if (report.outcome != host::ReadOutcome::kDone) {
    TellFailure(shell, report);
    return;
  }
  globals.TempFolder = globals.RunTempFolder;
  shell.SetCaption(QStringLiteral(" Projekt: ") + FromCode(report.projectText) +
                   QStringLiteral(" [nicht gespeichert !!!]"));
  if (!ReloadProject(shell)) shell.SetCaption();
}

}  // namespace

void ReadCode(Shell& shell) {
  ReadProject(shell, [&shell](const host::ReadRequest& request) {
    return host::ReadCheckedModules(shell.around.host, shell.hostModel->Tree(), shell.Globals().CodeDb, request);
  });
}

void ReadVbFiles(Shell& shell) {
  ReadProject(shell, [&shell](const host::ReadRequest& request) {
    return host::ReadModuleFiles(shell.hostModel->Tree(), shell.Globals().CodeDb, request);
  });
}

void CopyModule(Shell& shell) {
  if (RefusedInZoom(shell)) return;
  shell.rtbHaupt->selectAll();
  shell.rtbHaupt->setFocus();
  shell.rtbHaupt->copy();
}

void CopySelection(Shell& shell) {
  shell.Editor().setFocus();
  shell.Editor().copy();
}

}  // namespace quillmate::ui
