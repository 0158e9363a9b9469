#include <memory>
#include <string_view>

#include <quillmate/text/operations.h>

#include "office_result_p.h"
#include "opc_package_p.h"
#include "package_facts_p.h"
#include "zip_archive_p.h"

namespace quillmate::office {
namespace {

using State = OfficeFile::State;

constexpr const char* kCutShort = "Das Makroprojekt ist beschädigt und wurde nur zum Teil entpackt";

OfficeHost HostOfEntry(std::string_view name) noexcept {
  if (text::StartsWithIgnoreCase(name, "xl/")) return OfficeHost::kExcel;
  if (text::StartsWithIgnoreCase(name, "word/")) return OfficeHost::kWord;
  return text::StartsWithIgnoreCase(name, "ppt/") ? OfficeHost::kPowerPoint : OfficeHost::kUnknown;
}

/// Without a project of VBA.
OfficeFile ReadWithoutProject(const ZipArchive& zip, const ReadOptions& options) {
  if (!zip.Find("[Content_Types].xml").has_value()) return Without(State::kNotOffice, Reason::kNotOffice);
  if (!zip.HoldsFolder("xl/macrosheets/")) return Without(State::kNoMacros, Reason::kNoMacros);
  return WithMacroSheetsAlone(options, [&](FactsCollector& collector) {
    ReadPackageFacts(OpcPackage(zip), "", OfficeHost::kExcel, options.excel4, collector);
  });
}

OfficeFile ReadEntry(const ZipEntry& entry, OfficeHost host, const ReadOptions& options) {
  switch (entry.state) {
    case ZipEntry::State::kRead:
      break;
    case ZipEntry::State::kEncrypted:
      return Without(State::kFailed, Reason::kEncrypted, host);
    case ZipEntry::State::kTooLarge:
      return Without(State::kFailed, Reason::kProjectTooLarge, host);
    default:
      return Without(State::kFailed, Reason::kBrokenEntry, host);
  }
  OfficeFile file = ReadBareProject(entry.bytes, host, options);
  if (file.state == State::kRead && !entry.complete) {
    file.project.warnings.emplace(file.project.warnings.begin(), kCutShort);
  }
  return file;
}

}  // namespace

OfficeFile ReadZipFile(ByteSource& source, const ReadOptions& options) {
  const ZipArchive zip(source);
  if (!zip.Opened()) return Without(State::kFailed, Reason::kBrokenZip);
  const auto index = zip.FindEnding("vbaProject.bin");
  if (!index.has_value()) return ReadWithoutProject(zip, options);
  const std::string part = zip.Name(*index);
  const OfficeHost host = HostOfEntry(part);
  return WithFacts(
      ReadEntry(zip.Read(*index, kLargestVbaProject), host, options), options,
      [&](FactsCollector& collector) { ReadPackageFacts(OpcPackage(zip), part, host, options.excel4, collector); });
}

}  // namespace quillmate::office
