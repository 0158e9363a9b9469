#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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

}  // namespace quillmate::cli
