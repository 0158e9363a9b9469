#include <algorithm>
#include <tuple>

#include <quillmate/office/compound_file.h>
#include <quillmate/text/operations.h>

#include "unicode_names_p.h"

namespace quillmate::office {
namespace {

constexpr std::string_view kSignature = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";

// Offsets in the header, 2.2.
constexpr std::size_t kHeaderSize = 512;
constexpr std::size_t kSectorShiftAt = 0x1E;
constexpr std::size_t kFirstDirectoryAt = 0x30;
constexpr std::size_t kMiniCutoffAt = 0x38;
constexpr std::size_t kFirstMiniFatAt = 0x3C;
constexpr std::size_t kFirstDifatAt = 0x44;
constexpr std::size_t kDifatAt = 0x4C;
constexpr unsigned kShortShift = 9;
constexpr unsigned kLongShift = 12;
constexpr unsigned kMiniShift = 6;

// Offsets in a directory entry, 2.6.1.
constexpr std::size_t kNodeSize = 128;
constexpr std::size_t kNameLengthAt = 64;
constexpr std::size_t kKindAt = 66;
constexpr std::size_t kLeftAt = 68;
constexpr std::size_t kRightAt = 72;
constexpr std::size_t kChildAt = 76;
constexpr std::size_t kFirstSectorAt = 116;
constexpr std::size_t kSizeAt = 120;

constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kFreeSector = 0xFFFFFFFF;
constexpr std::uint32_t kNoNode = 0xFFFFFFFF;
constexpr std::size_t kNumberSize = sizeof(std::uint32_t);

/// Notices a chain that runs into itself: a mark moves on after 1, 2, 4 ... steps, and a loop comes back to it.
class LoopGuard {
 public:
  bool Repeats(std::uint32_t sector) noexcept {
    if (sector == mark_) return true;
    if (++steps_ == limit_) {
      mark_ = sector;
      steps_ = 0;
      limit_ *= 2;
    }
    return false;
  }

