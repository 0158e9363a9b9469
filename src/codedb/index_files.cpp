#include <algorithm>
#include <array>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/marked_walk.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kScratchRoot = "TempDateien";

/// What the database engine may have left beside a file.
constexpr std::array<const char*, 3> kCompanions = {"-journal", "-wal", "-shm"};

bool HasScratchRoot(const fs::path& path) {
  return std::any_of(path.begin(), path.end(), [](const fs::path& part) { return part == kScratchRoot; });
}

/// True when the folder is in the scratch root, by its name and in truth: neither ".." nor a link leads out of it.
bool IsScratchFolder(const fs::path& folder) {
  const fs::path plain = files::NormalPath(files::AbsolutePath(folder));
  const fs::path named = plain.has_filename() ? plain : plain.parent_path();
  return fs::is_directory(named) && !files::IsLink(named) && HasScratchRoot(named) &&
         HasScratchRoot(files::RealPath(named));
}

std::string MissingTemplateMessage(const fs::path& templateFile) {
  fs::path native = templateFile;
  return "Die notwendige Datenbank\r\n" + files::PathText(native.make_preferred()) +
         "\r\nexistiert nicht !!!\r\nBitte kopieren Sie diese wieder an diese Stelle";
}

void Remove(const fs::path& file) {
  std::error_code error;
  files::RemovePath(file, error);
  if (error) throw files::Failure(files::FileAction::kRemove, file, error);
}

/// The earlier file goes first: a link is not written through, and the copy does not inherit a write protection.
void ReplaceByCopy(const fs::path& source, const fs::path& target) {
  const std::string bytes = files::ReadWholeFile(source);
  Remove(target);
  for (const char* const companion : kCompanions) Remove(fs::path(target) += companion);
  Remove(FactsPath(target.parent_path()));
  files::WriteWholeFile(target, bytes);
}

}  // namespace

PrepareResult PrepareCodeDatabase(const fs::path& folder, const fs::path& templateFile) {
  std::error_code error;
  const fs::file_status status = fs::status(templateFile, error);
  if (status.type() == fs::file_type::not_found) return {false, MissingTemplateMessage(templateFile)};
  try {
    ReplaceByCopy(templateFile, CodeDbPath(folder));
    return {true, {}};
  } catch (const std::exception& failure) {
    return {false, {}, failure.what()};
  }
}

fs::path CodeDbPath(const fs::path& folder) { return folder / kDatabaseFile; }

fs::path ModuleTextPath(const fs::path& folder, ModuleNumber module) { return folder / (ModuleKey(module) + ".txt"); }

void WriteModuleText(const fs::path& folder, ModuleNumber module, std::string_view markedText) {
  files::WriteWholeFile(ModuleTextPath(folder, module), {markedText, text::kLineBreak});
}

std::string ReadModuleText(const fs::path& folder, ModuleNumber module) {
  return files::ReadWholeFile(ModuleTextPath(folder, module));
}

std::string StoredCode(std::string_view fileText) {
  struct Collector {
    std::string code;
    void Code(std::string_view part) { code.append(part); }
    void Mark(text::Marker) noexcept {}
  } collector;
  collector.code.reserve(fileText.size());
  text::WalkMarkedText(fileText, collector);
  std::string code = std::move(collector.code);
  for (int breaks = 0; breaks < 2 && code.ends_with(text::kLineBreak); ++breaks) {
    code.resize(code.size() - text::kLineBreak.size());
  }
  return code;
}

void DeleteAllFiles(const fs::path& folder) noexcept {
  try {
    if (!IsScratchFolder(folder)) return;
    std::error_code ignored;
    for (const files::FolderEntry& entry : files::FolderEntries(folder, ignored)) {
      if (!entry.isFolder || entry.isLink) files::RemovePath(entry.path, ignored);
    }
  } catch (const std::exception&) {
    // What can't be listed stays; the next start cleans up.
  }
}

}  // namespace quillmate::codedb
