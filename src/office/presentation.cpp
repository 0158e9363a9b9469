#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include <zlib.h>

#include <quillmate/office/compound_file.h>

#include "presentation_p.h"

namespace quillmate::office {
namespace {

/// Record types, 2.13.24.
enum RecordType : std::uint16_t {
  kDocument = 0x03E8,
  kVbaInfo = 0x03FF,
  kVbaInfoAtom = 0x0400,
  kDocumentInfoList = 0x07D0,
  kUserEdit = 0x0FF5,
  kCurrentUser = 0x0FF6,
  kOleObjectStorage = 0x1011,
  kPersistDirectory = 0x1772
};

constexpr std::uint32_t kEncryptedToken = 0xF3D1C4DF;
constexpr std::uint64_t kHeadSize = 8;
constexpr std::size_t kNumberSize = 4;
/// Every save may add an edit.
constexpr int kMostEdits = 65536;
/// Nothing smaller holds a storage; of very many, the last ones are looked at.
constexpr std::uint64_t kSmallestStorage = 64;
constexpr std::size_t kMostStorages = 4096;

using State = PresentationProject::State;

struct Record {
  std::uint64_t start;  // of its content
  std::uint64_t end;
  std::uint16_t type;
  bool packed;
  /// False when it claims to reach beyond what holds it.
  bool whole;
};

/// Grows by what is really there: the size that the record claims may be anything.
bool Inflate(std::string_view packed, std::size_t limit, std::string& out) {
  z_stream stream{};
  if (inflateInit(&stream) != Z_OK) return false;
  // The library does not write to its input.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
  stream.avail_in = static_cast<uInt>(packed.size());
  std::array<char, std::size_t{64} << 10U> piece;
  int result = Z_OK;
  while (result == Z_OK && out.size() <= limit) {
    stream.next_out = reinterpret_cast<Bytef*>(piece.data());
    stream.avail_out = static_cast<uInt>(piece.size());
    result = inflate(&stream, Z_NO_FLUSH);
    out.append(piece.data(), piece.size() - stream.avail_out);
  }
  inflateEnd(&stream);
  // A project that breaks off is read as far as it goes.
  return !out.empty();
}

/// Where the way through the edits ends.
struct Found {
  enum class End { kProject, kNoMacros, kDamage };
  End end = End::kDamage;
  Record record{};
};

class Presentation {
 public:
  explicit Presentation(PiecedSource stream) : stream_(std::move(stream)) {}

  /// The project's record by way of the edits.
  Found FindProject(std::uint32_t currentEdit);
  struct StorageList {
    std::vector<Record> records;
    /// False when the row of records breaks off.
    bool whole = true;
  };
  /// The storages of embedded objects, in the order of the stream.
  StorageList Storages();
  PresentationProject Unpack(const Record& record, std::size_t limit);

 private:
  std::optional<Record> RecordAt(std::uint64_t at, std::uint64_t end);
  std::optional<Record> RecordOfType(std::uint64_t at, std::uint16_t type);
  std::optional<Record> Child(const Record& container, std::uint16_t type);
  std::uint32_t Number(std::uint64_t at);
  std::optional<Record> Object(std::uint32_t edit, std::uint32_t id, std::uint16_t type);
  std::optional<std::uint32_t> PersistOffset(std::uint32_t edit, std::uint32_t id);
  std::optional<std::uint32_t> OffsetIn(const Record& directory, std::uint32_t id);

