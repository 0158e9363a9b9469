#include "office/access_writer.h"

#include <algorithm>
#include <array>
#include <map>

namespace quillmate::office {
namespace {

constexpr std::size_t kPiece = 1500;
constexpr std::size_t kShort = 40;

/// The cipher of the format, written down for the tests alone.
std::string Rc4Of(std::string_view key, std::string bytes) {
  std::array<unsigned char, 256> s;
  for (unsigned i = 0; i < 256; ++i) s[i] = static_cast<unsigned char>(i);
  for (unsigned i = 0, j = 0; i < 256; ++i) {
    j = (j + s[i] + static_cast<unsigned char>(key[i % key.size()])) % 256;
    std::swap(s[i], s[j]);
  }
  unsigned i = 0;
  unsigned j = 0;
  for (char& byte : bytes) {
    i = (i + 1) % 256;
    j = (j + s[i]) % 256;
    std::swap(s[i], s[j]);
    byte = static_cast<char>(byte ^ static_cast<char>(s[(s[i] + s[j]) % 256]));
  }
  return bytes;
}

std::string Number(std::uint64_t number, std::size_t width) {
  std::string bytes = Bytes<8>(number);
  bytes.resize(width);
  return bytes;
}

/// Latin-1 as UTF-16.
std::u16string Wide(std::string_view text) {
  std::u16string wide;
  for (const char c : text) wide += static_cast<unsigned char>(c);
  return wide;
}

/// 0 where it differs from row to row.
std::size_t WidthOf(const WrittenColumn& column) {
  switch (column.type) {
    case 2:
      return 1;
    case 3:
      return 2;
    case 4:
      return 4;
    default:
      return column.width;
  }
}

/// The file while it is being written; page n is at n times the page size.
class Database {
 public:
  explicit Database(const AccessWriter& writer) : writer_(writer), size_(writer.IsOld() ? 2048 : 4096) {
    pages_.resize(3, std::string(size_, '\0'));
  }

  std::string Write();

 private:
  struct RowPage {
    std::uint32_t number = 0;
    std::string owner;
    std::vector<std::string> rows;
    std::vector<unsigned> flags;
    std::size_t used = 0;
  };

  std::uint32_t NewPage() {
    pages_.emplace_back(size_, '\0');
    return static_cast<std::uint32_t>(pages_.size() - 1);
  }
  std::string Header() const;
  /// Puts a row on the page or a new one with the same owner; its pointer.
  std::uint32_t AddRow(RowPage& page, std::vector<std::uint32_t>& numbers, const std::string& row, unsigned flag);
  void Finish(const RowPage& page);
  void WriteTable(const WrittenTable& table, std::uint32_t definition);
  std::string Definition(const WrittenTable& table, std::uint32_t map) const;
  std::uint32_t Map(const std::vector<std::uint32_t>& numbers);
  std::string Row(const WrittenTable& table, const std::vector<AccessCell>& cells);
  std::string RowOld(std::size_t columns, const std::string& fixed, const std::vector<std::string>& variable,
                     const std::string& mask) const;
  std::string Variable(const WrittenColumn& column, const AccessCell& cell);
  std::string LongValue(const std::string& bytes);
  std::string TextBytes(const std::u16string& text) const;

