#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/office/macro_target.h>
#include <quillmate/text/operations.h>

#include "package_facts_p.h"
#include "unicode_names_p.h"
#include "xml_reader_p.h"

namespace quillmate::office {
namespace {

using Tag = XmlReader::Tag;

constexpr std::size_t kLongestInstruction = 4096;
constexpr std::size_t kDeepestField = 1000;

struct PartWord {
  std::string_view relation;
  std::string_view where;
};
constexpr std::array kParts{
    PartWord{"header", "in einer Kopfzeile"},   PartWord{"footer", "in einer Fußzeile"},
    PartWord{"footnotes", "in den Fußnoten"},   PartWord{"endnotes", "in den Endnoten"},
    PartWord{"comments", "in den Kommentaren"}, PartWord{"glossaryDocument", "in den Bausteinen"}};

/// Fields in a part. A complex one begins and ends with marks, its instruction comes in pieces, and others may be in
/// it.
class FieldReader {
 public:
  FieldReader(XmlReader& xml, std::string_view where, FactsCollector& collector)
      : xml_(xml), where_(where), collector_(collector) {}

  void Read() {
    for (Tag tag = xml_.Next(); tag != Tag::kDone; tag = xml_.Next()) {
      if (tag == Tag::kStart) Take(xml_.Name());
    }
  }

 private:
  struct Field {
    std::string instruction;
    bool open = true;
  };

  void Take(std::string_view name) {
    if (name == "fldSimple") {
      TakeFieldInstruction(xml_.AnyAttribute("instr").value_or(""), where_, collector_);
    } else if (name == "fldChar") {
      TakeMark(xml_.AnyAttribute("fldCharType").value_or(""));
    } else if (name == "instrText") {
      const std::string text = xml_.Text(kLongestInstruction);
      if (!fields_.empty() && fields_.back().open && fields_.back().instruction.size() < kLongestInstruction) {
        fields_.back().instruction += text;
      }
    } else if (name == "control") {
      Control control;
      control.module = collector_.Names().DocumentModule();
      control.name = xml_.AnyAttribute("name").value_or("");
      control.type = "unbekannt";
      collector_.AddControl(std::move(control));
    } else if (name == "ffData") {
      formField_.clear();
    } else if (name == "name" && formField_.empty()) {
      formField_ = xml_.AnyAttribute("val").value_or("");
    } else if (name == "entryMacro" || name == "exitMacro") {
      const char* when = name == "entryMacro" ? " (beim Betreten)" : " (beim Verlassen)";
      collector_.Add(Binding::Kind::kField, xml_.AnyAttribute("val").value_or(""),
                     PlaceOnSheet("Formularfeld", OneLineText(formField_), "") + when);
    }
  }
  void TakeMark(std::string_view type) {
    if (type == "begin") {
      if (fields_.size() < kDeepestField) fields_.emplace_back();
      return;
    }
    if (fields_.empty()) return;
    Field& field = fields_.back();
    if (field.open) TakeFieldInstruction(field.instruction, where_, collector_);
    field.open = false;
    if (type == "end") fields_.pop_back();
  }

  XmlReader& xml_;
  std::string_view where_;
  FactsCollector& collector_;
  std::vector<Field> fields_;
  std::string formField_;
};

/// "0447" is Strg+Alt+G: modifiers, then the key.
std::string KeyName(std::string_view code) {
  unsigned number = 0;
  std::from_chars(code.data(), code.data() + code.size(), number, 16);
  std::string name;
  if ((number & 0x200U) != 0) name += "Strg+";
  if ((number & 0x400U) != 0) name += "Alt+";
  if ((number & 0x100U) != 0) name += "Umschalt+";
  const unsigned key = number & 0xFFU;
  const bool letter = (key >= 'A' && key <= 'Z') || (key >= '0' && key <= '9');
  if (letter) return name + static_cast<char>(key);
  constexpr unsigned kF1 = 0x70;
  if (key >= kF1 && key < kF1 + 24) return name + "F" + std::to_string(key - kF1 + 1);
  return name + "Taste " + std::to_string(key);
}

void ReadKeys(ByteStream& stream, FactsCollector& collector) {
  XmlReader xml(stream);
  std::string key;
  for (Tag tag = xml.Next(); tag != Tag::kDone; tag = xml.Next()) {
    if (tag != Tag::kStart) continue;
    if (xml.Name() == "keymap") key = xml.AnyAttribute("kcmPrimary").value_or("");
    // The list of all macros, which another part holds, has other elements.
    if (xml.Name() != "macro") continue;
    const std::optional<std::string> macro = xml.AnyAttribute("macroName");
    if (macro.has_value()) {
      collector.Add(Binding::Kind::kShortcut, *macro, "Tastenkombination " + KeyName(key));
    }
  }
}

void ReadPart(const OpcPackage& package, std::string_view part, std::string_view where, FactsCollector& collector) {
  const std::unique_ptr<ByteStream> stream = package.Open(part);
  if (stream == nullptr) return;
  XmlReader xml(*stream);
  FieldReader(xml, where, collector).Read();
}

/// A piece of a stream that may hold fields: their marks are the codes 0x13 to 0x15. `width`: bytes of a character.
class FieldScan {
 public:
  explicit FieldScan(std::size_t width) noexcept : width_(width) {}

