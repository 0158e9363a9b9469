#pragma once

#include <array>
#include <cstdint>

namespace quillmate::files {

using Sha256State = std::array<std::uint32_t, 8>;

/// Adds a block of 64 bytes to the sum.
using AddSha256Block = void(Sha256State& state, const unsigned char* block) noexcept;

/// For any processor.
AddSha256Block AddSha256BlockAnywhere;

/// By the instructions that this processor has for it, at several times the speed; null when it has none.
AddSha256Block* ProcessorsSha256() noexcept;

}  // namespace quillmate::files
