#include <algorithm>
#include <utility>

#include <quillmate/text/operations.h>
#include <quillmate/text/utf8.h>

#include "access_table_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

constexpr char kDefinitionPage = 2;
constexpr std::size_t kPageHead = 8;
constexpr std::size_t kNextAt = 4;
constexpr std::size_t kLengthAt = 8;
constexpr std::size_t kLargestDefinition = std::size_t{1} << 20U;
constexpr int kMostMoves = 4;

/// Where a definition keeps what, by format.
struct DefinitionLayout {
  std::size_t rowCountAt;
  std::size_t columnCountAt;
  std::size_t indexCountAt;
  std::size_t mapAt;
  std::size_t indexesAt;
  std::size_t indexSize;
  std::size_t columnSize;
};
constexpr DefinitionLayout kOldDefinition{12, 25, 31, 35, 43, 8, 18};
constexpr DefinitionLayout kDefinition{16, 45, 51, 55, 63, 12, 25};

/// Where a column keeps what.
struct ColumnLayout {
  std::size_t number;
  std::size_t variable;
  std::size_t flags;
  std::size_t fixed;
  std::size_t length;
};
constexpr ColumnLayout kOldColumn{1, 3, 13, 14, 16};
constexpr ColumnLayout kColumn{5, 7, 15, 21, 23};
constexpr unsigned kFixedFlag = 1;

/// The last one has the bytes in the row where its width is fixed: the pieces in MSysAccessObjects of Access 2000.
enum ColumnType : std::uint8_t { kOle = 11, kMemo = 12, kOleToo = 17 };

constexpr std::size_t kLongHead = 12;
constexpr std::uint32_t kWithin = 0x80000000;
constexpr std::uint32_t kOneRow = 0x40000000;
constexpr std::uint32_t kLengthBits = 0x3FFFFFFF;

/// UTF-16, or, after a mark, one byte for each character that needs no more; a NUL switches between the two.
std::string Utf8FromJetText(std::string_view bytes) {
  if (!bytes.starts_with("\xFF\xFE")) return Utf8FromUtf16Bytes(bytes);
  std::u16string utf16;
  bool narrow = true;
  for (std::size_t at = 2; at < bytes.size();) {
    if (bytes[at] == '\0') {
      narrow = !narrow;
      ++at;
    } else if (narrow) {
      utf16 += static_cast<unsigned char>(bytes[at++]);
    } else {
      utf16 += static_cast<char16_t>(LittleEndian<std::uint16_t>(bytes, at));
      at += 2;
    }
  }
  return text::Utf8FromUtf16(utf16);
}

/// Takes the numbers of the pages whose bits are set.
void AppendFromBits(std::string_view bits, std::uint64_t firstPage, std::uint32_t pageCount,
                    std::vector<std::uint32_t>& pages) {
  for (std::size_t i = 0; i < bits.size(); ++i) {
    for (unsigned bit = 0; bit < 8; ++bit) {
      const std::uint64_t page = firstPage + i * 8 + bit;
      if ((static_cast<unsigned char>(bits[i]) >> bit & 1U) != 0 && page < pageCount) {
        pages.push_back(static_cast<std::uint32_t>(page));
      }
    }
  }
}

}  // namespace

// Rows ---------------------------------------------------------------------------------------------------------------

AccessRow::AccessRow(AccessTable& table, std::string bytes, AccessPointer pointer)
    : table_(table), bytes_(std::move(bytes)), pointer_(pointer) {
  const bool old = table.pages_->IsOld();
  columns_ = old ? LittleEndian<std::uint8_t>(bytes_, 0) : LittleEndian<std::uint16_t>(bytes_, 0);
  const std::size_t mask = (columns_ + 7) / 8;
  if (mask + (old ? 1 : 2) > bytes_.size()) columns_ = 0;
  if (columns_ == 0) return;
  maskAt_ = bytes_.size() - mask;
  if (table.hasVariable_) old ? FindVariableOld() : FindVariable();
}

