#pragma once

#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

namespace quillmate::files {

/// A new empty folder (its path holds an umlaut and a blank) that goes with the test. Names are UTF-8.
class ScratchFolder {
 public:
  explicit ScratchFolder(std::string_view name = "Prüf Ordner",
                         const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
    root_ = std::filesystem::canonical(parent) / ("quillmate_" + std::to_string(std::random_device{}()));
    path_ = root_ / PathFromText(name);
    std::filesystem::create_directories(path_);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    RemoveFolder(root_, ignored);
  }

  const std::filesystem::path& Path() const { return path_; }
  std::filesystem::path operator/(std::string_view name) const { return path_ / PathFromText(name); }

  /// Writes a file, with the folders above it, and gives its path.
  std::filesystem::path Write(std::string_view name, std::string_view bytes) const {
    std::filesystem::path file = *this / name;
    std::filesystem::create_directories(file.parent_path());
    WriteWholeFile(file, bytes);
    return file;
  }

 private:
  std::filesystem::path root_;
  std::filesystem::path path_;
};

/// What is in a folder: the names, sorted, with blanks between them.
inline std::string Names(const std::filesystem::path& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) names.insert(PathText(entry.path().filename()));
  std::string joined;
  for (const std::string& name : names) joined += (joined.empty() ? "" : " ") + name;
  return joined;
}

/// The files directly in a folder by their names, with their bytes; none when there is no folder.
inline std::map<std::string, std::string> FilesIn(const std::filesystem::path& folder) {
  std::map<std::string, std::string> files;
  std::error_code missing;
  for (const auto& entry : std::filesystem::directory_iterator(folder, missing)) {
    if (entry.is_regular_file()) files[PathText(entry.path().filename())] = ReadWholeFile(entry.path());
  }
  return files;
}

/// The message of the failure that an action throws; empty when it throws none.
template <typename Action>
std::string MessageOf(Action action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.what();
  }
  return {};
}

}  // namespace quillmate::files
