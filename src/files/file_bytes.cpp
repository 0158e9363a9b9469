#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "system_p.h"

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kFirstGuess = 4096;
constexpr std::size_t kPiece = std::size_t{1} << 16U;

/// Some systems only say of a folder that it must not be opened.
[[noreturn]] void Fail(FileAction action, const fs::path& file, const std::error_code& error) {
  std::error_code ignored;
  if (fs::is_directory(file, ignored)) throw Failure(action, file, EISDIR);
  throw Failure(action, file, error);
}

/// A plain file and its size.
std::pair<OpenFile, std::size_t> OpenPlain(const fs::path& file) {
  std::error_code error;
  OpenFile in = OpenToRead(file, error);
  if (error) Fail(FileAction::kRead, file, error);
  const std::optional<std::size_t> size = in.PlainSize();
  if (!size) Fail(FileAction::kRead, file, std::make_error_code(std::errc::not_supported));
  return {std::move(in), *size};
}

}  // namespace

std::string ReadWholeFile(const fs::path& file, std::size_t most) {
  auto [in, size] = OpenPlain(file);
  std::error_code error;
  if (size > most) throw Failure(FileAction::kRead, file, EFBIG);
  // The size is a first guess: a file may grow meanwhile, and some that hold bytes have none. One byte more tells the
  // end.
  std::string bytes(std::min(std::max(size + 1, kFirstGuess), most + 1), '\0');
  std::size_t used = 0;
  while (const std::size_t got = in.Read(bytes.data() + used, bytes.size() - used, error)) {
    used += got;
    if (used > most) throw Failure(FileAction::kRead, file, EFBIG);
    if (used == size && used < bytes.size()) break;
    if (used == bytes.size()) bytes.resize(std::min(2 * used, most + 1));
  }
  if (error) Fail(FileAction::kRead, file, error);
  bytes.resize(used);
  return bytes;
}

void ReadInPieces(const fs::path& file, const std::function<void(std::string_view)>& take) {
  OpenFile in = OpenPlain(file).first;
  std::error_code error;
  std::string piece(kPiece, '\0');
  while (const std::size_t got = in.Read(piece.data(), piece.size(), error)) {
    take(std::string_view(piece).substr(0, got));
  }
  if (error) Fail(FileAction::kRead, file, error);
}

void WriteWholeFile(const fs::path& file, std::initializer_list<std::string_view> pieces) {
  std::error_code error;
  OpenFile out = OpenToWrite(file, WriteMode::kReplace, error);
  if (error) Fail(FileAction::kWrite, file, error);
  for (const std::string_view piece : pieces) {
    if (!error) error = out.Write(piece);
  }
  const std::error_code closing = out.Close();
  if (!error) error = closing;
  if (!error) return;
  std::error_code ignored;
  if (fs::is_regular_file(file, ignored)) RemovePath(file, ignored);
  Fail(FileAction::kWrite, file, error);
}

void WriteWholeFile(const fs::path& file, std::string_view bytes) { WriteWholeFile(file, {bytes}); }

}  // namespace quillmate::files
