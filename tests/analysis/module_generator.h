#pragma once

#include <cstdint>
#include <random>
#include <string>

namespace quillmate::testing {

/// Makes awkward modules: pieces of code, markers, quotes and blanks thrown together, and plausible routines around
/// them. The same seed gives the same module.
class ModuleGenerator {
 public:
  explicit ModuleGenerator(std::uint32_t seed) : random_(seed) {}

  std::string Next();

 private:
  std::size_t Below(std::size_t limit) { return random_() % limit; }
  std::string Soup(std::size_t pieces);
  std::string Statement();
  std::string Line();

  std::mt19937 random_;
};

}  // namespace quillmate::testing
