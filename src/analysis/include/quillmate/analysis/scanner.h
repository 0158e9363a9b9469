#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/records.h>
#include <quillmate/files/failure.h>
#include <quillmate/text/code_options.h>

/// Marks up a module and finds its routines. Texts are Windows-1252 with CR LF line breaks; the markers are those of
/// quillmate/text/markers.h.
namespace quillmate::analysis {

using ScanOptions = text::CodeLayout;

/// A module of more routines is none that somebody wrote: an editor takes 65,534 lines.
inline constexpr std::int32_t kMostRoutines = 1'000'000;

/// Why the index can't hold a module.
enum class ModuleReason {
  kManyRoutines = 1,
  kLongHeader  // of the routine %1: %2 lines
};
std::error_code make_error_code(ModuleReason reason) noexcept;

/// First or last line of a routine, in the order of the lines of the stored text.
struct RoutineLine {
  codedb::RoutineNumber routine;
  codedb::Line line;
  bool isStart = false;
};

struct ScanResult {
  std::string markedText;
  /// In the order in which they got their numbers: all Subs of the module, then Functions, then Properties.
  /// Module and lines are not filled.
  std::vector<codedb::RoutineRecord> routines;
  std::vector<RoutineLine> lines;
  /// The last number that was given.
  codedb::RoutineNumber last;
  /// Size of the module in lines: the line breaks of the marked-up text.
  std::int32_t lineCount = 0;
  /// True in the rare module whose marked-up text holds numbers of routines; in all others the text is the same
  /// whatever number came last.
  bool numbersInText = false;
};

/// Marks up a module and numbers its routines on from `last`, the last number given so far (0 before a project's first
/// module). The marked-up text ends with one CR LF more than the input. Throws files::Failure at the first routine
/// beyond kMostRoutines.
ScanResult ScanForIndex(std::string_view code, const ScanOptions& options, codedb::RoutineNumber last);

/// Marks up a piece of code for showing: no numbers, no line break added.
std::string ScanForDisplay(std::string_view code, const ScanOptions& options);

}  // namespace quillmate::analysis

template <>
struct std::is_error_code_enum<quillmate::analysis::ModuleReason> : std::true_type {};
