#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <quillmate/symbols/reference_index.h>

/// Declarations and references of the understanding as JSON, one object without line break. Lines are the editor's.
namespace quillmate::cli {

/// "file", "project" and "module".
void AppendModuleJson(std::string& json, const symbols::ReferenceIndex& index, symbols::Index module);

/// ,"key":"text" with null for an empty text, and ,"key":number with null for 0.
void AppendMember(std::string& json, std::string_view key, std::string_view utf8);
void AppendMember(std::string& json, std::string_view key, std::uint32_t number);

/// A declaration with all its references.
void AppendSymbolJson(std::string& json, const symbols::ReferenceIndex& index, symbols::SymbolId symbol);

}  // namespace quillmate::cli
