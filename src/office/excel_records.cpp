#include <algorithm>
#include <array>
#include <optional>

#include <quillmate/office/byte_source.h>
#include <quillmate/text/operations.h>

#include "excel_records_p.h"
#include "facts_collector_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

// Tokens -------------------------------------------------------------------------------------------------------------

struct TokenSize {
  std::uint8_t first;
  std::uint8_t last;
  /// Bytes after the id.
  std::uint8_t biff8;
  std::uint8_t biff12;
};
/// Those of a fixed size, after the classes of operands were folded into one.
constexpr std::array kTokenSizes{
    TokenSize{0x01, 0x02, 4, 4},  TokenSize{0x03, 0x16, 0, 0},  TokenSize{0x18, 0x18, 5, 13},
    TokenSize{0x1C, 0x1D, 1, 1},  TokenSize{0x1E, 0x1E, 2, 2},  TokenSize{0x1F, 0x1F, 8, 8},
    TokenSize{0x20, 0x20, 7, 14}, TokenSize{0x21, 0x21, 2, 2},  TokenSize{0x22, 0x22, 3, 3},
    TokenSize{0x23, 0x23, 4, 4},  TokenSize{0x24, 0x24, 4, 6},  TokenSize{0x25, 0x25, 8, 12},
    TokenSize{0x26, 0x28, 6, 6},  TokenSize{0x29, 0x29, 2, 2},  TokenSize{0x2A, 0x2A, 4, 6},
    TokenSize{0x2B, 0x2B, 8, 12}, TokenSize{0x2C, 0x2C, 4, 6},  TokenSize{0x2D, 0x2D, 8, 12},
    TokenSize{0x39, 0x39, 6, 6},  TokenSize{0x3A, 0x3A, 6, 8},  TokenSize{0x3B, 0x3B, 10, 14},
    TokenSize{0x3C, 0x3C, 6, 8},  TokenSize{0x3D, 0x3D, 10, 14}};
constexpr std::uint8_t kText = 0x17;
constexpr std::uint8_t kAttribute = 0x19;
constexpr std::uint8_t kName = 0x23;
constexpr std::uint8_t kNameOfBook = 0x39;

/// Bytes of the token after its id; nothing when it is not known.
std::optional<std::size_t> SizeOf(std::uint8_t id, std::string_view rest, TokenFormat format) noexcept {
  if (id == kText && format == TokenFormat::kBiff8) {
    const std::size_t count = LittleEndian<std::uint8_t>(rest, 0);
    return 2 + count * ((LittleEndian<std::uint8_t>(rest, 1) & 1U) != 0 ? 2 : 1);
  }
  if (id == kText) return 2 + std::size_t{2} * LittleEndian<std::uint16_t>(rest, 0);
  if (id == kAttribute) {
    constexpr unsigned kChoose = 4;
    const bool choose = (LittleEndian<std::uint8_t>(rest, 0) & kChoose) != 0;
    return 3 + (choose ? 2 * (std::size_t{LittleEndian<std::uint16_t>(rest, 1)} + 1) : 0);
  }
  const auto* found = std::find_if(kTokenSizes.begin(), kTokenSizes.end(),
                                   [=](const TokenSize& size) { return id >= size.first && id <= size.last; });
  if (found == kTokenSizes.end()) return std::nullopt;
  return format == TokenFormat::kBiff8 ? found->biff8 : found->biff12;
}

// Records of BIFF12 --------------------------------------------------------------------------------------------------

/// Ids, [MS-XLSB] 2.3.
enum RecordId : std::uint32_t {
  kRowHeader = 0,
  kFormulaText = 8,
  kFormulaNumber = 9,
  kFormulaBoolean = 10,
  kFormulaError = 11,
  kDefinedName = 39,
  kBeginSheetData = 145,
  kSheetProperties = 147,
  kSheetOfBook = 156,
  kSourceBook = 355,
  kThisBook = 357,
  kSameSheet = 358,
  kExternalSheets = 362,
  kArrayFormula = 426,
  kSharedFormula = 427,
  kActiveX = 644,
  kChartSheetProperties = 651,
  kAddInBook = 667
};

/// Nothing that is looked at is longer; of a longer record only the beginning is there.
constexpr std::size_t kLongestRecord = std::size_t{64} << 10U;

struct Record {
  std::uint32_t id = 0;
  std::string_view data;
};

class RecordStream {
 public:
  explicit RecordStream(ByteStream& stream) : stream_(stream) {}

  bool Next(Record& record) {
    std::uint32_t size = 0;
    if (!TakeNumber(2, record.id) || !TakeNumber(4, size)) return false;
    const std::size_t kept = std::min<std::size_t>(size, kLongestRecord);
    if (!Need(kept)) return false;
    record.data = std::string_view(buffer_).substr(at_, kept);
    at_ += kept;
    skip_ = size - kept;
    return true;
  }

