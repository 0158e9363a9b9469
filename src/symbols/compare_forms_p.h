#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include <quillmate/symbols/compare.h>

/// Code without what does not matter: the forms in which pieces are compared.
namespace quillmate::symbols {

/// One physical line taken apart.
struct LineParts {
  std::string_view indent, code, comment;  ///< blanks at the ends of code and comment are left out
  bool continues = false;                  ///< the code goes on in the next line; its "_" is in no part
  bool commentContinues = false;           ///< the comment does
};
/// `inComment`: the line before ended in a comment that goes on.
LineParts TakeApart(std::string_view line, bool inComment) noexcept;

/// Appends code with one blank for each run of them, and none where one changes nothing. Strings stay. `foldCase`: in
/// lower case. A word that is `ownName` (folded) becomes a mark of its own.
void AppendCanonical(std::string& out, std::string_view code, bool foldCase, std::string_view ownName = {});

/// The logical lines of a piece in that form, each ended by LF, without comments and blank lines.
std::string CanonicalCode(std::span<const std::string_view> lines, bool foldCase, std::string_view ownName = {});

/// A line for the comparison of lines, without what is ignored (bits of `trivial`).
std::string LineForm(std::string_view line, bool inComment, std::uint8_t ignore);

/// What kind of difference there is between two pieces whose lines are not all equal, without its edits.
PieceChange KindOfDifference(std::span<const std::string_view> oldLines, std::span<const std::string_view> newLines);

/// The whole comparison of two pieces, what is ignored taken into account.
PieceChange ComparePieces(std::span<const std::string_view> oldLines, std::span<const std::string_view> newLines,
                          std::uint8_t ignore);

}  // namespace quillmate::symbols
