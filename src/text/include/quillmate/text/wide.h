#pragma once

#include <string>
#include <string_view>

/// UTF-8 and the UTF-16 of Windows' own functions; there only.
namespace quillmate::text {

/// Half a surrogate pair, which names there may hold, becomes the replacement character.
std::string Utf8FromWide(std::wstring_view wide);
/// What is no UTF-8 becomes the replacement character.
std::wstring WideFromUtf8(std::string_view utf8);

}  // namespace quillmate::text
