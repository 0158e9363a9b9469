#include <stdexcept>
#include <utility>

#include <quillmate/files/paths.h>

#include "places.h"
#include "process.h"
#include "windows/child_process.h"

namespace quillmate::cli {
namespace {

using child::Handle;

/// What a program takes apart into the same words.
std::wstring QuotedWord(const std::string& word) {
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  const std::wstring wide = files::PathFromText(word).native();
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
  if (handle == INVALID_HANDLE_VALUE) throw std::runtime_error("CreateFile " + files::PathText(file));
  return Handle(handle);
}

/// An environment variable that a program started meanwhile inherits; it gets its own value back.
class InheritedVariable {
 public:
  InheritedVariable(const wchar_t* name, const std::wstring& value) : name_(name), before_(32767, L'\0') {
    before_.resize(GetEnvironmentVariableW(name, before_.data(), static_cast<DWORD>(before_.size())));
    SetEnvironmentVariableW(name, value.c_str());
  }
  InheritedVariable(const InheritedVariable&) = delete;
  InheritedVariable& operator=(const InheritedVariable&) = delete;
  ~InheritedVariable() { SetEnvironmentVariableW(name_, before_.empty() ? nullptr : before_.c_str()); }

 private:
  const wchar_t* name_;
  std::wstring before_;
};

Handle StartCli(const fs::path& program, const std::vector<std::string>& arguments, const fs::path& folder,
                const fs::path& scratch, child::Streams streams, DWORD flags) {
  std::wstring line;
  for (const std::string& argument : arguments) line += QuotedWord(argument) + L" ";
  const InheritedVariable tmp(L"TMP", scratch.wstring());
  const InheritedVariable temp(L"TEMP", scratch.wstring());
  return child::Spawn(program, line, std::move(streams), folder, flags);
}

int StatusOf(const Handle& process) { return static_cast<int>(child::WaitFor(process)); }

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
  const Handle started =
      child::Spawn(child::OwnProgram(), L"--gtest_also_run_disabled_tests --gtest_filter=InterruptSender.DISABLED_Send",
                   {}, fs::current_path(), DETACHED_PROCESS);
  EXPECT_EQ(StatusOf(started), 0);
}

int StartedProgram::Wait() { return StatusOf(handles_->process); }

std::string StartedProgram::Errors() { return child::ReadSome(handles_->err); }

std::vector<Interruption> Interruptions() { return {{CTRL_C_EVENT, static_cast<int>(0xC000013A)}}; }

int RunWithFiles(const fs::path& program, const std::vector<std::string>& arguments, const Environment& around,
                 const fs::path& folder, const fs::path& out, const fs::path& err) {
  const fs::path in = around.input.empty() ? fs::path("NUL") : folder / around.input;
  return StatusOf(
      StartCli(program, arguments, folder, around.temporary,
               {OpenInherited(in, GENERIC_READ, OPEN_EXISTING), OpenInherited(out, GENERIC_WRITE, CREATE_ALWAYS),
                OpenInherited(err, GENERIC_WRITE, CREATE_ALWAYS)},
               0));
}

StartedProgram CliTest::Start(const std::string& line, bool hasReader) const {
  auto handles = std::make_shared<StartedProgram::Handles>();
  child::Pipe out = child::PipeFromChild();
  child::Pipe err = child::PipeFromChild();
  if (hasReader) handles->out = std::move(out.read);
  out.read.Close();
  handles->err = std::move(err.read);
  handles->process =
      StartCli(Program(), Words(line), Folder(), Scratch(),
               {OpenInherited("NUL", GENERIC_READ, OPEN_EXISTING), std::move(out.write), std::move(err.write)},
               CREATE_NO_WINDOW);
  return StartedProgram(std::move(handles));
}

fs::path Program() { return (tests::ProgramFolder() / "quillmate-cli.exe").make_preferred(); }

}  // namespace quillmate::cli
