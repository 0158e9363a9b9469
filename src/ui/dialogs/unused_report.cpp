#include "unused_report.h"

#include <quillmate/export/csv.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::ui {
const char* UnusedCaption(analysis::UnusedClass unused) {
  switch (unused) {
    case analysis::UnusedClass::kCertain:
      return "sicher";
    case analysis::UnusedClass::kHost:
      return "vom Host";
    case analysis::UnusedClass::kText:
      return "per Text";
  }
  return "";
}

std::string UnusedText(const std::vector<analysis::UnusedRoutine>& routines) {
  std::string text;
  for (const analysis::UnusedRoutine& routine : routines) {
    text += text::Utf8FromCode(routine.moduleName) + '\t' + text::Utf8FromCode(routine.routineName) + '\t' +
            UnusedCaption(routine.unused) + '\n';
  }
  return text;
}

std::string UnusedCsv(const std::vector<analysis::UnusedRoutine>& routines) {
  std::string csv(output::kCsvStart);
  output::CsvRow(csv).Text("Modul").Text("Routine").Text("Klasse").End();
  for (const analysis::UnusedRoutine& routine : routines) {
    output::CsvRow(csv)
        .Text(text::Utf8FromCode(routine.moduleName))
        .Text(text::Utf8FromCode(routine.routineName))
        .Text(UnusedCaption(routine.unused))
        .End();
  }
  return csv;
}

}  // namespace quillmate::ui