/// The offsets have 8 bits; each jump names the first of them that is 256 bytes further.
void AccessRow::FindVariableOld() {
  if (maskAt_ < 2) return;
  const std::size_t count = static_cast<unsigned char>(bytes_[maskAt_ - 1]);
  std::size_t jumps = (bytes_.size() - 1) / 256;
  if (jumps + count + 2 > maskAt_) return;
  // The last one may be there without need.
  if ((maskAt_ - 2 - jumps - count) / 256 < jumps) --jumps;
  const std::size_t lastAt = maskAt_ - 2 - (bytes_.size() - 1) / 256;
  std::size_t used = 0;
  for (std::size_t i = 0; i <= count && i <= lastAt; ++i) {
    while (used < jumps && static_cast<unsigned char>(bytes_[maskAt_ - 2 - used]) == i) ++used;
    variable_.push_back(static_cast<unsigned char>(bytes_[lastAt - i]) + used * 256);
  }
}

void AccessRow::FindVariable() {
  if (maskAt_ < 4) return;
  const std::size_t count = LittleEndian<std::uint16_t>(bytes_, maskAt_ - 2);
  if ((count + 2) * 2 > maskAt_) return;
  for (std::size_t i = 0; i <= count; ++i)
    variable_.push_back(LittleEndian<std::uint16_t>(bytes_, maskAt_ - 4 - i * 2));
}

std::optional<std::string_view> AccessRow::Raw(std::size_t index) const {
  if (index >= table_.columns_.size()) return std::nullopt;
  const AccessColumn& column = table_.columns_[index];
  if (column.number >= columns_) return std::nullopt;
  const unsigned mask = static_cast<unsigned char>(bytes_[maskAt_ + column.number / 8U]);
  if ((mask >> column.number % 8U & 1U) == 0) return std::nullopt;
  std::size_t start = 0;
  std::size_t end = 0;
  if (column.fixed) {
    start = column.place + (table_.pages_->IsOld() ? std::size_t{1} : std::size_t{2});
    end = start + column.length;
  } else if (column.place + std::size_t{1} < variable_.size()) {
    start = variable_[column.place];
    end = variable_[column.place + std::size_t{1}];
  }
  if (start == 0 || start > end || end > maskAt_) return std::nullopt;
  return std::string_view(bytes_).substr(start, end - start);
}

std::int64_t AccessRow::Number(std::size_t column) const {
  const std::optional<std::string_view> raw = Raw(column);
  if (!raw.has_value()) return 0;
  switch (raw->size()) {
    case 1:
      return static_cast<unsigned char>(raw->front());
    case 2:
      return static_cast<std::int16_t>(LittleEndian<std::uint16_t>(*raw, 0));
    default:
      return static_cast<std::int32_t>(LittleEndian<std::uint32_t>(*raw, 0));
  }
}

std::string AccessRow::Text(std::size_t column) const {
  constexpr std::uint64_t kLongestText = std::uint64_t{1} << 20U;
  return table_.TextFrom(Bytes(column, kLongestText).bytes);
}

AccessRow::Value AccessRow::Bytes(std::size_t column, std::uint64_t limit) const {
  const std::optional<std::string_view> raw = Raw(column);
  if (!raw.has_value()) return {};
  const AccessColumn& about = table_.columns_[column];
  const bool isLong = about.type == kOle || about.type == kMemo || about.type == kOleToo;
  if (isLong && !about.fixed) return table_.LongValue(*raw, limit);
  return {std::string(raw->substr(0, limit)), raw->size() <= limit};
}

// Tables -------------------------------------------------------------------------------------------------------------

std::optional<AccessTable> AccessTable::Open(AccessPages& pages, std::uint32_t page) {
  AccessTable table(pages);
  if (!table.Read(page)) return std::nullopt;
  return table;
}

/// The definition's pages one after the other, each but the first without its head.
std::string AccessTable::Definition(std::uint32_t page) const {
  std::string definition;
  std::size_t wanted = kLargestDefinition;
  // No chain has more pages than the file.
  for (std::uint32_t steps = 0; page != 0 && steps < pages_->Count() && definition.size() < wanted; ++steps) {
    const std::string_view bytes = pages_->Read(page);
    if (!bytes.starts_with(kDefinitionPage)) break;
    if (definition.empty()) {
      wanted = std::min<std::size_t>(wanted, LittleEndian<std::uint32_t>(bytes, kLengthAt) + kPageHead);
    }
    const std::size_t skipped = definition.empty() ? 0 : kPageHead;
    page = LittleEndian<std::uint32_t>(bytes, kNextAt);
    definition.append(bytes.substr(std::min(skipped, bytes.size())));
  }
  return definition;
}

