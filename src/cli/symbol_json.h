#pragma once

#include <cstddef>
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

/// Where every declaration is listed, a use that may mean more declarations than these is listed with so many of them:
/// its "candidates" tell how many there are, "omitted" of the others counts the uses that they lack.
inline constexpr std::size_t kListedCandidates = 16;

/// A declaration with its references; see ReferenceIndex::ListReferences.
void AppendSymbolJson(std::string& json, const symbols::ReferenceIndex& index, symbols::SymbolId symbol,
                      std::size_t candidates = kListedCandidates);

}  // namespace quillmate::cli
