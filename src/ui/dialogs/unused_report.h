#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "unused_classes.h"

/// The list of unused routines as text for other programs. UTF-8.
namespace quillmate::ui {

/// A line for each routine: module, routine and class with tabs between them, LF.
std::string UnusedText(const std::vector<JudgedRoutine>& routines);
/// The same for a spreadsheet, behind a head line (quillmate/export/csv.h).
std::string UnusedCsv(const std::vector<JudgedRoutine>& routines);

}  // namespace quillmate::ui
