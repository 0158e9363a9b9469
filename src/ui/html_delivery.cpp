#include "html_delivery.h"

#include <utility>

#include <quillmate/analysis/scanner.h>
#include <quillmate/files/file_bytes.h>

#include "qt_text.h"
#include "shell.h"

namespace quillmate::ui {
namespace {

void ShowPreview(Shell& shell, std::string_view html) {
  const startup::AppGlobals& globals = shell.Globals();
  const std::filesystem::path file = globals.ProgramFolder / output::kPreviewFile;
  bool shown = false;
  try {
    files::WriteWholeFile(file, output::PreviewDocument(html, globals.HostName));
    shown = shell.around.platform.OpenInBrowser(FromPath(file));
  } catch (const std::exception&) {
    // Why it failed is of no use to somebody who wanted to see a page.
  }
  if (!shown) shell.Show(output::kPreviewFailed);
}

std::string ToHtml(Shell& shell, std::string_view code) {
  const Working working(shell);
  shell.ShowProgress(output::kHtmlActivity);
  const settings::Options& options = shell.Globals().Options;
  return output::BuildHtml(analysis::ScanForDisplay(code, settings::LayoutOf(options)), settings::LookOf(options));
}

}  // namespace

void DeliverHtml(Shell& shell, std::string html) {
  const startup::AppGlobals& globals = shell.Globals();
  if (globals.Options.meld &&
      shell.Show(output::kCreditQuestion, MessageIcon::kQuestion, Buttons::kYesNo) == Answer::kYes) {
    html = output::AppendCredit(std::move(html), globals.HostName);
  }
  shell.around.platform.ClearClipboard();
  shell.around.platform.SetClipboard({FromCode(html), {}, {}});
  if (globals.Options.vor) ShowPreview(shell, html);
}

void DeliverCode(Shell& shell, std::string_view code) { DeliverHtml(shell, ToHtml(shell, code)); }

}  // namespace quillmate::ui
