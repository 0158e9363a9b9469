#include <algorithm>
#include <array>
#include <cstring>

#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

#include "keywords_p.h"
#include "line_marker_p.h"

namespace quillmate::analysis {
namespace {

using text::CommentOpen;
using text::KeywordOpen;
using text::kLineBreak;
using text::SpanClose;
using text::StringOpen;

/// What a byte means between strings and comments.
enum ByteClass : std::uint8_t { kWordByte, kSeparator, kQuote, kApostrophe, kReturn };

constexpr std::array<std::uint8_t, 256> MakeClasses() {
  std::array<std::uint8_t, 256> classes{};
  for (const char c : {' ', '\t', '(', ')', ','}) classes[static_cast<unsigned char>(c)] = kSeparator;
  classes['"'] = kQuote;
  classes['\''] = kApostrophe;
  classes['\r'] = kReturn;
  return classes;
}

constexpr auto kClasses = MakeClasses();

ByteClass ClassOf(char c) noexcept { return static_cast<ByteClass>(kClasses[static_cast<unsigned char>(c)]); }

/// The most that a line can grow: a stand-in or a pair of markers for a byte or two.
constexpr std::size_t kGrowth = 4;
constexpr std::size_t kSlack = 64;

constexpr std::size_t kPieceSize = std::size_t{32} << 10U;

const char* FindByte(const char* from, const char* end, char byte) noexcept {
  const void* found = std::memchr(from, byte, static_cast<std::size_t>(end - from));
  return found == nullptr ? end : static_cast<const char*>(found);
}

/// The CR of the line break that ends the statement line at `from`; `end` when the code ends first. A line break after
/// "_" continues the line.
const char* FindStatementEnd(const char* from, const char* end) noexcept {
  // Empty lines: nothing has to be searched for.
  if (end - from >= 2 && from[0] == '\r' && from[1] == '\n') return from;
  for (const char* p = from; (p = FindByte(p, end, '\n')) != end; ++p) {
    const bool isBreak = p > from && p[-1] == '\r';
    if (isBreak && !(p - 1 > from && p[-2] == '_')) return p - 1;
  }
  return end;
}

/// Marks one statement line after the other into a buffer.
template <bool Guarded>
class LineMarker {
 public:
  explicit LineMarker(MarkBuffer& out) : out_(out) {}

  /// Marks the line from `begin` to `end`, returns the flags of its marked words. `closed` tells whether a line break
  /// follows.
  std::uint16_t Mark(const char* begin, const char* end, bool closed) {
    closed_ = closed;
    begin_ = flushed_ = begin;
    end_ = end;
    flags_ = 0;
    lastEnd_ = nullptr;
    out_.Ensure(kGrowth * static_cast<std::size_t>(end - begin) + kSlack);
    MarkFrom(begin);
    Flush(end_);
    return flags_;
  }

 private:
  void MarkFrom(const char* p) {
    bool separated = true;  // a blank, or what counts as one, is in front of p
    while (p != end_) {
      switch (ClassOf(*p)) {
        case kSeparator:
          while (++p != end_ && ClassOf(*p) == kSeparator) {
          }
          separated = true;
          break;
        case kWordByte:
          p = MarkWord(p, separated);
          separated = false;
          break;
        case kReturn:
          separated = IsBreak(p);
          p += separated ? 2 : 1;
          break;
        case kQuote:
          p = MarkQuote(p);
          separated = false;
          break;
        case kApostrophe:
          MarkComment(p);
          return;
      }
    }
  }

  bool IsBreak(const char* p) const noexcept { return p + 1 != end_ && p[1] == '\n'; }

  /// A run of word bytes; a CR that does not begin a line break belongs to it.
  const char* WordEnd(const char* p) const noexcept {
    while (p != end_ && (ClassOf(*p) == kWordByte || (*p == '\r' && !IsBreak(p)))) ++p;
    return p;
  }

  bool SeparatorAt(const char* p) const noexcept {
    return p == end_ || ClassOf(*p) == kSeparator || (*p == '"' && closed_ && LosesString(p));
  }

