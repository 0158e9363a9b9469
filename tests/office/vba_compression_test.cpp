#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <quillmate/office/vba_compression.h>

#include "office/vba_writer.h"

namespace quillmate::office {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kNoLimit = std::string::npos;

std::string Unpacked(std::string_view container) {
  const VbaUnpacked result = UnpackVba(container, kNoLimit);
  return result.bytes + (result.complete ? "" : "...");
}

/// The examples that the format's description gives, and what real files hold beyond it.
TEST(VbaCompression, Containers) {
  const struct {
    const char* what;
    std::string_view container;
    std::string text;
  } cases[] = {
      {"nothing to copy", "\1\x19\xB0\0abcdefgh\0ijklmnop\0qrstuv."sv, "abcdefghijklmnopqrstuv."},
      {"copies", "\1\x2F\xB0\0#aaabcde\x82\x66\0paghij\1\x38\x08\x61kl\0\x30mnop\6q\2\x70\4\x10rstuv\x10wxyz\0\x3C"sv,
       "#aaabcdefaaaaghijaaaaaklaaamnopqaaaaaaaaaaaarstuvwxyzaaa"},
      {"one copy over itself", "\1\3\xB0\2\x61\x45\0"sv, std::string(73, 'a')},
      {"empty", "\1"sv, ""},
      {"two chunks", "\1\2\xB0\0ab\1\xB0\0c"sv, "abc"},
      {"not packed, short", "\1\1\x30xyz"sv, "xy..."},
      {"not packed", "\1\2\x30xyz"sv, "xyz"},
      {"more than a chunk is cut", "\1\6\xB0\x02x\xFF\x0F\0yz\1\xB0\0c"sv, std::string(4096, 'x') + "c"},
      {"filled up", "\1\1\xB0\0a\0\0\0\0"sv, "a"},
      {"chunk cut off", "\1\x19\xB0\0abc"sv, "abc..."},
      {"header cut off", "\1\1\xB0\0a\x19"sv, "a..."},
      {"token cut off", "\1\3\xB0\2a\x45"sv, "a..."},
      {"copy from before the chunk", "\1\3\xB0\2a\x45\x10"sv, "a..."},
      {"copy at the start", "\1\2\xB0\1\0\0"sv, "..."},
      {"chunk of an unknown sort", "\1\1\xB0\0a\1\xC0\0b"sv, "a..."},
      {"no container", "\2\1\xB0\0a"sv, "..."},
      {"nothing", "", "..."},
  };
  for (const auto& [what, container, text] : cases) EXPECT_EQ(Unpacked(container), text) << what;
}

TEST(VbaCompression, WhatIsPackedComesBack) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    const std::size_t size = random() % 20000;
    const std::size_t letters = 1 + random() % 200;
    std::string text;
    while (text.size() < size) text += static_cast<char>(random() % letters);
    // A chunk that packing would not make smaller is stored, filled up to its full size.
    std::string filled = text;
    filled.resize((size + 4095) / 4096 * 4096);
    const std::string unpacked = Unpacked(PackVba(text));
    EXPECT_TRUE(unpacked.starts_with(text) && filled.starts_with(unpacked)) << round;
    EXPECT_TRUE(Unpacked(StoreVba(text)) == filled) << round;
  }
}

TEST(VbaCompression, StopsAtTheLimit) {
  // 700 times as much as it takes.
  std::string bomb("\1");
  for (int i = 0; i < 20000; ++i) bomb += "\3\xB0\x02x\xFF\x0F"sv;
  EXPECT_EQ(UnpackVba(bomb, kNoLimit).bytes.size(), 20000U * 4096);
  const VbaUnpacked limited = UnpackVba(bomb, 10000);
  EXPECT_EQ(limited.bytes.size(), 12288U);
  EXPECT_FALSE(limited.complete);
}

TEST(VbaCompression, FindsAContainerByItsText) {
  const std::string text = PackVba("Attribute VB_Name = \"Ab\"\r\nSub X()\r\nEnd Sub\r\n");
  // Bytes in front that look like containers, one that holds something else, one that is cut off.
  const std::string front = "\1\x19\xB0" + std::string(9, '\1') + PackVba("Attribute VB_Base = 0");
  EXPECT_EQ(FindContainer(front + text, "ATTRIBUTE VB_Name"), front.size());
  EXPECT_EQ(FindContainer(front + text, "Attribute VB_Nam "), std::string::npos);
  EXPECT_EQ(FindContainer(front, "Attribute VB_Name"), std::string::npos);
  EXPECT_EQ(FindContainer(text.substr(0, 12), "Attribute VB_Name"), std::string::npos);
  EXPECT_TRUE(UnpacksTo(StoreVba("Attribute VB_Name"), "attribute vb_name"));
}

}  // namespace
}  // namespace quillmate::office
