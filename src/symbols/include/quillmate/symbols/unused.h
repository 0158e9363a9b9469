#pragma once

#include <string>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// What nobody uses, and how sure that is.
namespace quillmate::symbols {

struct UnusedSymbol {
  SymbolId symbol = kNone;
  Grade grade = Grade::kCertain;
  /// German, one sentence part: "Ereignis Click von cmdOk", "Name in einer Zeichenkette".
  std::string reason;
  /// Where that is: "Modul:Zeile" of the first weak use (editor's line), or the words of a binding; may be empty.
  std::string place;
};

/// Everything without a sure use by something else, in the order of the symbols: routines, Declares, events, variables,
/// constants, parameters, types, type members, enums, enum members, labels. Left out are modules, controls, line
/// numbers, the parameters of Declares and events, and declarations that conditional compilation doubles.
std::vector<UnusedSymbol> FindUnused(const ReferenceIndex& index);
/// Those of one module.
std::vector<UnusedSymbol> FindUnused(const ReferenceIndex& index, Index module);

/// The same for one symbol; nothing when it is used, or of a kind that is never listed.
std::optional<UnusedSymbol> GradeUnused(const ReferenceIndex& index, SymbolId symbol);

}  // namespace quillmate::symbols