  const AccessWriter& writer_;
  std::size_t size_;
  std::vector<std::string> pages_;
};

std::string Database::Header() const {
  std::string header(size_, '\0');
  const bool ace = writer_.password || writer_.format == AccessFormat::k2007;
  header.replace(0, 4, std::string("\0\1\0\0", 4));
  header.replace(4, 16, std::string(ace ? "Standard ACE DB" : "Standard Jet DB") + '\0');
  header[0x14] = static_cast<char>(writer_.IsOld() ? 0 : ace ? 2 : 1);
  header.replace(0x3C, 2, Bytes<2>(static_cast<unsigned>(writer_.codePage)));
  header.replace(0x3E, 4, Bytes<4>(writer_.pageKey));
  const std::size_t enciphered = writer_.IsOld() ? 126 : 128;
  header.replace(0x18, enciphered, Rc4Of("\xC7\xDA\x39\x6B", header.substr(0x18, enciphered)));
  if (writer_.password) header.replace(0x299, 2, Bytes<2>(500));
  return header;
}

std::uint32_t Database::AddRow(RowPage& page, std::vector<std::uint32_t>& numbers, const std::string& row,
                               unsigned flag) {
  const std::size_t head = writer_.IsOld() ? 10 : 14;
  if (page.number == 0 || head + (page.rows.size() + 1) * 2 + page.used + row.size() > size_) {
    if (page.number != 0) Finish(page);
    page = {NewPage(), page.owner, {}, {}, 0};
    numbers.push_back(page.number);
  }
  page.rows.push_back(row);
  page.flags.push_back(flag);
  page.used += row.size();
  return page.number << 8U | static_cast<std::uint32_t>(page.rows.size() - 1);
}

void Database::Finish(const RowPage& page) {
  if (page.number == 0) return;
  std::string bytes = std::string("\1\1\0\0", 4) + page.owner + (writer_.IsOld() ? "" : std::string(4, '\0')) +
                      Bytes<2>(page.rows.size());
  std::string content;
  std::size_t at = size_;
  for (std::size_t i = 0; i < page.rows.size(); ++i) {
    at -= page.rows[i].size();
    bytes += Bytes<2>(at | page.flags[i]);
    content.insert(0, page.rows[i]);
  }
  bytes.resize(size_ - content.size(), '\0');
  pages_[page.number] = bytes + content;
}

std::string Database::TextBytes(const std::u16string& text) const {
  const bool narrow = std::all_of(text.begin(), text.end(), [](char16_t c) { return c != 0 && c < 256; });
  if (!writer_.IsOld() && !narrow) return Utf16Bytes(text);
  std::string bytes = writer_.IsOld() ? "" : "\xFF\xFE";
  for (const char16_t c : text) bytes += static_cast<char>(c);
  return bytes;
}

std::string Database::LongValue(const std::string& bytes) {
  const auto head = [](std::size_t length, std::uint32_t kind, std::uint32_t pointer) {
    return Bytes<4>(length | kind) + Bytes<4>(pointer) + Bytes<4>(0);
  };
  if (bytes.size() <= kShort) return head(bytes.size(), 0x80000000, 0) + bytes;
  RowPage page{0, "LVAL", {}, {}, 0};
  std::vector<std::uint32_t> numbers;
  std::uint32_t pointer = 0;
  if (bytes.size() <= kPiece) {
    pointer = AddRow(page, numbers, bytes, 0);
    Finish(page);
    return head(bytes.size(), 0x40000000, pointer);
  }
  // From the last piece to the first: each names the next.
  for (std::size_t at = (bytes.size() - 1) / kPiece * kPiece;; at -= kPiece) {
    const bool loop = writer_.loops && at == kPiece;
    const std::uint32_t next = loop ? (static_cast<std::uint32_t>(pages_.size()) << 8U) : pointer;
    page = {0, "LVAL", {}, {}, 0};
    pointer = AddRow(page, numbers, Bytes<4>(next) + bytes.substr(at, kPiece), 0);
    Finish(page);
    if (at == 0) break;
  }
  return head(bytes.size(), 0, pointer);
}

std::string Database::Variable(const WrittenColumn& column, const AccessCell& cell) {
  std::string bytes;
  if (const auto* text = std::get_if<std::u16string>(&cell)) bytes = TextBytes(*text);
  if (const auto* raw = std::get_if<AccessBytes>(&cell)) bytes = raw->bytes;
  return column.type == 10 ? bytes : LongValue(bytes);
}

std::string Database::RowOld(std::size_t columns, const std::string& fixed, const std::vector<std::string>& variable,
                             const std::string& mask) const {
  std::string row = Bytes<1>(columns) + fixed;
  std::vector<std::size_t> offsets;
  for (const std::string& value : variable) {
    offsets.push_back(row.size());
    row += value;
  }
  offsets.push_back(row.size());
  // How many jumps there are depends on the row's length with them.
  const std::size_t rest = offsets.size() + 1 + mask.size();
  std::size_t jumps = (row.size() + rest - 1) / 256;
  jumps = (row.size() + rest + jumps - 1) / 256;
  std::string table;
  for (const std::size_t offset : offsets) table.insert(0, Bytes<1>(offset % 256));
  std::string list;
  for (std::size_t jump = 1; jump <= jumps; ++jump) {
    const auto first = std::find_if(offsets.begin(), offsets.end(), [=](std::size_t o) { return o >= jump * 256; });
    list.insert(0, Bytes<1>(first == offsets.end() ? 0xFF : static_cast<std::uint64_t>(first - offsets.begin())));
  }
  return row + table + list + Bytes<1>(variable.size()) + mask;
}

std::string Database::Row(const WrittenTable& table, const std::vector<AccessCell>& cells) {
  std::string mask((table.columns.size() + 7) / 8, '\0');
  std::string fixed;
  std::vector<std::string> variable;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const bool missing = std::holds_alternative<std::monostate>(cells[i]);
    if (!missing) mask[i / 8] = static_cast<char>(mask[i / 8] | 1 << i % 8);
    const std::size_t width = WidthOf(table.columns[i]);
    if (const auto* raw = std::get_if<AccessBytes>(&cells[i]); raw != nullptr && width > 0) {
      fixed += raw->bytes;
      fixed.resize(fixed.size() + width - raw->bytes.size());
    } else if (width > 0) {
      fixed += Number(missing ? 0 : static_cast<std::uint64_t>(std::get<std::int64_t>(cells[i])), width);
    } else {
      variable.push_back(missing ? std::string() : Variable(table.columns[i], cells[i]));
    }
  }
  if (writer_.IsOld()) return RowOld(table.columns.size(), fixed, variable, mask);
  std::string row = Bytes<2>(table.columns.size()) + fixed;
  std::string offsets;
  for (const std::string& value : variable) {
    offsets.insert(0, Bytes<2>(row.size()));
    row += value;
  }
  offsets.insert(0, Bytes<2>(row.size()));
  return row + offsets + Bytes<2>(variable.size()) + mask;
}

std::uint32_t Database::Map(const std::vector<std::uint32_t>& numbers) {
  std::string bits((pages_.size() + 16) / 8 + 1, '\0');
  for (const std::uint32_t number : numbers) bits[number / 8] = static_cast<char>(bits[number / 8] | 1 << number % 8);
  std::string row = std::string(1, '\0') + Bytes<4>(0) + bits;
  if (writer_.longMaps) {
    const std::uint32_t page = NewPage();
    pages_[page].replace(0, 4, std::string("\5\1\0\0", 4));
    pages_[page].replace(4, bits.size(), bits);
    row = '\1' + Bytes<4>(page);
  }
  RowPage page{0, Bytes<4>(0), {}, {}, 0};
  std::vector<std::uint32_t> ignored;
  const std::uint32_t pointer = AddRow(page, ignored, row, 0);
  Finish(page);
  return writer_.noMaps ? 0xFFFF00 : pointer;
}

std::string Database::Definition(const WrittenTable& table, std::uint32_t map) const {
  std::string definition(writer_.IsOld() ? 43 : 63, '\0');
  definition.replace(0, 2, "\2\1");
  definition.replace(writer_.IsOld() ? 12 : 16, 4, Bytes<4>(table.rows.size()));
  definition.replace(writer_.IsOld() ? 25 : 45, 2, Bytes<2>(table.columns.size()));
  // One index, of which nothing is read.
  definition.replace(writer_.IsOld() ? 31 : 51, 4, Bytes<4>(1));
  definition.replace(writer_.IsOld() ? 35 : 55, 4, Bytes<4>(map));
  definition += std::string(writer_.IsOld() ? 8 : 12, 'i');
  unsigned fixed = 0;
  unsigned variable = 0;
  std::string names;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const auto& [name, type, given] = table.columns[i];
    const auto width = static_cast<unsigned>(WidthOf(table.columns[i]));
    const std::string number = Bytes<2>(i);
    const std::string place = Bytes<2>(width == 0 ? variable++ : 0U);
    const std::string offset = Bytes<2>(fixed);
    fixed += width;
    definition += Bytes<1>(type) + (writer_.IsOld() ? "" : std::string(4, 'u')) + number + place + number +
                  std::string(writer_.IsOld() ? 6 : 4, '\0') + Bytes<1>(width > 0 ? 3U : 2U) +
                  (writer_.IsOld() ? "" : std::string(5, '\0')) + offset + Bytes<2>(width > 0 ? width : 255U);
    const std::string text = writer_.IsOld() ? name : Utf16Bytes(Wide(name));
    names += (writer_.IsOld() ? Bytes<1>(text.size()) : Bytes<2>(text.size())) + text;
  }
  definition += names;
  definition.replace(8, 4, Bytes<4>(definition.size() - 8));
  return definition;
}

