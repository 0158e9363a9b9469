#include <string>

#include <quillmate/analysis/scanner.h>
#include <quillmate/export/html.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/source_text.h>
#include <quillmate/startup/edition.h>

#include "commands.h"
#include "input_list.h"
#include "messages.h"
#include "output.h"
#include "project_input.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

/// What the editor's largest module has room for, as for the other sources.
constexpr std::size_t kLargestCode = std::size_t{128} << 20U;

std::string ReadCodeFromStandardInput() {
  std::string bytes = ReadStandardInput();
  if (bytes.size() > kLargestCode) throw CommandFailure("Die Standardeingabe ist zu groß für ein Modul");
  return bytes;
}

}  // namespace

void RunClip(const Invocation& invocation) {
  if (invocation.inputs.size() > 1) {
    throw UsageError("Es ist nur eine Datei möglich");
  }
  CheckOutput(invocation);
  const bool fromFile = !invocation.inputs.empty() && invocation.inputs.front() != "-";
  const std::string code = files::DecodeSourceText(
      fromFile ? files::ReadWholeFile(files::PathFromText(invocation.inputs.front()), kLargestCode)
               : ReadCodeFromStandardInput());
  if (code.empty()) {
    throw CommandFailure("Kein Text in " + (fromFile ? invocation.inputs.front() : "der Standardeingabe"));
  }
  const settings::Options options = RunOptions(invocation);
  std::string html =
      output::BuildHtml(analysis::ScanForDisplay(code, settings::LayoutOf(options)), settings::LookOf(options));
  if (invocation.credit) {
    html = output::AppendCredit(std::move(html), startup::EditionOf(invocation.edition).hostName);
  }
  Output output(invocation.output, Encoding::kCode);
  output.Write(html);
  output.Finish();
}

}  // namespace quillmate::cli
