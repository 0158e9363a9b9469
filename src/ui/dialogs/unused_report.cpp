#include "unused_report.h"

#include <quillmate/export/csv.h>
#include <quillmate/text/windows1252.h>

#include "qt_text.h"

namespace quillmate::ui {

std::string UnusedText(const std::vector<JudgedRoutine>& routines) {
  std::string text;
  for (const auto& [routine, grade, reason] : routines) {
    text += text::Utf8FromCode(routine.moduleName) + '\t' + text::Utf8FromCode(routine.routineName) + '\t' +
            ToUtf8(GradeCaption(grade)) + '\n';
  }
  return text;
}

std::string UnusedCsv(const std::vector<JudgedRoutine>& routines) {
  std::string csv(output::kCsvStart);
  output::CsvRow(csv).Text("Modul").Text("Routine").Text("Klasse").End();
  for (const auto& [routine, grade, reason] : routines) {
    output::CsvRow(csv)
        .Text(text::Utf8FromCode(routine.moduleName))
        .Text(text::Utf8FromCode(routine.routineName))
        .Text(ToUtf8(GradeCaption(grade)))
        .End();
  }
  return csv;
}

}  // namespace quillmate::ui
