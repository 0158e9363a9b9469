#include <cstdlib>
#include <string>

#include <windows.h>

#include <quillmate/files/command_word.h>
#include <quillmate/files/paths.h>

#include "worker_process_p.h"

namespace quillmate::inventory {
namespace {

struct Ends {
  HANDLE reader = nullptr, writer = nullptr;
  void Close() const noexcept {
    if (reader != nullptr) CloseHandle(reader);
    if (writer != nullptr) CloseHandle(writer);
  }
};

/// The named end is handed on to the child.
bool MakePipe(Ends& ends, HANDLE Ends::*childs) noexcept {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  if (CreatePipe(&ends.reader, &ends.writer, &inherited, 1U << 16U) == 0) return false;
  HANDLE own = childs == &Ends::reader ? ends.writer : ends.reader;
  return SetHandleInformation(own, HANDLE_FLAG_INHERIT, 0) != 0;
}

/// Ends with the scan, and may have no more memory than that.
HANDLE MakeJob(std::uint64_t memory) noexcept {
  HANDLE job = CreateJobObjectW(nullptr, nullptr);
  if (job == nullptr) return nullptr;
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
  limits.BasicLimitInformation.LimitFlags =
      JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION;
  if (memory > 0) {
    limits.BasicLimitInformation.LimitFlags |= JOB_OBJECT_LIMIT_PROCESS_MEMORY;
    limits.ProcessMemoryLimit = static_cast<SIZE_T>(memory);
  }
  SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof(limits));
  return job;
}

/// Hands the child these handles and no others: the next reader must not hold the pipes of this one open.
class StartInfo {
 public:
  StartInfo(HANDLE input, HANDLE output) : handles_{input, output} {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_.resize(size);
    info_.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
    InitializeProcThreadAttributeList(info_.lpAttributeList, 1, 0, &size);
    UpdateProcThreadAttribute(info_.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_, sizeof(handles_),
                              nullptr, nullptr);
    info_.StartupInfo.cb = sizeof(info_);
    info_.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    info_.StartupInfo.hStdInput = input;
    info_.StartupInfo.hStdOutput = output;
  }
  ~StartInfo() { DeleteProcThreadAttributeList(info_.lpAttributeList); }
  StartInfo(const StartInfo&) = delete;
  StartInfo& operator=(const StartInfo&) = delete;
  STARTUPINFOW* Get() noexcept { return &info_.StartupInfo; }

 private:
  HANDLE handles_[2];
  std::string memory_;
  STARTUPINFOEXW info_{};
};

}  // namespace

Pipes::~Pipes() {
  CloseHandle(out_);
  CloseHandle(in_);
}

bool Pipes::Write(const char* bytes, std::size_t count) noexcept {
  while (count > 0) {
    DWORD written = 0;
    const DWORD part = static_cast<DWORD>(count > (1U << 20U) ? 1U << 20U : count);
    if (WriteFile(out_, bytes, part, &written, nullptr) == 0 || written == 0) return false;
    bytes += written;
    count -= written;
  }
  return true;
}

bool Pipes::Read(char* bytes, std::size_t count) noexcept {
  while (count > 0) {
    DWORD got = 0;
    const DWORD part = static_cast<DWORD>(count > (1U << 20U) ? 1U << 20U : count);
    if (ReadFile(in_, bytes, part, &got, nullptr) == 0 || got == 0) return false;
    bytes += got;
    count -= got;
  }
  return true;
}

std::unique_ptr<WorkerProcess> WorkerProcess::Start(const std::vector<std::string>& command, std::uint64_t memory) {
  Ends to, from;
  if (!MakePipe(to, &Ends::reader) || !MakePipe(from, &Ends::writer)) {
    to.Close();
    from.Close();
    return nullptr;
  }
  std::wstring line;
  for (const std::string& word : command) files::AppendCommandWord(line, files::PathFromText(word).native());
  HANDLE job = MakeJob(memory);
  PROCESS_INFORMATION started = {};
  BOOL done = FALSE;
  {
    StartInfo info(to.reader, from.writer);
    done = CreateProcessW(files::PathFromText(command.front()).c_str(), line.data(), nullptr, nullptr, TRUE,
                          CREATE_SUSPENDED | CREATE_NO_WINDOW | CREATE_NEW_PROCESS_GROUP | EXTENDED_STARTUPINFO_PRESENT,
                          nullptr, nullptr, info.Get(), &started);
  }
  CloseHandle(to.reader);
  CloseHandle(from.writer);
  if (done == 0) {
    CloseHandle(to.writer);
    CloseHandle(from.reader);
    if (job != nullptr) CloseHandle(job);
    return nullptr;
  }
  if (job != nullptr) AssignProcessToJobObject(job, started.hProcess);
  ResumeThread(started.hThread);
  CloseHandle(started.hThread);
  std::unique_ptr<WorkerProcess> worker(new WorkerProcess);
  worker->process_ = started.hProcess;
  worker->job_ = job;
  worker->pipes_ = std::make_unique<Pipes>(from.reader, to.writer);
  return worker;
}

WorkerProcess::~WorkerProcess() {
  Kill();
  EndReason();
  CloseHandle(process_);
  if (job_ != nullptr) CloseHandle(job_);
}

void WorkerProcess::Kill() noexcept { TerminateProcess(process_, 1); }

std::string WorkerProcess::EndReason() noexcept {
  WaitForSingleObject(process_, INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(process_, &code);
  return "Rückgabewert " + std::to_string(code);
}

std::unique_ptr<Pipes> ReaderPipes() {
  SetConsoleCtrlHandler(nullptr, TRUE);
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  return std::make_unique<Pipes>(GetStdHandle(STD_INPUT_HANDLE), GetStdHandle(STD_OUTPUT_HANDLE));
}

}  // namespace quillmate::inventory
