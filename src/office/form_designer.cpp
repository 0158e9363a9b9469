#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/office/byte_source.h>
#include <quillmate/text/lines.h>
#include <quillmate/text/operations.h>

#include "form_designer_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

constexpr std::uint64_t kLargestStream = std::uint64_t{64} << 20U;
constexpr std::uint64_t kLargestFrame = std::uint64_t{64} << 10U;
constexpr int kDeepest = 16;
constexpr double kTwipsPerPoint = 20;
constexpr double kPointsPerUnit = 72.0 / 2540;

// Blocks -------------------------------------------------------------------------------------------------------------

struct Field {
  unsigned bit;
  std::size_t bytes;
};
struct Extra {
  unsigned bit;
  bool isText;
};
struct BlockLayout {
  std::size_t maskBytes;
  std::span<const Field> fields;
  std::span<const Extra> extras;
};

constexpr std::array kFormFields{Field{1, 4},  Field{2, 4},  Field{3, 4},  Field{6, 4},  Field{7, 1},
                                 Field{8, 1},  Field{9, 1},  Field{13, 4}, Field{15, 2}, Field{16, 1},
                                 Field{17, 1}, Field{18, 4}, Field{19, 4}, Field{20, 2}, Field{21, 2},
                                 Field{22, 4}, Field{23, 1}, Field{25, 1}, Field{26, 4}, Field{27, 4}};
constexpr std::array kFormExtras{Extra{10, false}, Extra{11, false}, Extra{12, false}, Extra{19, true}};
constexpr BlockLayout kForm{4, kFormFields, kFormExtras};

constexpr std::array kSiteFields{Field{0, 4},  Field{1, 4},  Field{2, 4}, Field{3, 4}, Field{4, 4},
                                 Field{5, 4},  Field{6, 2},  Field{7, 2}, Field{9, 2}, Field{11, 4},
                                 Field{12, 4}, Field{13, 4}, Field{14, 4}};
constexpr std::array kSiteExtras{Extra{0, true},  Extra{1, true},  Extra{8, false}, Extra{11, true},
                                 Extra{12, true}, Extra{13, true}, Extra{14, true}};
constexpr BlockLayout kSite{4, kSiteFields, kSiteExtras};

constexpr std::array kButtonFields{Field{0, 4}, Field{1, 4}, Field{2, 4}, Field{3, 4}, Field{4, 4},
                                   Field{6, 1}, Field{7, 2}, Field{8, 2}, Field{10, 2}};
constexpr std::array kLabelFields{Field{0, 4}, Field{1, 4}, Field{2, 4}, Field{3, 4},  Field{4, 4},  Field{6, 1},
                                  Field{7, 4}, Field{8, 2}, Field{9, 2}, Field{10, 2}, Field{11, 2}, Field{12, 2}};
constexpr std::array kCaptionedExtras{Extra{3, true}, Extra{5, false}};
constexpr BlockLayout kButton{4, kButtonFields, kCaptionedExtras};
constexpr BlockLayout kLabel{4, kLabelFields, kCaptionedExtras};

constexpr std::array kMorphFields{Field{0, 4},  Field{1, 4},  Field{2, 4},  Field{3, 4},  Field{4, 1},  Field{5, 1},
                                  Field{6, 1},  Field{7, 1},  Field{9, 2},  Field{10, 4}, Field{11, 2}, Field{12, 2},
                                  Field{13, 2}, Field{14, 2}, Field{15, 2}, Field{16, 1}, Field{17, 1}, Field{18, 1},
                                  Field{20, 1}, Field{21, 1}, Field{22, 4}, Field{23, 4}, Field{24, 4}, Field{25, 4},
                                  Field{26, 4}, Field{27, 2}, Field{28, 2}, Field{29, 2}, Field{32, 4}};
constexpr std::array kMorphExtras{Extra{8, false}, Extra{22, true}, Extra{23, true}, Extra{32, true}};
constexpr BlockLayout kMorph{8, kMorphFields, kMorphExtras};

constexpr std::array kImageFields{Field{3, 4}, Field{4, 4},  Field{5, 1},  Field{6, 1},  Field{7, 1},
                                  Field{8, 1}, Field{10, 2}, Field{11, 1}, Field{13, 4}, Field{14, 2}};
constexpr std::array kImageExtras{Extra{9, false}};
constexpr BlockLayout kImage{4, kImageFields, kImageExtras};

constexpr std::array kSpinFields{Field{0, 4},  Field{1, 4},  Field{2, 4}, Field{5, 4},  Field{6, 4},
                                 Field{7, 4},  Field{8, 4},  Field{9, 4}, Field{10, 4}, Field{11, 4},
                                 Field{12, 4}, Field{13, 2}, Field{14, 1}};