  /// Those whose word begins from `first` on and before `last`.
  void Take(std::string_view bytes, std::size_t first, std::size_t last, FactsCollector& collector) const {
    constexpr std::string_view kWord = "MACROBUTTON";
    std::string mark;
    for (const char c : kWord) mark.append(1, c).append(width_ - 1, '\0');
    for (std::size_t at = bytes.find(mark, first); at < last; at = bytes.find(mark, at + mark.size())) {
      if (!BeginsField(bytes, at)) continue;
      std::size_t end = at;
      while (end + width_ <= bytes.size() && end - at < kLongestInstruction && CodeAt(bytes, end) >= ' ') end += width_;
      const std::string_view instruction = bytes.substr(at, end - at);
      TakeFieldInstruction(width_ == 2 ? Utf8FromUtf16Bytes(instruction) : Utf8FromLatin1(instruction), "im Dokument",
                           collector);
    }
  }

 private:
  unsigned CodeAt(std::string_view bytes, std::size_t at) const noexcept {
    return width_ == 2 ? LittleEndian<std::uint16_t>(bytes, at) : LittleEndian<std::uint8_t>(bytes, at);
  }
  bool BeginsField(std::string_view bytes, std::size_t at) const noexcept {
    constexpr unsigned kFieldBegin = 0x13;
    while (at >= width_ && CodeAt(bytes, at - width_) == ' ') at -= width_;
    return at >= width_ && CodeAt(bytes, at - width_) == kFieldBegin;
  }

  std::size_t width_;
};

}  // namespace

void TakeFieldInstruction(std::string_view instruction, std::string_view where, FactsCollector& collector) {
  constexpr std::string_view kWord = "MACROBUTTON";
  instruction = text::Trim(instruction);
  if (!text::StartsWithIgnoreCase(instruction, kWord)) return;
  instruction.remove_prefix(kWord.size());
  if (!instruction.starts_with(' ')) return;
  instruction = text::Trim(instruction);
  const std::size_t end = std::min(instruction.find(' '), instruction.size());
  // "\* MERGEFORMAT" follows a field without a macro.
  if (!ParseMacroTarget(instruction.substr(0, end), "").has_value()) return;
  std::string place = PlaceOnSheet("Makroschaltfläche", OneLineText(instruction.substr(end)), "");
  collector.Add(Binding::Kind::kField, std::string(instruction.substr(0, end)), place.append(" ").append(where));
}

void ReadWordFacts(const OpcPackage& package, std::string_view document, FactsCollector& collector) {
  ReadPart(package, document, "im Dokument", collector);
  collector.Facts().controlsKnown = true;
  for (const Relation& relation : package.RelationsOf(document)) {
    if (relation.external) continue;
    const auto* part = std::find_if(kParts.begin(), kParts.end(),
                                    [&](const PartWord& entry) { return entry.relation == relation.type; });
    if (part != kParts.end()) ReadPart(package, relation.target, part->where, collector);
    if (relation.type == "keyMapCustomizations") {
      const std::unique_ptr<ByteStream> stream = package.Open(relation.target);
      if (stream != nullptr) ReadKeys(*stream, collector);
      for (const Relation& toolbars : package.RelationsOf(relation.target)) {
        if (toolbars.type == "attachedToolbars") {
          ReadToolbars(package.Read(toolbars.target, std::size_t{16} << 20U), collector);
        }
      }
    } else if (relation.type == "settings") {
      for (const Relation& link : package.RelationsOf(relation.target)) {
        if (link.type == "attachedTemplate") collector.Facts().externalLinks.push_back(link.target);
      }
    }
  }
}

void ReadDocFacts(ByteSource& document, FactsCollector& collector) {
  constexpr std::size_t kPiece = std::size_t{1} << 20U;
  // A field that begins in one piece is found in it whole, with what precedes it.
  constexpr std::size_t kAround = 2 * kLongestInstruction;
  for (std::uint64_t at = 0; at < document.Size(); at += kPiece) {
    const std::size_t before = at == 0 ? 0 : kAround;
    const std::string piece = ReadBytes(document, at - before, before + kPiece + kAround);
    for (const std::size_t width : {std::size_t{1}, std::size_t{2}}) {
      FieldScan(width).Take(piece, before, before + kPiece, collector);
    }
  }
}

}  // namespace quillmate::office
