#include "process.h"

#include <algorithm>
#include <random>

#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/paths.h>
#include <quillmate/text/operations.h>

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

fs::path NewFolder() {
  static const fs::path parent = fs::canonical(fs::temp_directory_path());
  std::random_device random;
  for (;;) {
    fs::path folder = parent / ("quillmate-cli-" + std::to_string(random()));
    if (fs::create_directory(folder)) {
      return folder;
    }
  }
}

/// Also what lies deeper than the standard library reaches on Windows.
void RemoveAll(const fs::path& folder) {
  std::error_code error;
  for (const codedb::FolderEntry& entry : codedb::FolderEntries(folder, error)) {
    if (entry.isFolder && !entry.isLink) RemoveAll(entry.path);
    codedb::RemovePath(entry.path, error);
  }
  codedb::RemovePath(folder, error);
}

}  // namespace

CliTest::CliTest() : folder_(NewFolder()), scratch_(NewFolder()) {}

CliTest::~CliTest() {
  EXPECT_TRUE(fs::is_empty(scratch_)) << "The program left something in its folder for temporary files";
  RemoveAll(folder_);
  RemoveAll(scratch_);
}

Result CliTest::Run(const std::vector<std::string>& arguments, const Surroundings& around) const {
  return RunAt(Program(), arguments, around);
}

fs::path CliTest::Write(const std::string& name, std::string_view bytes) const {
  fs::path file = folder_ / codedb::PathFromText(name);
  fs::create_directories(file.parent_path());
  codedb::WriteWholeFile(file, bytes);
  return file;
}

std::string CliTest::Read(const std::string& name) const {
  return codedb::ReadWholeFile(folder_ / codedb::PathFromText(name));
}

std::string CliTest::Names(const std::string& folder) const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_ / codedb::PathFromText(folder))) {
    names.push_back(codedb::PathText(entry.path().filename()));
  }
  std::sort(names.begin(), names.end());
  return text::Join(names, " ");
}

std::string CliTest::Full(const std::string& name) const {
  return codedb::PathText((folder_ / codedb::PathFromText(name)).make_preferred());
}

std::string Messages(const std::vector<std::string>& texts) {
  std::string lines;
  for (const std::string& text : texts) {
    lines += "quillmate-cli: " + text + "\n";
  }
  return lines;
}

}  // namespace quillmate::cli
