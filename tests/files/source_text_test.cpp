#include <gtest/gtest.h>

#include <quillmate/files/source_text.h>

namespace quillmate::files {
namespace {

TEST(SourceText, EncodingIsTakenFromTheBytes) {
  const struct {
    std::string_view name, bytes, code;
  } cases[] = {
      {"plain", "Sub A\r\n", "Sub A\r\n"},
      {"utf-8 without mark", "'\xC3\xA4\n", "'\xE4\r\n"},
      {"utf-8 with mark", "\xEF\xBB\xBFx", "x"},
      {"windows-1252", "'\xE4\xF6\xFC", "'\xE4\xF6\xFC"},
      {"half a sequence is windows-1252", "'\xC3\xA4\xE4", "'\xC3\xA4\xE4"},
      {"utf-16 little endian", {"\xFF\xFE\xE4\0\r\0\n\0", 8}, "\xE4\r\n"},
      {"utf-16 big endian", {"\xFE\xFF\0\xE4\0\n", 6}, "\xE4\r\n"},
      {"utf-16 with half a unit", {"\xFF\xFE\x41\0\x42", 5}, "A"},
      {"lone breaks", "a\rb\nc\r\nd\n\r", "a\r\nb\r\nc\r\nd\r\n\r\n"},
      {"empty", "", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(DecodeSourceText(c.bytes), c.code) << c.name;
}

}  // namespace
}  // namespace quillmate::files
