#pragma once

#include <filesystem>
#include <string>
#include <utility>

#include <windows.h>

/// Processes that a test starts on Windows. What fails throws std::runtime_error.
namespace quillmate::child {

/// A handle of the system, closed at the end.
class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() { Close(); }
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  HANDLE Get() const noexcept { return handle_; }
  void Close() {
    if (handle_ != nullptr) CloseHandle(std::exchange(handle_, nullptr));
  }

 private:
  HANDLE handle_ = nullptr;
};

/// The child inherits one end, nobody the other.
struct Pipe {
  Handle read;
  Handle write;
};
Pipe PipeToChild();
Pipe PipeFromChild();

/// A child's standard streams; an empty one is none.
struct Streams {
  Handle in;
  Handle out;
  Handle err;
};

/// `arguments` is the command line after the program's name. The streams are the child's alone afterwards.
Handle Spawn(const std::filesystem::path& program, const std::wstring& arguments, Streams streams,
             const std::filesystem::path& folder = std::filesystem::current_path(), DWORD flags = 0);

/// Waits for its end; the exit code.
DWORD WaitFor(const Handle& process);

/// What can be read at once, at least one byte and up to a few thousand; empty at the end.
std::string ReadSome(const Handle& stream);

/// A copy of the test's own standard error, for a child.
Handle OwnErrors();

/// The running test program.
std::filesystem::path OwnProgram();

}  // namespace quillmate::child
