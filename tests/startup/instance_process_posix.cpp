#include <algorithm>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <quillmate/startup/session.h>

#include "startup/instance_process.h"

namespace quillmate::startup {

struct Instance::Handles {
  pid_t process = 0;
  int news = 0;
  int orders = 0;

  void Reap() {
    waitpid(process, nullptr, 0);
    close(news);
    close(orders);
    process = 0;
  }
};

Instance::Instance(const std::filesystem::path& programFolder) : handles_(std::make_shared<Handles>()) {
  int news[2], orders[2];
  if (pipe(news) != 0 || pipe(orders) != 0) std::abort();
  handles_->process = fork();
  if (handles_->process == 0) {
    close(orders[1]);
    char order = 0;
    RunInstance(
        programFolder,
        [&](const std::string& text) {
          if (write(news[1], text.data(), text.size()) <= 0) _exit(1);
        },
        [&] { return read(orders[0], &order, 1) == 1; });
    _exit(0);
  }
  close(news[1]);
  close(orders[0]);
  handles_->news = news[0];
  handles_->orders = orders[1];
}

std::string Instance::AwaitNews() {
  std::string text(4096, '\0');
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(read(handles_->news, text.data(), text.size()), 0)));
  return text;
}

void Instance::End() {
  if (handles_->process > 0 && write(handles_->orders, "e", 1) == 1) handles_->Reap();
}

void Instance::Kill() {
  kill(handles_->process, SIGKILL);
  handles_->Reap();
}

std::string FreeLocks(const std::filesystem::path& scratchRoot) {
  const int file = open((scratchRoot / kInstanceFile).c_str(), O_RDONLY | O_CLOEXEC);
  std::string free;
  if (flock(file, LOCK_EX | LOCK_NB) == 0) free += "exclusive ";
  if (flock(file, LOCK_SH | LOCK_NB) == 0) free += "shared";
  close(file);
  return free;
}

}  // namespace quillmate::startup