 private:
  /// Makes `count` bytes available from `at_` on.
  bool Need(std::size_t count) {
    Skip();
    if (buffer_.size() - at_ >= count) return true;
    buffer_.erase(0, at_);
    at_ = 0;
    while (buffer_.size() < count) {
      constexpr std::size_t kPiece = std::size_t{64} << 10U;
      const std::size_t before = buffer_.size();
      buffer_.resize(before + kPiece);
      const std::size_t got = stream_.Read(buffer_.data() + before, kPiece);
      buffer_.resize(before + got);
      if (got == 0) return false;
    }
    return true;
  }
  /// Passes over the rest of a long record.
  void Skip() {
    while (skip_ > 0) {
      const std::size_t there = std::min(skip_, buffer_.size() - at_);
      at_ += there;
      skip_ -= there;
      if (skip_ == 0) return;
      buffer_.resize(kLongestRecord);
      at_ = 0;
      buffer_.resize(stream_.Read(buffer_.data(), kLongestRecord));
      if (buffer_.empty()) skip_ = 0;
    }
  }
  /// Bytes with 7 bits each, the low ones first, as long as their top bit is set.
  bool TakeNumber(int longest, std::uint32_t& number) {
    number = 0;
    for (int i = 0; i < longest; ++i) {
      if (!Need(1)) return false;
      const auto byte = static_cast<unsigned char>(buffer_[at_++]);
      number |= static_cast<std::uint32_t>(byte & 0x7FU) << (7 * i);
      if ((byte & 0x80U) == 0) break;
    }
    return true;
  }

  ByteStream& stream_;
  std::string buffer_;
  std::size_t at_ = 0;
  std::size_t skip_ = 0;
};

/// A count of characters and UTF-16; `at` moves past it. Empty where it makes no sense.
std::string TakeText(std::string_view data, std::size_t& at) {
  const std::uint32_t count = LittleEndian<std::uint32_t>(data, at);
  at += 4;
  constexpr std::uint32_t kNone = 0xFFFFFFFF;
  if (count == kNone || at > data.size() || count > (data.size() - at) / 2) return {};
  const std::string_view bytes = data.substr(at, std::size_t{count} * 2);
  at += bytes.size();
  return Utf8FromUtf16Bytes(bytes);
}

WorkbookRecords::BundledSheet SheetFrom(std::string_view data) {
  WorkbookRecords::BundledSheet bundled;
  const auto state = LittleEndian<std::uint32_t>(data, 0);
  bundled.sheet.visibility = state == 0   ? Sheet::Visibility::kVisible
                             : state == 1 ? Sheet::Visibility::kHidden
                                          : Sheet::Visibility::kVeryHidden;
  std::size_t at = 8;
  bundled.relation = TakeText(data, at);
  bundled.sheet.name = TakeText(data, at);
  return bundled;
}

WorkbookRecords::Name NameFrom(std::string_view data) {
  constexpr std::uint32_t kMacro = 8;
  WorkbookRecords::Name name;
  name.isMacro = (LittleEndian<std::uint32_t>(data, 0) & kMacro) != 0;
  std::size_t at = 9;
  name.name = TakeText(data, at);
  return name;
}

/// The tokens after a count; empty where it makes no sense.
std::string_view TokensAt(std::string_view data, std::size_t at) {
  const std::size_t count = LittleEndian<std::uint32_t>(data, at);
  return at + 4 <= data.size() ? data.substr(at + 4, count) : std::string_view();
}

/// The cell of the built-in name that runs a macro sheet: one token with a sheet and a cell.
class MacroEntry {
 public:
  void TakeName(std::string_view data) {
    constexpr std::uint32_t kBuiltIn = 0x20;
    constexpr unsigned kCell = 0x1A, kCellOfSheet = 0x3A, kColumnBits = 0x3FFF;
    std::size_t at = 9;
    const bool builtIn = (LittleEndian<std::uint32_t>(data, 0) & kBuiltIn) != 0;
    if (!builtIn || !text::EqualsIgnoreCase(TakeText(data, at), "Auto_Open")) return;
    const std::string_view tokens = TokensAt(data, at);
    const unsigned id = LittleEndian<std::uint8_t>(tokens, 0);
    if (tokens.size() < 9 || (id & 0x1FU) != kCell || id < kCellOfSheet) return;
    position_ = LittleEndian<std::uint16_t>(tokens, 1);
    cell_ = CellName(LittleEndian<std::uint32_t>(tokens, 3), LittleEndian<std::uint16_t>(tokens, 7) & kColumnBits);
  }
  void TakeBook(bool isThis) {
    if (isThis) thisBook_ = books_;
    ++books_;
  }
  /// Triples of a book and its first and last sheet.
  void TakeSheets(std::string_view data) { sheets_ = data.substr(std::min<std::size_t>(4, data.size())); }

