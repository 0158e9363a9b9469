#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// What a target is made of: `Check(bytes)` is called with each input and must hold what the reader promises.
namespace quillmate::fuzz {

void Check(std::string_view bytes);

/// A broken promise is a crash, which the fuzzer keeps the input of.
inline void Expect(bool holds) {
  if (!holds) std::abort();
}

}  // namespace quillmate::fuzz

// Each target is one source file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quillmate::fuzz::Check({reinterpret_cast<const char*>(data), size});
  return 0;
}