void Database::WriteTable(const WrittenTable& table, std::uint32_t definition) {
  RowPage page{0, Bytes<4>(definition), {}, {}, 0};
  RowPage elsewhere = page;
  std::vector<std::uint32_t> numbers;
  std::size_t count = 0;
  for (const std::vector<AccessCell>& cells : table.rows) {
    const std::string row = Row(table, cells);
    if (writer_.moved) AddRow(page, numbers, row, 0xC000);
    if (writer_.moved && count++ % 3 == 0) {
      AddRow(page, numbers, Bytes<4>(AddRow(elsewhere, numbers, row, 0x8000)), 0x4000);
    } else {
      AddRow(page, numbers, row, 0);
    }
  }
  Finish(page);
  Finish(elsewhere);
  std::string bytes = Definition(table, Map(numbers));
  // What does not fit goes on in further pages after their heads.
  std::uint32_t at = definition;
  while (bytes.size() > size_) {
    const std::uint32_t next = NewPage();
    bytes.replace(4, 4, Bytes<4>(next));
    pages_[at] = bytes.substr(0, size_);
    bytes = std::string("\2\1", 2) + std::string(6, '\0') + bytes.substr(size_);
    at = next;
  }
  bytes.resize(size_, '\0');
  pages_[at] = bytes;
}

