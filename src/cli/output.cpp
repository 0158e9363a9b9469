#include "output.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <quillmate/files/paths.h>
#include <quillmate/text/windows1252.h>

#include "messages.h"
#include "platform.h"
#include "terminal_text.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

/// Large pieces pass by the buffer, so this only gathers the small ones.
constexpr std::size_t kBufferSize = std::size_t{1} << 16U;

/// The file itself when the target is a symbolic link to one.
fs::path FollowLinks(const fs::path& target) {
  std::error_code error;
  fs::path real = fs::exists(target, error) ? files::RealPath(target, error) : target;
  return error ? target : real;
}

/// One of the names for a temporary file beside a target; they differ from those of every other running process.
fs::path TemporaryName(const fs::path& target, int attempt) {
  return target.parent_path() / (".quillmate-" + std::to_string(ProcessNumber()) + "-" + std::to_string(attempt));
}

}  // namespace

Output::Output(const std::optional<std::string>& target, Encoding encoding) : encoding_(encoding) {
  if (!target || *target == "-") {
    name_ = "Standardausgabe";
    stream_ = stdout;
  } else {
    name_ = *target;
    OpenFile(*target);
  }
  isTerminal_ = IsTerminal(stream_);
  std::setvbuf(stream_, nullptr, _IOFBF, kBufferSize);
}

Output::~Output() {
  if (stream_ != nullptr && stream_ != stdout) {
    std::fclose(stream_);
  }
}

void Output::OpenFile(const std::string& target) {
  target_ = FollowLinks(files::PathFromText(target));
  std::error_code ignored;
  const fs::file_status status = fs::status(target_, ignored);
  if (fs::is_directory(status)) {
    Fail(EISDIR);
  }
  if (IsDevice(target_)) {
    stream_ = OpenStream(target_, OpenMode::kExisting);
    return stream_ == nullptr ? Fail(errno) : void();
  }
  if (fs::exists(status)) {
    CheckWritable();
  }
  OpenTemporary();
  if (fs::exists(status)) {
    fs::permissions(temporary_->Path(), status.permissions(), ignored);
  }
}

/// A write-protected file stays, although the folder would let another take its place.
void Output::CheckWritable() const {
  std::FILE* const probe = OpenStream(target_, OpenMode::kExisting);
  if (probe == nullptr) {
    Fail(errno);
  }
  std::fclose(probe);
}

void Output::OpenTemporary() {
  int reason = EEXIST;
  temporary_ = std::make_unique<Leftover>([&] {
    fs::path path;
    for (int attempt = 1; stream_ == nullptr && reason == EEXIST; ++attempt) {
      path = TemporaryName(target_, attempt);
      stream_ = OpenStream(path, OpenMode::kNew);
      reason = errno;
    }
    return stream_ == nullptr ? fs::path() : path;
  });
  if (stream_ == nullptr) {
    Fail(reason);
  }
}

void Output::Write(std::string_view bytes) {
  if (isTerminal_) {
    Show(bytes, false);
  } else {
    WriteBytes(bytes);
  }
}

void Output::Show(std::string_view bytes, bool last) {
  held_ += encoding_ == Encoding::kCode ? text::Utf8FromCode(bytes) : std::string(bytes);
  std::string shown;
  held_.erase(0, AppendForTerminal(shown, held_, last));
  WriteBytes(shown);
}

void Output::WriteBytes(std::string_view bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), stream_) != bytes.size()) {
    Fail(WriteError());
  }
}

void Output::Finish() {
  if (isTerminal_) {
    Show({}, true);
  }
  if (std::fflush(stream_) != 0) {
    Fail(WriteError());
  }
  if (stream_ == stdout) {
    return;
  }
  if (std::fclose(std::exchange(stream_, nullptr)) != 0) {
    Fail(WriteError());
  }
  if (temporary_) {
    PutInPlace();
  }
}

void Output::PutInPlace() try {
  const RunLock lock;
  files::RenamePath(temporary_->Path(), target_);
  temporary_->Release(lock);
} catch (const fs::filesystem_error& error) {
  Fail(error.code());
}

void Output::Fail(int code) const {
  if (code == EPIPE) {
    throw ReaderGone();
  }
  Fail(std::error_code(code, std::generic_category()));
}

void Output::Fail(const std::error_code& error) const {
  throw CommandFailure(name_ + " kann nicht geschrieben werden: " + SystemReason(error));
}

void WriteWhole(const std::optional<std::string>& target, std::string_view bytes) {
  Output output(target);
  output.Write(bytes);
  output.Finish();
}

}  // namespace quillmate::cli
