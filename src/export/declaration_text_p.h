#pragma once

#include <string>

#include <quillmate/symbols/reference_index.h>

/// Declarations as one line of code.
namespace quillmate::output {

/// What declares a symbol, without the comment and whatever else is in its statement: `Public Const MAX As Long =
/// 5`, `ByVal Nr As Long`, `Private Sub Hilf(n)`. A label is its name, a control its type and name. UTF-8, at most
/// kLongestDeclaration bytes, cut between characters and with "…" after it then.
inline constexpr std::size_t kLongestDeclaration = 200;
std::string DeclarationText(const symbols::ReferenceIndex& index, symbols::SymbolId symbol);

}  // namespace quillmate::output
