#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <quillmate/office/compound_file.h>

#include "office/office_writer.h"

namespace quillmate::office {
namespace {

/// Bytes that tell at which place of which stream they stand.
std::string Pattern(std::size_t size, unsigned seed) {
  std::string bytes;
  for (std::size_t i = 0; bytes.size() < size; ++i) bytes += Bytes<4>(i * 2654435761U + seed);
  bytes.resize(size);
  return bytes;
}

std::string Content(const CompoundFile& file, std::string_view path) {
  const std::optional<CompoundId> id = file.FindPath(CompoundFile::kRoot, path);
  if (!id.has_value()) return "-";
  const Storage::Stream stream = file.ReadStream(*id, std::string::npos);
  return stream.bytes + (stream.complete ? "" : "...");
}

std::string Content(const std::string& bytes, std::string_view path) {
  MemorySource source(bytes);
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  return file.has_value() ? Content(*file, path) : "no file";
}

void Put(std::string& bytes, std::size_t at, const std::string& part) { bytes.replace(at, part.size(), part); }

TEST(CompoundFile, StreamsOfAllSizes) {
  for (const int version : {3, 4}) {
    for (const bool scattered : {false, true}) {
      CompoundWriter writer;
      writer.version = version;
      writer.scattered = scattered;
      const std::size_t sizes[] = {0, 1, 63, 64, 65, 4095, 4096, 4097, 8192, 70000};
      for (const std::size_t size : sizes) {
        writer.Add("Ordner/s" + std::to_string(size), Pattern(size, static_cast<unsigned>(size)));
      }
      const std::string bytes = writer.File();
      for (const std::size_t size : sizes) {
        EXPECT_EQ(Content(bytes, "Ordner/s" + std::to_string(size)), Pattern(size, static_cast<unsigned>(size)))
            << version << scattered << " " << size;
      }
    }
  }
}

TEST(CompoundFile, ManySectorsNeedMoreThanTheHeadersTable) {
  CompoundWriter writer;
  // 109 sectors of the FAT reach 7 MB; 17 MB need two more tables.
  writer.Add("gross", Pattern(17U << 20U, 1));
  writer.Add("danach", Pattern(5000, 2));
  const std::string bytes = writer.File();
  EXPECT_TRUE(Content(bytes, "gross") == Pattern(17U << 20U, 1));
  EXPECT_EQ(Content(bytes, "danach"), Pattern(5000, 2));
}

TEST(CompoundFile, NamesInAnyCase) {
  CompoundWriter writer;
  writer.Add("Macros/VBA/\334bersicht", "1");
  writer.Add("Macros/VBA/dir", "2");
  writer.Add("dir", "3");
  const std::string bytes = writer.File();
  EXPECT_EQ(Content(bytes, "MACROS/vba/\303\274BERSICHT"), "1");
  EXPECT_EQ(Content(bytes, "macros/VBA/DIR"), "2");
  EXPECT_EQ(Content(bytes, "Dir"), "3");
  EXPECT_EQ(Content(bytes, "VBA/dir"), "-");
  EXPECT_EQ(Content(bytes, "dir/dir"), "-");
}

TEST(CompoundFile, ReadsInPlaces) {
  CompoundWriter writer;
  writer.scattered = true;
  writer.Add("s", Pattern(5000, 3));
  const std::string bytes = writer.File();
  MemorySource source(bytes);
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  ASSERT_TRUE(file.has_value());
  const CompoundId id = *file->FindStream(CompoundFile::kRoot, "s");
  PiecedSource stream = file->OpenStream(id, bytes.size());
  EXPECT_EQ(ReadBytes(stream, 500, 600), Pattern(5000, 3).substr(500, 600));
  EXPECT_EQ(ReadBytes(stream, 4990, 600), Pattern(5000, 3).substr(4990));
  EXPECT_EQ(ReadBytes(stream, 5000, 1), "");
  EXPECT_FALSE(file->ReadStream(id, 4999).complete);
  EXPECT_EQ(file->ReadStream(id, 7).bytes, Pattern(7, 3));
}

/// In a file with one stream of 5000 bytes its ten sectors come first, then the directory, then the FAT.
TEST(CompoundFile, DamageEndsWhereItBegins) {
  constexpr std::size_t kSector = 512;
  constexpr std::size_t kDirectory = kSector * 11;
  constexpr std::size_t kFat = kSector * 12;
  constexpr std::size_t kNode = kDirectory + 128;
  CompoundWriter writer;
  writer.Add("s", Pattern(5000, 4));
  const std::string good = writer.File();
  const std::string whole = Pattern(5000, 4);
  const struct {
    const char* what;
    std::size_t at;
    std::string part;
    std::string content;
  } cases[] = {
      {"chain runs into itself", kFat + 8, Bytes<4>(0), whole.substr(0, 1536) + whole.substr(0, 1024) + "..."},
      {"sector is its own next", kFat, Bytes<4>(0), whole.substr(0, 512) + "..."},
      {"chain ends early", kFat + 8, Bytes<4>(0xFFFFFFFE), whole.substr(0, 1536) + "..."},
      {"chain leaves the file", kFat + 8, Bytes<4>(4000), whole.substr(0, 1536) + "..."},
      {"size too large", kNode + 120, Bytes<4>(0x7FFFFFFF), whole + std::string(120, '\0') + "..."},
      {"upper half of the size", kNode + 124, Bytes<4>(77), whole},
      {"tree without end", kNode + 68, Bytes<4>(1), whole},
      {"child of its own", kDirectory + 76, Bytes<4>(0), "-"},
      {"FAT outside the file", 0x4C, Bytes<4>(1000), whole.substr(0, 512) + "..."},
      {"DIFAT in a loop", 0x44, Bytes<4>(0), whole},
      {"directory outside the file", 0x30, Bytes<4>(1000), "no file"},
      {"sectors of odd size", 0x1E, Bytes<2>(60), "no file"},
      {"no root", kDirectory + 66, Bytes<2>(1), "no file"},
      {"no signature", 0, "PK", "no file"},
  };
  for (const auto& [what, at, part, content] : cases) {
    std::string bytes = good;
    Put(bytes, at, part);
    const std::string got = Content(bytes, "s");
    EXPECT_EQ(got.size(), content.size()) << what;
    EXPECT_TRUE(got == content) << what;
  }
  EXPECT_EQ(Content(good.substr(0, 511), "s"), "no file");
}

TEST(CompoundFile, AStorageInItselfIsMetOnce) {
  CompoundWriter writer;
  for (char name = 'a'; name <= 'e'; ++name) writer.Add(std::string("x/") + name, "1");
  std::string bytes = writer.File();
  // The storage becomes its own child: its entry is met once, its streams are lost.
  const std::size_t entry = bytes.find(Utf16Bytes(u"x") + std::string(62, '\0'));
  ASSERT_NE(entry, std::string::npos);
  Put(bytes, entry + 76, Bytes<4>(2));
  EXPECT_EQ(Content(bytes, "x"), "");
  EXPECT_EQ(Content(bytes, "x/a"), "-");
}

}  // namespace
}  // namespace quillmate::office