bool AccessTable::Read(std::uint32_t page) {
  page_ = page;
  const std::string definition = Definition(page);
  const DefinitionLayout& layout = pages_->IsOld() ? kOldDefinition : kDefinition;
  rowCount_ = LittleEndian<std::uint32_t>(definition, layout.rowCountAt);
  map_ = LittleEndian<std::uint32_t>(definition, layout.mapAt);
  return ReadColumns(definition);
}

bool AccessTable::ReadColumns(std::string_view definition) {
  const bool old = pages_->IsOld();
  const DefinitionLayout& layout = old ? kOldDefinition : kDefinition;
  const ColumnLayout& field = old ? kOldColumn : kColumn;
  const std::size_t count = LittleEndian<std::uint16_t>(definition, layout.columnCountAt);
  const std::size_t indexes = LittleEndian<std::uint32_t>(definition, layout.indexCountAt);
  const std::size_t columnsAt = layout.indexesAt + indexes * layout.indexSize;
  std::size_t nameAt = columnsAt + count * layout.columnSize;
  if (count == 0 || count > kMostAccessColumns || indexes > definition.size() || nameAt > definition.size())
    return false;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view bytes = definition.substr(columnsAt + i * layout.columnSize, layout.columnSize);
    AccessColumn column;
    column.type = LittleEndian<std::uint8_t>(bytes, 0);
    column.number = LittleEndian<std::uint16_t>(bytes, field.number);
    column.fixed = (LittleEndian<std::uint8_t>(bytes, field.flags) & kFixedFlag) != 0;
    column.place = LittleEndian<std::uint16_t>(bytes, column.fixed ? field.fixed : field.variable);
    column.length = LittleEndian<std::uint16_t>(bytes, field.length);
    const std::size_t lengthSize = old ? 1 : 2;
    const std::size_t length =
        old ? LittleEndian<std::uint8_t>(definition, nameAt) : LittleEndian<std::uint16_t>(definition, nameAt);
    if (nameAt + lengthSize + length > definition.size()) return false;
    const std::string_view name = definition.substr(nameAt + lengthSize, length);
    column.name = old ? codePage_.Utf8From(name) : Utf8FromUtf16Bytes(name);
    nameAt += lengthSize + length;
    hasVariable_ = hasVariable_ || !column.fixed;
    columns_.push_back(std::move(column));
  }
  return true;
}

std::size_t AccessTable::Column(std::string_view name) const noexcept {
  const auto found = std::find_if(columns_.begin(), columns_.end(), [&](const AccessColumn& column) {
    return text::EqualsIgnoreCase(column.name, name);
  });
  return found == columns_.end() ? kNoColumn : static_cast<std::size_t>(found - columns_.begin());
}

/// A map is a row: 0, the first page and a bit for each page from there on; or 1 and the pages in which such bits are.
void AccessTable::AppendFromMap(std::vector<std::uint32_t>& found) const {
  constexpr std::size_t kBitsAt = 5;
  constexpr std::size_t kBitsOfPageAt = 4;
  const std::string map(RowOn(pages_->Read(PageOf(map_)), pages_->IsOld(), RowOf(map_)).bytes);
  if (map.empty()) return;
  if (map.front() == '\0') {
    AppendFromBits(std::string_view(map).substr(std::min(kBitsAt, map.size())), LittleEndian<std::uint32_t>(map, 1),
                   pages_->Count(), found);
    return;
  }
  const std::uint64_t perPage = (pages_->PageSize() - kBitsOfPageAt) * 8;
  std::uint64_t firstPage = 0;
  for (std::size_t at = 1; at + 4 <= map.size(); at += 4, firstPage += perPage) {
    const std::uint32_t page = LittleEndian<std::uint32_t>(map, at);
    const std::string_view bits = page == 0 ? std::string_view() : pages_->Read(page);
    AppendFromBits(bits.substr(std::min(kBitsOfPageAt, bits.size())), firstPage, pages_->Count(), found);
  }
}