 private:
  std::uint32_t mark_ = kFreeSector;
  std::uint64_t steps_ = 0;
  std::uint64_t limit_ = 1;
};

/// Calls `append` with each sector of a chain and the bytes used of it, until `size` bytes are reached. Gives what
/// follows the last one.
template <typename Append>
std::uint32_t Follow(const std::vector<std::uint32_t>& table, std::uint32_t first, std::uint64_t size,
                     std::uint64_t sectorSize, Append append) {
  LoopGuard guard;
  std::uint32_t sector = first;
  for (; size > 0 && sector < table.size() && !guard.Repeats(sector); sector = table[sector]) {
    const std::uint64_t used = std::min(size, sectorSize);
    append(sector, used);
    size -= used;
  }
  return sector;
}

void AppendNumbers(std::string_view bytes, std::vector<std::uint32_t>& table) {
  table.reserve(table.size() + bytes.size() / kNumberSize);
  for (std::size_t at = 0; at + kNumberSize <= bytes.size(); at += kNumberSize) {
    table.push_back(LittleEndian<std::uint32_t>(bytes, at));
  }
}

CompoundEntry EntryOf(std::string_view node, bool longSizes) {
  CompoundEntry entry;
  const std::size_t nameSize = std::min<std::size_t>(LittleEndian<std::uint16_t>(node, kNameLengthAt), kNameLengthAt);
  // The size counts the closing NUL.
  if (nameSize >= 2) entry.name = Utf8FromUtf16Bytes(node.substr(0, nameSize - 2));
  entry.key = UpperCaseName(entry.name);
  switch (node[kKindAt]) {
    case 1:
      entry.kind = CompoundEntry::Kind::kStorage;
      break;
    case 2:
      entry.kind = CompoundEntry::Kind::kStream;
      break;
    case 5:
      entry.kind = CompoundEntry::Kind::kRoot;
      break;
    default:
      break;
  }
  entry.firstSector = LittleEndian<std::uint32_t>(node, kFirstSectorAt);
  // Version 3 leaves the upper half undefined.
  entry.size = longSizes ? LittleEndian<std::uint64_t>(node, kSizeAt) : LittleEndian<std::uint32_t>(node, kSizeAt);
  return entry;
}

}  // namespace

bool CompoundFile::HasSignature(std::string_view head) noexcept { return head.starts_with(kSignature); }

std::optional<CompoundFile> CompoundFile::Open(ByteSource& source) {
  CompoundFile file(source);
  if (!file.ReadHeader()) return std::nullopt;
  return file;
}

bool CompoundFile::ReadHeader() {
  const std::string header = ReadBytes(*source_, 0, kHeaderSize);
  if (header.size() < kHeaderSize || !HasSignature(header)) return false;
  sectorShift_ = LittleEndian<std::uint16_t>(header, kSectorShiftAt);
  if (sectorShift_ != kShortShift && sectorShift_ != kLongShift) return false;
  const std::uint64_t sectors = (source_->Size() - 1) >> sectorShift_;
  sectorCount_ = static_cast<std::uint32_t>(std::min<std::uint64_t>(sectors, kMostCompoundSectors));
  const auto cutoff = LittleEndian<std::uint32_t>(header, kMiniCutoffAt);
  if (cutoff != 0) miniCutoff_ = cutoff;

  ReadFat(header);
  if (!ReadDirectory(LittleEndian<std::uint32_t>(header, kFirstDirectoryAt))) return false;
  ReadMiniFat(LittleEndian<std::uint32_t>(header, kFirstMiniFatAt));
  SortEntries();
  return true;
}

/// 2.3 and 2.5. Each DIFAT sector ends with the number of the next one.
void CompoundFile::ReadFat(std::string_view header) {
  AppendFatSectors(header.substr(kDifatAt));
  auto next = LittleEndian<std::uint32_t>(header, kFirstDifatAt);
  LoopGuard guard;
  while (fat_.size() < sectorCount_ && next < sectorCount_ && !guard.Repeats(next)) {
    const std::string numbers = ReadBytes(*source_, OffsetOf(next), SectorSize());
    if (numbers.size() < SectorSize()) return;
    AppendFatSectors(std::string_view(numbers).substr(0, numbers.size() - kNumberSize));
    next = LittleEndian<std::uint32_t>(numbers, numbers.size() - kNumberSize);
  }
}

/// A FAT sector outside of the file leaves a gap: what the others say stays true.
void CompoundFile::AppendFatSectors(std::string_view numbers) {
  const std::size_t perSector = SectorSize() / kNumberSize;
  for (std::size_t at = 0; at + kNumberSize <= numbers.size() && fat_.size() < sectorCount_; at += kNumberSize) {
    const auto sector = LittleEndian<std::uint32_t>(numbers, at);
    if (sector == kFreeSector) continue;
    const std::size_t end = fat_.size() + perSector;
    if (sector < sectorCount_) AppendNumbers(ReadBytes(*source_, OffsetOf(sector), SectorSize()), fat_);
    fat_.resize(end, kFreeSector);
  }
}

bool CompoundFile::ReadDirectory(std::uint32_t firstSector) {
  std::uint32_t next = kEndOfChain;
  PiecedSource chain = SectorChain(firstSector, kMostCompoundEntries * kNodeSize, &next);
  const std::string directory = ReadBytes(chain, 0, chain.Size());
  wholeDirectory_ = next == kEndOfChain && directory.size() == chain.Size();
  for (std::size_t at = 0; at + kNodeSize <= directory.size(); at += kNodeSize) {
    entries_.push_back(EntryOf(std::string_view(directory).substr(at, kNodeSize), sectorShift_ == kLongShift));
  }
  if (entries_.empty() || entries_[kRoot].kind != CompoundEntry::Kind::kRoot) return false;
  LinkTree(directory);
  return true;
}

/// 2.6.4. Every entry is met once: a second way to it, or back to it, is damage.
void CompoundFile::LinkTree(std::string_view directory) {
  struct Step {
    std::uint32_t node;
    CompoundId parent;
  };
  const auto number = [&](CompoundId id, std::size_t field) {
    return LittleEndian<std::uint32_t>(directory, id * kNodeSize + field);
  };
  entries_[kRoot].parent = kRoot;
  std::vector<Step> steps{{number(kRoot, kChildAt), kRoot}};
  while (!steps.empty()) {
    const auto [node, parent] = steps.back();
    steps.pop_back();
    if (node == kNoNode) continue;
    const bool usable = node < entries_.size() && !entries_[node].parent.has_value() &&
                        entries_[node].kind != CompoundEntry::Kind::kUnused;
    if (!usable) {
      wholeDirectory_ = false;
      continue;
    }
    CompoundEntry& entry = entries_[node];
    entry.parent = parent;
    steps.push_back({number(node, kLeftAt), parent});
    steps.push_back({number(node, kRightAt), parent});
    if (entry.kind == CompoundEntry::Kind::kStorage) steps.push_back({number(node, kChildAt), node});
  }
}

void CompoundFile::ReadMiniFat(std::uint32_t firstSector) {
  const CompoundEntry& root = entries_[kRoot];
  miniStream_ = std::make_unique<PiecedSource>(SectorChain(root.firstSector, root.size));
  const std::uint64_t miniSectors = (miniStream_->Size() + (1U << kMiniShift) - 1) >> kMiniShift;
  PiecedSource chain = SectorChain(firstSector, miniSectors * kNumberSize);
  AppendNumbers(ReadBytes(chain, 0, chain.Size()), miniFat_);
}

void CompoundFile::SortEntries() {
  for (CompoundId id = kRoot + 1; id < entries_.size(); ++id) {
    if (entries_[id].parent.has_value()) sorted_.push_back(id);
  }
  std::sort(sorted_.begin(), sorted_.end(), [&](CompoundId a, CompoundId b) {
    const CompoundEntry& left = entries_[a];
    const CompoundEntry& right = entries_[b];
    return std::tie(*left.parent, left.key, a) < std::tie(*right.parent, right.key, b);
  });
}

PiecedSource CompoundFile::SectorChain(std::uint32_t first, std::uint64_t size, std::uint32_t* next) const {
  PiecedSource chain(source_);
  const std::uint32_t last =
      Follow(fat_, first, std::min(size, source_->Size()), SectorSize(),
             [&](std::uint32_t sector, std::uint64_t used) { chain.Append(OffsetOf(sector), used); });
  if (next != nullptr) *next = last;
  return chain;
}

PiecedSource CompoundFile::MiniChain(std::uint32_t first, std::uint64_t size) const {
  PiecedSource chain(miniStream_.get());
  Follow(miniFat_, first, std::min(size, miniStream_->Size()), std::uint64_t{1} << kMiniShift,
         [&](std::uint32_t sector, std::uint64_t used) { chain.Append(std::uint64_t{sector} << kMiniShift, used); });
  return chain;
}

std::optional<CompoundId> CompoundFile::Find(CompoundId storage, std::string_view name) const {
  const std::string key = UpperCaseName(name);
  const auto found =
      std::lower_bound(sorted_.begin(), sorted_.end(), key, [&](CompoundId id, const std::string& wanted) {
        return std::tie(*entries_[id].parent, entries_[id].key) < std::tie(storage, wanted);
      });
  if (found == sorted_.end() || entries_[*found].parent != storage || entries_[*found].key != key) return std::nullopt;
  return *found;
}

std::optional<CompoundId> CompoundFile::FindPath(CompoundId storage, std::string_view path) const {
  std::optional<CompoundId> found = storage;
  for (const std::string_view name : text::Split(path, "/")) {
    found = Find(*found, name);
    if (!found.has_value()) break;
  }
  return found;
}

std::optional<CompoundId> CompoundFile::FindStorage(CompoundId storage, std::string_view name) const {
  const std::optional<CompoundId> found = Find(storage, name);
  return found.has_value() && entries_[*found].kind == CompoundEntry::Kind::kStorage ? found : std::nullopt;
}

std::optional<CompoundId> CompoundFile::FindStream(CompoundId storage, std::string_view name) const {
  const std::optional<CompoundId> found = Find(storage, name);
  return found.has_value() && entries_[*found].kind == CompoundEntry::Kind::kStream ? found : std::nullopt;
}

std::vector<Storage::Item> CompoundFile::List(CompoundId storage) const {
  std::vector<Item> items;
  auto at = std::lower_bound(sorted_.begin(), sorted_.end(), storage,
                             [&](CompoundId id, CompoundId wanted) { return *entries_[id].parent < wanted; });
  for (; at != sorted_.end() && entries_[*at].parent == storage; ++at) {
    items.push_back({*at, entries_[*at].name, entries_[*at].kind == CompoundEntry::Kind::kStorage});
  }
  return items;
}

PiecedSource CompoundFile::OpenStream(CompoundId stream, std::uint64_t limit) const {
  const CompoundEntry& entry = entries_[stream];
  const std::uint64_t size = std::min(entry.size, limit);
  return entry.size < miniCutoff_ ? MiniChain(entry.firstSector, size) : SectorChain(entry.firstSector, size);
}

Storage::Stream CompoundFile::ReadStream(CompoundId stream, std::uint64_t limit) const {
  PiecedSource chain = OpenStream(stream, limit);
  Stream result;
  result.bytes = ReadBytes(chain, 0, chain.Size());
  result.complete = result.bytes.size() == entries_[stream].size;
  return result;
}

}  // namespace quillmate::office
