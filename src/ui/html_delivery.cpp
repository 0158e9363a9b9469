#include "html_delivery.h"

#include <utility>

#include <quillmate/analysis/scanner.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/text/windows1252.h>

#include "qt_text.h"
#include "scan_options.h"
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
  return output::BuildHtml(analysis::ScanForDisplay(code, ScanOptionsOf(options)), HtmlOptionsOf(options));
}

}  // namespace

output::HtmlOptions HtmlOptionsOf(const settings::Options& options) {
  output::HtmlOptions html;
  html.keywordColour = options.fkey;
  html.commentColour = options.fkom;
  html.stringColour = options.fstr;
  html.fontName = text::CodeFromUtf8(options.fontName);
  html.fontSize = options.fontSize;
  html.boldRoutines = options.rouf;
  return html;
}

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
