#include <algorithm>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <quillmate/codedb/collation.h>

namespace quillmate::codedb {
namespace {

int Sign(int order) { return (order > 0) - (order < 0); }

TEST(Collation, GermanOrderWithoutCase) {
  // Each text sorts before the next one; texts separated by "=" are equal.
  const char* const order[] = {"",
                               "_",
                               "_a",
                               "0",
                               "10",
                               "9",
                               "a=A",
                               "a_b=A_B",
                               "a1",
                               "Apfel=APFEL",
                               "Äpfel=äpfel",
                               "Apfelmus",
                               "Ast",
                               "O=o",
                               "Ö=ö",
                               "Öl=öl",
                               "Pass",
                               "strasse=STRASSE",
                               "Straße=STRAßE",
                               "z",
                               "Zebra",
                               "Zebra_1",
                               "Zebra1"};
  std::string_view before;
  for (const std::string_view line : order) {
    std::string_view rest = line;
    const std::string_view first = rest.substr(0, rest.find('='));
    while (!rest.empty()) {
      const std::string_view one = rest.substr(0, rest.find('='));
      rest.remove_prefix(std::min(one.size() + 1, rest.size()));
      EXPECT_EQ(CompareText(first, one), 0) << line;
      if (line.data() != order[0]) {
        EXPECT_LT(CompareText(before, one), 0) << before << " " << one;
        EXPECT_GT(CompareText(one, before), 0) << before << " " << one;
      }
    }
    before = first;
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
