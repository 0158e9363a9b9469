#include <array>
#include <stdexcept>
#include <utility>

#include <windows.h>

#include <quillmate/codedb/index_files.h>

#include "process.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

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

struct Streams {
  Handle in;
  Handle out;
  Handle err;
};

/// What a program takes apart into the same words.
std::wstring QuotedWord(const std::string& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  const std::wstring wide = codedb::PathFromText(word).native();
  for (const wchar_t c : wide) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, L'\\') + L"\"";
}

Handle OpenInherited(const fs::path& file, DWORD access, DWORD disposition) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  const HANDLE handle = CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, disposition,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) throw std::runtime_error("CreateFile " + codedb::PathText(file));
  return Handle(handle);
}

/// The end to read from, which no other process inherits, and the end to write to, which one does.
std::pair<Handle, Handle> NewPipe() {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (CreatePipe(&read, &write, &inherited, 0) == 0) throw std::runtime_error("CreatePipe");
  SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
  return {Handle(read), Handle(write)};
}

Handle Spawn(const fs::path& program, const std::vector<std::string>& arguments, const fs::path& folder,
             const fs::path& scratch, const Streams& streams, DWORD flags) {
  std::wstring line = L"\"" + program.native() + L"\"";
  for (const std::string& argument : arguments) line += L" " + QuotedWord(argument);
  for (const wchar_t* const variable : {L"TMP", L"TEMP"}) SetEnvironmentVariableW(variable, scratch.c_str());
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = streams.in.Get();
  start.hStdOutput = streams.out.Get();
  start.hStdError = streams.err.Get();
  PROCESS_INFORMATION made{};
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, flags, nullptr, folder.c_str(), &start,
                     &made) == 0) {
    throw std::runtime_error("CreateProcess " + codedb::PathText(program));
  }
  CloseHandle(made.hThread);
  return Handle(made.hProcess);
}

int WaitFor(const Handle& process) {
  DWORD status = 0;
  WaitForSingleObject(process.Get(), INFINITE);
  GetExitCodeProcess(process.Get(), &status);
  return static_cast<int>(status);
}

constexpr const wchar_t* kInterruptedVariable = L"QUILLMATE_INTERRUPTED";

/// Ctrl+C reaches all programs of a console. The program under test has one of its own; a process without a console is
/// needed to join it.
TEST(InterruptSender, DISABLED_Send) {
  std::wstring process(20, L'\0');
  GetEnvironmentVariableW(kInterruptedVariable, process.data(), static_cast<DWORD>(process.size()));
  ASSERT_NE(AttachConsole(std::stoul(process)), 0);
  SetConsoleCtrlHandler(nullptr, TRUE);
  ASSERT_NE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0), 0);
}

}  // namespace

struct StartedProgram::Handles {
  Handle process;
  Handle out;
  Handle err;
};

StartedProgram::StartedProgram(std::unique_ptr<Handles> handles) : handles_(std::move(handles)) {}
StartedProgram::StartedProgram(StartedProgram&&) noexcept = default;
StartedProgram::~StartedProgram() = default;

/// A read of nothing waits like any other.
void StartedProgram::AwaitOutput() {
  DWORD count = 0;
  for (DWORD waiting = 0; waiting == 0;) {
    ReadFile(handles_->out.Get(), nullptr, 0, &count, nullptr);
    if (PeekNamedPipe(handles_->out.Get(), nullptr, 0, nullptr, &waiting, nullptr) == 0) return;
  }
}

void StartedProgram::Interrupt(int /*kind*/) {
  const std::wstring process = std::to_wstring(GetProcessId(handles_->process.Get()));
  SetEnvironmentVariableW(kInterruptedVariable, process.c_str());
  std::wstring sender(32767, L'\0');
  sender.resize(GetModuleFileNameW(nullptr, sender.data(), static_cast<DWORD>(sender.size())));
  const fs::path here = fs::current_path();
  const Handle started =
      Spawn(sender, {"--gtest_also_run_disabled_tests", "--gtest_filter=InterruptSender.DISABLED_Send"}, here,
            fs::temp_directory_path(), {}, DETACHED_PROCESS);
  EXPECT_EQ(WaitFor(started), 0);
}

int StartedProgram::Wait() { return WaitFor(handles_->process); }

std::string StartedProgram::Errors() {
  std::string text(4096, '\0');
  DWORD count = 0;
  ReadFile(handles_->err.Get(), text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
  text.resize(count);
  return text;
}

std::vector<Interruption> Interruptions() { return {{CTRL_C_EVENT, static_cast<int>(0xC000013A)}}; }

Result CliTest::RunAt(const fs::path& program, const std::vector<std::string>& arguments,
                      const Surroundings& around) const {
  const fs::path out = scratch_ / "out";
  const fs::path err = scratch_ / "err";
  Result result;
  {
    const Streams streams{
        OpenInherited(around.input.empty() ? fs::path("NUL") : folder_ / around.input, GENERIC_READ, OPEN_EXISTING),
        OpenInherited(out, GENERIC_WRITE, CREATE_ALWAYS), OpenInherited(err, GENERIC_WRITE, CREATE_ALWAYS)};
    const fs::path temporary = around.temporary.empty() ? scratch_ : folder_ / around.temporary;
    result.status = WaitFor(Spawn(program, arguments, folder_, temporary, streams, 0));
  }
  result.out = codedb::ReadWholeFile(out);
  result.err = codedb::ReadWholeFile(err);
  fs::remove(out);
  fs::remove(err);
  return result;
}

StartedProgram CliTest::Start(const std::vector<std::string>& arguments, bool hasReader) const {
  auto handles = std::make_unique<StartedProgram::Handles>();
  Streams streams;
  streams.in = OpenInherited("NUL", GENERIC_READ, OPEN_EXISTING);
  std::tie(handles->out, streams.out) = NewPipe();
  std::tie(handles->err, streams.err) = NewPipe();
  if (!hasReader) handles->out.Close();
  handles->process = Spawn(Program(), arguments, folder_, scratch_, streams, CREATE_NO_WINDOW);
  return StartedProgram(std::move(handles));
}

fs::path Program() { return fs::path(QUILLMATE_BIN_DIR "/quillmate-cli.exe").make_preferred(); }

}  // namespace quillmate::cli
