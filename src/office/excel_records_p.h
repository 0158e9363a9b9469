#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/office/document_facts.h>

#include "byte_stream_p.h"

namespace quillmate::office {

/// Formulas of records are tokens [MS-XLS] 2.5.198, [MS-XLSB] 2.5.97, of different sizes in the two formats.
enum class TokenFormat { kBiff8, kBiff12 };

/// A token that names something.
struct NameToken {
  /// Counted from 1 among all names.
  std::uint32_t index = 0;
  /// Set where the name belongs to a book of the table of external sheets: `book` is the position in that table.
  bool isOfBook = false;
  std::uint16_t book = 0;
};

/// Calls `found` with each name that a formula uses. Ends at the first token that is not known.
void ForEachName(std::string_view tokens, TokenFormat format, const std::function<void(const NameToken&)>& found);

/// The workbook part in records.
struct WorkbookRecords {
  struct BundledSheet {
    Sheet sheet;
    std::string relation;
  };
  struct Name {
    std::string name;
    /// It stands for a macro or a function of the project.
    bool isMacro = false;
  };
  std::vector<BundledSheet> sheets;
  std::vector<Name> names;
  /// Where a macro sheet begins when the workbook is opened: the sheet's position and the cell, as the name Auto_Open
  /// has them. Nothing where that is no cell of this book.
  struct Entry {
    std::size_t sheet = 0;
    std::string cell;
  };
  std::optional<Entry> entry;
};
WorkbookRecords ReadWorkbookRecords(ByteStream& stream);

/// A formula of a sheet part in records; 0-based place.
struct CellFormula {
  std::uint32_t row = 0;
  std::uint32_t column = 0;
  std::string_view tokens;
};

/// Goes through a sheet part and gives its code name. Without `wanted` it ends before the cells. `control` gets the
/// name of each ActiveX control.
std::string ReadSheetRecords12(ByteStream& stream, bool wanted, const std::function<void(std::string)>& control,
                               const std::function<void(const CellFormula&)>& found);

}  // namespace quillmate::office
