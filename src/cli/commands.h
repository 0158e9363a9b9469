#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "invocation.h"

/// The commands of the program, one function each. They throw CommandFailure, UsageError, ReaderGone or any other
/// std::exception; the caller turns these into messages and exit statuses.
namespace quillmate::cli {

struct Command {
  std::string_view name;
  /// What follows the name in the usage line.
  std::string_view arguments;
  /// German.
  std::string_view summary;
  /// OptionSet bits besides kAnyCommand.
  std::uint64_t options;
  /// How many operands precede the inputs.
  std::size_t texts;
  /// Without --host.
  std::size_t minInputs;
  void (*run)(const Invocation&);
  /// Exit status of its failures.
  int failed = 1;
};

std::span<const Command> AllCommands();
/// Nothing when there is no such command.
const Command* FindCommand(std::string_view name);

/// "Aufruf: quillmate-cli ..." for one command or, without one, for the program. One line without line break.
std::string UsageLine(const Command* command);
/// The whole help text, ending with a line break.
std::string HelpText(const Command* command);

void RunIndex(const Invocation& invocation);
void RunModules(const Invocation& invocation);
void RunOutline(const Invocation& invocation);
void RunText(const Invocation& invocation);
void RunRtf(const Invocation& invocation);
void RunHtml(const Invocation& invocation);
void RunClip(const Invocation& invocation);
void RunSite(const Invocation& invocation);
void RunUnused(const Invocation& invocation);
void RunCallers(const Invocation& invocation);
void RunDefinition(const Invocation& invocation);
void RunSymbols(const Invocation& invocation);
void RunReferences(const Invocation& invocation);
void RunCalls(const Invocation& invocation);
void RunCompare(const Invocation& invocation);
void RunSearch(const Invocation& invocation);
void RunTags(const Invocation& invocation);
void RunMetrics(const Invocation& invocation);
void RunCheck(const Invocation& invocation);
void RunDigest(const Invocation& invocation);
void RunInventory(const Invocation& invocation);

// The same of the understanding, where `--exact` asks for it; lines are the editor's.
void RunModulesExact(const Invocation& invocation);
void RunOutlineExact(const Invocation& invocation);
void RunUnusedExact(const Invocation& invocation);

}  // namespace quillmate::cli
