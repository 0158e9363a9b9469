#include "interruption.h"

#include <csignal>
#include <list>
#include <system_error>
#include <thread>

#include <pthread.h>
#include <unistd.h>

namespace quillmate::cli {
namespace {

struct Registry {
  std::mutex mutex;
  std::list<std::filesystem::path> leftovers;
};

/// Never destroyed: the watching thread may use it until the process is gone.
Registry& TheRegistry() {
  static auto* const registry = new Registry;
  return *registry;
}

/// The main thread may still be making files in the folder; it gives up once the folder is gone.
void RemoveForGood(const std::filesystem::path& path) {
  std::error_code error;
  for (int attempt = 0; attempt < 1000; ++attempt) {
    std::filesystem::remove_all(path, error);
    if (!error) {
      return;
    }
  }
}

[[noreturn]] void EndBySignal(int signal) {
  Registry& registry = TheRegistry();
  registry.mutex.lock();  // for good
  for (const auto& path : registry.leftovers) {
    RemoveForGood(path);
  }
  std::signal(signal, SIG_DFL);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  kill(getpid(), signal);
  _exit(128 + signal);
}

bool IsIgnored(int signal) {
  struct sigaction action = {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

void WatchSignals() {
  sigset_t watched;
  sigemptyset(&watched);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (!IsIgnored(signal)) {
      sigaddset(&watched, signal);
    }
  }
  pthread_sigmask(SIG_BLOCK, &watched, nullptr);
  std::thread([watched] {
    int signal = 0;
    while (sigwait(&watched, &signal) != 0) {
    }
    EndBySignal(signal);
  }).detach();
}

RunLock::RunLock() : lock_(TheRegistry().mutex) {}

Leftover::Leftover(const std::function<std::filesystem::path()>& make) {
  const RunLock lock;
  path_ = make();
  if (!path_.empty()) {
    TheRegistry().leftovers.push_back(path_);
  }
}

Leftover::~Leftover() {
  if (path_.empty()) {
    return;
  }
  const RunLock lock;
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
  TheRegistry().leftovers.remove(path_);
}

void Leftover::Release(const RunLock& /*lock*/) noexcept {
  TheRegistry().leftovers.remove(path_);
  path_.clear();
}

}  // namespace quillmate::cli
