#include <QString>
#include <string>

#include <quillmate/export/html.h>
#include <quillmate/text/operations.h>

#include "commands.h"
#include "html_delivery.h"
#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

/// Runs an export that hands out HTML in pieces, with the hourglass on.
template <typename Export>
std::string Collect(Shell& shell, Export run) {
  const Working working(shell);
  shell.ShowProgress(output::kHtmlActivity);
  std::string html;
  run([&html](std::string_view piece) { html += piece; });
  return html;
}

}  // namespace

void ExportClipboardHtml(Shell& shell) {
  const std::string code = text::NormalizeLineBreaks(ToCode(shell.around.platform.ClipboardText()));
  if (code.empty()) {
    shell.Show(output::kClipboardEmpty, MessageIcon::kInformation);
    return;
  }
  DeliverCode(shell, code);
}

void ExportSelectionHtml(Shell& shell) {
  const std::string code = shell.VisibleSelection();
  if (code.empty()) {
    shell.Show(output::kNothingSelected, MessageIcon::kExclamation);
    return;
  }
  DeliverCode(shell, code);
}

void ExportModuleHtml(Shell& shell) {
  const startup::AppGlobals& globals = shell.Globals();
  DeliverHtml(shell, Collect(shell, [&](const output::Sink& sink) {
                output::ModuleHtml(globals.TempFolder, shell.views.Current() + 1, settings::LookOf(globals.Options),
                                   sink);
              }));
}

void ExportProjectHtml(Shell& shell) {
  startup::AppGlobals& globals = shell.Globals();
  DeliverHtml(shell, Collect(shell, [&](const output::Sink& sink) {
                output::ProjectHtml(globals.TempFolder, output::ReadModules(globals.CodeDb), kModuleHeaders,
                                    settings::LookOf(globals.Options), sink);
              }));
}

void ExportZoomHtml(Shell& shell) {
  const std::string code(shell.Editor().Code());
  if (IsZoomed(shell) && !code.empty()) DeliverCode(shell, code);
}

}  // namespace quillmate::ui
