#include <algorithm>
#include <optional>
#include <set>
#include <unordered_set>
#include <utility>

#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/replacement.h>
#include <quillmate/files/work_folder.h>

#include "exchange_p.h"
#include "system_p.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBufferSize = std::size_t{1} << 16U;
/// From that many files on one flush of all that is written costs less than one for each.
constexpr std::size_t kManyFiles = 8;

/// Absolute, all links followed, without a separator at its end.
fs::path RealTarget(const fs::path& target) {
  std::error_code error;
  fs::path path = RealPath(target, error);
  if (error) throw Failure(FileAction::kWrite, target, error);
  return path.has_filename() ? path : path.parent_path();
}

/// A link that leads nowhere yet leads to the file that is to be made.
fs::path NewTarget(const fs::path& named) {
  constexpr int kMostLinks = 40;
  fs::path path = AbsolutePath(named);
  std::error_code error;
  for (int link = 0; link < kMostLinks && IsLink(path) && !error; ++link) {
    path = PathSeenFrom(path.parent_path(), fs::read_symlink(path, error));
  }
  return path;
}

bool IsFileOrLink(const fs::path& path) noexcept {
  std::error_code ignored;
  const fs::file_status status = fs::symlink_status(path, ignored);
  return fs::exists(status) && !fs::is_directory(status);
}

/// The old state is gone already, and a power cut leaves one of the two whole either way.
void KeepName(const fs::path& path) { static_cast<void>(FlushFolder(path.parent_path())); }

/// The names of a folder without those of its sub-folders, from one look: asking for each costs as much again.
std::unordered_set<fs::path::string_type> FileNames(const fs::path& folder) {
  std::error_code ignored;
  std::unordered_set<fs::path::string_type> names;
  for (const FolderEntry& entry : FolderEntries(folder, ignored)) {
    if (!entry.isFolder || entry.isLink) names.insert(entry.path.filename().native());
  }
  return names;
}

/// The folder itself and all that is in it.
struct FolderContent {
  std::vector<fs::path> folders;
  std::vector<fs::path> files;
};

std::error_code ListContent(const fs::path& top, FolderContent& content) {
  std::error_code error;
  content.folders = {top};
  for (std::size_t next = 0; next < content.folders.size() && !error; ++next) {
    const fs::path folder = content.folders[next];
    for (FolderEntry& entry : FolderEntries(folder, error)) {
      (entry.isFolder && !entry.isLink ? content.folders : content.files).push_back(std::move(entry.path));
    }
  }
  return error;
}

std::error_code FlushNewFolder(const fs::path& folder) {
  FolderContent content;
  if (const std::error_code error = ListContent(folder, content)) return error;
  std::error_code error;
  if (content.files.size() >= kManyFiles && FlushFileSystem(folder, error)) return error;
  for (const fs::path& file : content.files) {
    if ((error = FlushFile(file))) return error;
  }
  for (const fs::path& each : content.folders) {
    if ((error = FlushFolder(each))) return error;
  }
  return error;
}

}  // namespace

struct FileReplacement::State {
  /// As messages name it, and the file itself.
  fs::path named;
  fs::path target;
  bool existed = false;
  std::optional<WorkFolder> work;
  /// The work folder is not beside the target.
  bool writesOver = false;
  OpenFile file;
  std::string buffer;

  [[noreturn]] void Fail(const std::error_code& error) const { throw Failure(FileAction::kWrite, named, error); }
  void Check(const std::error_code& error) const {
    if (error) Fail(error);
  }

  void OpenTarget() {
    std::error_code error;
    OpenFile opened = OpenToWrite(target, WriteMode::kKeep, error);
    Check(error);
    if (!opened.PlainSize()) file = std::move(opened);
  }

  void MakeWorkFolder() {
    try {
      work.emplace(target.parent_path());
    } catch (const Failure& error) {
      if (!existed) Fail(error.Code());
      writesOver = true;
      work.emplace(TemporaryFolder(), WorkFolder::Access::kPrivate);
    }
    std::error_code error;
    file = OpenToWrite(work->Path() / kFresh, WriteMode::kNew, error);
    Check(error);
  }

  void PutInPlace() {
    const fs::path fresh = work->Path() / kFresh;
    const EndGuard guard;
    if (!writesOver) {
      const std::error_code error = Rename(fresh, target, existed ? NewName::kReplaced : NewName::kFree);
      if (!error) return KeepName(target);
      // It is mounted there, belongs to somebody else, or is open elsewhere.
      if (!existed) Fail(error);
    }
    Check(WriteOver(work->Path(), target));
  }
};

FileReplacement::FileReplacement(fs::path target) : state_(std::make_unique<State>()) {
  state_->named = std::move(target);
  std::error_code ignored;
  const fs::file_status status = fs::status(state_->named, ignored);
  if (fs::is_directory(status)) state_->Fail(std::make_error_code(std::errc::is_a_directory));
  state_->existed = fs::exists(status);
  if (state_->existed || IsDevice(state_->named)) {
    state_->target = IsDevice(state_->named) ? state_->named : RealTarget(state_->named);
    state_->OpenTarget();
  } else {
    state_->target = NewTarget(state_->named);
  }
  if (!state_->file.IsOpen()) state_->MakeWorkFolder();
}