  /// A string without its closing quote is lost when the line holds an apostrophe; what was in front of it then
  /// is at the end of the line.
  bool LosesString(const char* quote) const noexcept {
    const bool doubled = quote + 1 != end_ && quote[1] == '"';
    return !doubled && ClosingQuote(quote + 1) == end_ && FindByte(begin_, end_, '\'') != end_;
  }

  const char* MarkWord(const char* p, bool separated) {
    const char* wordEnd = WordEnd(p);
    if (!separated || !SeparatorAt(wordEnd)) return wordEnd;
    const std::string_view word(p, static_cast<std::size_t>(wordEnd - p));
    if (word == kPhraseStart) return MarkPhrase(p, wordEnd);
    const Keyword* keyword = FindKeyword(word);
    if (keyword == nullptr || SharesBlank(p, keyword)) return wordEnd;
    Flush(p);
    AppendKeyword(word);
    Taken(keyword, wordEnd);
    return wordEnd;
  }

  /// Marks every word of the phrase that begins at `p`, if one does.
  const char* MarkPhrase(const char* p, const char* wordEnd) {
    const std::string_view rest(p, static_cast<std::size_t>(end_ - p));
    for (const Keyword& phrase : kPhrases) {
      if (!rest.starts_with(phrase.word) || !SeparatorAt(p + phrase.word.size())) continue;
      if (SharesBlank(p, &phrase)) break;
      Flush(p);
      const char* separator = "";
      for (const std::string_view word : text::Split(phrase.word, " ")) {
        out_.Append(separator);
        AppendKeyword(word);
        separator = " ";
      }
      Taken(&phrase, p + phrase.word.size());
      return flushed_;
    }
    return wordEnd;
  }

  /// Each marked word takes the blank on both sides. Of two equal words with one blank between them the second finds
  /// its blank taken and stays unmarked.
  bool SharesBlank(const char* p, const Keyword* keyword) const noexcept {
    return keyword == lastKeyword_ && lastEnd_ != nullptr && p == lastEnd_ + 1 && *lastEnd_ == ' ';
  }

  void Taken(const Keyword* keyword, const char* end) noexcept {
    flags_ = static_cast<std::uint16_t>(flags_ | keyword->flags);
    lastKeyword_ = keyword;
    lastEnd_ = flushed_ = end;
  }

  void AppendKeyword(std::string_view word) noexcept {
    out_.Append(KeywordOpen);
    out_.Append(word);
    out_.Append(SpanClose);
  }

  /// A doubled quote stands for itself; a single one opens a string.
  const char* MarkQuote(const char* p) {
    if (p + 1 != end_ && p[1] == '"') return p + 2;
    const char* closing = ClosingQuote(p + 1);
    Flush(p);
    if (closing == end_) return MarkOpenString(p);
    out_.Append(StringOpen);
    Flush(closing + 1);
    out_.Append(SpanClose);
    if (!Guarded && closing + 1 != end_ && closing[1] == '?') {
      // The closer and the question mark together read like a stand-in for byte 159 and are turned back as one.
      out_.CutTo(out_.Size() - 1);
      ++flushed_;
    }
    return flushed_;
  }

  const char* ClosingQuote(const char* p) const noexcept {
    while ((p = FindByte(p, end_, '"')) != end_ && p + 1 != end_ && p[1] == '"') p += 2;
    return p;
  }

  /// A string without its closing quote: kept to the end of the line, or lost.
  const char* MarkOpenString(const char* quote) {
    if (!LosesString(quote)) {
      out_.Append(StringOpen);
      Flush(end_);
    }
    flushed_ = end_;
    return end_;
  }

  void MarkComment(const char* p) {
    Flush(p);
    out_.Append(CommentOpen);
    Flush(end_);
    out_.Append(SpanClose);
  }

  /// Copies what is before `p` and has not been copied.
  void Flush(const char* p) {
    if constexpr (Guarded) {
      AppendGuarded(flushed_, p);
    } else {
      out_.Append(flushed_, static_cast<std::size_t>(p - flushed_));
    }
    flushed_ = p;
  }

  void AppendGuarded(const char* p, const char* end) {
    while (p != end) {
      if (*p == text::kMarkerByte) {
        out_.Append(kChar159Guard);
        ++p;
      } else if (*p == '"' && p + 1 != end && p[1] == '"') {
        out_.Append(kQuoteGuard);
        p += 2;
      } else if (*p == '_' && end - p >= 3 && p[1] == '\r' && p[2] == '\n') {
        out_.Append(kContinuationGuard);
        p += 3;
      } else {
        out_.Append(p++, 1);
      }
    }
  }

