#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include <quillmate/codedb/index_files.h>

namespace quillmate::host {

/// A folder of a test's own, removed with all that is in it. Names are UTF-8.
class TempFolder {
 public:
  explicit TempFolder(std::string_view name = "q") {
    root_ = std::filesystem::temp_directory_path() / ("quillmate_" + std::to_string(std::random_device{}()));
    path_ = root_ / name;
    std::filesystem::create_directories(path_);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& Path() const noexcept { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / codedb::PathFromText(name); }

  /// Writes a file, with the folders above it, and gives its path.
  std::filesystem::path Write(std::string_view name, std::string_view bytes) const {
    const std::filesystem::path file = *this / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
  }

 private:
  std::filesystem::path root_;
  std::filesystem::path path_;
};

}  // namespace quillmate::host
