#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// A share as it grows over the years, made out of the modules of the sample: documents of all kinds that hold macros,
/// some without, locked, encrypted, compiled, broken, a fifth of them copies, in folders of folders. The same numbers
/// give the same bytes.
namespace quillmate::inventory {

struct EstateOptions {
  std::size_t files = 1000;
  std::uint32_t seed = 1;
  /// The folder with the sample's modules.
  std::filesystem::path sample;
};

struct EstateFile {
  std::filesystem::path path;
  /// The word of its state.
  std::string state;
};

/// Makes the folder, and writes over what bears the same names in it.
std::vector<EstateFile> MakeEstate(const std::filesystem::path& root, const EstateOptions& options);

}  // namespace quillmate::inventory
