#include "windows/child_process.h"

#include <stdexcept>

namespace quillmate::child {
namespace {

Pipe NewPipe() {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (CreatePipe(&read, &write, &inherited, 0) == 0) throw std::runtime_error("CreatePipe");
  return {Handle(read), Handle(write)};
}

void Keep(const Handle& own) { SetHandleInformation(own.Get(), HANDLE_FLAG_INHERIT, 0); }

}  // namespace

Pipe PipeToChild() {
  Pipe pipe = NewPipe();
  Keep(pipe.write);
  return pipe;
}

Pipe PipeFromChild() {
  Pipe pipe = NewPipe();
  Keep(pipe.read);
  return pipe;
}

Handle Spawn(const std::filesystem::path& program, const std::wstring& arguments, Streams streams,
             const std::filesystem::path& folder, DWORD flags) {
  std::wstring line = L"\"" + program.native() + L"\" " + arguments;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = streams.in.Get();
  start.hStdOutput = streams.out.Get();
  start.hStdError = streams.err.Get();
  PROCESS_INFORMATION made{};
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, flags, nullptr, folder.c_str(), &start,
                     &made) == 0) {
    throw std::runtime_error("CreateProcess " + program.filename().string());
  }
  CloseHandle(made.hThread);
  return Handle(made.hProcess);
}

DWORD WaitFor(const Handle& process) {
  DWORD status = 0;
  WaitForSingleObject(process.Get(), INFINITE);
  GetExitCodeProcess(process.Get(), &status);
  return status;
}

std::string ReadSome(const Handle& stream) {
  std::string text(4096, '\0');
  DWORD count = 0;
  ReadFile(stream.Get(), text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
  text.resize(count);
  return text;
}

Handle OwnErrors() {
  HANDLE copy = nullptr;
  DuplicateHandle(GetCurrentProcess(), GetStdHandle(STD_ERROR_HANDLE), GetCurrentProcess(), &copy, 0, TRUE,
                  DUPLICATE_SAME_ACCESS);
  return Handle(copy);
}

std::filesystem::path OwnProgram() {
  std::wstring self(32767, L'\0');
  self.resize(GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size())));
  return self;
}

}  // namespace quillmate::child
