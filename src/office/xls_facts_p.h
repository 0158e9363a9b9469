#pragma once

#include <string_view>

#include <quillmate/office/byte_source.h>

#include "facts_collector_p.h"

namespace quillmate::office {

/// Searches the stream "Workbook" of a compound file [MS-XLS]: sheets, shapes with macros, names that stand for macros
/// and formulas that use them. What these records don't say for certain (texts of formulas, conditional formats,
/// validations) is left out; the names cover who is called there too.
void ReadXlsFacts(ByteSource& workbook, FactsCollector& collector);

/// True when the workbook holds a sheet of Excel 4 macros, as far as that can be read.
bool HoldsMacroSheet(ByteSource& workbook);
/// True when the start of the stream says that the rest is encrypted with a password that is not known.
bool IsClosedWorkbook(std::string_view start);

}  // namespace quillmate::office
