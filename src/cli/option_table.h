#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "invocation.h"

/// The options of all commands: what they are called, who takes them, and what they put into an invocation.
namespace quillmate::cli {

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

}  // namespace quillmate::cli
