#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>
#include <utility>

#include "encryption_p.h"
#include "excel_facts_p.h"
#include "excel_records_p.h"
#include "package_facts_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

/// Ids, 2.3.
enum RecordId : std::uint16_t {
  kFormula = 0x0006,
  kEof = 0x000A,
  kExternSheet = 0x0017,
  kLbl = 0x0018,
  kFilePass = 0x002F,
  kContinue = 0x003C,
  kObj = 0x005D,
  kBoundSheet = 0x0085,
  kDrawing = 0x00EC,
  kSupBook = 0x01AE,
  kTxO = 0x01B6,
  kCodeName = 0x01BA,
  kArray = 0x0221,
  kSharedFormula = 0x04BC,
  kBof = 0x0809
};

constexpr std::uint16_t kBiff8 = 0x0600;
constexpr std::uint16_t kOwnBook = 0x0401;

/// The name of the last shape in a piece of a sheet's drawing [MS-ODRAW]: records of a head (flags and instance, type,
/// length) whose containers (flags 15) are stepped into. Empty where it has the name that every such shape has.
std::string ShapeName(std::string_view drawing) {
  constexpr std::size_t kHead = 8, kEntry = 6;
  constexpr unsigned kContainer = 15, kProperties = 0xF00B, kComplex = 0x8000, kNumber = 0x3FFF, kShapeName = 0x380;
  std::string name;
  for (std::size_t at = 0; at + kHead <= drawing.size();) {
    const unsigned flags = LittleEndian<std::uint16_t>(drawing, at);
    const unsigned type = LittleEndian<std::uint16_t>(drawing, at + 2);
    const std::size_t length = LittleEndian<std::uint32_t>(drawing, at + 4);
    at += kHead;
    if ((flags & 15U) == kContainer) continue;
    const std::string_view data = drawing.substr(at, length);
    const std::size_t count = flags >> 4U;
    // Long values follow all entries, in their order.
    std::size_t value = count * kEntry;
    for (std::size_t i = 0; type == kProperties && i < count && (i + 1) * kEntry <= data.size(); ++i) {
      const unsigned property = LittleEndian<std::uint16_t>(data, i * kEntry);
      if ((property & kComplex) == 0) continue;
      const std::size_t size = LittleEndian<std::uint32_t>(data, i * kEntry + 2);
      if (value > data.size() || size > data.size() - value) break;
      if ((property & kNumber) == kShapeName) name = Utf8FromUtf16Bytes(data.substr(value, size));
      value += size;
    }
    at += std::min(length, drawing.size() - at);
  }
  return name.substr(0, name.find('\0'));
}

/// Characters of one or two bytes after a flag.
std::string TextAt(std::string_view data, std::size_t flagAt, std::size_t count) {
  if (flagAt >= data.size()) return {};
  const std::string_view rest = data.substr(flagAt + 1);
  const bool wide = (static_cast<unsigned char>(data[flagAt]) & 1U) != 0;
  return wide ? Utf8FromUtf16Bytes(rest.substr(0, count * 2)) : Utf8FromLatin1(rest.substr(0, count));
}

class Records {
 public:
  explicit Records(ByteSource& source) : source_(source) {}

  struct Record {
    std::uint16_t id = 0;
    /// Of its head.
    std::uint64_t at = 0;
    std::string data;
  };

  bool Next(Record& record) {
    constexpr std::size_t kHead = 4;
    std::array<char, kHead> head;
    if (!Take(head.data(), kHead)) return false;
    const std::string_view bytes(head.data(), kHead);
    record.id = LittleEndian<std::uint16_t>(bytes, 0);
    record.at = at_ - kHead;
    record.data.resize(LittleEndian<std::uint16_t>(bytes, 2));
    if (!Take(record.data.data(), record.data.size())) return false;
    if (cipher_.has_value()) cipher_->Apply(record.id, record.at + kHead, record.data);
    return true;
  }
  void Decipher(WorkbookCipher cipher) { cipher_ = std::move(cipher); }

 private:
  bool Take(char* to, std::size_t count) {
    constexpr std::size_t kPiece = std::size_t{64} << 10U;
    std::size_t done = 0;
    while (done < count) {
      if (used_ == piece_.size()) {
        piece_ = ReadBytes(source_, at_ + done, kPiece);
        used_ = 0;
        if (piece_.empty()) return false;
      }
      const std::size_t got = std::min(count - done, piece_.size() - used_);
      std::copy_n(piece_.data() + used_, got, to + done);
      used_ += got;
      done += got;
    }
    at_ += count;
    return true;
  }

