#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/office/byte_source.h>
#include <quillmate/office/storage.h>

/// Reader of compound files, the file system in a file that older Office documents and all macro projects are, after
/// the published format [MS-CFB].
///
///     header              512 bytes: versions, sector size, where the tables begin             2.2
///     sectors             of 512 bytes (version 3) or 4096 (version 4); number n is at (n + 1) x sector size
///     FAT                 for each sector the number of the next one in its chain              2.3
///     DIFAT               the numbers of the FAT's own sectors, 109 in the header, then a chain 2.5
///     directory           128 bytes for each storage or stream; siblings form a binary tree    2.6
///     mini FAT, stream    streams shorter than the cutoff (4096) in pieces of 64 bytes,
///                         which are in the root entry's own chain                              2.4
///
/// Files may be damaged or made to do harm. Bounds: a chain ends where it runs into itself, so that neither a table
/// nor a stream has more bytes than the file; the FAT ends with the file's last sector, at the latest with the
/// kMostCompoundSectors-th; the directory ends after kMostCompoundEntries, and its tree is walked through once.
namespace quillmate::office {

inline constexpr std::size_t kMostCompoundEntries = std::size_t{1} << 18U;
inline constexpr std::uint32_t kMostCompoundSectors = std::uint32_t{1} << 22U;

using CompoundId = Storage::Id;

struct CompoundEntry {
  enum class Kind : std::uint8_t { kUnused, kStorage, kStream, kRoot };

  /// UTF-8.
  std::string name;
  /// The name with its letters in upper case: names that differ in case only are equal.
  std::string key;
  Kind kind = Kind::kUnused;
  /// The storage that holds it; the root is its own, and an entry that belongs to nobody has none.
  std::optional<CompoundId> parent;
  std::uint32_t firstSector = 0;
  std::uint64_t size = 0;
};

class CompoundFile final : public Storage {
 public:
  /// Reads the tables of `source`, which has to outlive the result; nothing when it has no usable header or no root.
  static std::optional<CompoundFile> Open(ByteSource& source);
  /// True when the bytes begin as a compound file does.
  static bool HasSignature(std::string_view head) noexcept;

  std::uint64_t Size() const noexcept override { return source_->Size(); }
  /// Every entry of the directory; an id is a position in it.
  const std::vector<CompoundEntry>& Entries() const noexcept { return entries_; }
  /// False when a part of the directory is lost: what is not among the entries may still have been in the file.
  bool WholeDirectory() const noexcept { return wholeDirectory_; }

  /// An entry by its name in a storage, UTF-8 and regardless of case.
  std::optional<CompoundId> Find(CompoundId storage, std::string_view name) const;
  /// An entry by its path from a storage on, names separated by "/".
  std::optional<CompoundId> FindPath(CompoundId storage, std::string_view path) const;
  std::optional<CompoundId> FindStorage(CompoundId storage, std::string_view name) const override;
  std::optional<CompoundId> FindStream(CompoundId storage, std::string_view name) const override;
  /// In the order of their names.
  std::vector<Item> List(CompoundId storage) const override;

  Stream ReadStream(CompoundId stream, std::uint64_t limit) const override;
  /// The first `limit` bytes to be read in places, as long as the chain reaches. It must not outlive this object.
  PiecedSource OpenStream(CompoundId stream, std::uint64_t limit) const;

 private:
  using Table = std::vector<std::uint32_t>;

  explicit CompoundFile(ByteSource& source) noexcept : source_(&source) {}
  bool ReadHeader();
  void ReadFat(std::string_view header);
  void AppendFatSectors(std::string_view numbers);
  void ReadMiniFat(std::uint32_t firstSector);
  bool ReadDirectory(std::uint32_t firstSector);
  void LinkTree(std::string_view directory);
  void SortEntries();

  std::uint64_t SectorSize() const noexcept { return std::uint64_t{1} << sectorShift_; }
  std::uint64_t OffsetOf(std::uint32_t sector) const noexcept { return (std::uint64_t{sector} + 1) << sectorShift_; }
  /// `next` gets what follows the chain's last sector.
  PiecedSource SectorChain(std::uint32_t first, std::uint64_t size, std::uint32_t* next = nullptr) const;
  PiecedSource MiniChain(std::uint32_t first, std::uint64_t size) const;

  ByteSource* source_;
  unsigned sectorShift_ = 9;
  std::uint32_t sectorCount_ = 0;
  std::uint64_t miniCutoff_ = 4096;
  Table fat_;
  Table miniFat_;
  std::unique_ptr<PiecedSource> miniStream_;
  std::vector<CompoundEntry> entries_;
  bool wholeDirectory_ = true;
  /// The entries that belong to a storage, by storage and key.
  std::vector<CompoundId> sorted_;
};

}  // namespace quillmate::office
