#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// Small projects written as text, and what a name in them means, written as text too.
namespace quillmate::symbols::testing {

/// A project from lines. A line that begins with "== " begins a module and does not count; all others are numbered
/// from 1 on across the modules:
///
///     == class CNode predeclared exposed
///     == module M assumed           a kind that only the name of its file suggests
///     == form F control txt, control cmd[] VB.CommandButton
///     == project Q excel uses P     what follows belongs to another project; the first is P
///     == project Daten assumed      a folder: nobody knows what the code calls the project
///     == binding Modul.Makro -> Schaltfläche auf Blatt 1
struct WrittenProject {
  explicit WrittenProject(std::string_view text);

  Sources sources;
  std::vector<std::string> lines;         ///< number n is lines[n - 1]
  std::vector<std::uint32_t> firstLines;  ///< by module: number of its first line
};

/// Line number of a place.
std::uint32_t LineNumber(const WrittenProject& project, Index module, std::uint32_t line);

/// What the `nth` (from 1 on) word `name` of a line means: "3 write", "1|2 call ambiguous", "C type", "control read",
/// "declares"; several meanings joined by " & ", nothing as "none". Targets are the lines of their declarations,
/// modules their names; what the code does not declare says so.
std::string MeaningAt(const WrittenProject& project, const ReferenceIndex& index, std::string_view name,
                      std::uint32_t line, unsigned nth);

}  // namespace quillmate::symbols::testing
