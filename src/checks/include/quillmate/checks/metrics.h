#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include <quillmate/symbols/reference_index.h>

/// Size, branching and coupling of routines and modules.
namespace quillmate::checks {

/// Lines are physical ones of the module's text. Inactive code counts for the lines only.
struct RoutineNumbers {
  symbols::Index module = 0;
  symbols::Index routine = 0;  ///< into Code(module).routines
  std::uint32_t lines = 0;     ///< from the header's first line to its End line
  std::uint32_t code = 0;
  std::uint32_t comment = 0;
  std::uint32_t statements = 0;
  std::uint32_t complexity = 0;
  std::uint32_t nesting = 0;
  std::uint32_t parameters = 0;
  std::uint32_t fanIn = 0;   ///< routines that surely call it
  std::uint32_t fanOut = 0;  ///< routines and Declares that it surely calls
};

/// The lines that the host's editor shows.
struct ModuleNumbers {
  std::uint32_t lines = 0;  ///< all of them, those of conditional compilation included
  std::uint32_t code = 0;
  std::uint32_t comment = 0;
  std::uint32_t blank = 0;
};

struct Metrics {
  std::vector<ModuleNumbers> modules;    ///< one for each of the index
  std::vector<RoutineNumbers> routines;  ///< by module, then place
};

/// Measures everything. `threads` 0: as many as the machine has cores.
Metrics Measure(const symbols::ReferenceIndex& index, unsigned threads = 0);

/// What a number means, for people.
struct MetricDefinition {
  std::string_view key;         ///< as in data: "complexity"
  std::string_view name;        ///< German
  std::string_view definition;  ///< German, whole sentences
};
/// In the order in which data lists the numbers: those of modules, then those of routines.
extern const MetricDefinition kModuleDefinitions[4];
extern const MetricDefinition kRoutineDefinitions[9];

}  // namespace quillmate::checks