  std::optional<WorkbookRecords::Entry> Find(std::size_t sheetCount) const {
    const std::size_t at = std::size_t{position_} * 12;
    if (cell_.empty() || at + 12 > sheets_.size()) return std::nullopt;
    const auto sheet = LittleEndian<std::uint32_t>(sheets_, at + 4);
    if (LittleEndian<std::uint32_t>(sheets_, at) != thisBook_ || sheet >= sheetCount) return std::nullopt;
    return WorkbookRecords::Entry{sheet, cell_};
  }

 private:
  std::uint16_t position_ = 0;
  std::string cell_;
  std::uint32_t books_ = 0;
  std::uint32_t thisBook_ = 0xFFFFFFFF;
  std::string sheets_;
};

/// Where the count of the tokens of a cell is.
std::size_t TokensOfCell(const Record& record) noexcept {
  constexpr std::size_t kValueAt = 8;
  constexpr std::size_t kFlags = 2;
  switch (record.id) {
    case kFormulaText:
      return kValueAt + 4 + std::size_t{2} * LittleEndian<std::uint32_t>(record.data, kValueAt) + kFlags;
    case kFormulaNumber:
      return kValueAt + 8 + kFlags;
    default:
      return kValueAt + 1 + kFlags;
  }
}

}  // namespace

void ForEachName(std::string_view tokens, TokenFormat format, const std::function<void(const NameToken&)>& found) {
  while (!tokens.empty()) {
    auto id = LittleEndian<std::uint8_t>(tokens, 0);
    // Operands come in three classes.
    if (id >= 0x40 && id < 0x80) id = static_cast<std::uint8_t>((id & 0x1FU) | 0x20U);
    const std::string_view rest = tokens.substr(1);
    const std::optional<std::size_t> size = SizeOf(id, rest, format);
    if (!size.has_value() || *size > rest.size()) return;
    if (id == kName) {
      found({format == TokenFormat::kBiff8 ? LittleEndian<std::uint16_t>(rest, 0)
                                           : LittleEndian<std::uint32_t>(rest, 0)});
    } else if (id == kNameOfBook) {
      const std::uint32_t index =
          format == TokenFormat::kBiff8 ? LittleEndian<std::uint16_t>(rest, 2) : LittleEndian<std::uint32_t>(rest, 2);
      found({index, true, LittleEndian<std::uint16_t>(rest, 0)});
    }
    tokens = rest.substr(*size);
  }
}

WorkbookRecords ReadWorkbookRecords(ByteStream& stream) {
  WorkbookRecords workbook;
  RecordStream records(stream);
  MacroEntry entry;
  for (Record record; records.Next(record);) {
    switch (record.id) {
      case kSheetOfBook:
        if (workbook.sheets.size() < kMostFacts) workbook.sheets.push_back(SheetFrom(record.data));
        break;
      case kDefinedName:
        if (workbook.names.size() < kMostFacts) workbook.names.push_back(NameFrom(record.data));
        entry.TakeName(record.data);
        break;
      case kSourceBook:
      case kThisBook:
      case kSameSheet:
      case kAddInBook:
        entry.TakeBook(record.id == kThisBook);
        break;
      case kExternalSheets:
        entry.TakeSheets(record.data);
        break;
      default:
        break;
    }
  }
  workbook.entry = entry.Find(workbook.sheets.size());
  return workbook;
}

std::string ReadSheetRecords12(ByteStream& stream, bool wanted, const std::function<void(std::string)>& control,
                               const std::function<void(const CellFormula&)>& found) {
  constexpr std::size_t kSheetNameAt = 19;
  constexpr std::size_t kChartNameAt = 10;
  std::string codeName;
  CellFormula cell;
  RecordStream records(stream);
  for (Record record; records.Next(record);) {
    switch (record.id) {
      case kSheetProperties:
      case kChartSheetProperties: {
        std::size_t at = record.id == kSheetProperties ? kSheetNameAt : kChartNameAt;
        codeName = TakeText(record.data, at);
        break;
      }
      case kBeginSheetData:
        if (!wanted) return codeName;
        break;
      case kActiveX: {
        std::size_t at = 4;
        TakeText(record.data, at);  // the relation
        control(TakeText(record.data, at));
        break;
      }
      case kRowHeader:
        cell.row = LittleEndian<std::uint32_t>(record.data, 0);
        break;
      case kFormulaText:
      case kFormulaNumber:
      case kFormulaBoolean:
      case kFormulaError:
        cell.column = LittleEndian<std::uint32_t>(record.data, 0);
        cell.tokens = TokensAt(record.data, TokensOfCell(record));
        found(cell);
        break;
      case kArrayFormula:
      case kSharedFormula: {
        // The first row and column of the range.
        const CellFormula first{LittleEndian<std::uint32_t>(record.data, 0),
                                LittleEndian<std::uint32_t>(record.data, 8),
                                TokensAt(record.data, record.id == kArrayFormula ? 17 : 16)};
        found(first);
        break;
      }
      default:
        break;
    }
  }
  return codeName;
}

}  // namespace quillmate::office