/// The table's pages in the order of the file. A map that leads to fewer rows than there should be is damaged: then all
/// pages are looked at.
std::vector<std::uint32_t> AccessTable::DataPages() const {
  std::vector<std::uint32_t> pages;
  AppendFromMap(pages);
  std::sort(pages.begin(), pages.end());
  pages.erase(std::unique(pages.begin(), pages.end()), pages.end());
  std::erase_if(pages, [this](std::uint32_t page) { return OwnerOf(pages_->Read(page)) != page_; });
  std::uint64_t rows = 0;
  for (const std::uint32_t page : pages) rows += RowsInUse(page);
  if (rows >= rowCount_ && rows > 0) return pages;
  pages.clear();
  for (std::uint32_t page = 1; page < pages_->Count(); ++page) {
    if (OwnerOf(pages_->Read(page)) == page_) pages.push_back(page);
  }
  return pages;
}

std::uint64_t AccessTable::RowsInUse(std::uint32_t page) const {
  const std::string_view bytes = pages_->Read(page);
  std::uint64_t rows = 0;
  for (std::size_t row = 0; row < RowsOn(bytes, pages_->IsOld()); ++row) {
    const AccessRowBytes::Kind kind = RowOn(bytes, pages_->IsOld(), row).kind;
    if (kind == AccessRowBytes::Kind::kRow || kind == AccessRowBytes::Kind::kMovedTo) ++rows;
  }
  return rows;
}

void AccessTable::Visit(const std::function<bool(const AccessRow&)>& visit) {
  for (const std::uint32_t page : DataPages()) {
    if (!VisitPage(page, visit)) return;
  }
}

bool AccessTable::VisitPage(std::uint32_t page, const std::function<bool(const AccessRow&)>& visit) {
  const std::size_t rows = std::min<std::size_t>(RowsOn(pages_->Read(page), pages_->IsOld()), 256);
  for (std::size_t row = 0; row < rows; ++row) {
    const AccessPointer pointer = page << 8U | static_cast<AccessPointer>(row);
    const AccessRowBytes::Kind kind = RowOn(pages_->Read(page), pages_->IsOld(), row).kind;
    // A row that was moved is met where it comes from.
    if (kind != AccessRowBytes::Kind::kRow && kind != AccessRowBytes::Kind::kMovedTo) continue;
    const std::optional<AccessRow> found = At(pointer);
    if (found.has_value() && !visit(*found)) return false;
  }
  return true;
}

std::optional<AccessRow> AccessTable::At(AccessPointer pointer) {
  AccessPointer at = pointer;
  for (int moves = 0; moves <= kMostMoves; ++moves) {
    const AccessRowBytes row = RowOn(pages_->Read(PageOf(at)), pages_->IsOld(), RowOf(at));
    if (row.kind == AccessRowBytes::Kind::kNone || row.kind == AccessRowBytes::Kind::kDeleted) break;
    if (row.kind != AccessRowBytes::Kind::kMovedTo) return AccessRow(*this, std::string(row.bytes), pointer);
    at = LittleEndian<std::uint32_t>(row.bytes, 0);
  }
  return std::nullopt;
}

AccessRow::Value AccessTable::LongValue(std::string_view head, std::uint64_t limit) {
  if (head.size() < kLongHead) return {{}, false};
  const std::uint32_t kind = LittleEndian<std::uint32_t>(head, 0);
  const std::uint64_t length = kind & kLengthBits;
  const std::uint64_t wanted = std::min({length, limit, valueBytesLeft_});
  AccessRow::Value value;
  if ((kind & kWithin) != 0) {
    value.bytes = head.substr(kLongHead, wanted);
  } else {
    const bool chain = (kind & kOneRow) == 0;
    AccessPointer at = LittleEndian<std::uint32_t>(head, 4);
    while (at != 0 && value.bytes.size() < wanted && valueBytesLeft_ > 0) {
      std::string_view row = RowOn(pages_->Read(PageOf(at)), pages_->IsOld(), RowOf(at)).bytes;
      at = chain ? LittleEndian<std::uint32_t>(row, 0) : 0;
      if (chain) row.remove_prefix(std::min<std::size_t>(row.size(), 4));
      row = row.substr(0, wanted - value.bytes.size());
      value.bytes += row;
      // Rows without a byte count too: a chain of them may run into itself.
      valueBytesLeft_ -= std::min<std::uint64_t>(valueBytesLeft_, std::max<std::size_t>(row.size(), 1));
    }
  }
  value.complete = value.bytes.size() == length;
  return value;
}

std::string AccessTable::TextFrom(std::string_view bytes) const {
  return pages_->IsOld() ? codePage_.Utf8From(bytes) : Utf8FromJetText(bytes);
}

}  // namespace quillmate::office
