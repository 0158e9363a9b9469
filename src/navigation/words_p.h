#pragma once

#include <cstddef>
#include <string_view>

#include <quillmate/text/characters.h>

namespace quillmate::navigation {

inline bool IsIdentifierAt(std::string_view text, std::size_t offset) noexcept {
  return text::IsIdentifierCharacter(text[offset]);
}

}  // namespace quillmate::navigation
