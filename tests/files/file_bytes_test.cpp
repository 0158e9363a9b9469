#include <array>
#include <random>
#include <stdexcept>

#include <gtest/gtest.h>

#include <quillmate/files/sha256.h>

#include "scratch.h"
#include "sha256_p.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

/// Lengths around the ends of a block, where the padding turns over.
TEST(Sha256, KnownSums) {
  const struct {
    std::size_t length;
    std::string_view sum;
  } cases[] = {
      {0, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {55, "85528b5baff5639cb8e7daca79d085ac29ac0978e873ed7527158616b2b6c379"},
      {56, "f8ce2f8d6990c639668fe404262f35ed72d8bb145ad6bae786af7284447386df"},
      {64, "ee8e658590c9a5e119400a774415a01db104de1ee6e2c29ec69aa73ef46544d2"},
      {119, "c8bc8a6e9626586bb888ad131d44ed2bd37fc608e902904ade3c566c4208e6ca"},
      {1000, "2e6bba1f3cf48fe45fa1c56e25b47fb622dde50eba1e17e0a72464e32bf4ab41"},
  };
  for (const auto& [length, expected] : cases) {
    Sha256 sum;
    for (std::size_t i = 0; i < length; ++i) sum.Add("q");
    EXPECT_EQ(sum.Digits(), expected) << length;
  }
}

/// What the processor adds by itself is what everybody adds.
TEST(Sha256, ProcessorAgreesWithAnyOther) {
  AddSha256Block* const own = ProcessorsSha256();
  if (own == nullptr) GTEST_SKIP() << "the processor has no instructions for it";
  std::array<unsigned char, 64> block{};
  Sha256State expected{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a, 0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  Sha256State found = expected;
  std::mt19937 random(5);
  for (int i = 0; i < 1000; ++i) {
    for (unsigned char& byte : block) byte = static_cast<unsigned char>(random());
    AddSha256BlockAnywhere(expected, block.data());
    own(found, block.data());
    ASSERT_EQ(found, expected) << i;
  }
}

TEST(WholeFile, FailuresNameFileAndReason) {
  const ScratchFolder folder;
  const fs::path missing = folder.Path() / "weg" / "Datei.txt";
  const struct {
    fs::path file;
    const char* reason;
  } cases[] = {{missing, "existiert nicht"}, {folder.Path(), "Das ist ein Ordner"}};
  for (const auto& c : cases) {
    const std::string message = MessageOf([&] { WriteWholeFile(c.file, "x"); });
    EXPECT_NE(message.find(PathText(c.file)), std::string::npos) << message;
    EXPECT_NE(message.find(c.reason), std::string::npos) << message;
  }
  for (const fs::path& file : {missing, folder.Path()}) {
    const std::string message = MessageOf([&] { ReadWholeFile(file); });
    EXPECT_NE(message.find(PathText(file)), std::string::npos) << message;
  }
}

TEST(WholeFile, SizesAroundTheBuffer) {
  const ScratchFolder folder;
  const fs::path file = folder.Path() / "Datei";
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 8191U, 8192U, 65536U, 200000U}) {
    std::string bytes(size, 'x');
    for (std::size_t at = 0; at < size; at += 1000) bytes[at] = static_cast<char>('a' + at / 1000 % 26);
    WriteWholeFile(file, bytes);
    EXPECT_EQ(ReadWholeFile(file), bytes);
    std::string pieces;
    ReadInPieces(file, [&pieces](std::string_view piece) {
      EXPECT_FALSE(piece.empty());
      pieces += piece;
    });
    EXPECT_EQ(pieces, bytes);
  }
  EXPECT_THROW(ReadInPieces(folder.Path(), [](std::string_view) {}), Failure);
  EXPECT_THROW(ReadInPieces(file, [](std::string_view) { throw std::logic_error("genug"); }), std::logic_error);
  EXPECT_EQ(FileHash(folder.Path()), "");
}

#ifndef _WIN32  // where files are on disks and links need rights
TEST(WholeFile, FullDisk) {
  const ScratchFolder folder;
  const fs::path full = folder.Path() / "voll.txt";
  fs::create_symlink("/dev/full", full);
  for (const std::size_t size : {1U, 1U << 20U}) {
    const std::string message = MessageOf([&] { WriteWholeFile(full, std::string(size, 'x')); });
    EXPECT_NE(message.find("ist voll"), std::string::npos) << message;
  }
  EXPECT_TRUE(fs::exists("/dev/full"));
}

TEST(WholeFile, FilesWithoutASize) { EXPECT_GT(ReadWholeFile("/proc/self/status").size(), 100U); }
#endif

}  // namespace
}  // namespace quillmate::files
