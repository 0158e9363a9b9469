#include <algorithm>
#include <array>

#include "lexer_p.h"

namespace quillmate::language {
namespace {

constexpr std::string_view kMonths[] = {"january", "february", "march",     "april",   "may",      "june",
                                        "july",    "august",   "september", "october", "november", "december"};

char Lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; }
bool IsDigit(char c) noexcept { return c >= '0' && c <= '9'; }
bool IsLetter(char c) noexcept { return Lower(c) >= 'a' && Lower(c) <= 'z'; }

/// Takes numbers, words and separators off the front of a date's text.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : rest_(text) {}

  void SkipBlanks() {
    while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t')) rest_.remove_prefix(1);
  }
  bool AtEnd() {
    SkipBlanks();
    return rest_.empty();
  }
  bool Take(std::string_view any) {
    if (rest_.empty() || any.find(rest_.front()) == std::string_view::npos) return false;
    rest_.remove_prefix(1);
    return true;
  }
  bool TakeNumber() {
    std::size_t digits = 0;
    while (digits < rest_.size() && IsDigit(rest_[digits])) ++digits;
    rest_.remove_prefix(digits);
    return digits > 0 && digits <= 4;
  }
  std::string_view TakeWord() {
    std::size_t letters = 0;
    while (letters < rest_.size() && IsLetter(rest_[letters])) ++letters;
    const std::string_view word = rest_.substr(0, letters);
    rest_.remove_prefix(letters);
    return word;
  }

 private:
  std::string_view rest_;
};

bool SameWord(std::string_view word, std::string_view lower) noexcept {
  return std::equal(word.begin(), word.end(), lower.begin(), lower.end(), [](char a, char b) { return Lower(a) == b; });
}

bool IsMonth(std::string_view word) noexcept {
  return std::any_of(std::begin(kMonths), std::end(kMonths), [&](std::string_view month) {
    return SameWord(word, month) || SameWord(word, month.substr(0, 3));
  });
}

bool IsHalfOfDay(std::string_view word) noexcept {
  return SameWord(word, "am") || SameWord(word, "pm") || SameWord(word, "a") || SameWord(word, "p");
}

/// "h:m", "h:m:s", "h am": all of the text.
bool IsTime(DateReader reader) {
  reader.SkipBlanks();
  if (!reader.TakeNumber()) return false;
  int values = 1;
  for (; values < 3; ++values) {
    reader.SkipBlanks();
    if (!reader.Take(":.")) break;
    reader.SkipBlanks();
    if (!reader.TakeNumber()) return false;
  }
  reader.SkipBlanks();
  const std::string_view word = reader.TakeWord();
  if (!word.empty() && !IsHalfOfDay(word)) return false;
  return reader.AtEnd() && (values > 1 || !word.empty());
}

/// Two or three values, one of them a month's name at most, and a time after them or not.
bool IsDate(DateReader reader) {
  int values = 0;
  int names = 0;
  bool timeMayFollow = false;
  while (true) {
    if (values >= 2 && timeMayFollow && (reader.AtEnd() || IsTime(reader))) return true;
    reader.SkipBlanks();
    if (values == 3) return false;
    const std::string_view word = reader.TakeWord();
    if (!word.empty() ? !IsMonth(word) || ++names > 1 : !reader.TakeNumber()) return false;
    ++values;
    timeMayFollow = true;
    reader.SkipBlanks();
    if (reader.Take("/-,")) timeMayFollow = false;
  }
}

}  // namespace

bool IsDateText(std::string_view body) noexcept {
  DateReader reader(body);
  return !reader.AtEnd() && (IsTime(reader) || IsDate(reader));
}

}  // namespace quillmate::language
