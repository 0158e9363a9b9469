#include <algorithm>
#include <cerrno>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <zip.h>

#include <quillmate/export/zip_folder.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>
#include <quillmate/files/work_folder.h>

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

struct Discard {
  void operator()(zip_t* zip) const { zip_discard(zip); }
};
using Zip = std::unique_ptr<zip_t, Discard>;

/// What the library reports while it packs; an exception waits until it has returned.
struct Reporter {
  const std::function<void(int)>& progress;
  std::exception_ptr failure;

  void Tell(double share) {
    if (!progress || failure) return;
    try {
      progress(static_cast<int>(share * 100));
    } catch (...) {
      failure = std::current_exception();
    }
  }
};

[[noreturn]] void Fail(const fs::path& target, int systemCode) {
  throw files::Failure(files::FileAction::kWrite, target, systemCode == 0 ? EIO : systemCode);
}

[[noreturn]] void Fail(const fs::path& target, zip_error_t* error) {
  if (zip_error_code_zip(error) == ZIP_ER_MEMORY) throw std::bad_alloc();
  Fail(target, zip_error_system_type(error) == ZIP_ET_SYS ? zip_error_code_system(error) : 0);
}

/// In the order of their names, so that the same folder gives the same order. Links are left out.
std::vector<fs::path> FilesIn(const fs::path& folder) {
  std::vector<fs::path> found;
  std::vector<fs::path> waiting{folder};
  while (!waiting.empty()) {
    const fs::path next = std::move(waiting.back());
    waiting.pop_back();
    std::error_code error;
    for (const files::FolderEntry& entry : files::FolderEntries(next, error)) {
      if (entry.isLink) continue;
      if (entry.isFolder) {
        waiting.push_back(entry.path);
      } else if (fs::is_regular_file(entry.path)) {
        found.push_back(entry.path);
      }
    }
    if (error) throw files::Failure(files::FileAction::kList, next, error);
  }
  std::sort(found.begin(), found.end());
  return found;
}

void Add(zip_t* zip, const fs::path& folder, const fs::path& file, const fs::path& target) {
  const std::string path = files::PathText(file);
  const fs::path inside = folder.filename() / file.lexically_relative(folder);
  const auto name = inside.generic_u8string();
  zip_source_t* source = zip_source_file(zip, path.c_str(), 0, -1);
  if (source == nullptr) Fail(target, zip_get_error(zip));
  if (zip_file_add(zip, reinterpret_cast<const char*>(name.c_str()), source, ZIP_FL_ENC_UTF_8) < 0) {
    zip_source_free(source);
    Fail(target, zip_get_error(zip));
  }
}

}  // namespace

void ZipFolder(const fs::path& folder, const fs::path& target, const std::function<void(int)>& progress) {
  files::FileReplacement replacement(target);
  const files::WorkFolder work(files::TemporaryFolder(), files::WorkFolder::Access::kPrivate);
  const fs::path made = work.Path() / "gepackt.zip";
  int code = 0;
  Zip zip(zip_open(files::PathText(made).c_str(), ZIP_CREATE | ZIP_EXCL, &code));
  if (zip == nullptr) Fail(target, errno);
  for (const fs::path& file : FilesIn(folder)) Add(zip.get(), folder, file, target);
  Reporter reporter{progress, {}};
  zip_register_progress_callback_with_state(
      zip.get(), 0.01, [](zip_t*, double share, void* state) { static_cast<Reporter*>(state)->Tell(share); }, nullptr,
      &reporter);
  zip_register_cancel_callback_with_state(
      zip.get(), [](zip_t*, void* state) { return static_cast<Reporter*>(state)->failure ? 1 : 0; }, nullptr,
      &reporter);
  zip_t* finished = zip.release();
  if (zip_close(finished) != 0) {
    zip.reset(finished);
    if (reporter.failure) std::rethrow_exception(reporter.failure);
    Fail(target, zip_get_error(finished));
  }
  if (reporter.failure) std::rethrow_exception(reporter.failure);
  files::ReadInPieces(made, [&replacement](std::string_view piece) { replacement.Write(piece); });
  replacement.Commit();
}

}  // namespace quillmate::output
