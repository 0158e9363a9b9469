#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <quillmate/office/byte_source.h>

namespace quillmate::office {
namespace {

namespace fs = std::filesystem;

/// Another program's lock shows in the error of opening or of reading, by system and file server in different ones.
Reason ProblemOfError(int error) {
  switch (error) {
    case EBUSY:
    case ETXTBSY:
    case EAGAIN:
      return Reason::kInUse;
    case EACCES:
    case EPERM:
      return Reason::kNoAccess;
    default:
      return Reason::kUnreadable;
  }
}

std::size_t Available(std::uint64_t size, std::uint64_t offset, std::size_t count) noexcept {
  return offset >= size ? 0 : static_cast<std::size_t>(std::min<std::uint64_t>(count, size - offset));
}

}  // namespace

Reason ProblemOfPath(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (fs::is_directory(status)) return Reason::kIsFolder;
  if (status.type() == fs::file_type::not_found || status.type() == fs::file_type::none) {
    std::error_code ignored;
    if (fs::is_symlink(fs::symlink_status(path, ignored))) return Reason::kDeadLink;
    if (status.type() == fs::file_type::not_found) return Reason::kMissing;
  }
  return Reason::kUnreadable;
}

std::string ReadBytes(ByteSource& source, std::uint64_t offset, std::uint64_t count) {
  const std::uint64_t size = source.Size();
  std::string bytes(offset >= size ? 0 : static_cast<std::size_t>(std::min(count, size - offset)), '\0');
  bytes.resize(source.Read(offset, bytes.data(), bytes.size()));
  return bytes;
}

std::size_t MemorySource::Read(std::uint64_t offset, char* to, std::size_t count) {
  const std::size_t available = Available(bytes_.size(), offset, count);
  if (available > 0) std::memcpy(to, bytes_.data() + offset, available);
  return available;
}

FileSource::FileSource(const fs::path& file) {
  std::error_code error;
  // A pipe would make the program wait for ever.
  if (!fs::is_regular_file(file, error)) {
    problem_ = ProblemOfPath(file);
    return;
  }
  file_.pubsetbuf(nullptr, 0);
  errno = 0;
  const bool open = file_.open(file, std::ios::in | std::ios::binary) != nullptr;
  const std::streamoff end = open ? std::streamoff(file_.pubseekoff(0, std::ios::end)) : -1;
  if (end < 0) {
    problem_ = ProblemOfError(errno);
    return;
  }
  size_ = static_cast<std::uint64_t>(end);
}

std::size_t FileSource::Read(std::uint64_t offset, char* to, std::size_t count) {
  const std::size_t available = Available(size_, offset, count);
  if (available == 0) return 0;
  errno = 0;
  std::streamsize got = 0;
  try {
    if (std::streamoff(file_.pubseekoff(static_cast<std::streamoff>(offset), std::ios::beg)) >= 0) {
      got = std::max<std::streamsize>(file_.sgetn(to, static_cast<std::streamsize>(available)), 0);
    }
  } catch (const std::ios_base::failure&) {
    // The standard library reports a failed read so.
  }
  if (static_cast<std::size_t>(got) < available && problem_ == Reason::kNone) problem_ = ProblemOfError(errno);
  return static_cast<std::size_t>(got);
}

void PiecedSource::Append(std::uint64_t offset, std::uint64_t length) {
  if (length == 0) return;
  if (!pieces_.empty() && pieces_.back().offset + pieces_.back().length == offset) {
    pieces_.back().length += length;
  } else {
    pieces_.push_back({size_, offset, length});
  }
  size_ += length;
}

std::size_t PiecedSource::Read(std::uint64_t offset, char* to, std::size_t count) {
  const std::size_t available = Available(size_, offset, count);
  auto piece = std::upper_bound(pieces_.begin(), pieces_.end(), offset,
                                [](std::uint64_t at, const Piece& candidate) { return at < candidate.start; });
  std::size_t done = 0;
  while (done < available) {
    const Piece& current = *std::prev(piece);
    const std::uint64_t inside = offset + done - current.start;
    const std::size_t wanted = Available(current.length, inside, available - done);
    const std::size_t got = base_->Read(current.offset + inside, to + done, wanted);
    done += got;
    if (got < wanted) break;
    ++piece;
  }
  return done;
}

}  // namespace quillmate::office
