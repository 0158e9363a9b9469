#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <quillmate/office/byte_source.h>

#include "access_forms_p.h"
#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

constexpr std::uint64_t kLargestBlob = std::uint64_t{64} << 20U;
constexpr std::uint64_t kLargestList = std::uint64_t{4} << 20U;

struct FormFolder {
  const char* name;
  const char* module;
  const char* word;
};
constexpr std::array kFolders{FormFolder{"Forms", "Form_", "Formular"}, FormFolder{"Reports", "Report_", "Bericht"}};

struct TypeName {
  unsigned type;
  const char* name;
};
constexpr unsigned kFirstSection = 152, kLastSection = 159, kField = 255;
constexpr std::array kTypes{
    TypeName{100, "Label"},         TypeName{101, "Rectangle"},     TypeName{102, "Line"},
    TypeName{103, "Image"},         TypeName{104, "CommandButton"}, TypeName{105, "OptionButton"},
    TypeName{106, "CheckBox"},      TypeName{107, "OptionGroup"},   TypeName{108, "BoundObjectFrame"},
    TypeName{109, "TextBox"},       TypeName{110, "ListBox"},       TypeName{111, "ComboBox"},
    TypeName{112, "SubForm"},       TypeName{114, "ObjectFrame"},   TypeName{118, "PageBreak"},
    TypeName{119, "CustomControl"}, TypeName{122, "ToggleButton"},  TypeName{123, "TabControl"},
    TypeName{124, "Page"},          TypeName{126, "Attachment"}};

std::string TypeWord(unsigned type) {
  if (type >= kFirstSection && type <= kLastSection) return "Section";
  const auto* found = std::find_if(kTypes.begin(), kTypes.end(), [=](const TypeName& row) { return row.type == type; });
  return found == kTypes.end() ? "unbekannt" : found->name;
}

enum Property : unsigned { kCaption = 17, kName = 20, kNameInCode = 22 };

struct EventName {
  unsigned property;
  const char* event;
};
/// Those that are certain.
constexpr std::array kEvents{EventName{77, "Open"},      EventName{86, "AfterUpdate"}, EventName{87, "Current"},
                             EventName{112, "Activate"}, EventName{115, "GotFocus"},   EventName{121, "NoData"},
                             EventName{126, "Click"},    EventName{127, "Load"},       EventName{222, "Enter"},
                             EventName{224, "DblClick"}};

std::string EventWord(unsigned property) {
  const auto* found =
      std::find_if(kEvents.begin(), kEvents.end(), [=](const EventName& row) { return row.property == property; });
  return found == kEvents.end() ? "Eigenschaft" : std::string("Ereignis ") + found->event;
}

/// A control, a section or the form itself, with its properties that are texts.
struct Block {
  std::string name;
  std::string nameInCode;
  std::string caption;
  struct Text {
    unsigned property;
    std::string value;
  };
  std::vector<Text> texts;
};

/// Nothing when the stream is of another kind. The first block is the form.
std::optional<std::vector<Block>> ReadBlob(std::string_view bytes) {
  constexpr std::uint32_t kText = 10, kLongText = 12, kMostTypes = 16;
  constexpr std::size_t kHeader = 10, kTag = 4, kValueHead = 18;
  std::vector<Block> blocks(1);
  std::size_t at = kHeader;
  while (at + kTag < bytes.size()) {
    const auto tag = LittleEndian<std::uint32_t>(bytes, at);
    if (tag == 0xFD || tag == 0xFE || tag == 0xFF) {
      at += tag == 0xFF ? kTag + 4 : kTag + 2;
      if (blocks.size() >= kMostFacts) return std::nullopt;
      blocks.emplace_back();
      continue;
    }
    if (bytes.size() - at < kValueHead) return std::nullopt;
    const auto property = LittleEndian<std::uint16_t>(bytes, at + 4);
    const auto type = LittleEndian<std::uint32_t>(bytes, at + 6);
    const auto length = LittleEndian<std::uint32_t>(bytes, at + 14);
    at += kValueHead;
    if (type > kMostTypes || length > bytes.size() - at) return std::nullopt;
    if ((type == kText || type == kLongText) && length > 0) {
      std::string value = Utf8FromUtf16Bytes(bytes.substr(at, length));
      Block& block = blocks.back();
      if (property == kName) {
        block.name = std::move(value);
      } else if (property == kNameInCode) {
        block.nameInCode = std::move(value);
      } else {
        if (property == kCaption) block.caption = value;
        block.texts.push_back({property, std::move(value)});
      }
    }
    at += length;
  }
  const bool ends = at + kTag == bytes.size() && LittleEndian<std::uint32_t>(bytes, at) == 0xFD;
  return ends ? std::optional(std::move(blocks)) : std::nullopt;
}

struct ListedControl {
  unsigned type;
  std::string name;
};

