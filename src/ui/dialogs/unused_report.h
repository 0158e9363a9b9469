#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <quillmate/analysis/unused.h>

/// The list of unused routines as text for other programs. UTF-8.
namespace quillmate::ui {

/// "sicher", "vom Host" or "per Text".
const char* UnusedCaption(analysis::UnusedClass unused);

/// A line for each routine: module, routine and class with tabs between them, LF.
std::string UnusedText(const std::vector<analysis::UnusedRoutine>& routines);
/// The same for a spreadsheet, behind a head line (quillmate/export/csv.h).
std::string UnusedCsv(const std::vector<analysis::UnusedRoutine>& routines);

}  // namespace quillmate::ui
