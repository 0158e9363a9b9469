#pragma once

#include <cstdint>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// What code is coloured by.
namespace quillmate::symbols {

struct CodeSpan {
  enum class Kind : std::uint8_t { kKeyword, kString, kComment };
  /// In the module's text, in bytes.
  std::uint32_t offset, length;
  Kind kind;
};

/// Keywords, strings and comments of a module, ascending. Reads the module again.
std::vector<CodeSpan> SpansOf(const ReferenceIndex& index, Index module);

}  // namespace quillmate::symbols
