#include <array>
#include <cstdlib>
#include <exception>
#include <memory>
#include <thread>

#include <windows.h>

#include <quillmate/files/command_word.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/wide.h>

#include "child_process.h"
#include "messages.h"

namespace quillmate::cli {
namespace {

constexpr std::size_t kMostErrors = std::size_t{1} << 16U;

struct CloseIt {
  using pointer = HANDLE;
  void operator()(HANDLE handle) const noexcept {
    if (handle != nullptr && handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
  }
};
using Handle = std::unique_ptr<HANDLE, CloseIt>;

[[noreturn]] void FailStart(const std::filesystem::path& program) {
  const std::error_code code(static_cast<int>(GetLastError()), std::system_category());
  throw CommandFailure(files::PathText(program) + " lässt sich nicht starten: " + files::ReasonText(code));
}

struct Pipe {
  Handle reader, writer;
};

/// Only the end that the child writes to is handed on to it.
Pipe MakePipe(const std::filesystem::path& program) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE reader = nullptr, writer = nullptr;
  if (CreatePipe(&reader, &writer, &inherited, 0) == 0) FailStart(program);
  Pipe pipe{Handle(reader), Handle(writer)};
  SetHandleInformation(reader, HANDLE_FLAG_INHERIT, 0);
  return pipe;
}

Handle OpenInput(const std::filesystem::path& input, const std::filesystem::path& program) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  const wchar_t* const name = input.empty() ? L"NUL" : input.c_str();
  Handle handle(CreateFileW(name, GENERIC_READ, FILE_SHARE_READ, &inherited, OPEN_EXISTING, 0, nullptr));
  if (handle.get() == INVALID_HANDLE_VALUE) FailStart(program);
  return handle;
}

/// Hands the child these handles and no others.
class StartInfo {
 public:
  StartInfo(HANDLE input, HANDLE output, HANDLE errors) : handles_{input, output, errors} {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_.resize(size);
    info_.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
    InitializeProcThreadAttributeList(info_.lpAttributeList, 1, 0, &size);
    UpdateProcThreadAttribute(info_.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                              sizeof(handles_), nullptr, nullptr);
    info_.StartupInfo.cb = sizeof(info_);
    info_.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    info_.StartupInfo.hStdInput = input;
    info_.StartupInfo.hStdOutput = output;
    info_.StartupInfo.hStdError = errors;
  }
  ~StartInfo() { DeleteProcThreadAttributeList(info_.lpAttributeList); }
  StartInfo(const StartInfo&) = delete;
  StartInfo& operator=(const StartInfo&) = delete;
  STARTUPINFOW* Get() noexcept { return &info_.StartupInfo; }

 private:
  std::array<HANDLE, 3> handles_;
  std::string memory_;
  STARTUPINFOEXW info_{};
};

template <typename Take>
void ReadAll(HANDLE from, Take take) {
  std::string buffer(std::size_t{1} << 16U, '\0');
  DWORD count = 0;
  while (ReadFile(from, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) != 0 && count > 0) {
    take(std::string_view(buffer.data(), count));
  }
}

}  // namespace

std::optional<std::filesystem::path> FindProgram(std::string_view name) {
  const wchar_t* const variable = _wgetenv(L"PATH");
  std::wstring_view rest = variable == nullptr ? std::wstring_view() : std::wstring_view(variable);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(L';'), rest.size());
    std::wstring_view entry = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (entry.size() > 1 && entry.front() == L'"' && entry.back() == L'"') entry = entry.substr(1, entry.size() - 2);
    const std::filesystem::path folder(entry);
    if (!folder.is_absolute()) continue;
    std::filesystem::path program = folder / (std::string(name) + ".exe");
    std::error_code ignored;
    if (std::filesystem::is_regular_file(program, ignored)) return program;
  }
  return std::nullopt;
}

ChildEnd RunChild(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                  const std::filesystem::path& input, const std::function<void(std::string_view)>& take) {
  const Handle in = OpenInput(input, program);
  Pipe out = MakePipe(program), err = MakePipe(program);
  std::wstring line;
  files::AppendCommandWord(line, program.native());
  for (const std::string& argument : arguments) files::AppendCommandWord(line, text::WideFromUtf8(argument));
  StartInfo start(in.get(), out.writer.get(), err.writer.get());
  PROCESS_INFORMATION started{};
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                     CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr, start.Get(), &started) == 0) {
    FailStart(program);
  }
  const Handle process(started.hProcess), thread(started.hThread);
  out.writer.reset();
  err.writer.reset();

  ChildEnd end;
  std::thread errors([&] {
    ReadAll(err.reader.get(), [&](std::string_view bytes) {
      end.errors += bytes.substr(0, kMostErrors - std::min(kMostErrors, end.errors.size()));
    });
  });
  std::exception_ptr failure;
  ReadAll(out.reader.get(), [&](std::string_view bytes) {
    try {
      if (!failure) take(bytes);
    } catch (...) {
      failure = std::current_exception();
    }
  });
  errors.join();
  WaitForSingleObject(process.get(), INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.get(), &status);
  end.status = static_cast<int>(status);
  if (failure) std::rethrow_exception(failure);
  return end;
}

}  // namespace quillmate::cli
