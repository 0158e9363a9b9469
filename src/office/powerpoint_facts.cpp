#include <algorithm>
#include <charconv>
#include <string>
#include <unordered_set>
#include <vector>

#include "package_facts_p.h"
#include "unicode_names_p.h"
#include "xml_reader_p.h"

namespace quillmate::office {
namespace {

using Tag = XmlReader::Tag;

/// "ppaction://macro?name=Modul1.Start" is the macro, its characters by number turned back; empty for other actions.
std::string MacroOfAction(std::string_view action) {
  constexpr std::string_view kStart = "ppaction://macro?name=";
  if (!action.starts_with(kStart)) return {};
  action.remove_prefix(kStart.size());
  std::string macro;
  for (std::size_t at = 0; at < action.size();) {
    unsigned number = 0;
    const bool coded =
        action[at] == '%' && at + 3 <= action.size() &&
        std::from_chars(action.data() + at + 1, action.data() + at + 3, number, 16).ptr == action.data() + at + 3;
    macro += coded ? static_cast<char>(number) : action[at];
    at += coded ? 3 : 1;
  }
  return macro;
}

class PresentationFacts {
 public:
  PresentationFacts(const OpcPackage& package, FactsCollector& collector) : package_(package), collector_(collector) {}

  void Read(std::string_view presentation) {
    const std::vector<Relation> relations = package_.RelationsOf(presentation);
    int number = 0;
    for (const std::string& id : SlideIds(presentation)) {
      const auto slide =
          std::find_if(relations.begin(), relations.end(), [&](const Relation& relation) { return relation.id == id; });
      if (slide == relations.end() || slide->external) continue;
      ReadSlide(slide->target, "auf Folie " + std::to_string(++number));
    }
    for (const Relation& relation : relations) {
      if (relation.external) continue;
      if (relation.type == "slideMaster") ReadMaster(relation.target);
      if (relation.type == "notesMaster") ReadPart(relation.target, "auf der Notizenvorlage");
    }
  }

 private:
  /// Relations of the slides in their order.
  std::vector<std::string> SlideIds(std::string_view presentation) const {
    std::vector<std::string> ids;
    const std::unique_ptr<ByteStream> stream = package_.Open(presentation);
    if (stream == nullptr) return ids;
    XmlReader xml(*stream);
    for (Tag tag = xml.Next(); tag != Tag::kDone && ids.size() < kMostFacts; tag = xml.Next()) {
      if (tag == Tag::kStart && xml.Name() == "sldId") ids.push_back(xml.PrefixedAttribute("id").value_or(""));
    }
    return ids;
  }
  void ReadSlide(const std::string& part, const std::string& where) {
    ReadPart(part, where);
    for (const Relation& relation : package_.RelationsOf(part)) {
      if (relation.type == "notesSlide" && !relation.external) ReadPart(relation.target, where + " (Notizen)");
    }
  }
  void ReadMaster(const std::string& part) {
    ReadPart(part, "auf der Folienvorlage");
    for (const Relation& relation : package_.RelationsOf(part)) {
      if (relation.type == "slideLayout" && !relation.external) ReadPart(relation.target, "auf einem Folienlayout");
    }
  }

  void ReadPart(const std::string& part, const std::string& where) {
    const std::unique_ptr<ByteStream> stream = met_.insert(part).second ? package_.Open(part) : nullptr;
    if (stream == nullptr) return;
    XmlReader xml(*stream);
    std::string shape;
    for (Tag tag = xml.Next(); tag != Tag::kDone; tag = xml.Next()) {
      if (tag != Tag::kStart) continue;
      const std::string_view name = xml.Name();
      if (name == "cNvPr") shape = xml.Attribute("name").value_or("");
      if (name != "hlinkClick" && name != "hlinkHover" && name != "hlinkMouseOver") continue;
      const char* when = name == "hlinkClick" ? "" : " (beim Überfahren)";
      collector_.Add(Binding::Kind::kAction, MacroOfAction(xml.Attribute("action").value_or("")),
                     PlaceOnSheet("Form", OneLineText(shape), "") + " " + where + when);
    }
  }

  const OpcPackage& package_;
  FactsCollector& collector_;
  std::unordered_set<std::string> met_;
};

}  // namespace

void ReadPowerPointFacts(const OpcPackage& package, std::string_view presentation, FactsCollector& collector) {
  PresentationFacts(package, collector).Read(presentation);
}

/// Goes from record to record, into those that hold others.
void ReadPptFacts(ByteSource& document, FactsCollector& collector) {
  enum RecordType : std::uint16_t { kInteractiveInfo = 0x0FF2, kInteractiveAtom = 0x0FF3, kText = 0x0FBA };
  constexpr std::uint64_t kHead = 8;
  constexpr std::size_t kActionAt = 8;
  constexpr std::uint64_t kLongestName = 2000;
  constexpr unsigned kMacroAction = 1;
  constexpr unsigned kMacroName = 2;
  bool isMacro = false;
  std::string piece;
  std::uint64_t pieceAt = 0;
  for (std::uint64_t at = 0; at + kHead <= document.Size();) {
    if (at < pieceAt || at + kHead > pieceAt + piece.size()) {
      pieceAt = at;
      piece = ReadBytes(document, at, std::uint64_t{64} << 10U);
      if (piece.size() < kHead) return;
    }
    const auto head = static_cast<std::size_t>(at - pieceAt);
    const unsigned version = LittleEndian<std::uint16_t>(piece, head);
    const unsigned type = LittleEndian<std::uint16_t>(piece, head + 2);
    const std::uint64_t size = LittleEndian<std::uint32_t>(piece, head + 4);
    at += kHead;
    if (type == kInteractiveInfo) isMacro = false;
    if ((version & 0xFU) == 0xF) continue;
    if (type == kInteractiveAtom) {
      isMacro = LittleEndian<std::uint8_t>(ReadBytes(document, at, kActionAt + 1), kActionAt) == kMacroAction;
    } else if (type == kText && version >> 4U == kMacroName && isMacro) {
      collector.Add(Binding::Kind::kAction, Utf8FromUtf16Bytes(ReadBytes(document, at, std::min(size, kLongestName))),
                    "Aktion in der Präsentation");
    }
    at += size;
  }
}

}  // namespace quillmate::office