  PiecedSource stream_;
};

std::uint32_t Presentation::Number(std::uint64_t at) {
  return LittleEndian<std::uint32_t>(ReadBytes(stream_, at, kNumberSize), 0);
}

std::optional<Record> Presentation::RecordAt(std::uint64_t at, std::uint64_t end) {
  const std::string head = ReadBytes(stream_, at, kHeadSize);
  if (head.size() < kHeadSize || end - at < kHeadSize) return std::nullopt;
  const std::uint64_t start = at + kHeadSize;
  const std::uint64_t claimed = LittleEndian<std::uint32_t>(head, 4);
  const std::uint64_t size = std::min(claimed, end - start);
  const auto instance = static_cast<std::uint16_t>(LittleEndian<std::uint16_t>(head, 0) >> 4U);
  return Record{start, start + size, LittleEndian<std::uint16_t>(head, 2), instance == 1, size == claimed};
}

std::optional<Record> Presentation::RecordOfType(std::uint64_t at, std::uint16_t type) {
  const std::optional<Record> record = RecordAt(at, stream_.Size());
  return record.has_value() && record->type == type ? record : std::nullopt;
}

std::optional<Record> Presentation::Child(const Record& container, std::uint16_t type) {
  for (std::uint64_t at = container.start; at < container.end;) {
    const std::optional<Record> record = RecordAt(at, container.end);
    if (!record.has_value() || record->type == type) return record;
    at = record->end;
  }
  return std::nullopt;
}

std::optional<std::uint32_t> Presentation::OffsetIn(const Record& directory, std::uint32_t id) {
  const std::string content = ReadBytes(stream_, directory.start, directory.end - directory.start);
  for (std::size_t at = 0; at + kNumberSize <= content.size();) {
    // The first id of a run has 20 bits, the length of the run 12.
    const auto run = LittleEndian<std::uint32_t>(content, at);
    const std::uint32_t first = run & 0xFFFFFU;
    const std::uint32_t count = run >> 20U;
    if (id >= first && id - first < count) {
      return LittleEndian<std::uint32_t>(content, at + kNumberSize * (1 + std::size_t{id - first}));
    }
    at += kNumberSize * (1 + std::size_t{count});
  }
  return std::nullopt;
}

/// An object is where the newest edit that knows it says. Edits form a chain, and so do their directories;
/// what an edit claims beyond that is not followed, so that no byte is read for two edits.
std::optional<std::uint32_t> Presentation::PersistOffset(std::uint32_t edit, std::uint32_t id) {
  constexpr std::uint64_t kLastEditAt = 8;
  constexpr std::uint64_t kDirectoryAt = 12;
  std::uint64_t bytesLeft = stream_.Size();
  for (int edits = 0; edits < kMostEdits; ++edits) {
    const std::optional<Record> record = RecordOfType(edit, kUserEdit);
    if (!record.has_value()) return std::nullopt;
    const std::optional<Record> directory = RecordOfType(Number(record->start + kDirectoryAt), kPersistDirectory);
    if (!directory.has_value() || directory->end - directory->start > bytesLeft) return std::nullopt;
    bytesLeft -= directory->end - directory->start;
    if (const std::optional<std::uint32_t> offset = OffsetIn(*directory, id)) return offset;
    const std::uint32_t before = Number(record->start + kLastEditAt);
    if (before == 0 || before >= edit) return std::nullopt;
    edit = before;
  }
  return std::nullopt;
}

std::optional<Record> Presentation::Object(std::uint32_t edit, std::uint32_t id, std::uint16_t type) {
  const std::optional<std::uint32_t> offset = PersistOffset(edit, id);
  return offset.has_value() ? RecordOfType(*offset, type) : std::nullopt;
}

Found Presentation::FindProject(std::uint32_t currentEdit) {
  constexpr std::uint64_t kDocumentIdAt = 16;
  constexpr std::uint64_t kHasMacrosAt = 4;
  const std::optional<Record> edit = RecordOfType(currentEdit, kUserEdit);
  if (!edit.has_value()) return {};
  const std::optional<Record> document = Object(currentEdit, Number(edit->start + kDocumentIdAt), kDocument);
  if (!document.has_value()) return {};
  const std::optional<Record> list = Child(*document, kDocumentInfoList);
  const std::optional<Record> info = list.has_value() ? Child(*list, kVbaInfo) : std::nullopt;
  const std::optional<Record> atom = info.has_value() ? Child(*info, kVbaInfoAtom) : std::nullopt;
  if (!atom.has_value() || Number(atom->start + kHasMacrosAt) == 0) return {Found::End::kNoMacros, {}};
  const std::optional<Record> project = Object(currentEdit, Number(atom->start), kOleObjectStorage);
  return project.has_value() ? Found{Found::End::kProject, *project} : Found{};
}

Presentation::StorageList Presentation::Storages() {
  StorageList storages;
  storages.whole = stream_.Size() > 0;
  for (std::uint64_t at = 0; at < stream_.Size();) {
    const std::optional<Record> record = RecordAt(at, stream_.Size());
    if (!record.has_value()) {
      storages.whole = storages.whole && stream_.Size() - at < kHeadSize;
      break;
    }
    const bool isStorage = record->type == kOleObjectStorage && record->end - record->start >= kSmallestStorage;
    if (isStorage) storages.records.push_back(*record);
    storages.whole = storages.whole && record->whole;
    at = record->end;
  }
  return storages;
}

PresentationProject Presentation::Unpack(const Record& record, std::size_t limit) {
  PresentationProject project;
  project.state = State::kTooLarge;
  if (record.end - record.start > limit) return project;
  std::string content = ReadBytes(stream_, record.start, record.end - record.start);
  if (!record.packed) {
    project.bytes = std::move(content);
  } else if (content.size() < kNumberSize ||
             !Inflate(std::string_view(content).substr(kNumberSize), limit, project.bytes)) {
    project.state = State::kDamaged;
    return project;
  }
  if (project.bytes.size() <= limit) project.state = State::kRead;
  return project;
}

/// Embedded documents have storages too, but their projects are further inside.
bool HoldsProject(const std::string& bytes) {
  MemorySource source(bytes);
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  return file.has_value() && file->FindStorage(CompoundFile::kRoot, "VBA").has_value();
}

/// PowerPoint 95 had no macros, and its streams are of another kind: the one of the user is no record.
bool IsOfPowerPoint95(std::string_view currentUser) noexcept {
  constexpr std::size_t kTypeAt = 2;
  return !currentUser.empty() && LittleEndian<std::uint16_t>(currentUser, kTypeAt) != kCurrentUser;
}

/// The search from the end, for a presentation whose edits are damaged. Unpacks no more than `limit` bytes in all.
PresentationProject LastProject(Presentation& presentation, std::size_t limit) {
  const auto [storages, whole] = presentation.Storages();
  PresentationProject project;
  for (std::size_t tried = 0; tried < std::min(storages.size(), kMostStorages) && limit > 0; ++tried) {
    project = presentation.Unpack(storages[storages.size() - 1 - tried], limit);
    if (project.state == State::kRead && HoldsProject(project.bytes)) return project;
    limit -= std::min(limit, project.bytes.size());
  }
  project.bytes.clear();
  project.state = whole ? State::kNoMacros : State::kUnreadable;
  if (limit == 0) project.state = State::kTooLarge;
  return project;
}

}  // namespace

PresentationProject ReadPresentationProject(PiecedSource document, std::string_view currentUser, std::size_t limit) {
  constexpr std::size_t kTokenAt = 12;
  constexpr std::size_t kCurrentEditAt = 16;
  PresentationProject project;
  if (LittleEndian<std::uint32_t>(currentUser, kTokenAt) == kEncryptedToken) {
    project.state = State::kEncrypted;
    return project;
  }
  Presentation presentation(std::move(document));
  const Found found = presentation.FindProject(LittleEndian<std::uint32_t>(currentUser, kCurrentEditAt));
  if (found.end == Found::End::kNoMacros) return project;
  if (found.end == Found::End::kProject) {
    project = presentation.Unpack(found.record, limit);
    if (project.state == State::kTooLarge || HoldsProject(project.bytes)) return project;
  }
  project = LastProject(presentation, limit);
  const bool old = project.state == State::kUnreadable && IsOfPowerPoint95(currentUser);
  if (old) project.state = State::kNoMacros;
  return project;
}

}  // namespace quillmate::office