constexpr std::array kSpinExtras{Extra{3, false}};
constexpr BlockLayout kSpin{4, kSpinFields, kSpinExtras};

/// A block taken apart.
class Block {
 public:
  /// From the first byte of `bytes` on; nothing when it does not fit in.
  static std::optional<Block> Read(std::string_view bytes, const BlockLayout& layout) {
    Block block;
    const std::size_t size = kHead + LittleEndian<std::uint16_t>(bytes, 2);
    if (size < kHead + layout.maskBytes || size > bytes.size()) return std::nullopt;
    block.bytes_ = bytes.substr(0, size);
    block.mask_ =
        layout.maskBytes == 8 ? LittleEndian<std::uint64_t>(bytes, kHead) : LittleEndian<std::uint32_t>(bytes, kHead);
    block.at_ = kHead + layout.maskBytes;
    for (const Field& field : layout.fields) block.TakeField(field);
    for (const Extra& extra : layout.extras) block.TakeExtra(extra);
    if (block.broken_) return std::nullopt;
    return block;
  }

  bool Has(unsigned bit) const noexcept { return (mask_ >> bit & 1U) != 0; }
  std::uint32_t Number(unsigned bit, std::uint32_t missing) const { return Has(bit) ? numbers_[bit] : missing; }
  std::string Text(unsigned bit) const {
    const auto found = texts_.find(bit);
    return found == texts_.end() ? std::string() : found->second;
  }
  std::optional<std::pair<std::int32_t, std::int32_t>> Point(unsigned bit) const {
    const auto found = points_.find(bit);
    return found == points_.end() ? std::nullopt : std::optional(found->second);
  }
  /// What the block takes of the bytes.
  std::size_t Size() const noexcept { return bytes_.size(); }

 private:
  static constexpr std::size_t kHead = 4;

  /// The next bytes, aligned; moves past them.
  std::size_t Take(std::size_t count, std::size_t alignment) {
    const std::size_t start = (at_ + alignment - 1) / alignment * alignment;
    if (start > bytes_.size() || bytes_.size() - start < count) broken_ = true;
    at_ = start + count;
    return start;
  }
  void TakeField(const Field& field) {
    if (!Has(field.bit) || broken_) return;
    const std::size_t at = Take(field.bytes, field.bytes);
    numbers_[field.bit] = field.bytes == 1   ? LittleEndian<std::uint8_t>(bytes_, at)
                          : field.bytes == 2 ? LittleEndian<std::uint16_t>(bytes_, at)
                                             : LittleEndian<std::uint32_t>(bytes_, at);
  }
  void TakeExtra(const Extra& extra) {
    if (!Has(extra.bit) || broken_) return;
    if (!extra.isText) {
      const std::size_t at = Take(8, 4);
      points_[extra.bit] = {static_cast<std::int32_t>(LittleEndian<std::uint32_t>(bytes_, at)),
                            static_cast<std::int32_t>(LittleEndian<std::uint32_t>(bytes_, at + 4))};
      return;
    }
    // One byte for each character, or UTF-16.
    constexpr std::uint32_t kNarrow = 0x80000000;
    const std::uint32_t count = numbers_[extra.bit];
    const std::size_t size = count & ~kNarrow;
    const std::size_t at = Take(size, 4);
    if (broken_) return;
    const std::string_view text = bytes_.substr(at, size);
    texts_[extra.bit] = (count & kNarrow) != 0 ? Utf8FromLatin1(text) : Utf8FromUtf16Bytes(text);
  }

  std::string_view bytes_;
  std::uint64_t mask_ = 0;
  std::size_t at_ = 0;
  bool broken_ = false;
  std::array<std::uint32_t, 64> numbers_{};
  std::map<unsigned, std::string> texts_;
  std::map<unsigned, std::pair<std::int32_t, std::int32_t>> points_;
};

// Bits of the form and of a site.
enum FormBit : unsigned {
  kFormFlags = 6,
  kDisplayedSize = 10,
  kIcon = 15,
  kFormCaption = 19,
  kFont = 20,
  kPicture = 21
};
enum SiteBit : unsigned {
  kName = 0,
  kId = 2,
  kSiteBits = 4,
  kObjectSize = 5,
  kTabIndex = 6,
  kClass = 7,
  kPosition = 8
};
constexpr std::uint32_t kDefaultFormFlags = 4;
constexpr std::uint32_t kNoClassTable = 0x8000;
constexpr std::uint32_t kDefaultSiteBits = 0x33;
constexpr std::uint32_t kInObjectStream = 0x10;
constexpr std::uint32_t kDefaultClass = 0x7FFF;
constexpr std::uint32_t kForeignClass = 0x8000;