/// Nothing when the stream is of another kind.
std::optional<std::vector<ListedControl>> ReadTypeInfo(std::string_view bytes, const CodePage& codePage) {
  constexpr std::uint32_t kSignature = 0xACCDEAF7;
  constexpr std::size_t kCountAt = 12, kHeader = 32, kHead = 8;
  if (bytes.size() < kHeader || LittleEndian<std::uint32_t>(bytes, 0) != kSignature) return std::nullopt;
  std::vector<ListedControl> controls;
  std::size_t at = kHeader;
  while (at < bytes.size()) {
    const std::size_t name = at + kHead;
    const std::size_t nameEnd = bytes.find('\0', std::min(name, bytes.size()));
    if (nameEnd == std::string_view::npos || controls.size() >= kMostFacts) return std::nullopt;
    const std::size_t end = bytes.find('\0', nameEnd + 1);
    if (end == std::string_view::npos) return std::nullopt;
    controls.push_back({LittleEndian<std::uint8_t>(bytes, at), codePage.Utf8From(bytes.substr(name, nameEnd - name))});
    at = end + 1;
  }
  if (controls.size() != LittleEndian<std::uint32_t>(bytes, kCountAt)) return std::nullopt;
  return controls;
}

/// One form or report.
class FormReader {
 public:
  FormReader(const FormFolder& folder, const std::string& name, FactsCollector& collector)
      : collector_(collector), module_(folder.module + name), where_(std::string(" in ") + folder.word + " " + name) {
    part_ = std::string("Formular ") + module_ + ":";
  }

  void Read(std::string_view typeInfo, std::string_view blob, const CodePage& codePage) {
    const auto controls = ReadTypeInfo(typeInfo, codePage);
    const auto blocks = ReadBlob(blob);
    DocumentFacts& facts = collector_.Facts();
    if (facts.forms.size() >= kMostFacts) return;
    Form& form = facts.forms.emplace_back();
    form.module = module_;
    if (blocks) form.caption = blocks->front().caption;
    if (!controls || !blocks) collector_.Notice(part_ + " Steuerelemente unbekannt");
    if (controls) TakeControls(*controls, blocks ? *blocks : std::vector<Block>());
    if (blocks) TakeCalls(*blocks);
  }

 private:
  void TakeControls(const std::vector<ListedControl>& listed, const std::vector<Block>& blocks) {
    std::unordered_map<std::string, const Block*> byName;
    for (const Block& block : blocks) {
      const std::string& name = block.nameInCode.empty() ? block.name : block.nameInCode;
      if (!name.empty()) byName.try_emplace(UpperCaseName(name), &block);
    }
    for (const ListedControl& each : listed) {
      // What the form's record source has is no control.
      if (each.type == kField || collector_.Facts().controls.size() >= kMostFacts) continue;
      Control control;
      control.module = module_;
      control.name = each.name;
      control.type = TypeWord(each.type);
      control.library = "Access";
      const auto block = byName.find(UpperCaseName(each.name));
      if (block != byName.end()) control.caption = block->second->caption;
      collector_.Facts().controls.push_back(std::move(control));
    }
  }

  /// "=Funktion()" runs with an event; expressions and statements of other properties call functions too.
  void TakeCalls(const std::vector<Block>& blocks) {
    for (const Block& block : blocks) {
      for (const Block::Text& text : block.texts) {
        if (text.value.find('(') == std::string::npos) continue;
        for (const std::string& name : CellFunctionsIn(text.value, collector_.Names(), module_)) {
          std::string place = EventWord(text.property);
          if (!block.name.empty()) place += " von " + block.name;
          collector_.Add(Binding::Kind::kEventProperty, name, place + where_, module_);
        }
      }
    }
  }

  FactsCollector& collector_;
  const std::string module_;
  const std::string where_;
  std::string part_;
};

}  // namespace

std::optional<Storage::Id> FindAccessStream(const Storage& storage, Storage::Id folder, std::string_view name) {
  const auto found = storage.FindStream(folder, name);
  return found ? found : storage.FindStream(folder, std::string("\3").append(name));
}

std::vector<AccessFolderEntry> ReadAccessFolder(std::string_view dirData) {
  constexpr std::size_t kHeader = 4, kHead = 2, kNumber = 4;
  constexpr unsigned kMark = 4;
  std::vector<AccessFolderEntry> entries;
  std::size_t at = kHeader;
  while (at + kHead <= dirData.size() && LittleEndian<std::uint8_t>(dirData, at) == kMark) {
    const std::size_t length = LittleEndian<std::uint8_t>(dirData, at + 1);
    at += kHead;
    if (length < kNumber || dirData.size() - at < length) break;
    const std::size_t name = length - kNumber;
    entries.push_back({Utf8FromUtf16Bytes(dirData.substr(at, name)),
                       std::to_string(LittleEndian<std::uint32_t>(dirData, at + name))});
    at += length;
  }
  return entries;
}

void ReadAccessForms(const Storage& storage, const CodePage& codePage, FactsCollector& collector) {
  for (const FormFolder& folder : kFolders) {
    const auto found = storage.FindStorage(Storage::kRoot, folder.name);
    const auto list = found ? FindAccessStream(storage, *found, "DirData") : std::nullopt;
    if (!list) continue;
    for (const AccessFolderEntry& entry : ReadAccessFolder(storage.ReadStream(*list, kLargestList).bytes)) {
      const auto form = storage.FindStorage(*found, entry.storage);
      const auto typeInfo = form ? FindAccessStream(storage, *form, "TypeInfo") : std::nullopt;
      const auto blob = form ? FindAccessStream(storage, *form, "Blob") : std::nullopt;
      const auto bytes = [&](const std::optional<Storage::Id>& stream, std::uint64_t limit) {
        return stream ? storage.ReadStream(*stream, limit).bytes : std::string();
      };
      FormReader(folder, entry.name, collector)
          .Read(bytes(typeInfo, kLargestList), bytes(blob, kLargestBlob), codePage);
    }
  }
}

}  // namespace quillmate::office
