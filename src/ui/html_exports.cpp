#include <utility>

#include <quillmate/analysis/scanner.h>
#include <quillmate/files/replacement.h>
#include <quillmate/text/operations.h>

#include "exports.h"
#include "qt_text.h"

namespace quillmate::ui {

/// Runs an export that hands out HTML in pieces, with the hourglass on.
std::string Exports::CollectHtml(const std::function<void(const output::Sink&)>& run) {
  const Working working(interaction_);
  interaction_.ShowProgress(output::kHtmlActivity);
  std::string html;
  run([&html](std::string_view piece) { html += piece; });
  return html;
}

void Exports::ExportClipboardHtml() {
  const std::string code = text::NormalizeLineBreaks(ToCode(interaction_.Desktop().ClipboardText()));
  if (code.empty()) {
    interaction_.Show(output::kClipboardEmpty, MessageIcon::kInformation);
    return;
  }
  DeliverCode(code);
}

void Exports::ExportSelectionHtml() {
  const std::string code = code_.Selection();
  if (code.empty()) {
    interaction_.Show(output::kNothingSelected, MessageIcon::kExclamation);
    return;
  }
  DeliverCode(code);
}

void Exports::ExportModuleHtml() {
  DeliverHtml(CollectHtml([this](const output::Sink& sink) {
    output::ModuleHtml(session_.Files(), session_.VisibleModule(), settings::LookOf(globals_.Options), sink);
  }));
}

void Exports::ExportProjectHtml() {
  DeliverHtml(CollectHtml([this](const output::Sink& sink) {
    output::ProjectHtml(session_.Files(), output::ReadModules(session_.Index()), kModuleHeaders,
                        settings::LookOf(globals_.Options), sink);
  }));
}

void Exports::ExportZoomHtml() {
  const std::string code(code_.Editor().Code());
  if (code_.IsZoomed() && !code.empty()) DeliverCode(code);
}

void Exports::DeliverCode(std::string_view code) {
  DeliverHtml(CollectHtml([this, code](const output::Sink& sink) {
    const settings::Options& options = globals_.Options;
    sink(output::BuildHtml(analysis::ScanForDisplay(code, settings::LayoutOf(options)), settings::LookOf(options)));
  }));
}

void Exports::DeliverHtml(std::string html) {
  if (globals_.Options.meld &&
      interaction_.Show(output::kCreditQuestion, MessageIcon::kQuestion, Buttons::kYesNo) == Answer::kYes) {
    html = output::AppendCredit(std::move(html), globals_.HostName);
  }
  interaction_.Desktop().ClearClipboard();
  interaction_.Desktop().SetClipboard({FromCode(html), {}, {}});
  if (globals_.Options.vor) ShowPreview(html);
}

void Exports::ShowPreview(std::string_view html) {
  const std::filesystem::path file = globals_.ProgramFolder / output::kPreviewFile;
  bool shown = false;
  try {
    files::ReplaceFile(file, output::PreviewDocument(html, globals_.HostName));
    shown = interaction_.Desktop().OpenInBrowser(FromPath(file));
  } catch (const std::exception&) {
    // Why it failed is of no use to somebody who wanted to see a page.
  }
  if (!shown) interaction_.Show(output::kPreviewFailed);
}

}  // namespace quillmate::ui