// Classes ------------------------------------------------------------------------------------------------------------

struct ControlClass {
  std::uint32_t number;
  std::string_view name;
  /// Nothing for those of which nothing is read from the stream o.
  const BlockLayout* layout;
  unsigned captionBit;
  unsigned sizeBit;
};
constexpr unsigned kNoBit = 63;
constexpr std::uint32_t kTabStrip = 18;
constexpr std::uint32_t kMultiPage = 57;
constexpr std::array kClasses{ControlClass{7, "Page", nullptr, 0, 0},
                              ControlClass{12, "Image", &kImage, kNoBit, 9},
                              ControlClass{14, "Frame", nullptr, 0, 0},
                              ControlClass{15, "MorphData", &kMorph, 23, 8},
                              ControlClass{16, "SpinButton", &kSpin, kNoBit, 3},
                              ControlClass{17, "CommandButton", &kButton, 3, 5},
                              ControlClass{kTabStrip, "TabStrip", nullptr, 0, 0},
                              ControlClass{21, "Label", &kLabel, 3, 5},
                              ControlClass{23, "TextBox", &kMorph, 23, 8},
                              ControlClass{24, "ListBox", &kMorph, 23, 8},
                              ControlClass{25, "ComboBox", &kMorph, 23, 8},
                              ControlClass{26, "CheckBox", &kMorph, 23, 8},
                              ControlClass{27, "OptionButton", &kMorph, 23, 8},
                              ControlClass{28, "ToggleButton", &kMorph, 23, 8},
                              ControlClass{47, "ScrollBar", nullptr, 0, 0},
                              ControlClass{kMultiPage, "MultiPage", nullptr, 0, 0}};

/// Foreign classes that forms often hold, by their default interface: the part that differs, and the common end.
struct ForeignClass {
  std::uint32_t start;
  std::string_view name;
};
constexpr std::array kForeignClasses{ForeignClass{0xC74190B4, "TreeView"}, ForeignClass{0xBDD1F049, "ListView"}};
constexpr std::string_view kForeignEnd("\xB1\x6A\0\xC0\xF0\x28\x36\x28", 8);

/// An entry of the class table: the name, empty when it is not known.
std::string_view ForeignName(std::string_view entry) noexcept {
  constexpr std::uint32_t kWithInterfaces = 0xB;
  constexpr std::size_t kGuid = 16;
  const bool usable =
      entry.size() >= 3 * kGuid && (LittleEndian<std::uint32_t>(entry, 0) & kWithInterfaces) == kWithInterfaces;
  if (!usable || !entry.ends_with(kForeignEnd)) return {};
  const auto start = LittleEndian<std::uint32_t>(entry, entry.size() - kGuid);
  const auto* found = std::find_if(kForeignClasses.begin(), kForeignClasses.end(),
                                   [=](const ForeignClass& known) { return known.start == start; });
  return found == kForeignClasses.end() ? std::string_view() : found->name;
}

// The stream f -------------------------------------------------------------------------------------------------------

/// Goes through the stream from thing to thing.
class FormStream {
 public:
  explicit FormStream(std::string_view bytes) noexcept : rest_(bytes) {}

  bool Read() {
    const std::optional<Block> block = Block::Read(rest_, kForm);
    if (!block.has_value()) return false;
    caption_ = block->Text(kFormCaption);
    size_ = block->Point(kDisplayedSize);
    rest_.remove_prefix(block->Size());
    if (block->Has(kIcon) && !SkipPicture()) return false;
    if (block->Has(kFont) && !SkipFont()) return false;
    if (block->Has(kPicture) && !SkipPicture()) return false;
    const bool hasClasses = (block->Number(kFormFlags, kDefaultFormFlags) & kNoClassTable) == 0;
    return (!hasClasses || ReadClasses()) && ReadSites();
  }

  const std::string& Caption() const noexcept { return caption_; }
  const std::optional<std::pair<std::int32_t, std::int32_t>>& Size() const noexcept { return size_; }
  const std::vector<Block>& Sites() const noexcept { return sites_; }
  const std::vector<std::string_view>& Classes() const noexcept { return classes_; }

 private:
  static constexpr std::size_t kGuid = 16;