  MarkBuffer& out_;
  bool closed_ = true;
  const char* begin_ = nullptr;
  const char* end_ = nullptr;
  const char* flushed_ = nullptr;
  std::uint16_t flags_ = 0;
  const Keyword* lastKeyword_ = nullptr;
  const char* lastEnd_ = nullptr;
};

}  // namespace

void MarkBuffer::Ensure(std::size_t more) {
  if (size_ + more <= capacity_) return;
  capacity_ = std::max(size_ + more, capacity_ * 2);
  auto grown = std::make_unique_for_overwrite<char[]>(capacity_);
  if (size_ > 0) std::memcpy(grown.get(), data_.get(), size_);
  data_ = std::move(grown);
}

void MarkBuffer::Append(const char* bytes, std::size_t length) noexcept {
  std::memcpy(data_.get() + size_, bytes, length);
  size_ += length;
}

bool PieceMarker::Next(MarkedPiece& piece) {
  if (atEnd_) return false;
  piece.text.CutTo(0);
  piece.candidates.clear();
  piece.lineStarts.clear();
  if (guarded_) {
    MarkPiece<true>(piece);
  } else {
    MarkPiece<false>(piece);
  }
  return true;
}

template <bool Guarded>
void PieceMarker::MarkPiece(MarkedPiece& piece) {
  constexpr std::uint16_t kRoutineWords = kHasSub | kHasFunction | kHasProperty;
  LineMarker<Guarded> marker(piece.text);
  const char* p = rest_.data();
  const char* const end = p + rest_.size();
  const std::size_t size = std::min(rest_.size(), kPieceSize);
  piece.text.Ensure(size + size / 2);
  const char* const enough = p + size;
  do {
    const char* const lineEnd = FindStatementEnd(p, end);
    const bool closed = lineEnd != end || closed_;
    const std::size_t start = piece.text.Size();
    if (wantLineStarts_) piece.lineStarts.push_back(start);
    const std::uint16_t flags = marker.Mark(p, lineEnd, closed);
    if ((flags & kRoutineWords) != 0 && (flags & kHasExit) == 0) {
      const std::string_view code(p, static_cast<std::size_t>(lineEnd - p));
      piece.candidates.push_back({start, piece.text.Size(), code, flags, closed});
    }
    if (closed) piece.text.Append(kLineBreak);
    atEnd_ = lineEnd == end;
    p = atEnd_ ? end : lineEnd + kLineBreak.size();
    atEnd_ = atEnd_ || (p == end && !closed_);
    if (atEnd_ && closed && wantLineStarts_) piece.lineStarts.push_back(piece.text.Size());
  } while (!atEnd_ && p < enough);
  rest_ = {p, static_cast<std::size_t>(end - p)};
}

std::size_t FindStatementStart(std::string_view code, std::size_t from) noexcept {
  for (std::size_t at = code.find('\n', from); at != std::string_view::npos; at = code.find('\n', at + 1)) {
    const bool isBreak = at > 0 && code[at - 1] == '\r';
    if (isBreak && !(at > 1 && code[at - 2] == '_')) return at + 1;
  }
  return code.size();
}

std::string MarkLineGuarded(std::string_view statementLine, bool closed) {
  MarkBuffer buffer;
  buffer.Ensure(kSlack);
  LineMarker<true>(buffer).Mark(statementLine.data(), statementLine.data() + statementLine.size(), closed);
  return std::string(buffer.View());
}

std::string RestoreChar159(std::string_view guarded) {
  return text::ReplaceAll(guarded, kChar159Guard, std::string_view(&text::kMarkerByte, 1));
}

std::string RestoreLinesAndQuotes(std::string_view guarded) {
  return text::ReplaceAll(text::ReplaceAll(guarded, kContinuationGuard, "_\r\n"), kQuoteGuard, "\"\"");
}

std::string RestoreGuards(std::string_view guarded) { return RestoreLinesAndQuotes(RestoreChar159(guarded)); }

}  // namespace quillmate::analysis
