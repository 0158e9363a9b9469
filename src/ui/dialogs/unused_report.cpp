#include "unused_report.h"

#include <quillmate/text/windows1252.h>

namespace quillmate::ui {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string Quoted(const std::string& field) {
  if (field.find_first_of(";\"\r\n") == std::string::npos) return field;
  std::string quoted = "\"";
  for (const char c : field) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

}  // namespace

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
  std::string csv(kByteOrderMark);
  csv += "Modul;Routine;Klasse\r\n";
  for (const analysis::UnusedRoutine& routine : routines) {
    csv += Quoted(text::Utf8FromCode(routine.moduleName)) + ';' + Quoted(text::Utf8FromCode(routine.routineName)) +
           ';' + UnusedCaption(routine.unused) + "\r\n";
  }
  return csv;
}

}  // namespace quillmate::ui
