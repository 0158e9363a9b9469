#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// Findings: places in the code that are wrong, risky or worth knowing, each with what to do about it.
namespace quillmate::checks {

enum class Severity : std::uint8_t { kError, kWarning, kNote };

enum class Group : std::uint8_t { k64Bit, kNames, kFlow, kHost, kOutside, kDuplicates };
inline constexpr std::size_t kGroupCount = 6;

/// Numbers of the checks, in the order in which everything lists them. What they find tells the table (AllChecks), how
/// they are told apart for good is their id.
enum class CheckId : std::uint8_t {
  kPtrSafe,
  kApiSignature,
  kPointerAsLong,
  kCallbackAsLong,
  kPointerInLong,
  kLibrary32,
  kOptionExplicit,
  kImplicitVariable,
  kListedVariant,
  kImplicitVariant,
  kImplicitByRef,
  kHiddenName,
  kAmbiguousCall,
  kUnusedRoutine,
  kUncalledMacro,
  kUnusedVariable,
  kUnreadVariable,
  kUnusedConstant,
  kUnusedEnumMember,
  kUnusedParameter,
  kUnusedType,
  kUnusedDeclare,
  kUnusedLabel,
  kResumeNext,
  kErrorLabel,
  kUnreachable,
  kAfterEnd,
  kEndStatement,
  kUnreadAssignment,
  kLoopVariable,
  kMissingResult,
  kMissingCaseElse,
  kGoToIntoLoop,
  kSelection,
  kActiveSheet,
  kForeignCells,
  kIntegerRow,
  kMissingSet,
  kSwitchOff,
  kScreenOff,
  kAutoRun,
  kProgram,
  kObject,
  kKeys,
  kRegistry,
  kFile,
  kDatabase,
  kNetwork,
  kMail,
  kOfficeProgram,
  kFixedPath,
  kExternalLink,
  kCodeAccess,
  kDeclare,
  kLostHandler,
  kLostCallback,
  kLostBinding,
  kDuplicate,
  kNearDuplicate,
};
inline constexpr std::size_t kCheckCount = static_cast<std::size_t>(CheckId::kNearDuplicate) + 1;

/// All texts are German, UTF-8.
struct Check {
  CheckId number;
  std::string_view id;  ///< lower-case letters, digits, "-"; never changes
  Group group;
  Severity severity;
  bool byDefault;  ///< runs unless it is left out; the others run when they are asked for
  std::string_view title;
  std::string_view advice;  ///< what to do about a finding that says nothing else
};

/// By number.
std::span<const Check> AllChecks();
const Check& InfoOf(CheckId check);
/// The check with that id, regardless of the case of ASCII letters.
std::optional<CheckId> FindCheck(std::string_view id);

/// "fehler", "warnung", "hinweis"
std::string_view Word(Severity severity) noexcept;
/// "64 Bit", "Namen" ...
std::string_view Word(Group group) noexcept;

/// One place. Line and column are those of the module's text, 1-based, columns in characters.
struct Finding {
  CheckId check;
  symbols::Index module = 0;
  symbols::Index routine = symbols::kNone;  ///< around it, into Code(module).routines
  std::uint32_t line = 0;
  std::uint32_t column = 0;
  std::string text;    ///< German, a whole sentence
  std::string advice;  ///< likewise
  /// What tells it from others of the same check in the same routine when lines move: a name, a statement.
  std::string subject;
};

/// Which checks run.
class Selection {
 public:
  /// Those that run by default.
  Selection();
  void Clear() noexcept { wanted_ = 0; }
  void Add(CheckId check) noexcept { wanted_ |= Bit(check); }
  void Remove(CheckId check) noexcept { wanted_ &= ~Bit(check); }
  bool Has(CheckId check) const noexcept { return (wanted_ & Bit(check)) != 0; }

 private:
  static std::uint64_t Bit(CheckId check) noexcept { return std::uint64_t{1} << static_cast<unsigned>(check); }
  std::uint64_t wanted_ = 0;
};
static_assert(kCheckCount <= 64);

/// Runs the checks over everything. By module, line, column, check; the same for every number of threads (0: as many
/// as the machine has cores). Left out is what a comment silences: `' quillmate: ignore ID, ID` at the end of a line or
/// on a line of its own above it. Once `cancelled`, which may be null, is true, it ends soon and returns nothing.
std::vector<Finding> RunChecks(const symbols::ReferenceIndex& index, const Selection& selection = {},
                               unsigned threads = 0, const std::atomic<bool>* cancelled = nullptr);

}  // namespace quillmate::checks
