#pragma once

#include <string>
#include <string_view>

namespace quillmate::settings {

/// True when `a` sorts before `b`: bytewise, but runs of digits compare by their value; of two that differ in leading
/// zeros alone the shorter comes first.
bool KeyBefore(std::string_view a, std::string_view b) noexcept;

struct KeyOrder {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const noexcept { return KeyBefore(a, b); }
};

/// A name as the storage takes it, and the way back: "%" and the `special` characters become "%" with two hexadecimal
/// digits, an empty name "%".
std::string EncodeName(std::string_view name, std::string_view special);
std::string DecodeName(std::string_view stored);

}  // namespace quillmate::settings
