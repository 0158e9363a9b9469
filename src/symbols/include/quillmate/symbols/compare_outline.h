#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <quillmate/symbols/compare_words.h>

/// What changed between two states as a tree, for windows and whoever else shows it piece by piece. UTF-8.
namespace quillmate::symbols {

enum class Side : std::uint8_t { kOld, kNew };

/// A line of one state, as the editor counts.
struct ComparedLine {
  Side side = Side::kNew;
  Index module = kNone;
  std::uint32_t line = 0;
};

struct ChangeNode {
  enum class Kind : std::uint8_t {
    kProject,  ///< its facts and modules are below
    kModule,   ///< everything that differs in it is below
    kOutside,  ///< the lines outside of all routines
    kRoutine,
    kDeparture,  ///< a routine that is in another module now
    kDeclaration,
    kFact,
    kGroup,        ///< holds the next two
    kUnused,       ///< became unused, or is used again
    kNotCompared,  ///< a module that one side could not give
  };

  Kind kind = Kind::kModule;
  ChangeState state = ChangeState::kSame;
  /// Into the outline; parents come before their children.
  Index parent = kNone;
  std::string text{};
  /// What happened to it in words; may be empty.
  std::string note{};
  /// Into Comparison::projects (kProject and the facts of one) or Comparison::modules; kNone where nothing can be
  /// shown.
  Index project = kNone, module = kNone;
  /// Into ModuleChange::routines.
  Index routine = kNone;
  /// Where in the module, when it is no routine; line 0: at its top.
  ComparedLine place{};
  /// What it is: routines and declarations that are there in `place.side`.
  SymbolId symbol = kNone;
};

/// Everything that differs, in the order of the new state.
std::vector<ChangeNode> OutlineOf(const ComparedStates& states);

/// What of an outline is wanted.
struct OutlineFilter {
  /// One bit for each ChangeState.
  std::uint8_t states = 0xFF;
  /// Part of the text regardless of case (ASCII letters), UTF-8; empty: all.
  std::string text;
};
constexpr std::uint8_t Bit(ChangeState state) noexcept {
  return static_cast<std::uint8_t>(1U << static_cast<unsigned>(state));
}

/// By node: it is wanted, or something below it is. The text is looked for in a node and everything above it.
std::vector<bool> ShownNodes(const std::vector<ChangeNode>& outline, const OutlineFilter& filter);

/// Where the lines of both states are shown.
class ChangePlaces {
 public:
  explicit ChangePlaces(const ComparedStates& states);

  /// The module change that shows a line: that of its module, or the one that its routine has moved to. kNone for a
  /// module that was not compared.
  Index ChangeAt(const ComparedLine& line) const;
  /// What became of the routine there; kSame outside of routines.
  ChangeState StateAt(const ComparedLine& line) const;

 private:
  const ReferenceIndex& IndexOf(Side side) const noexcept;
  Index RoutineAt(const ComparedLine& line) const;

  ComparedStates states_;
  std::vector<Index> oldModules_, newModules_;
  /// By routine of the old state: module change and routine in it.
  std::vector<std::vector<std::pair<Index, Index>>> oldRoutines_;
};

/// A use of a routine or a declaration in one of the states.
struct ComparedUse {
  ComparedLine line{};    ///< module kNone: something outside the code, told by `text`
  std::string routine{};  ///< around it: "Modul.Routine", or the module alone
  std::string text{};     ///< the line, without the blanks around it
  Certainty certainty = Certainty::kSure;
  ChangeState state = ChangeState::kSame;  ///< of the routine around it
};

/// Every use on one side, by place; one for each line.
std::vector<ComparedUse> UsesOf(const ComparedStates& states, const ChangePlaces& places, Side side, SymbolId symbol);

}  // namespace quillmate::symbols
