#include <array>

#include <quillmate/analysis/scanner.h>
#include <quillmate/export/html.h>
#include <quillmate/export/plain_text.h>
#include <quillmate/export/rtf.h>
#include <quillmate/navigation/code_view.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/text_export.h>
#include <quillmate/text/markers.h>

#include "fuzz.h"

namespace quillmate::fuzz {
namespace {

constexpr std::array kExtensions{"bas", "cls", "frm", "ctl", "txt"};

/// Lines of a routine lie in the module and its header in them.
void CheckScan(const analysis::ScanResult& scan) {
  Expect(scan.last.value == static_cast<std::int64_t>(scan.routines.size()));
  for (const analysis::RoutineLine& line : scan.lines) {
    Expect(line.line.value >= 1 && line.line.value <= scan.lineCount + 1);
    Expect(line.routine.value >= 1 && line.routine <= scan.last);
  }
}

void CheckExports(std::string_view marked) {
  const navigation::PlainModule plain = navigation::StripMarkers(marked);
  Expect(plain.text == output::PlainText(marked));
  std::size_t end = 0;
  for (const navigation::StyleRun& run : plain.runs) {
    Expect(run.start >= end && run.length > 0);
    end = run.start + run.length;
  }
  Expect(end <= plain.text.size());
  output::BuildHtml(marked, {});
  output::ColourBody(marked, true);
}

}  // namespace

/// The first byte chooses the kind of file and the display options, the rest is the file.
void Check(std::string_view bytes) {
  if (bytes.empty()) return;
  const auto choice = static_cast<unsigned char>(bytes[0]);
  bytes.remove_prefix(1);
  const char* const extension = kExtensions[choice % kExtensions.size()];
  const office::ModuleFile file = office::ParseModuleFile(bytes, extension);
  const office::ModuleFile summary = office::SummarizeModuleFile(bytes, extension);
  Expect(file.lineCount == office::CountLines(file.code));
  Expect(file.namePrefix == summary.namePrefix);
  office::NamesCalledIn(bytes);
  Expect(file.name == summary.name && file.type == summary.type && file.lineCount == summary.lineCount);

  const analysis::ScanOptions options{.indent = (choice & 16) != 0,
                                      .indentBodies = (choice & 32) != 0,
                                      .removeEmptyLines = (choice & 64) != 0,
                                      .emptyLineBeforeRoutines = (choice & 128) != 0};
  const analysis::ScanResult scan = analysis::ScanForIndex(file.code, options, {});
  CheckScan(scan);
  CheckExports(scan.markedText);
  CheckExports(analysis::ScanForDisplay(file.code, options));
}

}  // namespace quillmate::fuzz
