#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include <quillmate/text/operations.h>
#include <quillmate/text/utf8.h>

#include "excel_facts_p.h"
#include "xml_reader_p.h"

namespace quillmate::office {
namespace {

constexpr std::size_t kLongestText = 4096;

struct ControlWord {
  std::string_view name;
  unsigned number;
  std::string_view word;
};
/// Names of VML and numbers of records; 0 where records know none.
constexpr std::array kControlWords{ControlWord{"Button", 0x07, "Schaltfläche"},
                                   ControlWord{"Checkbox", 0x0B, "Kontrollkästchen"},
                                   ControlWord{"Radio", 0x0C, "Optionsfeld"},
                                   ControlWord{"Label", 0x0E, "Beschriftung"},
                                   ControlWord{"Dialog", 0x0F, "Dialogfeld"},
                                   ControlWord{"Spin", 0x10, "Drehfeld"},
                                   ControlWord{"Scroll", 0x11, "Bildlaufleiste"},
                                   ControlWord{"List", 0x12, "Listenfeld"},
                                   ControlWord{"GBox", 0x13, "Gruppenfeld"},
                                   ControlWord{"Drop", 0x14, "Dropdownfeld"},
                                   ControlWord{"Edit", 0x0D, "Textfeld"},
                                   ControlWord{"Pict", 0x08, "Bild"},
                                   ControlWord{"Group", 0x00, "Gruppe"},
                                   ControlWord{"Line", 0x01, "Linie"},
                                   ControlWord{"Rect", 0x02, "Form"},
                                   ControlWord{"Oval", 0x03, "Form"},
                                   ControlWord{"Chart", 0x05, "Diagramm"},
                                   ControlWord{"Text", 0x06, "Textfeld"},
                                   ControlWord{"Polygon", 0x09, "Form"},
                                   ControlWord{"Note", 0x19, "Kommentar"},
                                   ControlWord{"Shape", 0x1E, "Form"}};
constexpr std::string_view kUnknownControl = "Steuerelement";

struct ShapeWord {
  std::string_view element;
  std::string_view word;
};
constexpr std::array kShapeWords{ShapeWord{"sp", "Form"}, ShapeWord{"pic", "Bild"},
                                 ShapeWord{"graphicFrame", "Diagramm"}, ShapeWord{"cxnSp", "Verbindung"}};

/// "Button_x0020_1": characters that an XML name can't hold are written as numbers.
std::string DecodedShapeId(std::string_view id) {
  std::string name;
  for (std::size_t at = 0; at < id.size();) {
    unsigned number = 0;
    const bool coded = id.substr(at).starts_with("_x") && at + 7 <= id.size() && id[at + 6] == '_' &&
                       std::from_chars(id.data() + at + 2, id.data() + at + 6, number, 16).ptr == id.data() + at + 6;
    if (coded && number > 0 && (number < 0xD800 || number > 0xDFFF)) {
      text::AppendUtf8(name, number);
    } else {
      name += id.substr(at, coded ? 7 : 1);
    }
    at += coded ? 7 : 1;
  }
  // Names that nobody gave.
  return id.starts_with("_x0000_") ? std::string() : name;
}

/// A shape with a macro while it is read.
struct Shape {
  std::string_view element;
  std::string_view word;
  std::string macro;
  std::string name;
  std::string text;
  bool isControl = false;
};

}  // namespace

std::string_view FormControlWord(std::string_view objectType) noexcept {
  const auto* found = std::find_if(kControlWords.begin(), kControlWords.end(), [&](const ControlWord& entry) {
    return text::EqualsIgnoreCase(entry.name, objectType);
  });
  return found == kControlWords.end() ? kUnknownControl : found->word;
}

std::string_view FormControlWord(unsigned objectType) noexcept {
  const auto* found = std::find_if(kControlWords.begin(), kControlWords.end(),
                                   [=](const ControlWord& entry) { return entry.number == objectType; });
  return found == kControlWords.end() ? kUnknownControl : found->word;
}

void ReadDrawing(ByteStream& stream, std::string_view sheet, bool hasVml, FactsCollector& collector) {
  XmlReader xml(stream);
  std::optional<Shape> shape;
  int fallbacks = 0;
  for (auto tag = xml.Next(); tag != XmlReader::Tag::kDone; tag = xml.Next()) {
    const std::string_view name = xml.Name();
    // What a newer version has already said, once more for older ones.
    if (name == "Fallback") fallbacks += tag == XmlReader::Tag::kStart ? 1 : -1;
    if (fallbacks > 0) continue;
    if (tag == XmlReader::Tag::kEnd) {
      if (!shape.has_value() || shape->element != name) continue;
      if (!shape->isControl || !hasVml) {
        const std::string text = OneLineText(shape->text);
        collector.Add(Binding::Kind::kObject, std::move(shape->macro),
                      PlaceOnSheet(shape->word, text.empty() ? shape->name : text, sheet));
      }
      shape.reset();
    } else if (const auto* word = std::find_if(kShapeWords.begin(), kShapeWords.end(),
                                               [&](const ShapeWord& entry) { return entry.element == name; });
               word != kShapeWords.end()) {
      std::string macro = xml.Attribute("macro").value_or("");
      if (!macro.empty()) shape = Shape{word->element, word->word, std::move(macro), {}, {}};
    } else if (shape.has_value()) {
      // The tag's name is gone with the text that follows it.
      if (name == "cNvPr" && shape->name.empty()) shape->name = xml.Attribute("name").value_or("");
      if (name == "compatExt") shape->isControl = true;
      if (name == "p" && !shape->text.empty()) shape->text += ' ';
      if (name == "t" && shape->text.size() < kLongestText) shape->text += xml.Text(kLongestText);
    }
  }
}

void ReadVml(ByteStream& stream, std::string_view sheet, FactsCollector& collector) {
  XmlReader xml(stream);
  std::string id;
  std::string caption;
  std::string type;
  std::string macro;
  bool inText = false;
  for (auto tag = xml.Next(); tag != XmlReader::Tag::kDone; tag = xml.Next()) {
    const std::string_view name = xml.Name();
    const bool start = tag == XmlReader::Tag::kStart;
    const bool breaks = name == "br" || name == "div" || name == "p";
    if (name == "shape" && start) {
      id = xml.Attribute("id").value_or("");
      caption.clear();
    } else if (name == "textbox") {
      inText = start;
    } else if (name == "ClientData" && start) {
      inText = false;
      type = xml.Attribute("ObjectType").value_or("");
      macro.clear();
    } else if (name == "ClientData") {
      const std::string text = OneLineText(caption);
      collector.Add(Binding::Kind::kObject, std::move(macro),
                    PlaceOnSheet(FormControlWord(type), text.empty() ? DecodedShapeId(id) : text, sheet));
      macro.clear();
    } else if (name == "FmlaMacro" && start) {
      macro = xml.Text(kLongestText);
    }
    if (inText && breaks) caption += ' ';
    if (inText && caption.size() < kLongestText) caption += xml.Text(kLongestText);
  }
}

}  // namespace quillmate::office