  bool Skip(std::size_t count) noexcept {
    if (count > rest_.size()) return false;
    rest_.remove_prefix(count);
    return true;
  }
  bool SkipPicture() noexcept {
    constexpr std::size_t kSizeAt = kGuid + 4;
    return rest_.size() >= kSizeAt + 4 && Skip(kSizeAt + 4 + std::size_t{LittleEndian<std::uint32_t>(rest_, kSizeAt)});
  }
  bool SkipFont() noexcept {
    constexpr std::string_view kStandard = "\x03\x52\xE3\x0B";
    constexpr std::size_t kNameSizeAt = kGuid + 10;
    constexpr std::size_t kPropertiesSizeAt = kGuid + 2;
    if (rest_.starts_with(kStandard)) {
      return rest_.size() > kNameSizeAt && Skip(kNameSizeAt + 1 + LittleEndian<std::uint8_t>(rest_, kNameSizeAt));
    }
    return rest_.size() >= kPropertiesSizeAt + 2 &&
           Skip(kPropertiesSizeAt + 2 + LittleEndian<std::uint16_t>(rest_, kPropertiesSizeAt));
  }
  bool ReadClasses() {
    const std::size_t count = LittleEndian<std::uint16_t>(rest_, 0);
    if (!Skip(2)) return false;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t size = LittleEndian<std::uint16_t>(rest_, 2);
      if (!Skip(4)) return false;
      classes_.push_back(rest_.substr(0, size));
      if (!Skip(size)) return false;
    }
    return true;
  }
  bool ReadSites() {
    const std::size_t count = LittleEndian<std::uint32_t>(rest_, 0);
    // A block has 8 bytes at least.
    if (!Skip(8) || count > rest_.size() / 8) return false;
    std::size_t at = 0;
    for (std::size_t named = 0; named < count;) {
      const unsigned type = LittleEndian<std::uint8_t>(rest_, at + 1);
      const bool several = (type & 0x80U) != 0;
      named += several ? type & 0x7FU : 1;
      at += several ? 3 : 2;
      if (at > rest_.size()) return false;
    }
    if (!Skip((at + 3) / 4 * 4)) return false;
    for (std::size_t i = 0; i < count; ++i) {
      std::optional<Block> site = Block::Read(rest_, kSite);
      if (!site.has_value()) return false;
      rest_.remove_prefix(site->Size());
      sites_.push_back(*std::move(site));
    }
    return true;
  }

  std::string_view rest_;
  std::string caption_;
  std::optional<std::pair<std::int32_t, std::int32_t>> size_;
  std::vector<Block> sites_;
  std::vector<std::string_view> classes_;
};

// Forms --------------------------------------------------------------------------------------------------------------

class FormReader {
 public:
  FormReader(const Storage& storage, std::string module, DocumentFacts& facts)
      : storage_(storage), module_(std::move(module)), facts_(facts) {}

  void Read(Storage::Id form) {
    open_.push_back({form, "", 0, kNoControl});
    while (!open_.empty()) {
      const Level level = std::move(open_.back());
      open_.pop_back();
      // A storage belongs to one control.
      if (!met_.insert(level.storage).second || !ReadLevel(level)) whole_ = false;
    }
    if (!whole_) facts_.notices.push_back("Formular " + module_ + ": die Steuerelemente sind nur zum Teil lesbar");
  }

 private:
  static constexpr std::size_t kNoControl = static_cast<std::size_t>(-1);
  /// A storage with an f and an o.
  struct Level {
    Storage::Id storage;
    std::string parent;
    int depth;
    /// The control that it is; kNoControl for the form.
    std::size_t control;
  };

  std::string StreamIn(Storage::Id storage, std::string_view name) const {
    const std::optional<Storage::Id> stream = storage_.FindStream(storage, name);
    return stream.has_value() ? storage_.ReadStream(*stream, kLargestStream).bytes : std::string();
  }

  bool ReadLevel(const Level& level) {
    const std::string bytes = StreamIn(level.storage, "f");
    const std::string objects = StreamIn(level.storage, "o");
    FormStream form(bytes);
    const bool whole = form.Read();
    if (level.control != kNoControl) {
      facts_.controls[level.control].caption = form.Caption();
      TakeSize(form.Size(), facts_.controls[level.control]);
    }
    std::size_t at = 0;
    std::vector<Level> inner;
    for (const Block& site : form.Sites()) {
      if (facts_.controls.size() >= kMostFacts) return false;
      const bool inObjects = (site.Number(kSiteBits, kDefaultSiteBits) & kInObjectStream) != 0;
      const std::size_t size = site.Number(kObjectSize, 0);
      const std::string_view object =
          inObjects ? std::string_view(objects).substr(std::min(at, objects.size()), size) : std::string_view();
      if (inObjects) at += size;
      TakeSite(level, form, site, object, inner, inObjects);
    }
    // In the order of the file: the last one pushed is read first.
    std::move(inner.rbegin(), inner.rend(), std::back_inserter(open_));
    return whole && (inner.empty() || level.depth < kDeepest);
  }

