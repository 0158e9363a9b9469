#include <array>
#include <cerrno>
#include <cstdio>
#include <string>

#include <quillmate/analysis/scanner.h>
#include <quillmate/export/html.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/file_error.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/source_text.h>
#include <quillmate/startup/edition.h>

#include "commands.h"
#include "messages.h"
#include "output.h"
#include "project_input.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

/// What the editor's largest module has room for, as for the other sources.
constexpr std::size_t kLargestCode = std::size_t{128} << 20U;

std::string ReadStandardInput() {
  std::string bytes;
  std::array<char, std::size_t{1} << 16U> piece;
  while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), stdin)) {
    bytes.append(piece.data(), count);
    if (bytes.size() > kLargestCode) {
      throw CommandFailure("Die Standardeingabe ist zu groß für ein Modul");
    }
  }
  if (std::ferror(stdin) != 0) {
    throw CommandFailure("Die Standardeingabe kann nicht gelesen werden: " + files::ReasonText(errno));
  }
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
               : ReadStandardInput());
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