std::string Database::Write() {
  WrittenTable objects{
      "MSysObjects",
      {{"Id", 4}, {"ParentId", 4}, {"Name", 10}, {"Type", 3}, {"Connect", 12}, {"Database", 12}, {"ForeignName", 10}},
      {}};
  const auto cell = [](const std::u16string& text) { return text.empty() ? AccessCell() : AccessCell(text); };
  for (const WrittenTable& table : writer_.tables) {
    const std::uint32_t definition = NewPage();
    objects.rows.push_back({std::int64_t{definition}, std::int64_t{1}, Wide(table.name), std::int64_t{1}, {}, {}, {}});
    WriteTable(table, definition);
  }
  for (const AccessWriter::Object& object : writer_.objects) {
    objects.rows.push_back({object.id, std::int64_t{1}, object.name, std::int64_t{object.type}, cell(object.connect),
                            cell(object.database), cell(object.foreignName)});
  }
  WriteTable(objects, 2);
  std::string file = Header();
  for (std::uint32_t page = 1; page < pages_.size(); ++page) {
    file += writer_.pageKey == 0 ? pages_[page] : Rc4Of(Bytes<4>(writer_.pageKey ^ page), pages_[page]);
  }
  return file;
}

/// By their paths, as CompoundWriter has them.
WrittenTable AccessStorageTable(const std::vector<std::pair<std::string, std::string>>& streams) {
  WrittenTable table{"MSysAccessStorage", {{"Id", 4}, {"Lv", 11}, {"Name", 10}, {"ParentId", 4}, {"Type", 4}}, {}};
  std::map<std::string, std::int64_t> ids{{"", 1}};
  const auto add = [&](const std::string& name, std::int64_t parent, std::int64_t type, AccessCell content) {
    const auto id = static_cast<std::int64_t>(table.rows.size() + 1);
    table.rows.push_back({id, std::move(content), Wide(name), parent, type});
    return id;
  };
  add("MSysAccessStorage_ROOT", 0, 1, {});
  // What a save has left over, with a project of its own.
  add("MSysAccessStorage_SCRATCH", 0, 1, {});
  add("VBA", 2, 1, {});
  for (const auto& [path, bytes] : streams) {
    std::int64_t parent = 1;
    std::size_t start = 0;
    for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', start)) {
      const auto [entry, isNew] = ids.try_emplace(path.substr(0, end), 0);
      if (isNew) entry->second = add(path.substr(start, end - start), parent, 1, {});
      parent = entry->second;
      start = end + 1;
    }
    add(path.substr(start), parent, 2, AccessBytes{bytes});
  }
  return table;
}

WrittenTable AccessObjectsTable(std::string_view compoundFile, std::size_t pieceSize, std::uint8_t type) {
  WrittenTable table{"MSysAccessObjects",
                     {{"Data", type, type == 17 ? pieceSize : 0}, {"ID", 4}},
                     {{AccessBytes{"head"}, std::int64_t{0}}}};
  for (std::size_t at = 0; at < compoundFile.size(); at += pieceSize) {
    const std::string piece(compoundFile.substr(at, pieceSize));
    const bool empty = piece.find_first_not_of('\0') == std::string::npos;
    if (!empty) table.rows.push_back({AccessBytes{piece}, static_cast<std::int64_t>(at / pieceSize + 1)});
  }
  return table;
}

}  // namespace

std::string AccessWriter::File() const { return Database(*this).Write(); }

WrittenTable AccessTableOf(const CompoundWriter& streams, AccessFormat format) {
  constexpr std::uint8_t kOle = 11;
  constexpr std::uint8_t kFixedBytes = 17;
  if (format == AccessFormat::k97) return AccessObjectsTable(streams.File(), 241, kOle);
  if (format == AccessFormat::k2000) return AccessObjectsTable(streams.File(), 3992, kFixedBytes);
  return AccessStorageTable(streams.streams);
}

AccessWriter AccessWith(const WrittenProject& project, AccessFormat format) {
  AccessWriter writer;
  writer.format = format;
  CompoundWriter streams;
  project.AddTo(streams, "VBA/VBAProject/");
  writer.tables.push_back(AccessTableOf(streams, format));
  return writer;
}

}  // namespace quillmate::office
