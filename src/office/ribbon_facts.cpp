#include <algorithm>
#include <array>

#include <quillmate/text/operations.h>

#include "package_facts_p.h"
#include "xml_reader_p.h"

namespace quillmate::office {
namespace {

struct ElementWord {
  std::string_view element;
  std::string_view word;
};
constexpr std::array kElementWords{ElementWord{"button", "Schaltfläche"},
                                   ElementWord{"toggleButton", "Umschaltfläche"},
                                   ElementWord{"splitButton", "Schaltfläche mit Menü"},
                                   ElementWord{"checkBox", "Kontrollkästchen"},
                                   ElementWord{"editBox", "Eingabefeld"},
                                   ElementWord{"comboBox", "Kombinationsfeld"},
                                   ElementWord{"dropDown", "Auswahlliste"},
                                   ElementWord{"gallery", "Katalog"},
                                   ElementWord{"menu", "Menü"},
                                   ElementWord{"dynamicMenu", "Menü"},
                                   ElementWord{"labelControl", "Beschriftung"},
                                   ElementWord{"dialogBoxLauncher", "Startschaltfläche"},
                                   ElementWord{"group", "Gruppe"},
                                   ElementWord{"tab", "Registerkarte"},
                                   ElementWord{"command", "Befehl"}};

constexpr std::array<std::string_view, 6> kCallbacks{"onAction", "onChange", "onLoad", "onShow", "onHide", "loadImage"};

bool IsCallback(std::string_view attribute) noexcept {
  const bool getter =
      attribute.size() > 3 && attribute.starts_with("get") && attribute[3] >= 'A' && attribute[3] <= 'Z';
  return getter || std::find(kCallbacks.begin(), kCallbacks.end(), attribute) != kCallbacks.end();
}

/// "Schaltfläche 'Start' im Menüband (getLabel)"; what a click runs goes without saying.
std::string PlaceOf(const XmlReader& xml, std::string_view attribute, std::string_view edition) {
  const auto* found = std::find_if(kElementWords.begin(), kElementWords.end(),
                                   [&](const ElementWord& entry) { return entry.element == xml.Name(); });
  std::string place = found == kElementWords.end() ? "Menüband" : std::string(found->word);
  std::string name;
  for (const char* key : {"label", "id", "idQ", "idMso"}) {
    if (name.empty()) name = OneLineText(xml.Attribute(key).value_or(""));
  }
  if (!name.empty()) place.append(" '").append(name).append("'");
  if (found != kElementWords.end()) place += " im Menüband";
  if (attribute != "onAction") place.append(" (").append(attribute).append(")");
  return place.append(edition);
}

}  // namespace

void ReadRibbon(ByteStream& stream, bool replaced, FactsCollector& collector) {
  const std::string_view edition = replaced ? ", nur in Office 2007" : "";
  XmlReader xml(stream);
  for (auto tag = xml.Next(); tag != XmlReader::Tag::kDone; tag = xml.Next()) {
    if (tag != XmlReader::Tag::kStart) continue;
    for (const XmlReader::NamedValue& attribute : xml.Attributes()) {
      if (!IsCallback(attribute.name)) continue;
      collector.Count(Binding::Kind::kRibbon, text::Trim(DecodeXml(attribute.raw)),
                      PlaceOf(xml, attribute.name, edition));
    }
  }
}

}  // namespace quillmate::office
