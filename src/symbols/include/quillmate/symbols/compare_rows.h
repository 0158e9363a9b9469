#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/symbols/compare_outline.h>

/// The two states of a module side by side, row by row.
namespace quillmate::symbols {

struct CompareRow {
  enum class Kind : std::uint8_t {
    kHeading,  ///< of a piece: the text on both sides
    kSame,
    kChanged,  ///< a line on both sides
    kGone,     ///< on the old side alone
    kNew,      ///< on the new side alone
    kSkipped,  ///< stands for `skipped` rows that are the same
  };
  Kind kind = Kind::kSame;
  /// As the editor counts; 0: no line of code.
  std::uint32_t oldNumber = 0, newNumber = 0;
  std::uint32_t skipped = 0;
  /// UTF-8, without a line break; into the code of the states, or into the rows' own texts.
  std::string_view oldText{}, newText{};
};

/// Rows that differ and come together: 0-based numbers.
struct ChangeStretch {
  std::uint32_t first, count;
  CompareRow::Kind kind;  ///< kChanged where they are not all new or all gone
};

/// The rows of a module: what is told of it, what is outside of its routines, then its routines in the order of the
/// change. The states must outlive it.
class CompareRows {
 public:
  CompareRows() = default;
  /// `whole`: all of it; else what differs with kContext lines around each change.
  CompareRows(const ComparedStates& states, const ModuleChange& module, bool whole);
  /// The facts of a project.
  CompareRows(const ComparedStates& states, const ProjectChange& project);

  CompareRows(CompareRows&&) noexcept = default;
  CompareRows& operator=(CompareRows&&) noexcept = default;

  static constexpr std::uint32_t kContext = 3;

  const std::vector<CompareRow>& Rows() const noexcept { return rows_; }
  /// From the top.
  const std::vector<ChangeStretch>& Changes() const noexcept { return changes_; }

  /// The row that a piece begins with; that of the first row where the piece is not shown. `routine`: into
  /// ModuleChange::routines, kNone: outside of routines.
  std::size_t RowOf(Index routine) const;
  /// The row of a line; kNoRow where it is not shown.
  std::size_t RowAt(const ComparedLine& line) const;
  static constexpr std::size_t kNoRow = static_cast<std::size_t>(-1);
  /// The routine whose rows a row belongs to; kNone outside of routines.
  Index RoutineAt(std::size_t row) const;
  /// The module that a row's line is from on one side; kNone where the piece has none there.
  Index ModuleAt(std::size_t row, Side side) const;

 private:
  class Builder;
  struct Piece {
    Index routine;
    Index oldModule, newModule;
    std::size_t firstRow;
  };

  const Piece* PieceAt(std::size_t row) const;

  std::vector<CompareRow> rows_;
  std::vector<Piece> pieces_;
  std::vector<ChangeStretch> changes_;
  /// A deque never moves its texts.
  std::deque<std::string> texts_;
};

}  // namespace quillmate::symbols