FileReplacement::~FileReplacement() = default;

void FileReplacement::Write(std::string_view bytes) {
  std::string& buffer = state_->buffer;
  if (buffer.size() + bytes.size() > kBufferSize) {
    state_->Check(state_->file.Write(buffer));
    buffer.clear();
  }
  if (bytes.size() > kBufferSize) return state_->Check(state_->file.Write(bytes));
  buffer += bytes;
}

void FileReplacement::Commit() {
  state_->Check(state_->file.Write(state_->buffer));
  state_->buffer.clear();
  if (!state_->work) return state_->Check(state_->file.Close());
  if (state_->existed) state_->Check(TakeRights(state_->target, state_->work->Path() / kFresh));
  state_->Check(state_->file.Flush());
  state_->Check(state_->file.Close());
  state_->PutInPlace();
  state_->work.reset();
}

void ReplaceFile(const fs::path& target, const std::function<void(const Writer&)>& produce) {
  FileReplacement file(target);
  produce([&file](std::string_view bytes) { file.Write(bytes); });
  file.Commit();
}

void ReplaceFile(const fs::path& target, std::string_view bytes) {
  ReplaceFile(target, [bytes](const Writer& write) { write(bytes); });
}

struct FolderReplacement::State {
  fs::path target;
  bool existed = false;
  std::optional<WorkFolder> work;
  fs::path fresh;

  [[noreturn]] void Fail(const std::error_code& error) const { throw Failure(FileAction::kWrite, target, error); }
  void Check(const std::error_code& error) const {
    if (error) Fail(error);
  }

  /// Those of the names that a file or link in the target has.
  std::vector<fs::path> InTarget(const std::vector<fs::path>& names) const {
    const auto listed = FileNames(target);
    std::vector<fs::path> found;
    for (const fs::path& name : names) {
      // A file system may know a file by more names than it lists.
      if (listed.contains(name.native()) || IsFileOrLink(target / name)) found.push_back(name);
    }
    return found;
  }

  /// `replaced` are the own names that a file or link in the target has.
  void CheckNames(const std::vector<fs::path>& names, const std::set<fs::path>& replaced) const {
    const auto files = FileNames(fresh);
    for (const fs::path& name : names) {
      if (replaced.contains(name) ? !files.contains(name.native()) : Exists(target / name)) {
        throw Failure(FileAction::kWrite, target / name, std::make_error_code(std::errc::file_exists));
      }
    }
  }

  void HandRightsOn(const std::vector<fs::path>& names, const std::set<fs::path>& replaced) const {
    CommonRights rights;
    for (const fs::path& name : replaced) rights.Add(target / name);
    for (const fs::path& name : names) {
      if (replaced.contains(name)) {
        Check(TakeRights(target / name, fresh / name));
      } else {
        Check(rights.Limit(fresh / name));
      }
    }
  }

  void PutInPlace() const {
    const EndGuard guard;
    Check(Rename(fresh, target, NewName::kFree));
    KeepName(target);
  }

  void ExchangeFiles(const std::vector<fs::path>& names, const std::vector<fs::path>& old) const {
    const EndGuard guard;
    Check(CarryOut({.work = work->Path(), .place = target, .fresh = names, .old = old}));
  }
};

FolderReplacement::FolderReplacement(const fs::path& target) : state_(std::make_unique<State>()) {
  state_->target = RealTarget(target);
  state_->existed = Exists(state_->target);
  try {
    state_->work.emplace(state_->existed ? state_->target : state_->target.parent_path());
  } catch (const Failure& error) {
    state_->Fail(error.Code());
  }
  state_->fresh = state_->work->Path() / kFresh;
  state_->Check(MakeFolder(state_->fresh));
}

FolderReplacement::~FolderReplacement() = default;

const fs::path& FolderReplacement::Target() const noexcept { return state_->target; }

const fs::path& FolderReplacement::Path() const noexcept { return state_->fresh; }

std::vector<fs::path> FolderReplacement::Names() const {
  std::error_code error;
  std::vector<fs::path> names;
  for (const FolderEntry& entry : FolderEntries(state_->fresh, error)) names.push_back(entry.path.filename());
  state_->Check(error);
  std::sort(names.begin(), names.end());
  return names;
}

void FolderReplacement::Commit(const std::vector<fs::path>& own) {
  const std::vector<fs::path> names = Names();
  std::vector<fs::path> old;
  if (state_->existed) {
    old = state_->InTarget(own);
    const std::set<fs::path> replaced(old.begin(), old.end());
    state_->CheckNames(names, replaced);
    state_->HandRightsOn(names, replaced);
  }
  state_->Check(FlushNewFolder(state_->fresh));
  if (state_->existed) {
    state_->ExchangeFiles(names, old);
  } else {
    state_->PutInPlace();
  }
  state_->work.reset();
}

}  // namespace quillmate::files
