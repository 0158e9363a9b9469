#include "office/office_writer.h"

#include <algorithm>
#include <map>

#include <zlib.h>

namespace quillmate::office {
namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kFatSector = 0xFFFFFFFD;
constexpr std::uint32_t kDifatSector = 0xFFFFFFFC;
constexpr std::size_t kMiniSector = 64;
constexpr std::size_t kMiniCutoff = 4096;
constexpr std::size_t kHeaderFatSectors = 109;

/// Pieces of one size, linked to chains.
struct Pieces {
  std::size_t size;
  bool scattered;
  std::string bytes;
  std::vector<std::uint32_t> next;

  std::uint32_t Place(std::string stream) {
    if (stream.empty()) return kEndOfChain;
    stream.resize((stream.size() + size - 1) / size * size);
    const auto base = static_cast<std::uint32_t>(next.size());
    const auto count = static_cast<std::uint32_t>(stream.size() / size);
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::uint32_t at = scattered ? count - 1 - i : i;
      bytes += stream.substr(at * size, size);
      next.push_back(at + 1 == count ? kEndOfChain : base + (scattered ? i - 1 : i + 1));
    }
    return base + (scattered ? count - 1 : 0);
  }
};

std::string Numbers(const std::vector<std::uint32_t>& numbers) {
  std::string bytes;
  for (const std::uint32_t number : numbers) bytes += Bytes<4>(number);
  return bytes;
}

struct Node {
  std::string name;
  int kind;
  std::uint32_t first = 0;
  std::size_t size = 0;
  std::uint32_t left = kNone;
  std::uint32_t right = kNone;
  std::uint32_t child = kNone;
};

class Directory {
 public:
  Directory() { nodes.push_back({"Root Entry", 5}); }

  std::uint32_t Add(const std::string& path, int kind) {
    const auto [known, added] = ids_.try_emplace(path, static_cast<std::uint32_t>(nodes.size()));
    if (!added) return known->second;
    const std::uint32_t id = known->second;
    const std::size_t slash = path.rfind('/');
    nodes.push_back({path.substr(slash == std::string::npos ? 0 : slash + 1), kind});
    children_[slash == std::string::npos ? 0 : Add(path.substr(0, slash), 1)].push_back(id);
    return id;
  }
  /// Links the siblings to balanced trees.
  void Link() {
    for (auto& [parent, ids] : children_) nodes[parent].child = Tree(ids, 0, ids.size());
  }
  std::string File() const {
    std::string bytes;
    for (const Node& node : nodes) {
      std::string name = Utf16Bytes(std::u16string(node.name.begin(), node.name.end()));
      for (std::size_t i = 0; i < node.name.size(); ++i) name[2 * i + 1] = 0;
      const std::string size = Bytes<2>(name.size() + 2);
      name.resize(64);
      bytes += name + size + static_cast<char>(node.kind) + '\1' + Numbers({node.left, node.right, node.child}) +
               std::string(36, '\0') + Bytes<4>(node.first) + Bytes<8>(node.size);
    }
    return bytes;
  }

  std::vector<Node> nodes;

 private:
  std::uint32_t Tree(const std::vector<std::uint32_t>& ids, std::size_t from, std::size_t to) {
    if (from == to) return kNone;
    const std::size_t middle = (from + to) / 2;
    nodes[ids[middle]].left = Tree(ids, from, middle);
    nodes[ids[middle]].right = Tree(ids, middle + 1, to);
    return ids[middle];
  }

  std::map<std::string, std::uint32_t> ids_;
  std::map<std::uint32_t, std::vector<std::uint32_t>> children_;
};