  ByteSource& source_;
  std::uint64_t at_ = 0;
  std::string piece_;
  std::size_t used_ = 0;
  std::optional<WorkbookCipher> cipher_;
};

class XlsReader {
 public:
  XlsReader(ByteSource& source, FactsCollector& collector) : records_(source), collector_(collector) {}

  void Read() {
    Records::Record record;
    if (!records_.Next(record) || record.id != kBof || LittleEndian<std::uint16_t>(record.data, 0) != kBiff8) {
      collector_.Notice("Blätter und Schaltflächen im Format von Excel 5.0 und 95 werden nicht durchsucht");
      return;
    }
    depth_ = 1;
    while (records_.Next(record)) {
      if (!Take(record)) return;
      before_ = record.id;
    }
    Finish();
  }

 private:
  struct Name {
    std::string text;
    bool isMacro = false;
  };
  /// A shape with a macro, whose text comes after it.
  struct Shape {
    std::string target;
    unsigned type = 0;
    std::string text;
    std::size_t textLeft = 0;
  };

  /// False when nothing more can be read.
  bool Take(const Records::Record& record) {
    const std::string_view data = record.data;
    switch (record.id) {
      case kBof:
        if (depth_++ == 0) BeginSheet(record.at);
        break;
      case kEof:
        if (depth_ > 0 && --depth_ == 0) EndSheet();
        break;
      case kFilePass:
        if (auto cipher = WorkbookCipher::Open(data)) {
          records_.Decipher(*std::move(cipher));
          collector_.Facts().defaultPassword = true;
          break;
        }
        collector_.Notice("Die Mappe ist verschlüsselt: Blätter und Schaltflächen sind nicht lesbar");
        return false;
      case kBoundSheet:
        TakeBoundSheet(data);
        break;
      case kCodeName:
        if (sheet_ != nullptr && depth_ == 1) {
          sheet_->codeName = TextAt(data, 2, LittleEndian<std::uint16_t>(data, 0));
        }
        break;
      case kSupBook:
        ownBooks_.push_back(LittleEndian<std::uint16_t>(data, 2) == kOwnBook);
        break;
      case kExternSheet:
        TakeExternSheet(data);
        break;
      case kLbl:
        TakeName(data);
        break;
      default:
        TakeOfSheet(record);
    }
    return true;
  }

  void TakeOfSheet(const Records::Record& record) {
    const std::string_view data = record.data;
    switch (record.id) {
      case kFormula:
        TakeFormula(data, LittleEndian<std::uint16_t>(data, 2), 20, 22);
        break;
      case kSharedFormula:
        TakeFormula(data, LittleEndian<std::uint8_t>(data, 4), 8, 10);
        break;
      case kArray:
        TakeFormula(data, LittleEndian<std::uint8_t>(data, 4), 12, 14);
        break;
      case kDrawing:
        drawing_ = data;
        break;
      case kObj:
        TakeObject(data);
        drawing_.clear();
        break;
      case kTxO:
        if (shape_.has_value()) shape_->textLeft = LittleEndian<std::uint16_t>(data, 10);
        break;
      case kContinue:
        // A drawing that is too long for its record goes on in those that follow.
        if (before_ == kDrawing || before_ == kObj) drawing_ = data;
        if (before_ == kTxO && shape_.has_value())
          shape_->text = TextAt(data, 0, std::min<std::size_t>(shape_->textLeft, 1000));
        break;
      default:
        break;
    }
  }

  // The book ---------------------------------------------------------------------------------------------------------