  void TakeSite(const Level& level, const FormStream& form, const Block& site, std::string_view object,
                std::vector<Level>& inner, bool inObjects) {
    Control control;
    control.module = module_;
    control.parent = level.parent;
    control.name = site.Text(kName);
    control.tabIndex = static_cast<int>(site.Number(kTabIndex, 0));
    if (const auto position = site.Point(kPosition)) {
      control.left = position->first * kPointsPerUnit;
      control.top = position->second * kPointsPerUnit;
    }
    TakeClass(site.Number(kClass, kDefaultClass), form, object, control);
    // The strip of a multi-page has no name and raises no events.
    if (control.name.empty()) return;
    facts_.controls.push_back(control);
    if (!inObjects && level.depth < kDeepest) {
      const std::string id = std::to_string(site.Number(kId, 0));
      const auto storage = storage_.FindStorage(level.storage, (id.size() < 2 ? "i0" : "i") + id);
      if (!storage.has_value()) {
        whole_ = false;
        return;
      }
      inner.push_back({*storage, control.name, level.depth + 1, facts_.controls.size() - 1});
    }
  }

  static void TakeClass(std::uint32_t number, const FormStream& form, std::string_view object, Control& control) {
    control.type = "unbekannt";
    if (number >= kForeignClass && number != kDefaultClass) {
      const std::size_t entry = number - kForeignClass;
      const std::string_view name = entry < form.Classes().size() ? ForeignName(form.Classes()[entry]) : "";
      if (name.empty()) return;
      control.type = name;
      control.library = "MSComctlLib";
      return;
    }
    const auto* found = std::find_if(kClasses.begin(), kClasses.end(),
                                     [=](const ControlClass& known) { return known.number == number; });
    if (found == kClasses.end()) return;
    control.type = found->name;
    control.library = "MSForms";
    if (found->layout == nullptr) return;
    if (const std::optional<Block> block = Block::Read(object, *found->layout)) {
      control.caption = block->Text(found->captionBit);
      TakeSize(block->Point(found->sizeBit), control);
    }
  }

  static void TakeSize(const std::optional<std::pair<std::int32_t, std::int32_t>>& size, Control& control) {
    if (!size || size->first < 0 || size->second < 0) return;
    control.width = size->first * kPointsPerUnit;
    control.height = size->second * kPointsPerUnit;
  }

  const Storage& storage_;
  std::string module_;
  DocumentFacts& facts_;
  std::vector<Level> open_;
  std::set<Storage::Id> met_;
  bool whole_ = true;
};

std::string_view TrimIndent(std::string_view line) noexcept {
  const std::size_t start = std::min(line.find_first_not_of(" \t"), line.size());
  line.remove_prefix(start);
  return line.substr(0, line.find_last_not_of(" \t") + 1);
}

/// Lines "Key = Value", a text in quotes.
Form ReadFrame(std::string_view bytes, const std::string& module, const CodePage& codePage) {
  Form form;
  form.module = module;
  text::LineReader lines(bytes);
  for (std::string_view line; lines.Next(line);) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string_view key = TrimIndent(line.substr(0, equals));
    const std::string_view value = TrimIndent(line.substr(equals + 1));
    if (text::EqualsIgnoreCase(key, "Caption") && value.size() >= 2 && value.starts_with('"')) {
      const std::size_t end = std::max<std::size_t>(value.rfind('"'), 1);
      form.caption = text::ReplaceAll(codePage.Utf8From(value.substr(1, end - 1)), "\"\"", "\"");
    } else if (text::EqualsIgnoreCase(key, "ClientWidth")) {
      form.width = text::LeadingNumber(value) / kTwipsPerPoint;
    } else if (text::EqualsIgnoreCase(key, "ClientHeight")) {
      form.height = text::LeadingNumber(value) / kTwipsPerPoint;
    }
  }
  return form;
}

}  // namespace

void ReadFormDesigner(const Storage& storage, Storage::Id formStorage, const std::string& module,
                      const CodePage& codePage, DocumentFacts& facts) {
  if (facts.forms.size() >= kMostFacts) return;
  if (const std::optional<Storage::Id> frame = storage.FindStream(formStorage, "\3VBFrame")) {
    facts.forms.push_back(ReadFrame(storage.ReadStream(*frame, kLargestFrame).bytes, module, codePage));
  }
  if (storage.FindStream(formStorage, "f").has_value()) FormReader(storage, module, facts).Read(formStorage);
}

}  // namespace quillmate::office
