#include <memory>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <unicode/ucol.h>

#include <quillmate/codedb/collation.h>
#include <quillmate/text/windows1252.h>

/// The order of the program's own against the language data that it was made from.
namespace quillmate::codedb {
namespace {

/// Doesn't count, and yet parts its neighbours.
constexpr char kControl = '\201';

int Sign(int order) { return (order > 0) - (order < 0); }

class SystemCollator {
 public:
  SystemCollator() : collator_(ucol_open("de", &error_), ucol_close) {
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

/// Both are Windows-1252.
void ExpectSameOrder(SystemCollator& collator, const std::string& a, const std::string& b) {
  const std::string utf8A = text::Utf8FromCode(a);
  const std::string utf8B = text::Utf8FromCode(b);
  ASSERT_EQ(Sign(CompareText(utf8A, utf8B)), Sign(collator.Compare(utf8A, utf8B))) << utf8A << " " << utf8B;
}

TEST(CollationOfSystem, AgreesOnEveryPairOfCharacters) {
  SystemCollator collator;
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      const std::string one(1, static_cast<char>(a));
      const std::string other(1, static_cast<char>(b));
      ExpectSameOrder(collator, one, other);
      // A character that changes the one before it, an l with a dot say, makes two characters sort like none of them.
      ExpectSameOrder(collator, one + other, one + "z");
      ExpectSameOrder(collator, one + other, std::string{one[0], kControl, other[0]});
    }
  }
}

TEST(CollationOfSystem, AgreesOnCharactersOfSeveralLetters) {
  SystemCollator collator;
  const std::string all[] = {
      "\337",     "ss",    "s",    "sS",   "SS\344",   "\337\344", "\346",      "ae",   "\306b", "a",
      "\234",     "oe",    "\214", "\231", "tm",       "TM",       "\275",      "1/2",  "\274",  "\276",
      "1",        "\205",  "...",  "..",   "l\267",    "L\267l",   "l\201\267", "l",    "ll",    "\267",
      "\337\205", "ss...", "\374", "u",    "\374\337", "\334SS",   "\252",      "\262", "2",     std::string(1, '\0')};
  for (const std::string& a : all) {
    for (const std::string& b : all) ExpectSameOrder(collator, a, b);
  }
}

std::string RandomText(std::mt19937& random, std::string_view alphabet) {
  std::string text;
  for (auto n = random() % 7; n > 0; --n) text += alphabet[random() % alphabet.size()];
  return text;
}

/// A text that shares a beginning with another one, where comparisons go wrong.
std::string Variant(std::mt19937& random, const std::string& text, std::string_view alphabet) {
  return text.substr(0, random() % (text.size() + 1)) + RandomText(random, alphabet);
}

TEST(CollationOfSystem, AgreesOnRandomTexts) {
  std::string all;
  for (int code = 0; code < 256; ++code) all += static_cast<char>(code);
  const std::string_view plain = "_0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
  const std::string_view alike = "aAbLlsSuzZ_19\344\304\374\337\351\267\237\234\201 -.'\200\236\275\262";
  SystemCollator collator;
  for (const std::string_view alphabet : {std::string_view(all), plain, alike}) {
    std::mt19937 random(42);
    for (int i = 0; i < 60000 && !testing::Test::HasFailure(); ++i) {
      const std::string a = RandomText(random, alphabet);
      ExpectSameOrder(collator, a, i % 2 == 0 ? RandomText(random, alphabet) : Variant(random, a, alphabet));
    }
  }
}

}  // namespace
}  // namespace quillmate::codedb