  void TakeBoundSheet(std::string_view data) {
    if (sheets_.size() >= kMostFacts) return;
    constexpr std::array kKinds{std::pair{0, Sheet::Kind::kWorksheet}, std::pair{1, Sheet::Kind::kMacro},
                                std::pair{2, Sheet::Kind::kChart}};
    constexpr std::array kStates{Sheet::Visibility::kVisible, Sheet::Visibility::kHidden,
                                 Sheet::Visibility::kVeryHidden, Sheet::Visibility::kVeryHidden};
    const int type = LittleEndian<std::uint8_t>(data, 5);
    const auto* kind =
        std::find_if(kKinds.begin(), kKinds.end(), [=](const auto& entry) { return entry.first == type; });
    Sheet sheet;
    sheet.name = TextAt(data, 7, LittleEndian<std::uint8_t>(data, 6));
    sheet.visibility = kStates[LittleEndian<std::uint8_t>(data, 4) & 3U];
    if (kind == kKinds.end()) return;
    sheet.kind = kind->second;
    sheetAt_.try_emplace(LittleEndian<std::uint32_t>(data, 0), sheets_.size());
    sheets_.push_back(std::move(sheet));
    formulas_.push_back(0);
  }
  void TakeExternSheet(std::string_view data) {
    const std::size_t count = LittleEndian<std::uint16_t>(data, 0);
    for (std::size_t i = 0; i < count && 2 + (i + 1) * 6 <= data.size(); ++i) {
      externSheets_.push_back(LittleEndian<std::uint16_t>(data, 2 + i * 6));
      firstSheets_.push_back(LittleEndian<std::uint16_t>(data, 4 + i * 6));
    }
  }
  void TakeName(std::string_view data) {
    constexpr unsigned kMacro = 8;
    constexpr unsigned kBuiltIn = 0x20;
    constexpr std::size_t kFlagAt = 14;
    if (names_.size() >= kMostFacts) return;
    const unsigned flags = LittleEndian<std::uint16_t>(data, 0);
    Name name{TextAt(data, kFlagAt, LittleEndian<std::uint8_t>(data, 3)), (flags & kMacro) != 0};
    if ((flags & kBuiltIn) != 0) {
      name.isMacro = false;
      if (name.text == "\1") TakeEntry(data);
    }
    if (name.isMacro && !name.text.starts_with("_xl")) {
      collector_.Count(Binding::Kind::kName, name.text, "Definierter Name '" + name.text + "'");
    }
    names_.push_back(std::move(name));
  }

  /// Auto_Open of a macro sheet: one token with a sheet and a cell.
  void TakeEntry(std::string_view data) {
    constexpr std::size_t kTextAt = 15;
    constexpr unsigned kCell = 0x1A, kCellOfSheet = 0x3A;
    const bool wide = (LittleEndian<std::uint8_t>(data, kTextAt - 1) & 1U) != 0;
    const std::size_t at = kTextAt + (wide ? 2 : 1);
    const unsigned id = LittleEndian<std::uint8_t>(data, at);
    if (at + 7 > data.size() || (id & 0x1FU) != kCell || (id < kCellOfSheet)) return;
    entry_.emplace(LittleEndian<std::uint16_t>(data, at + 1),
                   CellName(LittleEndian<std::uint16_t>(data, at + 3), LittleEndian<std::uint8_t>(data, at + 5)));
  }

  // Sheets -----------------------------------------------------------------------------------------------------------

  void BeginSheet(std::uint64_t at) {
    const auto found = sheetAt_.find(at);
    sheet_ = found == sheetAt_.end() ? nullptr : &sheets_[found->second];
  }
  void EndSheet() {
    FlushShape();
    // The sheet's name in code follows its objects.
    for (std::string& name : controls_) {
      if (sheet_ == nullptr || name.empty()) continue;
      Control control;
      control.module = sheet_->codeName;
      control.name = std::move(name);
      control.type = "unbekannt";
      collector_.AddControl(std::move(control));
    }
    controls_.clear();
    sheet_ = nullptr;
  }
  std::string_view SheetName() const noexcept { return sheet_ == nullptr ? std::string_view() : sheet_->name; }

  /// The macro that a token names; empty for anything else and for other books'.
  std::string MacroOf(const NameToken& token) const {
    if (token.isOfBook) {
      const bool known = token.book < externSheets_.size() && externSheets_[token.book] < ownBooks_.size();
      if (!known || !ownBooks_[externSheets_[token.book]]) return {};
    }
    if (token.index == 0 || token.index > names_.size()) return {};
    const Name& name = names_[token.index - 1];
    return name.isMacro && !name.text.starts_with("_xl") ? name.text : std::string();
  }

  void TakeFormula(std::string_view data, std::uint32_t column, std::size_t countAt, std::size_t tokensAt) {
    if (sheet_ != nullptr) ++formulas_[static_cast<std::size_t>(sheet_ - sheets_.data())];
    if (tokensAt > data.size()) return;
    const std::string_view tokens = data.substr(tokensAt, LittleEndian<std::uint16_t>(data, countAt));
    ForEachName(tokens, TokenFormat::kBiff8, [&](const NameToken& token) {
      const std::string macro = MacroOf(token);
      if (macro.empty()) return;
      const std::string cell = CellName(LittleEndian<std::uint16_t>(data, 0), column);
      collector_.Count(Binding::Kind::kFormula, macro, PlaceOnSheet("Formel in " + cell, "", SheetName()));
    });
  }

