#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tables_p.h"

/// Names of routines as hosts take them in texts: "Makro", "Modul.Makro", "[0]!Projekt.Modul.Makro", "=Rechne(1)",
/// "'Mappe 1.xlsm'!Makro", "'Makro ""a"", 1'".
namespace quillmate::symbols {

struct MacroName {
  std::string book;     ///< before "!", without quotes; empty for none or [0]
  std::string project;  ///< folded
  std::string module;   ///< folded
  std::string routine;  ///< folded; empty when the text names nothing
};

MacroName ParseMacroName(std::string_view text);

struct MacroTarget {
  Index module;
  Local local;
};

/// Whether a book in front of "!" is the project's own file.
bool IsFile(const ProjectTable& project, std::string_view book);

/// What a host runs under that name: in the module that is named, else the public ones of standard modules, else the
/// private ones there, else those of documents. Subs and Functions only. `from`: a module whose own routine goes before
/// others, or kNone. Several when the name does not decide.
std::vector<MacroTarget> FindMacro(const Tables& tables, Index project, Index from, const MacroName& name);

/// The same for a name alone, by its hash.
std::vector<MacroTarget> FindMacros(const Tables& tables, Index project, Index from, NameHash routine);

/// A string literal's text: without its quotes, doubled ones single.
std::string LiteralText(std::string_view literal);

/// Calls `visit` for each name in a literal that may be meant for somebody who runs it: the last part of the whole text
/// where that is nothing but a name with its arguments, names right before a "(", and those of a list of names.
void ForEachMention(std::string_view literal, const std::function<void(std::string_view)>& visit);

/// The place of the routine's name in a literal: offset and length, 0 and the whole where it is not found.
std::pair<std::uint32_t, std::uint32_t> PlaceOfMacroName(std::string_view literal);

}  // namespace quillmate::symbols
