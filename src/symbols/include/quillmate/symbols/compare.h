#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/symbols/calls.h>
#include <quillmate/symbols/line_difference.h>
#include <quillmate/symbols/reference_index.h>
#include <quillmate/symbols/unused.h>

/// What changed between two states of a project, module by module and routine by routine.
///
/// Every line of a module that the host's editor shows belongs to exactly one piece: a routine, with the comment right
/// above it and the blank lines before that, or what is outside of all routines. Pieces are compared, not files, so
/// that a routine that was put elsewhere is no change of its text. Hidden lines (headers, Attribute lines) are compared
/// by what they say: attributes and controls.
///
/// Routines belong together by their names and kinds, whatever happened to their bodies. What is left over on both
/// sides is told by likeness: the share of common lines of the bodies, weighed by their length (kHeaviestLine at most),
/// without blanks, comments, case and the routine's own name. From kMovedLikeness on routines of one name in two
/// modules count as moved, from kRenamedLikeness on those of different names as renamed (in another module: moved, with
/// an old name). Lines that are in more than kCommonLine of the routines left over tell nothing; routines with
/// nothing but such lines belong together only when their bodies are the same. Modules that are left over are told by
/// the same measure from kRenamedLikeness on. The cost grows with the lines of what is left over alone.
namespace quillmate::symbols {

inline constexpr double kRenamedLikeness = 0.6;
inline constexpr double kMovedLikeness = 0.4;
inline constexpr std::size_t kCommonLine = 32;
inline constexpr std::uint32_t kHeaviestLine = 64;

enum class ChangeState : std::uint8_t {
  kSame,
  kLayout,  ///< nothing but layout, comments or case
  kChanged,
  kMoved,    ///< now in another module (a module: in another project)
  kRenamed,  ///< in the same module
  kNew,
  kGone,
};
inline constexpr std::size_t kChangeStateCount = 7;
/// "same", "layout", "changed" ...
std::string_view Word(ChangeState state) noexcept;
/// "gleich", "nur Form", "geändert", "verschoben", "umbenannt", "neu", "entfallen"; UTF-8.
std::string_view GermanWord(ChangeState state) noexcept;

/// Bits for differences that change nothing of what the code does.
namespace trivial {
inline constexpr std::uint8_t kLayout = 1;   ///< blanks, blank lines, continued lines, the order of the routines
inline constexpr std::uint8_t kComment = 2;  ///< wording or number of comments
inline constexpr std::uint8_t kCase = 4;     ///< upper and lower case outside of strings
}  // namespace trivial

struct CompareOptions {
  /// Bits of `trivial`: differences of these kinds alone count as none, and lines that differ in nothing else as equal.
  std::uint8_t ignore = 0;
};

/// One side.
struct ComparedState {
  ReferenceIndex index;
  /// Its modules are those of the index; their texts are not needed. Empty when nothing is known.
  codedb::Facts facts;
  bool hasFacts = false;
  /// By project: something of it could not be read, so that nothing counts as gone (on the new side) or new (on the
  /// old side) for the lack of it. As long as the projects, or empty: all are whole.
  std::vector<bool> partial;
  /// A whole project could not be read: projects of the other side that find no partner are not compared.
  bool lacksProjects = false;
  /// What parts the files of this state from those of the other: the path of the input, UTF-8. Projects belong together
  /// by what follows it.
  std::string root;
};

/// Lines of one piece in one module, ascending, 1-based lines of its text.
using PieceLines = std::vector<std::uint32_t>;

/// How a piece differs. `edits` count in the lines of the two pieces, 0-based.
struct PieceChange {
  bool changed = false;      ///< the code does something else, perhaps
  std::uint8_t trivial = 0;  ///< else: the kinds of the differences; 0 with `changed` false: the pieces are the same
  std::vector<Edit> edits;
  bool IsSame() const noexcept { return !changed && trivial == 0; }
};

/// A routine on one side: its module and its number in Module::routines.
struct RoutinePlace {
  Index module = kNone;
  Index routine = kNone;
  bool IsKnown() const noexcept { return module != kNone; }
  bool operator==(const RoutinePlace&) const = default;
};

struct RoutineChange {
  ChangeState state = ChangeState::kSame;
  RoutinePlace oldPlace, newPlace;  ///< unknown for new and gone ones
  bool nameChanged = false;         ///< another name, not only in case; also where the state is "moved"
  PieceChange text;                 ///< of moved and renamed ones too
};

/// A declaration outside of routines, with its members: variable, constant, Declare, event, type, enum. Moved ones are
/// word by word the same in another module.
struct DeclarationChange {
  ChangeState state = ChangeState::kSame;
  SymbolId oldSymbol = kNone, newSymbol = kNone;
  std::string oldText, newText;  ///< in one line; types and enums: their members parted by "; "
};

enum class FactKind : std::uint8_t { kReference, kConstant, kDocument, kProject, kBinding, kControl, kAttribute };
/// "reference", "constant" ...
std::string_view Word(FactKind kind) noexcept;
/// "Verweis", "Konstante der bedingten Kompilierung" ...; UTF-8.
std::string_view GermanWord(FactKind kind) noexcept;

/// Something that is no code: new, gone, or changed.
struct FactChange {
  FactKind kind = FactKind::kReference;
  ChangeState state = ChangeState::kChanged;
  std::string name;
  std::string oldValue, newValue;
  /// False for what every saving changes: it is told, and makes no difference.
  bool counts = true;
};

/// A routine that lives in another module now; the module there lists it as moved.
struct Departure {
  RoutinePlace oldPlace, newPlace;
};

struct ModuleChange {
  ChangeState state = ChangeState::kSame;
  Index oldModule = kNone, newModule = kNone;
  std::uint8_t trivial = 0;  ///< state "layout": all kinds of its differences
  PieceChange outside;       ///< what is outside of routines
  /// In the order of the new text; gone ones after what stood before them. All of them, the same ones too.
  std::vector<RoutineChange> routines;
  std::vector<DeclarationChange> declarations;  ///< those that differ
  std::vector<FactChange> facts;                ///< controls and attributes that differ
  std::vector<Departure> departures;
};

struct ProjectChange {
  ChangeState state = ChangeState::kSame;  ///< same, changed (by its facts), new, gone
  Index oldProject = kNone, newProject = kNone;
  std::vector<FactChange> facts;
};

/// Something that became unused, or is used again or gone.
struct UnusedChange {
  bool made = false;
  SymbolId oldSymbol = kNone, newSymbol = kNone;
  Grade grade = Grade::kCertain;  ///< of the side that has it unused
  std::string reason;
};

/// Modules that one side could not give whole, by their numbers on the other.
struct NotCompared {
  std::vector<Index> oldModules, newModules;
};

struct Comparison {
  std::vector<ProjectChange> projects;
  /// In the order of the new state; gone ones after what stood before them. All of them, the same ones too.
  std::vector<ModuleChange> modules;
  std::vector<UnusedChange> unused;
  NotCompared notCompared;
  CompareOptions options;
  /// Nothing differs but what is ignored. Facts that don't count are no difference.
  bool equal = true;
};

/// The two states are looked at for as long as the call lasts; the answer speaks of them by numbers.
Comparison Compare(const ComparedState& oldState, const ComparedState& newState, const CompareOptions& options = {});

/// Lines of a routine's piece, and of what is outside of routines; hidden lines are in neither.
PieceLines RoutineLines(const language::Module& module, Index routine);
PieceLines OutsideLines(const language::Module& module);
/// Their texts, without line breaks.
std::vector<std::string_view> TextsOf(const language::Module& module, const PieceLines& lines);

/// The name as its header writes it, without brackets and suffix; "sub", "property-get" ... is Word of the kind.
std::string_view RoutineName(const ReferenceIndex& index, const RoutinePlace& place);
SymbolKind RoutineKind(const ReferenceIndex& index, const RoutinePlace& place);
/// Who calls it. Nothing for routines in dead branches.
std::vector<CallEdge> CallersOf(const ReferenceIndex& index, const RoutinePlace& place);

/// How many routines and modules have each state.
struct ChangeCounts {
  std::size_t modules[kChangeStateCount] = {}, routines[kChangeStateCount] = {};
  std::size_t addedLines = 0, removedLines = 0;
};
ChangeCounts CountChanges(const Comparison& comparison);

}  // namespace quillmate::symbols
