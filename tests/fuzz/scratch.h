#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace quillmate::fuzz {

/// A folder of this process, in memory where the system has one there; it goes when the process ends in order.
class Scratch {
 public:
  Scratch() {
    const std::filesystem::path memory = "/dev/shm";
    std::string name =
        ((std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path()) / "fuzz-XXXXXX")
            .string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  const std::filesystem::path& Path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace quillmate::fuzz
