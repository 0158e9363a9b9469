#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/office/reason.h>

/// Bytes that can be read at any place, so that a large file need not be in memory to reach a few of them.
namespace quillmate::office {

class ByteSource {
 public:
  virtual ~ByteSource() = default;
  virtual std::uint64_t Size() const noexcept = 0;
  /// Copies up to `count` bytes from `offset` (0-based) on and gives their number: fewer than asked for at the end of
  /// the source and where it can't be read.
  virtual std::size_t Read(std::uint64_t offset, char* to, std::size_t count) = 0;
};

/// Up to `count` bytes from `offset` on. What does not exist is not allocated.
std::string ReadBytes(ByteSource& source, std::uint64_t offset, std::uint64_t count);

/// Bytes that are in memory; they have to outlive the source.
class MemorySource final : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) noexcept : bytes_(bytes) {}
  std::uint64_t Size() const noexcept override { return bytes_.size(); }
  std::size_t Read(std::uint64_t offset, char* to, std::size_t count) override;

 private:
  std::string_view bytes_;
};

/// Why a path is of no use: missing, dead or circular link, not readable.
Reason ProblemOfPath(const std::filesystem::path& path);

/// A regular file, opened for reading only and without locking it for anybody else.
class FileSource final : public ByteSource {
 public:
  explicit FileSource(const std::filesystem::path& file);
  std::uint64_t Size() const noexcept override { return size_; }
  std::size_t Read(std::uint64_t offset, char* to, std::size_t count) override;

  /// Why the file can't be read, at all or at one of the places asked for so far; kNone while all is well.
  Reason Problem() const noexcept { return problem_; }

 private:
  std::filebuf file_;
  std::uint64_t size_ = 0;
  Reason problem_ = Reason::kNone;
};

/// Runs of bytes of another source, which may consist of pieces itself and has to outlive this one.
class PiecedSource final : public ByteSource {
 public:
  explicit PiecedSource(ByteSource* base) noexcept : base_(base) {}
  /// A run that follows directly on the one before grows it.
  void Append(std::uint64_t offset, std::uint64_t length);

  std::uint64_t Size() const noexcept override { return size_; }
  std::size_t Read(std::uint64_t offset, char* to, std::size_t count) override;

 private:
  struct Piece {
    std::uint64_t start;   // in this source
    std::uint64_t offset;  // in the other one
    std::uint64_t length;
  };

  ByteSource* base_;
  std::vector<Piece> pieces_;
  std::uint64_t size_ = 0;
};

/// The little-endian number of sizeof(Number) bytes at `offset`; 0 when it is not within `bytes`.
template <typename Number>
Number LittleEndian(std::string_view bytes, std::size_t offset) noexcept {
  if (offset > bytes.size() || bytes.size() - offset < sizeof(Number)) return 0;
  Number number = 0;
  for (std::size_t i = sizeof(Number); i-- > 0;) {
    number = static_cast<Number>(number << 8U | static_cast<unsigned char>(bytes[offset + i]));
  }
  return number;
}

}  // namespace quillmate::office
