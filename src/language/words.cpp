#include <array>
#include <string>

#include <quillmate/language/words.h>

#include "names_p.h"

namespace quillmate::language {
namespace {

constexpr std::string_view kSpellings[] = {
#define QUILLMATE_WORD(spelling) #spelling,
    QUILLMATE_LANGUAGE_WORDS(QUILLMATE_WORD)
#undef QUILLMATE_WORD
};
static_assert(std::size(kSpellings) == kWordCount);

constexpr std::size_t kLongestWord = 24;

/// Folded spellings, each with room after it so that eight bytes can be read from any of its characters.
struct FoldedWords {
  std::array<std::array<char, kLongestWord + 8>, kWordCount> text{};

  constexpr FoldedWords() {
    for (std::size_t word = 0; word < kWordCount; ++word) {
      for (std::size_t i = 0; i < kSpellings[word].size(); ++i) {
        const char c = kSpellings[word][i];
        text[word][i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c;
      }
    }
  }
};
constexpr FoldedWords kFolded;

}  // namespace

std::string_view WordSpelling(NameId word) noexcept { return kSpellings[word]; }
std::string_view WordFolded(NameId word) noexcept { return {kFolded.text[word].data(), kSpellings[word].size()}; }

}  // namespace quillmate::language
