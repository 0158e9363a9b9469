#include "output.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/windows1252.h>

#include "messages.h"
#include "platform.h"
#include "read_files.h"
#include "terminal_text.h"

namespace quillmate::cli {
namespace {

/// Large pieces pass by the buffer, so this only gathers the small ones.
constexpr std::size_t kBufferSize = std::size_t{1} << 16U;

void CheckStandardOutput(bool done) {
  if (done) {
    return;
  }
  const int code = WriteError();
  if (code == EPIPE) {
    throw ReaderGone();
  }
  throw CommandFailure("Standardausgabe kann nicht geschrieben werden: " + files::ReasonText(code));
}

/// Runs a step of writing a file.
template <typename Step>
void Run(Step step) try {
  step();
} catch (const files::Failure& error) {
  if (error.Code() == std::errc::broken_pipe) {
    throw ReaderGone();
  }
  throw;
}

}  // namespace

Output::Output(const std::optional<std::string>& target, Encoding encoding) : encoding_(encoding) {
  if (!target || *target == "-") {
    isTerminal_ = IsTerminal(stdout);
    const char* const plain = std::getenv("NO_COLOR");
    paints_ = isTerminal_ && (plain == nullptr || *plain == '\0') && TakesColours(stdout);
    std::setvbuf(stdout, nullptr, _IOFBF, kBufferSize);
    return;
  }
  name_ = *target;
  CheckTarget();
  file_.emplace(files::PathFromText(name_));
}

void Output::CheckTarget() const { CheckNotRead(name_, {files::PathFromText(name_)}); }

void Output::Write(std::string_view bytes) {
  if (isTerminal_) {
    Show(bytes, false);
  } else {
    WriteBytes(bytes);
  }
}

void Output::Paint(std::string_view style) {
  if (!paints_) return;
  Show({}, true);
  WriteBytes(std::string("\x1b[").append(style).append("m"));
}

void Output::Show(std::string_view bytes, bool last) {
  held_ += encoding_ == Encoding::kCode ? text::Utf8FromCode(bytes) : std::string(bytes);
  std::string shown;
  held_.erase(0, AppendForTerminal(shown, held_, last));
  WriteBytes(shown);
}

void Output::WriteBytes(std::string_view bytes) {
  if (file_) {
    Run([&] { file_->Write(bytes); });
  } else {
    CheckStandardOutput(std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size());
  }
}

void Output::Finish() {
  if (isTerminal_) {
    Show({}, true);
  }
  if (!file_) {
    return CheckStandardOutput(std::fflush(stdout) == 0);
  }
  CheckTarget();
  Run([&] { file_->Commit(); });
}

void WriteWhole(const std::optional<std::string>& target, std::string_view bytes) {
  Output output(target);
  output.Write(bytes);
  output.Finish();
}

}  // namespace quillmate::cli
