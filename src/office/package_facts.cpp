#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <quillmate/office/macro_signature.h>
#include <quillmate/text/operations.h>

#include "excel_facts_p.h"
#include "package_facts_p.h"
#include "unicode_names_p.h"
#include "xml_reader_p.h"

namespace quillmate::office {
namespace {

constexpr std::size_t kLongestProperty = 4096;
constexpr std::size_t kLargestToolbars = std::size_t{16} << 20U;

struct PropertyElement {
  std::string_view element;
  std::string DocumentProperties::*field;
};
constexpr std::array kPropertyElements{PropertyElement{"title", &DocumentProperties::title},
                                       PropertyElement{"creator", &DocumentProperties::author},
                                       PropertyElement{"lastModifiedBy", &DocumentProperties::lastAuthor},
                                       PropertyElement{"created", &DocumentProperties::created},
                                       PropertyElement{"modified", &DocumentProperties::modified},
                                       PropertyElement{"Company", &DocumentProperties::company},
                                       PropertyElement{"Application", &DocumentProperties::application}};

/// The two parts with properties have no element in common.
void ReadProperties(const OpcPackage& package, std::string_view part, DocumentProperties& properties) {
  const std::unique_ptr<ByteStream> stream = package.Open(part);
  if (stream == nullptr) return;
  XmlReader xml(*stream);
  std::string version;
  for (auto tag = xml.Next(); tag != XmlReader::Tag::kDone; tag = xml.Next()) {
    if (tag != XmlReader::Tag::kStart) continue;
    const std::string_view name = xml.Name();
    const auto* found = std::find_if(kPropertyElements.begin(), kPropertyElements.end(),
                                     [&](const PropertyElement& entry) { return entry.element == name; });
    if (name == "AppVersion") version = xml.Text(kLongestProperty);
    if (found != kPropertyElements.end()) properties.*found->field = xml.Text(kLongestProperty);
  }
  if (!version.empty() && !properties.application.empty()) properties.application += " " + version;
}

/// Ribbons of the document; two relations of the same name differ in their year, which the part's namespace repeats.
void ReadRibbons(const OpcPackage& package, const std::vector<Relation>& relations, FactsCollector& collector) {
  std::vector<std::string> parts;
  for (const Relation& relation : relations) {
    const bool ribbon = relation.type == "extensibility" || relation.type == "userCustomization";
    if (ribbon && !relation.external) parts.push_back(relation.target);
  }
  constexpr std::string_view kNewer = "/2009/07/customui";
  const auto isNewer = [&](const std::string& part) {
    constexpr std::size_t kHead = 4096;
    const std::unique_ptr<ByteStream> stream = package.Open(part);
    std::string head(kHead, '\0');
    if (stream != nullptr) head.resize(stream->Read(head.data(), kHead));
    return head.find(kNewer) != std::string::npos;
  };
  const bool anyNewer = std::any_of(parts.begin(), parts.end(), isNewer);
  for (const std::string& part : parts) {
    const std::unique_ptr<ByteStream> stream = package.Open(part);
    if (stream != nullptr) ReadRibbon(*stream, anyNewer && !isNewer(part), collector);
  }
}

/// Newer programs write up to three signatures beside the project; all are of one signer.
void ReadSignature(const OpcPackage& package, std::string_view project, DocumentFacts& facts) {
  constexpr std::size_t kLargestSignature = std::size_t{4} << 20U;
  facts.isSigned = false;
  for (const Relation& relation : package.RelationsOf(project)) {
    if (!relation.type.starts_with("vbaProjectSignature") || relation.external) continue;
    facts.isSigned = true;
    if (!facts.signature.signer.empty()) return;
    facts.signature = ReadMacroSignature(package.Read(relation.target, kLargestSignature));
  }
}

std::string StreamNamed(const CompoundFile& file, std::string_view name, std::uint64_t limit) {
  const auto stream = file.FindStream(CompoundFile::kRoot, name);
  return stream.has_value() ? file.ReadStream(*stream, limit).bytes : std::string();
}

}  // namespace

void ReadPackageFacts(const OpcPackage& package, std::string_view project, OfficeHost host, bool excel4,
                      FactsCollector& collector) {
  const std::vector<Relation> relations = package.RelationsOf("");
  DocumentFacts& facts = collector.Facts();
  if (!project.empty()) ReadSignature(package, project, facts);
  for (const Relation& relation : relations) {
    if (relation.external) continue;
    if (relation.type == "core-properties" || relation.type == "extended-properties") {
      ReadProperties(package, relation.target, facts.properties);
    } else if (relation.type == "officeDocument") {
      if (host == OfficeHost::kExcel) ExcelFacts(package, collector, excel4).Read(relation.target);
      if (host == OfficeHost::kWord) ReadWordFacts(package, relation.target, collector);
      if (host == OfficeHost::kPowerPoint) ReadPowerPointFacts(package, relation.target, collector);
      for (const Relation& toolbars : package.RelationsOf(relation.target)) {
        if (toolbars.type != "attachedToolbars") continue;
        ReadToolbars(package.Read(toolbars.target, kLargestToolbars), collector);
      }
    }
  }
  ReadRibbons(package, relations, collector);
  if (package.Exhausted()) collector.Bound("Das Dokument ist sehr groß und wurde nur zum Teil durchsucht");
}

void ReadCompoundFacts(const CompoundFile& file, OfficeHost host, FactsCollector& collector) {
  constexpr std::uint64_t kLargestSummary = std::uint64_t{1} << 20U;
  constexpr std::uint64_t kLargestSignature = std::uint64_t{4} << 20U;
  DocumentFacts& facts = collector.Facts();
  ReadSummary(StreamNamed(file, "\5SummaryInformation", kLargestSummary), facts.properties);
  const std::string more = StreamNamed(file, "\5DocumentSummaryInformation", kLargestSignature);
  if (const auto signature = SignatureInSummary(more)) {
    facts.isSigned = true;
    facts.signature = ReadMacroSignature(*signature);
  } else {
    facts.isSigned = false;
  }
  const auto open = [&](std::string_view name) {
    const auto stream = file.FindStream(CompoundFile::kRoot, name);
    return stream.has_value() ? std::optional(file.OpenStream(*stream, file.Size())) : std::nullopt;
  };
  if (host == OfficeHost::kExcel) {
    if (auto workbook = open("Workbook")) ReadXlsFacts(*workbook, collector);
    ReadToolbars(StreamNamed(file, "XCB", kLargestToolbars), collector);
  } else if (host == OfficeHost::kWord) {
    if (auto document = open("WordDocument")) ReadDocFacts(*document, collector);
    // Controls are among other objects there, and what names them is not certain.
    collector.Facts().controlsKnown = !file.FindStorage(CompoundFile::kRoot, "ObjectPool").has_value();
  } else if (host == OfficeHost::kPowerPoint) {
    if (auto document = open("PowerPoint Document")) ReadPptFacts(*document, collector);
  }
}

void ReadToolbars(std::string_view bytes, FactsCollector& collector) {
  constexpr std::size_t kShortest = 3;
  constexpr std::size_t kLongest = 100;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const std::size_t count = static_cast<unsigned char>(bytes[at]);
    if (count < kShortest || count > kLongest || bytes.size() - at - 1 < count * 2) continue;
    const std::string_view text = bytes.substr(at + 1, count * 2);
    // A letter of most scripts that code is written in has a small upper byte.
    if (text[1] != '\0' || text.find(std::string_view(".\0", 2)) == std::string_view::npos) continue;
    const std::string name = Utf8FromUtf16Bytes(text);
    if (!collector.Names().IsQualifiedRoutine(name)) continue;
    collector.Add(Binding::Kind::kToolbar, name, "Schaltfläche einer Symbolleiste");
    at += count * 2;
  }
}

}  // namespace quillmate::office
