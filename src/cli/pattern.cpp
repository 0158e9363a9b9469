#include "pattern.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include <pcre2.h>

#include <quillmate/text/utf8.h>
#include <quillmate/text/windows1252.h>

#include "messages.h"

namespace quillmate::cli {
namespace {

/// For one match from one place. A pattern that needs more is one that never ends.
constexpr std::uint32_t kMostSteps = 5'000'000;
constexpr std::uint32_t kMostHeapKibibytes = 64U << 10U;

constexpr std::uint32_t kOptions = PCRE2_CASELESS | PCRE2_MULTILINE | PCRE2_UTF | PCRE2_UCP | PCRE2_NEVER_BACKSLASH_C;

struct Mistake {
  int code;
  std::string_view words;
};
constexpr std::array kMistakes{
    Mistake{PCRE2_ERROR_END_BACKSLASH, "hinter \\ fehlt ein Zeichen"},
    Mistake{PCRE2_ERROR_END_BACKSLASH_C, "hinter \\c fehlt ein Zeichen"},
    Mistake{PCRE2_ERROR_UNKNOWN_ESCAPE, "was hinter \\ steht, ist unbekannt"},
    Mistake{PCRE2_ERROR_QUANTIFIER_OUT_OF_ORDER, "in {} ist die erste Zahl die größere"},
    Mistake{PCRE2_ERROR_QUANTIFIER_TOO_BIG, "in {} ist eine Zahl zu groß"},
    Mistake{PCRE2_ERROR_MISSING_SQUARE_BRACKET, "es fehlt ]"},
    Mistake{PCRE2_ERROR_CLASS_RANGE_ORDER, "in [] ist ein Bereich verkehrt herum"},
    Mistake{PCRE2_ERROR_CLASS_INVALID_RANGE, "in [] ist ein Bereich ungültig"},
    Mistake{PCRE2_ERROR_QUANTIFIER_INVALID, "vor einem Zeichen für Wiederholung steht nichts"},
    Mistake{PCRE2_ERROR_UNKNOWN_POSIX_CLASS, "den Namen in [: :] gibt es nicht"},
    Mistake{PCRE2_ERROR_MISSING_CLOSING_PARENTHESIS, "es fehlt )"},
    Mistake{PCRE2_ERROR_UNMATCHED_CLOSING_PARENTHESIS, ") ohne ("},
    Mistake{PCRE2_ERROR_BAD_SUBPATTERN_REFERENCE, "die Gruppe gibt es nicht"},
    Mistake{PCRE2_ERROR_LOOKBEHIND_NOT_FIXED_LENGTH, "was davor stehen soll, hat keine feste Länge"},
    Mistake{PCRE2_ERROR_PATTERN_TOO_LARGE, "er ist zu lang"},
};

template <typename Thing, void (*release)(Thing*)>
struct Release {
  void operator()(Thing* thing) const { release(thing); }
};
using Code = std::unique_ptr<pcre2_code, Release<pcre2_code, pcre2_code_free>>;
using CompileContext =
    std::unique_ptr<pcre2_compile_context, Release<pcre2_compile_context, pcre2_compile_context_free>>;
using MatchContext = std::unique_ptr<pcre2_match_context, Release<pcre2_match_context, pcre2_match_context_free>>;
using MatchData = std::unique_ptr<pcre2_match_data, Release<pcre2_match_data, pcre2_match_data_free>>;

PCRE2_SPTR Units(const std::u16string& text) { return reinterpret_cast<PCRE2_SPTR>(text.data()); }

/// An argument that is no UTF-8 is from a terminal that isn't either.
std::u16string PatternText(std::string_view pattern) {
  if (!text::IsValidUtf8(pattern)) return text::Utf16FromCode(pattern);
  std::u16string utf16;
  while (!pattern.empty()) {
    const auto [character, length] = text::ReadUtf8(pattern);
    pattern.remove_prefix(length);
    if (character < 0x10000) {
      utf16 += static_cast<char16_t>(character);
    } else {
      utf16 += static_cast<char16_t>(0xD7C0 + (character >> 10U));
      utf16 += static_cast<char16_t>(0xDC00 + (character & 0x3FFU));
    }
  }
  return utf16;
}

Code Compile(const std::u16string& pattern) {
  const CompileContext context(pcre2_compile_context_create(nullptr));
  if (!context) throw std::bad_alloc();
  pcre2_set_newline(context.get(), PCRE2_NEWLINE_ANYCRLF);
  int error = 0;
  PCRE2_SIZE place = 0;
  Code code(pcre2_compile(Units(pattern), pattern.size(), kOptions, &error, &place, context.get()));
  if (code) return code;
  std::string message = "Der reguläre Ausdruck ist an Stelle " + std::to_string(place) + " fehlerhaft";
  const auto* const known = std::ranges::find(kMistakes, error, &Mistake::code);
  if (known != kMistakes.end()) message.append(": ").append(known->words);
  throw UsageError(message);
}

}  // namespace

struct Pattern::Compiled {
  Code code;
  MatchContext limits;
  MatchData match;
};

Pattern::Pattern(std::string_view utf8, bool wholeWord) : compiled_(std::make_unique<Compiled>()) {
  // The user's own text is looked at alone first, so that the place of a mistake is the one he sees.
  const std::u16string own = PatternText(utf8);
  compiled_->code = Compile(own);
  if (wholeWord) compiled_->code = Compile(u"(?<!\\w)(?:" + own + u")(?!\\w)");
  compiled_->limits.reset(pcre2_match_context_create(nullptr));
  compiled_->match.reset(pcre2_match_data_create(1, nullptr));
  if (!compiled_->limits || !compiled_->match) throw std::bad_alloc();
  pcre2_set_match_limit(compiled_->limits.get(), kMostSteps);
  pcre2_set_heap_limit(compiled_->limits.get(), kMostHeapKibibytes);
}

Pattern::~Pattern() = default;

void Pattern::ForEachMatch(std::string_view code,
                           const std::function<void(const navigation::TextMatch& match)>& visit) const {
  // One unit for each byte: positions are the same in both.
  const std::u16string text = text::Utf16FromCode(code);
  for (std::size_t at = 0; at <= text.size();) {
    const int found = pcre2_match(compiled_->code.get(), Units(text), text.size(), at, PCRE2_NO_UTF_CHECK,
                                  compiled_->match.get(), compiled_->limits.get());
    if (found == PCRE2_ERROR_NOMATCH) return;
    if (found < 0) throw CommandFailure("Der reguläre Ausdruck ist zu aufwendig");
    const PCRE2_SIZE* const limits = pcre2_get_ovector_pointer(compiled_->match.get());
    const auto [start, end] = std::pair(limits[0], limits[1]);
    if (start < end) visit({start, end - start});
    at = std::max(at, std::max(start, end)) + (start < end ? 0 : 1);
  }
}

}  // namespace quillmate::cli
