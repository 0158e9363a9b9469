#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <set>
#include <utility>

#include <xlsxwriter.h>

#include <quillmate/export/output_reason.h>
#include <quillmate/export/spreadsheet.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>
#include <quillmate/files/work_folder.h>

#include "c_locale_p.h"
#include "package_check_p.h"
#include "spreadsheet_text_p.h"

namespace quillmate::output {
namespace {

constexpr std::size_t kWidest = 60;
constexpr std::size_t kNarrowest = 8;
/// The greatest whole number up to which every one has a place in a cell.
constexpr std::int64_t kLargestNumber = std::int64_t{1} << 53U;

}  // namespace

struct Spreadsheet::State {
  std::size_t mostRows;
  std::optional<files::WorkFolder> work;
  std::string folder;
  std::filesystem::path file;
  lxw_workbook* book = nullptr;
  lxw_worksheet* sheet = nullptr;
  lxw_format* bold = nullptr;
  /// Why the folder for what is not finished can't be made.
  std::exception_ptr problem;

  std::set<std::string> names;
  std::string name;
  std::vector<std::string> heads;
  std::vector<std::size_t> widths;
  int part = 0;
  std::size_t row = 0;
  std::size_t column = 0;
  bool failed = false;

  void Open() {
    work.emplace(files::TemporaryFolder(), files::WorkFolder::Access::kPrivate);
    file = work->Path() / "Mappe.xlsx";
    folder = files::PathText(work->Path());
    lxw_workbook_options options{};
    options.constant_memory = LXW_TRUE;
    options.tmpdir = folder.data();
    options.use_zip64 = LXW_TRUE;
    book = workbook_new_opt(files::PathText(file).c_str(), &options);
    if (book == nullptr) throw std::bad_alloc();
    bold = workbook_add_format(book);
    if (bold != nullptr) format_set_bold(bold);
  }

  void BeginPart() {
    ++part;
    row = 0;
    column = 0;
    sheet = workbook_add_worksheet(book, SheetName(name, part, names).c_str());
    if (sheet == nullptr) {
      failed = true;
      return;
    }
    for (const std::string& head : heads) PutText(head, bold);
    EndRow();
    worksheet_freeze_panes(sheet, 1, 0);
  }

  /// A row that the sheet no longer holds begins the next one.
  void GoOn() {
    if (sheet == nullptr || row < mostRows) return;
    EndPart();
    BeginPart();
  }

  void EndPart() {
    if (sheet == nullptr) return;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const std::size_t width = std::clamp(widths[i] + 3, kNarrowest, kWidest);
      const auto at = static_cast<lxw_col_t>(i);
      worksheet_set_column(sheet, at, at, static_cast<double>(width), nullptr);
    }
    if (!heads.empty()) {
      const auto last = static_cast<lxw_row_t>(std::max<std::size_t>(row, 2) - 1);
      worksheet_autofilter(sheet, 0, 0, last, static_cast<lxw_col_t>(heads.size() - 1));
    }
    sheet = nullptr;
  }

  void Widen(std::size_t characters) {
    if (column < widths.size()) widths[column] = std::max(widths[column], characters);
  }

  void PutText(std::string_view utf8, lxw_format* format) {
    std::size_t characters = 0;
    const std::string text = CellText(utf8, characters);
    Widen(characters);
    if (!text.empty() && sheet != nullptr &&
        worksheet_write_string(sheet, static_cast<lxw_row_t>(row), static_cast<lxw_col_t>(column), text.c_str(),
                               format) != LXW_NO_ERROR) {
      failed = true;
    }
    ++column;
  }

  void PutNumber(std::int64_t value) {
    const std::string text = std::to_string(value);
    if (value > kLargestNumber || value < -kLargestNumber) return PutText(text, nullptr);
    Widen(text.size());
    if (sheet != nullptr && worksheet_write_number(sheet, static_cast<lxw_row_t>(row), static_cast<lxw_col_t>(column),
                                                   static_cast<double>(value), nullptr) != LXW_NO_ERROR) {
      failed = true;
    }
    ++column;
  }

  void EndRow() {
    ++row;
    column = 0;
    if (sheet == nullptr || sheet->optimize_tmpfile == nullptr) return;
    if (std::ferror(sheet->optimize_tmpfile) != 0) failed = true;
  }

  /// True when the file is whole.
  bool Close() {
    if (names.empty()) BeginPart();
    EndPart();
    const CLocale neutral;
    const bool closed = workbook_close(std::exchange(book, nullptr)) == LXW_NO_ERROR;
    return closed && !failed && IsWholePackage(file);
  }

  void Copy(const std::filesystem::path& target) const {
    files::ReplaceFile(target, [&](const files::Writer& write) { files::ReadInPieces(file, write); });
  }
};

Spreadsheet::Spreadsheet(std::size_t rowsPerSheet) : state_(std::make_unique<State>()) {
  state_->mostRows = std::clamp<std::size_t>(rowsPerSheet, 2, kMostSheetRows);
  try {
    state_->Open();
  } catch (const std::exception&) {
    state_->problem = std::current_exception();
  }
}

Spreadsheet::~Spreadsheet() {
  if (state_->book == nullptr) return;
  const CLocale neutral;
  workbook_close(state_->book);
}

void Spreadsheet::AddSheet(std::string_view name, std::vector<std::string> heads) {
  if (state_->book == nullptr) return;
  state_->EndPart();
  state_->name = name;
  state_->widths.assign(heads.size(), 0);
  state_->heads = std::move(heads);
  state_->part = 0;
  state_->BeginPart();
}

Spreadsheet& Spreadsheet::Text(std::string_view utf8) {
  state_->GoOn();
  state_->PutText(utf8, nullptr);
  return *this;
}

Spreadsheet& Spreadsheet::Number(std::int64_t value) {
  state_->GoOn();
  state_->PutNumber(value);
  return *this;
}

Spreadsheet& Spreadsheet::Empty() {
  state_->GoOn();
  ++state_->column;
  return *this;
}

void Spreadsheet::EndRow() { state_->EndRow(); }

void Spreadsheet::Write(const std::filesystem::path& target, const std::atomic<bool>* cancelled) {
  try {
    if (state_->problem) std::rethrow_exception(state_->problem);
    if (!state_->Close()) throw files::Failure(std::make_error_code(std::errc::no_space_on_device), target);
    if (cancelled == nullptr || !*cancelled) state_->Copy(target);
  } catch (const files::Failure& failure) {
    if (failure.Path() == target) throw;
    throw files::Failure(OutputReason::kNoWorkbook, failure, target);
  }
}

}  // namespace quillmate::output
