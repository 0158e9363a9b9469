#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include <quillmate/inventory/inventory.h>

/// An inventory for people, in the forms that window and command line share. With `since` only what is new, changed or
/// gone since the run of that number.
namespace quillmate::inventory {

/// A workbook: an overview, then a sheet for each table. Throws files::Failure; the target is untouched then.
void WriteReportWorkbook(Inventory& inventory, std::int64_t since, const std::filesystem::path& target);

/// A page that needs nothing beside it: the overview with bars, and tables that sort at a click on a head. Of each
/// table the first 5,000 rows, and how many there are. HTML in UTF-8.
void WriteReportPage(Inventory& inventory, std::int64_t since, const std::function<void(std::string_view)>& write);

/// The overview for a terminal, UTF-8; with `since` the counts of what has changed.
std::string ReportText(Inventory& inventory, std::int64_t since);

}  // namespace quillmate::inventory