  void TakeObject(std::string_view data) {
    enum Part : std::uint16_t { kEnd = 0, kMacro = 4, kPicture = 8, kList = 0x13, kCommon = 0x15 };
    constexpr unsigned kIsControl = 0x10;
    constexpr std::size_t kTokensAt = 6;
    FlushShape();
    Shape shape;
    for (std::size_t at = 0; at + 4 <= data.size();) {
      const auto part = LittleEndian<std::uint16_t>(data, at);
      const std::size_t size = LittleEndian<std::uint16_t>(data, at + 2);
      const std::string_view content = data.substr(at + 4, size);
      if (part == kCommon) shape.type = LittleEndian<std::uint16_t>(content, 0);
      const bool control = part == kPicture && (LittleEndian<std::uint16_t>(content, 0) & kIsControl) != 0;
      if (control && controls_.size() < kMostFacts) controls_.push_back(ShapeName(drawing_));
      if (part == kMacro && content.size() > kTokensAt) {
        const std::size_t count = LittleEndian<std::uint16_t>(content, 0) & 0x7FFFU;
        ForEachName(content.substr(kTokensAt, count), TokenFormat::kBiff8,
                    [&](const NameToken& token) { shape.target = MacroOf(token); });
      }
      if (part == kEnd || part == kList) break;
      at += 4 + size;
    }
    if (!shape.target.empty()) shape_ = std::move(shape);
  }
  void FlushShape() {
    if (!shape_.has_value()) return;
    collector_.Add(Binding::Kind::kObject, std::move(shape_->target),
                   PlaceOnSheet(FormControlWord(shape_->type), OneLineText(shape_->text), SheetName()));
    shape_.reset();
  }

  void Finish() {
    FlushShape();
    DocumentFacts& facts = collector_.Facts();
    facts.controlsKnown = depth_ == 0;
    const std::size_t entry =
        entry_ && entry_->first < firstSheets_.size() ? firstSheets_[entry_->first] : sheets_.size();
    for (std::size_t i = 0; i < sheets_.size(); ++i) {
      if (sheets_[i].kind == Sheet::Kind::kMacro) {
        facts.excel4.push_back(
            {sheets_[i].name, sheets_[i].visibility, i == entry ? entry_->second : "", formulas_[i], {}});
      }
      facts.sheets.push_back(std::move(sheets_[i]));
    }
  }

  Records records_;
  FactsCollector& collector_;
  int depth_ = 0;
  std::uint16_t before_ = 0;
  std::vector<Sheet> sheets_;
  /// By the place of their BOF in the stream.
  std::unordered_map<std::uint64_t, std::size_t> sheetAt_;
  std::vector<std::uint64_t> formulas_;
  Sheet* sheet_ = nullptr;
  /// Of the table of other books: whether it is this one.
  std::vector<bool> ownBooks_;
  /// Of the table of external sheets: the book.
  std::vector<std::uint16_t> externSheets_;
  std::vector<std::uint16_t> firstSheets_;
  std::vector<Name> names_;
  std::optional<Shape> shape_;
  /// The piece of the drawing that belongs to the next object, and the names of the sheet's ActiveX controls.
  std::string drawing_;
  std::vector<std::string> controls_;
  /// Where Auto_Open leads: sheet among the external ones, then the cell.
  std::optional<std::pair<std::size_t, std::string>> entry_;
};

}  // namespace

bool HoldsMacroSheet(ByteSource& workbook) {
  constexpr std::size_t kTypeAt = 5;
  Records records(workbook);
  for (Records::Record record; records.Next(record) && record.id != kEof;) {
    if (record.id == kFilePass) {
      std::optional<WorkbookCipher> cipher = WorkbookCipher::Open(record.data);
      if (!cipher.has_value()) return false;
      records.Decipher(*std::move(cipher));
    }
    if (record.id == kBoundSheet && LittleEndian<std::uint8_t>(record.data, kTypeAt) == 1) return true;
  }
  return false;
}

bool IsClosedWorkbook(std::string_view start) {
  MemorySource source(start);
  Records records(source);
  for (Records::Record record; records.Next(record) && record.id != kEof && record.id != kBoundSheet;) {
    if (record.id == kFilePass) return !WorkbookCipher::Open(record.data).has_value();
  }
  return false;
}

void ReadXlsFacts(ByteSource& workbook, FactsCollector& collector) { XlsReader(workbook, collector).Read(); }

}  // namespace quillmate::office
