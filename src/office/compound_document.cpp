#include <array>
#include <memory>
#include <optional>
#include <string_view>

#include <quillmate/office/compound_file.h>

#include "encryption_p.h"
#include "office_result_p.h"
#include "package_facts_p.h"
#include "presentation_p.h"

namespace quillmate::office {
namespace {

using State = OfficeFile::State;

struct MainStream {
  const char* name;
  OfficeHost host;
};
constexpr std::array kMainStreams{MainStream{"Workbook", OfficeHost::kExcel}, MainStream{"Book", OfficeHost::kExcel},
                                  MainStream{"WordDocument", OfficeHost::kWord},
                                  MainStream{"PowerPoint Document", OfficeHost::kPowerPoint}};

/// [MS-DOC] 2.5.2.
bool IsEncryptedDocument(std::string_view start) noexcept {
  constexpr std::size_t kFlagsAt = 10;
  constexpr std::uint16_t kEncryptedFlag = 0x0100;
  return (LittleEndian<std::uint16_t>(start, kFlagsAt) & kEncryptedFlag) != 0;
}

OfficeFile ReadPresentation(const CompoundFile& file, CompoundId stream, const ReadOptions& options) {
  constexpr std::uint64_t kUserAtomSize = 64;
  const std::optional<CompoundId> user = file.FindStream(CompoundFile::kRoot, "Current User");
  const std::string currentUser = user.has_value() ? file.ReadStream(*user, kUserAtomSize).bytes : std::string();
  const PresentationProject project =
      ReadPresentationProject(file.OpenStream(stream, file.Size()), currentUser, kLargestVbaProject);
  switch (project.state) {
    case PresentationProject::State::kRead:
      return ReadBareProject(project.bytes, OfficeHost::kPowerPoint, options);
    case PresentationProject::State::kEncrypted:
      return Without(State::kFailed, Reason::kEncrypted, OfficeHost::kPowerPoint);
    case PresentationProject::State::kTooLarge:
      return Without(State::kFailed, Reason::kProjectTooLarge, OfficeHost::kPowerPoint);
    case PresentationProject::State::kDamaged:
      return Without(State::kFailed, Reason::kBrokenEntry, OfficeHost::kPowerPoint);
    case PresentationProject::State::kUnreadable:
      return Without(State::kFailed, Reason::kBrokenPresentation, OfficeHost::kPowerPoint);
    default:
      return Without(State::kNoMacros, Reason::kNoMacros, OfficeHost::kPowerPoint);
  }
}

/// Without a project of VBA.
OfficeFile ReadWithoutProject(const CompoundFile& file, OfficeHost host, std::optional<CompoundId> mainStream,
                              const ReadOptions& options) {
  constexpr std::uint64_t kStart = 4096;
  // A file that was cut off may have had a project.
  if (!file.WholeDirectory()) return Without(State::kFailed, Reason::kPartOfDirectory, host);
  // Before Excel 97 a project was elsewhere and in another form.
  if (file.FindPath(CompoundFile::kRoot, "_VBA_PROJECT/dir")) return Without(State::kFailed, Reason::kOfExcel95, host);
  if (host != OfficeHost::kExcel || !mainStream.has_value()) return Without(State::kNoMacros, Reason::kNoMacros, host);
  PiecedSource workbook = file.OpenStream(*mainStream, file.Size());
  const bool macroSheets = HoldsMacroSheet(workbook);
  if (!macroSheets && IsClosedWorkbook(ReadBytes(workbook, 0, kStart)))
    return Without(State::kFailed, Reason::kEncrypted, host);
  if (!macroSheets) return Without(State::kNoMacros, Reason::kNoMacros, host);
  return WithMacroSheetsAlone(options, [&](FactsCollector& collector) { ReadCompoundFacts(file, host, collector); });
}

/// A document in the open formats that is encrypted in a compound file [MS-OFFCRYPTO] 2.3.4.4.
OfficeFile ReadEncrypted(const CompoundFile& file, const ReadOptions& options) {
  const std::unique_ptr<PackageSource> package = PackageSource::Open(file);
  if (package == nullptr) return Without(State::kFailed, Reason::kEncrypted);
  OfficeFile result = ReadZipFile(*package, options);
  result.facts.defaultPassword = true;
  return result;
}

}  // namespace

OfficeFile ReadCompoundFile(ByteSource& source, const ReadOptions& options) {
  constexpr std::uint64_t kStart = 4096;
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  if (!file.has_value()) return Without(State::kFailed, Reason::kBrokenCompound);
  if (file->FindStream(CompoundFile::kRoot, "EncryptedPackage")) return ReadEncrypted(*file, options);
  OfficeHost host = OfficeHost::kUnknown;
  std::optional<CompoundId> mainStream;
  for (const MainStream& known : kMainStreams) {
    const std::optional<CompoundId> stream = file->FindStream(CompoundFile::kRoot, known.name);
    if (!stream.has_value()) continue;
    host = known.host;
    mainStream = stream;
    if (host == OfficeHost::kPowerPoint) break;
    const bool closed = host == OfficeHost::kWord && IsEncryptedDocument(file->ReadStream(*stream, kStart).bytes);
    if (closed) return Without(State::kFailed, Reason::kEncrypted, host);
  }
  const auto search = [&](FactsCollector& collector) { ReadCompoundFacts(*file, host, collector); };
  if (host == OfficeHost::kPowerPoint) return WithFacts(ReadPresentation(*file, *mainStream, options), options, search);
  const std::optional<CompoundId> storage = FindVbaProject(*file);
  // Workbooks leave their macros in the clear, also where the sheets are encrypted.
  if (storage.has_value()) return WithFacts(ReadProjectIn(*file, *storage, host, options), options, search);
  return ReadWithoutProject(*file, host, mainStream, options);
}

}  // namespace quillmate::office