/// The FAT with its own sectors, and the DIFAT's, after all others.
std::vector<std::uint32_t> AppendTables(Pieces& sectors, std::uint32_t& firstDifat, std::uint32_t& difatCount) {
  const std::size_t perSector = sectors.size / 4;
  const std::size_t data = sectors.next.size();
  std::size_t fat = 0;
  std::size_t difat = 0;
  while (fat * perSector < data + fat + difat) {
    ++fat;
    difat = fat <= kHeaderFatSectors ? 0 : (fat - kHeaderFatSectors + perSector - 2) / (perSector - 1);
  }
  std::vector<std::uint32_t> numbers;
  for (std::size_t i = 0; i < fat; ++i) numbers.push_back(static_cast<std::uint32_t>(data + i));
  std::vector<std::uint32_t> table = sectors.next;
  table.insert(table.end(), fat, kFatSector);
  table.insert(table.end(), difat, kDifatSector);
  table.resize(fat * perSector, kNone);
  sectors.bytes += Numbers(table);

  firstDifat = difat == 0 ? kEndOfChain : static_cast<std::uint32_t>(data + fat);
  difatCount = static_cast<std::uint32_t>(difat);
  for (std::size_t i = 0; i < difat; ++i) {
    const std::size_t from = kHeaderFatSectors + i * (perSector - 1);
    std::vector<std::uint32_t> part(numbers.begin() + static_cast<std::ptrdiff_t>(from),
                                    numbers.begin() + static_cast<std::ptrdiff_t>(std::min(fat, from + perSector - 1)));
    part.resize(perSector - 1, kNone);
    part.push_back(i + 1 == difat ? kEndOfChain : static_cast<std::uint32_t>(data + fat + i + 1));
    sectors.bytes += Numbers(part);
  }
  return numbers;
}

std::string Record(int instance, int type, const std::string& content) {
  return Bytes<2>(static_cast<unsigned>(instance) << 4U | 15U) + Bytes<2>(static_cast<unsigned>(type)) +
         Bytes<4>(content.size()) + content;
}

std::string Deflated(const std::string& bytes) {
  const auto length = static_cast<uLong>(bytes.size());
  std::string packed(compressBound(length), '\0');
  auto size = static_cast<uLongf>(packed.size());
  compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()), length,
            Z_BEST_SPEED);
  packed.resize(size);
  return packed;
}

}  // namespace

std::string Utf16Bytes(std::u16string_view text) {
  std::string bytes;
  for (const char16_t unit : text) bytes += Bytes<2>(unit);
  return bytes;
}

std::string CompoundWriter::File() const {
  Pieces sectors{version == 3 ? std::size_t{512} : std::size_t{4096}, scattered, {}, {}};
  Pieces mini{kMiniSector, scattered, {}, {}};
  Directory directory;
  for (const auto& [path, bytes] : streams) {
    const std::uint32_t id = directory.Add(path, 2);
    directory.nodes[id].size = bytes.size();
    directory.nodes[id].first = bytes.size() < kMiniCutoff ? mini.Place(bytes) : sectors.Place(bytes);
  }
  directory.Link();
  directory.nodes[0].first = sectors.Place(mini.bytes);
  directory.nodes[0].size = mini.bytes.size();
  const std::uint32_t firstMiniFat = sectors.Place(Numbers(mini.next));
  const std::uint32_t firstDirectory = sectors.Place(directory.File());
  std::uint32_t firstDifat = 0;
  std::uint32_t difatCount = 0;
  std::vector<std::uint32_t> fat = AppendTables(sectors, firstDifat, difatCount);

  const auto sectorsOf = [&](std::size_t size) {
    return static_cast<std::uint32_t>((size + sectors.size - 1) / sectors.size);
  };
  std::string header = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + std::string(16, '\0') + Bytes<2>(0x3E);
  header += Bytes<2>(static_cast<unsigned>(version)) + Bytes<2>(0xFFFE) + Bytes<2>(version == 3 ? 9 : 12) +
            Bytes<2>(6) + std::string(6, '\0') + Bytes<4>(version == 3 ? 0 : sectorsOf(128 * directory.nodes.size())) +
            Bytes<4>(fat.size());
  fat.resize(kHeaderFatSectors, kNone);
  header +=
      Numbers({firstDirectory, 0, kMiniCutoff, firstMiniFat, sectorsOf(4 * mini.next.size()), firstDifat, difatCount}) +
      Numbers(fat);
  header.resize(sectors.size);
  return header + sectors.bytes;
}

