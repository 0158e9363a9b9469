#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

/// The few operations in which the systems differ, below all that the room offers. Each gives the reason of its
/// failure as a value and throws nothing.
namespace quillmate::files {

/// A file that is open for its bytes. Child processes don't inherit it.
class OpenFile {
 public:
  OpenFile() = default;
  explicit OpenFile(int descriptor) noexcept : descriptor_(descriptor) {}
  OpenFile(OpenFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  OpenFile& operator=(OpenFile&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~OpenFile() { Close(); }

  bool IsOpen() const noexcept { return descriptor_ >= 0; }
  /// The number of bytes of a plain file: what the system says, which is 0 for some files that hold bytes. Nothing for
  /// a pipe, a device, a folder.
  std::optional<std::size_t> PlainSize() const noexcept;
  /// Up to `count` bytes; 0 at the end and on failure.
  std::size_t Read(char* to, std::size_t count, std::error_code& error) noexcept;
  /// EPIPE where the reader has gone.
  std::error_code Write(std::string_view bytes) noexcept;
  /// Cuts the file off after the last byte that was written.
  std::error_code CutHere() noexcept;
  /// Has the system put the bytes where a power cut does not reach them.
  std::error_code Flush() noexcept;
  std::error_code Close() noexcept;

 private:
  int descriptor_ = -1;
};

/// Never waits for the other end of a pipe.
OpenFile OpenToRead(const std::filesystem::path& file, std::error_code& error) noexcept;
enum class WriteMode {
  kNew,      // fails when the file is there already
  kKeep,     // fails when it is not; its bytes stay until they are written over
  kReplace,  // makes the file where it is missing and empties it where it is not
};
OpenFile OpenToWrite(const std::filesystem::path& file, WriteMode mode, std::error_code& error) noexcept;

/// Has the system put a file's bytes, or a folder's names, where a power cut does not reach them. What a file system
/// does not offer is no failure.
std::error_code FlushFile(const std::filesystem::path& file) noexcept;
std::error_code FlushFolder(const std::filesystem::path& folder) noexcept;
/// All that was written on the file system of the folder, in one go; false where the system has no such thing.
bool FlushFileSystem(const std::filesystem::path& folder, std::error_code& error) noexcept;

/// Makes one folder and none above it; fails when the name is taken.
std::error_code MakeFolder(const std::filesystem::path& folder) noexcept;
/// Keeps a folder out of the sight of people where a dot in front of its name does not.
void Hide(const std::filesystem::path& folder) noexcept;
/// True when nobody but the user of this process may have made it.
bool IsOwn(const std::filesystem::path& path) noexcept;

/// Gives a file a second name; fails where the file system has no such names. A link is not followed.
std::error_code AddName(const std::filesystem::path& file, const std::filesystem::path& second) noexcept;
/// Renames a file or folder. `kFree` fails when the new name is taken.
enum class NewName { kFree, kReplaced };
std::error_code Rename(const std::filesystem::path& from, const std::filesystem::path& to, NewName name) noexcept;

/// Gives a new file, which nobody else can reach yet, the rights, owner and group of another as far as the system lets
/// it; an error when it would be open to more people.
std::error_code TakeRights(const std::filesystem::path& from, const std::filesystem::path& to) noexcept;
/// Takes from a new file the rights that none of the files has among which it comes, and gives it to their owner and
/// group where all have the same and the system lets it.
class CommonRights {
 public:
  void Add(const std::filesystem::path& file);
  std::error_code Limit(const std::filesystem::path& file) const noexcept;

 private:
  unsigned mode_ = 0;
  std::set<std::pair<unsigned, unsigned>> owners_;
};

/// Where an open file can't be removed (Windows): closes this process's files at or below a path, under whoever is
/// still writing to them. For the end of the process only.
void CloseFilesIn(const std::filesystem::path& path) noexcept;

/// Some file systems note the time of a change no finer than this; in nanoseconds.
inline constexpr std::int64_t kStampStep = 2'000'000'000;

/// True for a file, folder or link of that name; a link is not followed.
inline bool Exists(const std::filesystem::path& path) noexcept {
  std::error_code unknown;
  return std::filesystem::exists(std::filesystem::symlink_status(path, unknown));
}

}  // namespace quillmate::files
