#pragma once

#include <string>

#include <quillmate/symbols/reference_index.h>

/// Declarations and references of the understanding as JSON, one object without line break. Lines are the editor's.
namespace quillmate::cli {

/// "file", "project" and "module".
void AppendModuleJson(std::string& json, const symbols::ReferenceIndex& index, symbols::Index module);

/// A declaration with all its references.
void AppendSymbolJson(std::string& json, const symbols::ReferenceIndex& index, symbols::SymbolId symbol);

}  // namespace quillmate::cli
