#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/text/code_options.h>

/// Marks up a module and finds its routines. Texts are Windows-1252 with CR LF line breaks; the markers are those of
/// quillmate/text/markers.h.
namespace quillmate::analysis {

using ScanOptions = text::CodeLayout;

/// One routine or external declaration, with the code values of quillmate/codedb/codes.h.
struct ScannedRoutine {
  int kind = 0;
  int visibility = 0;
  /// Physical lines of the header.
  int headerLines = 0;
  std::string name;
  /// Project-wide, 1-based.
  std::int64_t number = 0;
};

/// First or last line of a routine, in the order of the lines of the stored text.
struct RoutineLine {
  std::int64_t routine = 0;
  /// 1-based line of the stored text.
  std::int64_t line = 0;
  bool isStart = false;
};

struct ScanResult {
  std::string markedText;
  /// In the order in which they got their numbers: all Subs of the module, then Functions, then Properties.
  std::vector<ScannedRoutine> routines;
  std::vector<RoutineLine> lines;
  /// The project's routine counter behind this module.
  std::int64_t routineCounter = 0;
  /// Size of the module in lines: the line breaks of the marked-up text.
  std::int64_t lineCount = 0;
};

/// Marks up a module and numbers its routines on from `routineCounter` (0 before a project's first module). The
/// marked-up text ends with one CR LF more than the input.
ScanResult ScanForIndex(std::string_view code, const ScanOptions& options, std::int64_t routineCounter);

/// Marks up a piece of code for showing: no numbers, no line break added.
std::string ScanForDisplay(std::string_view code, const ScanOptions& options);

}  // namespace quillmate::analysis
