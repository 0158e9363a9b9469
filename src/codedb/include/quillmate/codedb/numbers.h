#pragma once

#include <compare>
#include <cstdint>
#include <functional>

/// The numbers of the index, a type for each, so that they are not mixed up.
namespace quillmate::codedb {

template <typename Kind>
struct Number {
  std::int32_t value = 0;

  friend constexpr auto operator<=>(const Number&, const Number&) noexcept = default;
};

/// `mod_num`: 1 for the first module of a project.
using ModuleNumber = Number<struct ModuleKindOfNumber>;
/// `rou_num`: 1 for the first routine of a project.
using RoutineNumber = Number<struct RoutineKindOfNumber>;
/// A line of a module's stored text: 1 for the first one.
using Line = Number<struct LineKindOfNumber>;
/// Index of a code view: 0 for the first module.
using ViewIndex = Number<struct ViewKindOfNumber>;

constexpr ViewIndex ViewOf(ModuleNumber module) noexcept { return {module.value - 1}; }
constexpr ModuleNumber ModuleOf(ViewIndex view) noexcept { return {view.value + 1}; }

}  // namespace quillmate::codedb

template <typename Kind>
struct std::hash<quillmate::codedb::Number<Kind>> {
  std::size_t operator()(quillmate::codedb::Number<Kind> number) const noexcept {
    return std::hash<std::int32_t>()(number.value);
  }
};
