#include <cstdlib>

#include <gtest/gtest.h>
#include <windows.h>

#include <quillmate/startup/session.h>

#include "startup/instance_process.h"

namespace quillmate::startup {
namespace {

constexpr const wchar_t* kFolderVariable = L"QUILLMATE_INSTANCE_FOLDER";

std::wstring FolderFromParent() {
  std::wstring folder(32767, L'\0');
  folder.resize(GetEnvironmentVariableW(kFolderVariable, folder.data(), static_cast<DWORD>(folder.size())));
  return folder;
}

/// Both ends; the other process inherits one of them.
struct Pipe {
  Pipe() {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    if (CreatePipe(&read, &write, &inherited, 0) == 0) std::abort();
  }
  HANDLE read = nullptr;
  HANDLE write = nullptr;
};

/// The instance's own process: it tells on standard error and takes the order from standard input.
TEST(InstanceProcess, DISABLED_Run) {
  char order = 0;
  DWORD count = 0;
  RunInstance(
      FolderFromParent(),
      [&](const std::string& text) {
        WriteFile(GetStdHandle(STD_ERROR_HANDLE), text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
      },
      [&] { return ReadFile(GetStdHandle(STD_INPUT_HANDLE), &order, 1, &count, nullptr) != 0 && count == 1; });
}

}  // namespace

struct InstanceProcess::Handles {
  HANDLE process = nullptr;
  HANDLE news = nullptr;
  HANDLE orders = nullptr;

  void Reap() {
    WaitForSingleObject(process, INFINITE);
    for (const HANDLE handle : {process, news, orders}) CloseHandle(handle);
    process = nullptr;
  }
};

InstanceProcess::InstanceProcess(const std::filesystem::path& programFolder) : handles_(std::make_unique<Handles>()) {
  const Pipe news;
  const Pipe orders;
  for (const HANDLE own : {news.read, orders.write}) SetHandleInformation(own, HANDLE_FLAG_INHERIT, 0);
  SetEnvironmentVariableW(kFolderVariable, programFolder.c_str());
  std::wstring program(32767, L'\0');
  program.resize(GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size())));
  std::wstring line = L"test --gtest_also_run_disabled_tests --gtest_filter=InstanceProcess.DISABLED_Run";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = orders.read;
  start.hStdError = news.write;
  PROCESS_INFORMATION made{};
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &made) == 0) {
    std::abort();
  }
  for (const HANDLE handle : {made.hThread, orders.read, news.write}) CloseHandle(handle);
  *handles_ = {.process = made.hProcess, .news = news.read, .orders = orders.write};
}

InstanceProcess::~InstanceProcess() = default;

std::string InstanceProcess::AwaitNews() {
  std::string text(4096, '\0');
  DWORD count = 0;
  ReadFile(handles_->news, text.data(), static_cast<DWORD>(text.size()), &count, nullptr);
  text.resize(count);
  return text;
}

void InstanceProcess::End() {
  DWORD count = 0;
  if (handles_->process != nullptr && WriteFile(handles_->orders, "e", 1, &count, nullptr) != 0) handles_->Reap();
}

void InstanceProcess::Kill() {
  TerminateProcess(handles_->process, 1);
  handles_->Reap();
}

std::string FreeLocks(const std::filesystem::path& scratchRoot) {
  const HANDLE file = CreateFileW((scratchRoot / kInstanceFile).c_str(), GENERIC_READ | GENERIC_WRITE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  const auto isFree = [file](DWORD kind) {
    OVERLAPPED start{};
    const bool locked = LockFileEx(file, kind | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &start) != 0;
    if (locked) UnlockFileEx(file, 0, 1, 0, &start);
    return locked;
  };
  std::string free;
  if (isFree(LOCKFILE_EXCLUSIVE_LOCK)) free += "exclusive ";
  if (isFree(0)) free += "shared";
  CloseHandle(file);
  return free;
}

}  // namespace quillmate::startup
