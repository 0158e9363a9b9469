#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <unicode/ucol.h>

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

/// The comparison without the short cut for plain characters.
class PlainCollator {
 public:
  PlainCollator() : collator_(ucol_open("de", &error_), ucol_close) {
    ucol_setStrength(collator_.get(), UCOL_SECONDARY);
  }
  int Compare(const std::string& a, const std::string& b) {
    return ucol_strcollUTF8(collator_.get(), a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()),
                            &error_);
  }

 private:
  UErrorCode error_ = U_ZERO_ERROR;
  std::unique_ptr<UCollator, decltype(&ucol_close)> collator_;
};

std::string RandomName(std::mt19937& random, const std::vector<std::string>& alphabet) {
  std::string name;
  for (auto n = random() % 7; n > 0; --n) name += alphabet[random() % alphabet.size()];
  return name;
}

/// A variant of a name: shared prefixes are where comparisons go wrong.
std::string Variant(std::mt19937& random, const std::string& name, const std::vector<std::string>& alphabet) {
  return name.substr(0, random() % (name.size() + 1)) + RandomName(random, alphabet);
}

TEST(Collation, ShortCutAgreesWithTheCollator) {
  std::vector<std::string> plain = {"_"};
  for (char c = '0'; c <= '9'; ++c) plain.emplace_back(1, c);
  for (char c = 'a'; c <= 'z'; ++c)
    plain.insert(plain.end(), {std::string(1, c), std::string(1, static_cast<char>(c - 32))});
  std::vector<std::string> mixed = {"a",
                                    "A",
                                    "b",
                                    "L",
                                    "l",
                                    "s",
                                    "S",
                                    "u",
                                    "_",
                                    "1",
                                    "9",
                                    "ä",
                                    "Ä",
                                    "ü",
                                    "ß",
                                    "é",
                                    "·",
                                    "Ÿ",
                                    "\u0308",
                                    "\u0327",
                                    "\u0338",
                                    "\u0081",
                                    " ",
                                    "-",
                                    ".",
                                    "'",
                                    "€",
                                    "ž",
                                    "½",
                                    "²",
                                    std::string(1, '\0')};
  PlainCollator collator;
  for (const auto& alphabet : {plain, mixed}) {
    std::mt19937 random(42);
    for (int i = 0; i < 60000; ++i) {
      const std::string a = RandomName(random, alphabet);
      const std::string b = i % 2 == 0 ? RandomName(random, alphabet) : Variant(random, a, alphabet);
      ASSERT_EQ(Sign(CompareText(a, b)), Sign(collator.Compare(a, b))) << a << " " << b;
    }
  }
}

}  // namespace
}  // namespace quillmate::codedb
