#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The command line: COMMAND [options] INPUT..., options and inputs in any order, "--" ends the options.
namespace quillmate::cli {

struct Command;

/// One call of the program as parsed. Texts are as the caller wrote them, UTF-8 as a rule.
struct Invocation {
  /// Nothing only when help or the version is asked for.
  const Command* command = nullptr;
  std::vector<std::string> inputs;
  bool help = false;
  bool version = false;
  std::optional<std::string> output;
  std::optional<std::string> module;
  std::optional<std::string> routine;
  std::optional<std::string> name;
  std::optional<std::string> title;
  bool force = false;
  bool partial = false;
  bool credit = false;
  bool json = false;
  bool csv = false;
  bool sarif = false;
  /// What checks there are, instead of what they find; those that run only on demand too.
  bool list = false;
  bool all = false;
  /// Ids of checks to leave out.
  std::vector<std::string> except;
  bool wholeWord = false;
  /// Modules of one or two lines are read too.
  bool everyModule = false;
  /// The searched text is a regular expression.
  bool regex = false;
  bool count = false;
  /// The understanding instead of the fixed walk.
  bool exact = false;
  /// A place in the code of `module`, 1-based; 0 when none is given.
  std::uint32_t line = 0;
  std::uint32_t column = 0;
  /// What a routine calls instead of what calls it, and how many levels of it.
  bool down = false;
  std::optional<std::uint32_t> depth;
  /// Size of the result in units of 1,000 bytes.
  std::optional<std::uint32_t> limit;
  /// The hierarchy as a graph.
  bool dot = false;
  /// "vimgrep", "emacs"; empty for the usual form.
  std::string format;
  /// What was unused before, to be compared with or to be written.
  std::optional<std::string> baseline;
  std::optional<std::string> writeBaseline;
  /// Classes of unused routines by name: the only ones to list, and those that make the run fail.
  std::vector<std::string> only;
  std::vector<std::string> failOn;
  /// Forms of a comparison, and bits of symbols::trivial that make no difference.
  bool markdown = false;
  bool stat = false;
  std::optional<std::string> htmlFile;
  std::uint8_t ignore = 0;
  /// For a program that shows differences: UTF-8, and a file without code is no failure.
  bool textconv = false;
  bool userSettings = false;
  /// Anything that is left out makes the run fail.
  bool strict = false;
  /// Windows number of the code page of module files that don't tell theirs; 0 for none.
  int codePage = 0;
  /// A file with further inputs.
  std::optional<std::string> filesFrom;
  /// The projects of the edition's running host are read too, before the inputs.
  bool host = false;
  /// Formulas of Excel 4 macro sheets are modules.
  bool excel4 = false;
  /// What the inventory leaves out and how it reads: ScanOptions of the inventory's scan.h; 0 for its defaults.
  std::vector<std::string> exclude;
  std::uint32_t shard = 1;
  std::uint32_t shards = 1;
  std::uint32_t jobs = 0;
  std::uint32_t timeLimit = 0;
  std::uint32_t memoryLimit = 0;
  bool retry = false;
  /// The report tells what has changed since that run.
  std::uint32_t since = 0;
  std::optional<std::string> xlsxFile;
  /// Host selector of the edition.
  int edition = 0;
  /// Settings keys with their texts, in the order given.
  std::vector<std::pair<std::string, std::string>> settings;
};

/// Bits that say which options a command takes.
enum OptionSet : std::uint64_t {
  kNoOption = 0,
  kAnyCommand = 1ULL << 0U,
  kTakesOutput = 1ULL << 1U,
  kTakesForce = 1ULL << 2U,
  kTakesModule = 1ULL << 3U,
  kTakesJson = 1ULL << 4U,
  kTakesCredit = 1ULL << 5U,
  kTakesTitle = 1ULL << 6U,
  kTakesRoutine = 1ULL << 7U,
  kTakesName = 1ULL << 8U,
  kTakesWholeWord = 1ULL << 9U,
  kTakesClasses = 1ULL << 10U,
  kTakesHost = 1ULL << 11U,
  kTakesCount = 1ULL << 12U,
  kTakesExact = 1ULL << 13U,
  kTakesPlace = 1ULL << 14U,
  kTakesDepth = 1ULL << 15U,
  kTakesBaseline = 1ULL << 16U,
  kTakesEditorFormat = 1ULL << 17U,
  kTakesTagFormat = 1ULL << 18U,
  kTakesPartial = 1ULL << 19U,
  kTakesCsv = 1ULL << 20U,
  kTakesRegex = 1ULL << 21U,
  kTakesChecks = 1ULL << 22U,
  kTakesLimit = 1ULL << 23U,
  kTakesCompare = 1ULL << 24U,
  kTakesTextconv = 1ULL << 25U,
  kTakesInventory = 1ULL << 26U,
};

/// One row of the table that the parser, the help, the manual page and the completion of the shell share.
struct OptionSpec {
  std::string_view name;
  /// As usage texts show the value; empty for an option without one.
  std::string_view value;
  /// German.
  std::string_view help;
  /// One bit: the option is allowed where the command's set holds it.
  std::uint64_t bit;
  /// Takes the option over; throws UsageError when the value makes no sense.
  void (*take)(Invocation&, std::string_view value);
  /// The values that make sense, separated by blanks, when they are words of a list: help and completion show them.
  std::string_view words = {};
};

std::span<const OptionSpec> AllOptions();

/// `arguments` without the program's name. Throws UsageError; `invocation` then holds what was understood so far.
void ParseCommandLine(std::span<const std::string> arguments, Invocation& invocation);

}  // namespace quillmate::cli
