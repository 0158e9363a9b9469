#include <utility>

#include <gtest/gtest.h>

#include <quillmate/startup/session.h>

#include "startup/instance_process.h"
#include "windows/child_process.h"

namespace quillmate::startup {
namespace {

constexpr const wchar_t* kFolderVariable = L"QUILLMATE_INSTANCE_FOLDER";

std::wstring FolderFromParent() {
  std::wstring folder(32767, L'\0');
  folder.resize(GetEnvironmentVariableW(kFolderVariable, folder.data(), static_cast<DWORD>(folder.size())));
  return folder;
}

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

struct Instance::Handles {
  child::Handle process;
  child::Handle news;
  child::Handle orders;
  bool running = true;

  void Reap() {
    child::WaitFor(process);
    running = false;
  }
};

Instance::Instance(const std::filesystem::path& programFolder) : handles_(std::make_shared<Handles>()) {
  child::Pipe news = child::PipeFromChild();
  child::Pipe orders = child::PipeToChild();
  handles_->news = std::move(news.read);
  handles_->orders = std::move(orders.write);
  SetEnvironmentVariableW(kFolderVariable, programFolder.c_str());
  handles_->process =
      child::Spawn(child::OwnProgram(), L"--gtest_also_run_disabled_tests --gtest_filter=InstanceProcess.DISABLED_Run",
                   {std::move(orders.read), {}, std::move(news.write)});
}

std::string Instance::AwaitNews() { return child::ReadSome(handles_->news); }

void Instance::End() {
  DWORD count = 0;
  if (handles_->running && WriteFile(handles_->orders.Get(), "e", 1, &count, nullptr) != 0) handles_->Reap();
}

void Instance::Kill() {
  TerminateProcess(handles_->process.Get(), 1);
  handles_->Reap();
}

std::string FreeLocks(const std::filesystem::path& scratchRoot) {
  const child::Handle file(CreateFileW((scratchRoot / kInstanceFile).c_str(), GENERIC_READ | GENERIC_WRITE,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
  const auto isFree = [&file](DWORD kind) {
    OVERLAPPED start{};
    const bool locked = LockFileEx(file.Get(), kind | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &start) != 0;
    if (locked) UnlockFileEx(file.Get(), 0, 1, 0, &start);
    return locked;
  };
  std::string free;
  if (isFree(LOCKFILE_EXCLUSIVE_LOCK)) free += "exclusive ";
  if (isFree(0)) free += "shared";
  return free;
}

}  // namespace quillmate::startup
