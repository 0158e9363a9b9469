#include "host/com_stand_in_windows.h"

#include <filesystem>
#include <stdexcept>
#include <utility>

#include <quillmate/codedb/index_files.h>

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

/// It lies beside the test program.
fs::path Program() {
  constexpr DWORD kLongest = 32767;
  std::wstring self(kLongest, L'\0');
  self.resize(GetModuleFileNameW(nullptr, self.data(), kLongest));
  return fs::path(self).parent_path() / "stand_in_host.exe";
}

/// A pipe of which the child gets one end.
std::pair<HANDLE, HANDLE> Pipe(bool childReads) {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (CreatePipe(&read, &write, &inherited, 0) == 0) throw std::runtime_error("CreatePipe");
  SetHandleInformation(childReads ? write : read, HANDLE_FLAG_INHERIT, 0);
  return {read, write};
}

void Close(HANDLE& handle) {
  if (HANDLE closing = std::exchange(handle, nullptr); closing != nullptr) CloseHandle(closing);
}

}  // namespace

StandInHost::StandInHost(const std::string& arguments) {
  auto [childInput, input] = Pipe(true);
  auto [output, childOutput] = Pipe(false);
  input_ = input;
  output_ = output;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = childInput;
  start.hStdOutput = childOutput;
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  std::wstring command = L"\"" + Program().wstring() + L"\" " + codedb::PathFromText(arguments).wstring();
  PROCESS_INFORMATION made{};
  const BOOL started =
      CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made);
  Close(childInput);
  Close(childOutput);
  if (started == 0) throw std::runtime_error("stand_in_host.exe does not start");
  CloseHandle(made.hThread);
  process_ = made.hProcess;
  if (ReadLine() != "bereit") throw std::runtime_error("stand_in_host.exe does not register");
}

StandInHost::~StandInHost() {
  End();
  Close(output_);
  Close(process_);
}

std::string StandInHost::End() {
  Close(input_);
  WaitForEnd();
  return ReadLine();
}

DWORD StandInHost::WaitForEnd() const {
  DWORD code = 0;
  WaitForSingleObject(process_, INFINITE);
  GetExitCodeProcess(process_, &code);
  return code;
}

std::string StandInHost::ReadLine() const {
  std::string line;
  char character = 0;
  DWORD read = 0;
  while (ReadFile(output_, &character, 1, &read, nullptr) != 0 && read == 1 && character != '\n') {
    if (character != '\r') line += character;
  }
  return line;
}

}  // namespace quillmate::host
