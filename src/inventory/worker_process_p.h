#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Processes that read files, and the pipes between them and the scan.
///
/// A message is its length (32 bits, as it is in memory), one letter and that many bytes. The scan sends
///
///     F   size and time of the file, then its path: look at this file
///     G   go on and read it; S: skip it, its content is known
///
/// and the reader answers F with one of
///
///     X   the file is of no concern
///     U   it can't be read; the reason
///     V   it is gone
///     H   size and time as they were found, reading and hash; then waits for G or S, and answers G with
///         R   the content (packing_p.h), or V or U when the file was changed meanwhile
///
/// A reader ends when the scan's end of its pipe is closed.
namespace quillmate::inventory {

struct Message {
  char kind = 0;
  std::string bytes;
};

/// One end of such a conversation, over two pipes. Writing and reading fail when the other side has gone.
class Pipes {
 public:
#ifdef _WIN32
  using Handle = void*;
#else
  using Handle = int;
#endif
  Pipes(Handle in, Handle out) noexcept : in_(in), out_(out) {}
  ~Pipes();
  Pipes(const Pipes&) = delete;
  Pipes& operator=(const Pipes&) = delete;

  bool Send(char kind, std::string_view bytes = {});
  std::optional<Message> Receive();

 private:
  bool Write(const char* bytes, std::size_t count) noexcept;
  bool Read(char* bytes, std::size_t count) noexcept;

  Handle in_, out_;
};

/// A reader's process as the scan sees it.
class WorkerProcess {
 public:
  /// `command` is the program and its arguments, UTF-8 (elsewhere than on Windows any bytes). No process when it can't
  /// be started. `memory` is the most bytes that it may have, 0 for no limit.
  static std::unique_ptr<WorkerProcess> Start(const std::vector<std::string>& command, std::uint64_t memory);
  /// Ends the process if it still runs.
  ~WorkerProcess();
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;

  Pipes& Talk() noexcept { return *pipes_; }
  /// May be called from any thread while another one waits for an answer.
  void Kill() noexcept;
  /// Why it ended: "Signal 11", "Rückgabewert 3". Waits for its end.
  std::string EndReason() noexcept;

 private:
  WorkerProcess() = default;
  std::unique_ptr<Pipes> pipes_;
#ifdef _WIN32
  void* process_ = nullptr;
  void* job_ = nullptr;
#else
  int process_ = -1;
  bool waited_ = false;
  int status_ = 0;
#endif
};

/// In a reader's process: its end of the pipes, standard input and output, which nothing else uses from now on. It lets
/// the signals pass that end the scan, which ends it in turn.
std::unique_ptr<Pipes> ReaderPipes();

}  // namespace quillmate::inventory
