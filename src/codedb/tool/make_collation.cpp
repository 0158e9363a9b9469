// Writes src/codedb/collation_table_p.h: how the 256 characters of Windows-1252 sort in German according to the
// language data of the Unicode consortium, as ICU has them. A maintainer's tool, for newer language data: indexes sort
// as their program does, so a changed table changes the order in every index.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <unicode/ucol.h>
#include <unicode/ucoleitr.h>

#include <quillmate/text/windows1252.h>

#include "character_weights_p.h"

namespace {

using quillmate::codedb::CharacterWeights;

constexpr char32_t kMiddleDot = 0xB7;

struct Element {
  std::uint32_t letter;
  std::uint32_t mark;
  bool operator==(const Element&) const = default;
};
using Elements = std::vector<Element>;

void Check(UErrorCode error) {
  if (U_FAILURE(error)) throw std::runtime_error(u_errorName(error));
}

/// The library hands out a long weight in two parts, the second one with both upper bits of its last byte set.
void Add(std::uint32_t part, Elements& elements) {
  const std::uint32_t letter = part >> 16;
  const std::uint32_t mark = (part >> 8) & 0xFF;
  if ((part & 0xC0) == 0xC0) {
    elements.back().letter |= letter;
    elements.back().mark |= mark;
  } else {
    elements.push_back({letter << 16, mark << 8});
  }
}

class German {
 public:
  German() {
    UErrorCode error = U_ZERO_ERROR;
    collator_.reset(ucol_open("de", &error));
    Check(error);
  }

  Elements Of(std::u16string_view text) const {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<UCollationElements, decltype(&ucol_closeElements)> parts(
        ucol_openElements(collator_.get(), text.data(), static_cast<std::int32_t>(text.size()), &error),
        ucol_closeElements);
    Check(error);
    Elements elements;
    for (std::int32_t part = 0; (part = ucol_next(parts.get(), &error)) != UCOL_NULLORDER;)
      Add(static_cast<std::uint32_t>(part), elements);
    Check(error);
    std::erase(elements, Element{0, 0});
    return elements;
  }

 private:
  struct Close {
    void operator()(UCollator* collator) const { ucol_close(collator); }
  };
  std::unique_ptr<UCollator, Close> collator_;
};

/// Replaces weights by their ranks, so that each fits a byte.
class Ranks {
 public:
  void Add(std::uint32_t weight) { weights_.insert(weight); }
  std::uint8_t Of(std::uint32_t weight) const {
    const auto rank = std::distance(weights_.begin(), weights_.find(weight));
    if (rank > 255) throw std::runtime_error("too many weights for a byte");
    return static_cast<std::uint8_t>(rank);
  }

 private:
  std::set<std::uint32_t> weights_{0};
};

std::u16string Character(unsigned code) { return {quillmate::text::ToUnicode(static_cast<unsigned char>(code))}; }

/// The table knows one pair of characters that is more than its halves; the next version of the language data may have
/// others.
void CheckPairs(const German& german, const std::vector<Elements>& table) {
  for (unsigned a = 0; a < 256; ++a) {
    for (unsigned b = 0; b < 256; ++b) {
      if (b == kMiddleDot && (a == 'l' || a == 'L')) continue;
      Elements both = table[a];
      both.insert(both.end(), table[b].begin(), table[b].end());
      if (german.Of(Character(a) + Character(b)) != both)
        throw std::runtime_error("the characters " + std::to_string(a) + " and " + std::to_string(b) +
                                 " belong together");
    }
  }
}

void Append(std::uint8_t rank, std::array<std::uint8_t, 3>& list) {
  if (rank == 0) return;
  auto* const end = std::find(list.begin(), list.end(), 0);
  if (end == list.end()) throw std::runtime_error("a character has too many weights");
  *end = rank;
}

CharacterWeights Ranked(const Elements& elements, const Ranks& letters, const Ranks& marks) {
  CharacterWeights weights{};
  for (const Element& element : elements) {
    Append(letters.Of(element.letter), weights.letters);
    Append(marks.Of(element.mark), weights.marks);
  }
  return weights;
}

/// The character for the comment of its line; its number where there is nothing to see. A backslash would continue the
/// comment.
std::string Name(unsigned code) {
  char name[8];
  std::snprintf(name, sizeof name, "0x%02X", code);
  const bool control = Character(code)[0] == code && (code < 0x20 || (code >= 0x7F && code < 0xA0));
  const bool blank = code == ' ' || code == '\\' || code == 0xA0 || code == 0xAD;
  if (control || blank) return name;
  return quillmate::text::Utf8FromCode(std::string(1, static_cast<char>(code)));
}

std::string List(const std::array<std::uint8_t, 3>& list) {
  std::string text;
  for (const unsigned weight : list) {
    if (weight != 0) text += (text.empty() ? "" : ", ") + std::to_string(weight);
  }
  return "{" + text + "}";
}

void Print(const std::vector<Elements>& table, const Elements& dotBehindL) {
  Ranks letters;
  Ranks marks;
  const auto add = [&](const Elements& elements) {
    for (const Element& element : elements) letters.Add(element.letter), marks.Add(element.mark);
  };
  for (const Elements& elements : table) add(elements);
  add(dotBehindL);
  std::printf(
      "#pragma once\n\n// Made by src/codedb/tool/make_collation.cpp from the language data of version %s.\n\n"
      "#include <array>\n\n#include \"character_weights_p.h\"\n\nnamespace quillmate::codedb {\n\n"
      "/// By Windows-1252 code.\ninline constexpr std::array<CharacterWeights, 256> kCharacterWeights{{\n",
      U_ICU_VERSION);
  for (unsigned code = 0; code < table.size(); ++code) {
    const CharacterWeights weights = Ranked(table[code], letters, marks);
    std::printf("    {%s, %s},  // %s\n", List(weights.letters).c_str(), List(weights.marks).c_str(),
                Name(code).c_str());
  }
  const CharacterWeights dot = Ranked(dotBehindL, letters, marks);
  std::printf(
      "}};\n\n/// The middle dot right behind an l: a mark on the l, no character of its own.\n"
      "inline constexpr CharacterWeights kDotBehindL{%s, %s};\n\n}  // namespace quillmate::codedb\n",
      List(dot.letters).c_str(), List(dot.marks).c_str());
}

void Run() {
  const German german;
  std::vector<Elements> table;
  for (unsigned code = 0; code < 256; ++code) table.push_back(german.Of(Character(code)));
  CheckPairs(german, table);
  Elements dotBehindL = german.Of(u"l\u00B7");
  if (dotBehindL.empty() || Elements{dotBehindL.front()} != table['l'])
    throw std::runtime_error("an l with a dot is no l");
  dotBehindL.erase(dotBehindL.begin());
  Print(table, dotBehindL);
}

}  // namespace

int main() {
  try {
    Run();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_collation: %s\n", error.what());
    return 1;
  }
  return 0;
}
