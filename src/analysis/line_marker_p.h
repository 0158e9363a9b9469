#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// First half of a scan: puts the markers of keywords, strings and comments into the code, in one pass.
///
/// The unit is the statement line: a line of code with all its continuation lines ("_" and a line break).
namespace quillmate::analysis {

/// Stand-ins that keep parts of the code out of the way while a scan looks at it. Byte 159 of the code itself must not
/// be taken for part of a marker; a doubled quote is no end of a string; a continued line is one line.
inline constexpr std::string_view kChar159Guard = "\237|?";
inline constexpr std::string_view kQuoteGuard = "|\237d|";
inline constexpr std::string_view kContinuationGuard = "|\237u| ";

/// A statement line that holds a word that may begin or end a routine.
struct RoutineCandidate {
  /// Where it is in the text of its piece, without its closing line break.
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string_view code;
  std::uint16_t flags = 0;
  /// False for a last line without a line break.
  bool closed = true;
};

/// A growing byte buffer whose room is not cleared before it is written.
class MarkBuffer {
 public:
  /// Makes room for `more` bytes after the end.
  void Ensure(std::size_t more);
  void Append(const char* bytes, std::size_t length) noexcept;
  void Append(std::string_view bytes) noexcept { Append(bytes.data(), bytes.size()); }
  void CutTo(std::size_t size) noexcept { size_ = size; }  // keeps the room
  std::size_t Size() const noexcept { return size_; }
  std::string_view View() const noexcept { return {data_.get(), size_}; }

 private:
  std::unique_ptr<char[]> data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

/// Some statement lines, marked up.
struct MarkedPiece {
  MarkBuffer text;
  std::vector<RoutineCandidate> candidates;
  /// Starts of all statement lines in the text; after the code's last line break an empty one begins. Filled only on
  /// request.
  std::vector<std::size_t> lineStarts;
};

/// Marks up code piece by piece, each so small that it stays in the processor's cache. With `guarded` the stand-ins
/// remain in the text (see RestoreGuards), otherwise the text is as it will be stored.
class PieceMarker {
 public:
  /// With `closed` the text gets a line break after the last line, which the code lacks.
  PieceMarker(std::string_view code, bool closed, bool guarded, bool wantLineStarts) noexcept
      : rest_(code), closed_(closed), guarded_(guarded), wantLineStarts_(wantLineStarts) {}

  /// The next piece, whole statement lines; false after the last one.
  bool Next(MarkedPiece& piece);

 private:
  template <bool Guarded>
  void MarkPiece(MarkedPiece& piece);

  std::string_view rest_;
  bool closed_;
  bool guarded_;
  bool wantLineStarts_;
  bool atEnd_ = false;
};

/// The first start of a statement line at `from` or later that has one in front of it; the code's size where none has.
std::size_t FindStatementStart(std::string_view code, std::size_t from) noexcept;

/// One statement line (without its closing line break) marked up, with stand-ins. `closed` tells whether it has one.
std::string MarkLineGuarded(std::string_view statementLine, bool closed);

/// The stand-ins turned back into what they stand for: byte 159 first, as for an index. What the code itself holds may
/// then read like one of the other stand-ins and is turned back as well.
std::string RestoreGuards(std::string_view guarded);
/// The two steps on their own, for the other order.
std::string RestoreChar159(std::string_view guarded);
std::string RestoreLinesAndQuotes(std::string_view guarded);

}  // namespace quillmate::analysis
