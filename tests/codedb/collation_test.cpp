#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <quillmate/codedb/collation.h>
#include <quillmate/text/operations.h>

namespace quillmate::codedb {
namespace {

int Sign(int order) { return (order > 0) - (order < 0); }

TEST(Collation, GermanOrderWithoutCase) {
  const std::string_view order =
      "_ < _a < 0 < 10 < 9 < a = A < a_b = A_B < a1 < Apfel = APFEL < Äpfel = äpfel < Apfelmus < Ast < O = o < Ö = ö < "
      "Öl = öl < Pass < strasse = STRASSE < Straße = STRAßE < z < Zebra < Zebra_1 < Zebra1";
  std::string_view before;
  for (const std::string_view line : text::Split(order, " < ")) {
    const auto equal = text::Split(line, " = ");
    for (const std::string_view one : equal) {
      EXPECT_EQ(CompareText(equal[0], one), 0) << line;
      EXPECT_LT(CompareText(before, one), 0) << before << " " << one;
      EXPECT_GT(CompareText(one, before), 0) << before << " " << one;
    }
    before = equal[0];
  }
}

TEST(Collation, ForeignCharactersSortBehindAllOthers) {
  const std::string order[] = {"z", "þ", "\u0100", "Ω", "Ωa", "日", "😀", "\xFF"};
  for (std::size_t i = 0; i < std::size(order); ++i) {
    for (std::size_t k = 0; k < std::size(order); ++k) {
      EXPECT_EQ(Sign(CompareText("a" + order[i], "A" + order[k])), Sign(static_cast<int>(i) - static_cast<int>(k)))
          << order[i] << " " << order[k];
    }
  }
  EXPECT_LT(CompareText("Ωä", "Ωb"), 0);
  EXPECT_LT(CompareText("Ωa", "Ωä"), 0);
}

}  // namespace
}  // namespace quillmate::codedb