std::string ZipOf(const std::vector<ZipFile>& files) {
  std::string zip;
  std::string directory;
  for (const ZipFile& file : files) {
    // A zip holds deflated data without the head and the checksum that zlib puts around it.
    const std::string deflated = Deflated(file.bytes);
    const std::string data = file.deflate ? deflated.substr(2, deflated.size() - 6) : file.bytes;
    const auto crc = crc32(0, reinterpret_cast<const Bytef*>(file.bytes.data()), static_cast<uInt>(file.bytes.size()));
    const std::uint64_t size = file.claimedSize < 0 ? file.bytes.size() : static_cast<std::uint64_t>(file.claimedSize);
    const std::string common = Bytes<2>(20) + Bytes<2>(static_cast<unsigned>(file.flags)) +
                               Bytes<2>(file.deflate ? 8 : 0) + Bytes<4>(0x21) + Bytes<4>(crc) + Bytes<4>(data.size()) +
                               Bytes<4>(size) + Bytes<2>(file.name.size()) + Bytes<2>(0);
    directory.append("PK\1\2" + Bytes<2>(20)).append(common).append(10, '\0').append(Bytes<4>(zip.size()) + file.name);
    zip.append("PK\3\4").append(common).append(file.name).append(data);
  }
  const std::string count = Bytes<2>(files.size());
  return zip + directory + "PK\5\6" + Bytes<4>(0) + count + count + Bytes<4>(directory.size()) + Bytes<4>(zip.size()) +
         Bytes<2>(0);
}

std::string PresentationWriter::File() const {
  constexpr int kDocumentId = 1;
  constexpr int kProjectId = 2;
  const auto storage = [&](const std::string& bytes) {
    return packed ? Record(1, 0x1011, Bytes<4>(bytes.size()) + Deflated(bytes)) : Record(0, 0x1011, bytes);
  };
  const std::string info = Record(0, 0x0400, Bytes<4>(kProjectId) + Bytes<4>(hasMacros ? 1 : 0) + Bytes<4>(2));
  const std::string document =
      Record(0, 0x03E8, Record(0, 0x03E9, "xxxx") + Record(0, 0x07D0, Record(1, 0x03FF, info)) + Record(0, 0x03EA, ""));
  std::string stream;
  std::size_t lastEdit = 0;
  const auto save = [&](const std::string& projectBytes, bool withDocument) {
    const std::size_t documentAt = stream.size();
    if (withDocument) stream += document;
    const std::size_t projectAt = stream.size();
    stream += storage(projectBytes);
    const std::size_t directoryAt = stream.size();
    const std::string run =
        withDocument ? Bytes<4>(kDocumentId | 2U << 20U) + Bytes<4>(documentAt) : Bytes<4>(kProjectId | 1U << 20U);
    stream += Record(0, 0x1772, run + Bytes<4>(projectAt));
    const std::size_t editAt = stream.size();
    stream += Record(0, 0x0FF5,
                     Bytes<8>(0) + Bytes<4>(lastEdit) + Bytes<4>(brokenEdits ? 3 : directoryAt) +
                         Bytes<4>(kDocumentId) + Bytes<8>(3));
    lastEdit = editAt;
  };
  CompoundWriter embedded;
  embedded.Add("_VBA_PROJECT_CUR/VBA/dir", "x");
  save(olderProject, true);
  save(project, false);
  stream += storage(embedded.File());

  CompoundWriter file;
  const std::uint32_t token = encrypted ? 0xF3D1C4DF : 0xE391C05F;
  file.Add("Current User", Record(0, 0x0FF6, Bytes<4>(20) + Bytes<4>(token) + Bytes<4>(lastEdit) + Bytes<8>(0)));
  file.Add("PowerPoint Document", stream);
  return file.File();
}

}  // namespace quillmate::office
