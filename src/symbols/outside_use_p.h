#pragma once

#include <string>

#include <quillmate/symbols/reference_index.h>

namespace quillmate::symbols {

/// Who or what outside of the code that was read may use a symbol, as a reason in German; empty when nobody can.
std::string OutsideUse(const ReferenceIndex& index, SymbolId id);

}  // namespace quillmate::symbols
