#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include <quillmate/office/compound_file.h>
#include <quillmate/office/office_file.h>
#include <quillmate/text/operations.h>

#include "access_pages_p.h"
#include "office_result_p.h"
#include "presentation_p.h"
#include "zip_entry_p.h"

namespace quillmate::office {
namespace {

using State = OfficeFile::State;
using reasons::kBrokenProject;
using reasons::kEncrypted;
using reasons::kTooLarge;
using reasons::kWithoutMacros;

constexpr std::array<std::string_view, 24> kExtensions{
    "xlsm", "xlsb", "xltm", "xlam", "xls", "xla", "xlt", "docm", "dotm",  "doc",   "dot",   "pptm",
    "potm", "ppam", "ppsm", "ppt",  "pps", "pot", "mdb", "mda",  "accdb", "accda", "accde", "mde"};

constexpr const char* kEmpty = "Datei ist leer";
constexpr const char* kNoOffice = "Datei ist keine Office-Datei";
constexpr const char* kBrokenZip = "Datei ist beschädigt: das Verzeichnis der Zip-Datei ist nicht lesbar";
constexpr const char* kBrokenEntry = "Datei ist beschädigt: das Makroprojekt lässt sich nicht entpacken";
constexpr const char* kBrokenCompound = "Datei ist beschädigt: ihr Verzeichnis ist nicht lesbar";
constexpr const char* kPartOfDirectory = "Datei ist beschädigt: ein Teil ihres Verzeichnisses fehlt";
constexpr const char* kBrokenPresentation = "Datei ist beschädigt: die Präsentation ist nicht lesbar";
constexpr const char* kOfExcel95 = "Makros im Format von Excel 5.0 und 95 lassen sich nicht lesen";
constexpr const char* kCutShort = "Das Makroprojekt ist beschädigt und wurde nur zum Teil entpackt";

// First bytes --------------------------------------------------------------------------------------------------------

enum class Kind { kUnknown, kZip, kCompound, kAccess };

constexpr std::size_t kHeadSize = 32;

Kind KindOf(std::string_view head) noexcept {
  if (head.starts_with("PK\3\4") || head.starts_with("PK\5\6")) return Kind::kZip;
  if (CompoundFile::HasSignature(head)) return Kind::kCompound;
  return AccessPages::HasSignature(head) ? Kind::kAccess : Kind::kUnknown;
}

// Compound files -----------------------------------------------------------------------------------------------------

struct MainStream {
  const char* name;
  OfficeHost host;
};
constexpr std::array kMainStreams{MainStream{"Workbook", OfficeHost::kExcel}, MainStream{"Book", OfficeHost::kExcel},
                                  MainStream{"WordDocument", OfficeHost::kWord},
                                  MainStream{"PowerPoint Document", OfficeHost::kPowerPoint}};

/// [MS-XLS] 2.4.117: the record that says so comes before the first sheet.
bool IsEncryptedWorkbook(std::string_view start) noexcept {
  constexpr std::uint16_t kFilePass = 0x002F;
  constexpr std::uint16_t kEnd = 0x000A;
  constexpr std::uint16_t kSheet = 0x0085;
  constexpr std::size_t kRecordHead = 4;
  for (std::size_t at = 0; at + kRecordHead <= start.size();
       at += kRecordHead + LittleEndian<std::uint16_t>(start, at + 2)) {
    const auto id = LittleEndian<std::uint16_t>(start, at);
    if (id == kFilePass) return true;
    if (id == kEnd || id == kSheet) return false;
  }
  return false;
}

/// [MS-DOC] 2.5.2.
bool IsEncryptedDocument(std::string_view start) noexcept {
  constexpr std::size_t kFlagsAt = 10;
  constexpr std::uint16_t kEncryptedFlag = 0x0100;
  return (LittleEndian<std::uint16_t>(start, kFlagsAt) & kEncryptedFlag) != 0;
}

bool IsEncrypted(const CompoundFile& file, OfficeHost host, CompoundId mainStream) {
  constexpr std::uint64_t kStart = 4096;
  if (host == OfficeHost::kExcel) return IsEncryptedWorkbook(file.ReadStream(mainStream, kStart).bytes);
  return host == OfficeHost::kWord && IsEncryptedDocument(file.ReadStream(mainStream, kStart).bytes);
}

/// A compound file that is nothing but a project, out of a zip or a presentation.
OfficeFile ReadBareProject(const std::string& bytes, OfficeHost host) {
  MemorySource source(bytes);
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  const std::optional<CompoundId> storage = file.has_value() ? FindVbaProject(*file) : std::nullopt;
  if (!storage.has_value()) return Without(State::kFailed, kBrokenProject, host);
  return ReadProjectIn(*file, *storage, host);
}

OfficeFile ReadPresentation(const CompoundFile& file, CompoundId stream) {
  constexpr std::uint64_t kUserAtomSize = 64;
  const std::optional<CompoundId> user = file.FindStream(CompoundFile::kRoot, "Current User");
  const std::string currentUser = user.has_value() ? file.ReadStream(*user, kUserAtomSize).bytes : std::string();
  const PresentationProject project =
      ReadPresentationProject(file.OpenStream(stream, file.Size()), currentUser, kLargestVbaProject);
  switch (project.state) {
    case PresentationProject::State::kRead:
      return ReadBareProject(project.bytes, OfficeHost::kPowerPoint);
    case PresentationProject::State::kEncrypted:
      return Without(State::kFailed, kEncrypted, OfficeHost::kPowerPoint);
    case PresentationProject::State::kTooLarge:
      return Without(State::kFailed, kTooLarge, OfficeHost::kPowerPoint);
    case PresentationProject::State::kDamaged:
      return Without(State::kFailed, kBrokenEntry, OfficeHost::kPowerPoint);
    case PresentationProject::State::kUnreadable:
      return Without(State::kFailed, kBrokenPresentation, OfficeHost::kPowerPoint);
    default:
      return Without(State::kNoMacros, kWithoutMacros, OfficeHost::kPowerPoint);
  }
}

OfficeFile ReadCompound(ByteSource& source) {
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  if (!file.has_value()) return Without(State::kFailed, kBrokenCompound);
  // A zip that is encrypted lies in a compound file, [MS-OFFCRYPTO] 2.3.4.4.
  if (file->FindStream(CompoundFile::kRoot, "EncryptedPackage")) return Without(State::kFailed, kEncrypted);
  OfficeHost host = OfficeHost::kUnknown;
  for (const MainStream& known : kMainStreams) {
    const std::optional<CompoundId> stream = file->FindStream(CompoundFile::kRoot, known.name);
    if (!stream.has_value()) continue;
    host = known.host;
    if (host == OfficeHost::kPowerPoint) return ReadPresentation(*file, *stream);
    if (IsEncrypted(*file, host, *stream)) return Without(State::kFailed, kEncrypted, host);
  }
  const std::optional<CompoundId> storage = FindVbaProject(*file);
  if (storage.has_value()) return ReadProjectIn(*file, *storage, host);
  // A file that was cut off may have had a project.
  if (!file->WholeDirectory()) return Without(State::kFailed, kPartOfDirectory, host);
  // Before Excel 97 a project lay elsewhere and in another form.
  if (file->FindPath(CompoundFile::kRoot, "_VBA_PROJECT/dir")) return Without(State::kFailed, kOfExcel95, host);
  return Without(State::kNoMacros, kWithoutMacros, host);
}

// Zips ---------------------------------------------------------------------------------------------------------------

OfficeHost HostOfEntry(std::string_view name) noexcept {
  if (text::StartsWithIgnoreCase(name, "xl/")) return OfficeHost::kExcel;
  if (text::StartsWithIgnoreCase(name, "word/")) return OfficeHost::kWord;
  return text::StartsWithIgnoreCase(name, "ppt/") ? OfficeHost::kPowerPoint : OfficeHost::kUnknown;
}

OfficeFile ReadZip(ByteSource& source) {
  const ZipEntry entry = ReadZipEntry(source, "vbaProject.bin", kLargestVbaProject);
  const OfficeHost host = HostOfEntry(entry.name);
  switch (entry.state) {
    case ZipEntry::State::kRead:
      break;
    case ZipEntry::State::kMissing:
      return entry.office ? Without(State::kNoMacros, kWithoutMacros) : Without(State::kNotOffice, kNoOffice);
    case ZipEntry::State::kNoZip:
      return Without(State::kFailed, kBrokenZip);
    case ZipEntry::State::kEncrypted:
      return Without(State::kFailed, kEncrypted, host);
    case ZipEntry::State::kTooLarge:
      return Without(State::kFailed, kTooLarge, host);
    case ZipEntry::State::kDamaged:
      return Without(State::kFailed, kBrokenEntry, host);
  }
  OfficeFile file = ReadBareProject(entry.bytes, host);
  if (file.state == State::kRead && !entry.complete)
    file.project.warnings.emplace(file.project.warnings.begin(), kCutShort);
  return file;
}

OfficeFile ReadKind(Kind kind, ByteSource& source) {
  switch (kind) {
    case Kind::kZip:
      return ReadZip(source);
    case Kind::kCompound:
      return ReadCompound(source);
    case Kind::kAccess:
      return ReadAccessFile(source);
    default:
      return Without(State::kNotOffice, kNoOffice);
  }
}

}  // namespace

OfficeFile ReadOfficeFile(ByteSource& source) {
  if (source.Size() == 0) return Without(State::kFailed, kEmpty);
  const Kind kind = KindOf(ReadBytes(source, 0, kHeadSize));
  OfficeFile file = ReadKind(kind, source);
  file.recognized = kind != Kind::kUnknown;
  return file;
}

OfficeFile ReadOfficeFile(const std::filesystem::path& file) {
  FileSource source(file);
  OfficeFile result;
  if (source.Problem().empty()) result = ReadOfficeFile(source);
  // What a file that can't be read seems to lack says nothing.
  if (!source.Problem().empty()) {
    const bool recognized = result.recognized;
    result = Without(State::kFailed, source.Problem());
    result.recognized = recognized;
  }
  return result;
}

std::span<const std::string_view> OfficeFileExtensions() noexcept { return kExtensions; }

}  // namespace quillmate::office
