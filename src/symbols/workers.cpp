#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include <quillmate/symbols/workers.h>

namespace quillmate::symbols {

unsigned WorkerCount(unsigned threads, std::size_t pieces) noexcept {
  if (threads == 0) threads = std::max(1U, std::thread::hardware_concurrency());
  return static_cast<unsigned>(std::clamp<std::size_t>(pieces, 1, threads));
}

void ForEachPiece(unsigned workers, std::size_t pieces, const std::function<void(unsigned, std::size_t)>& work) {
  std::atomic<std::size_t> next = 0;
  std::exception_ptr failure;
  std::mutex failureMutex;
  const auto run = [&](unsigned worker) {
    try {
      for (std::size_t piece; (piece = next.fetch_add(1)) < pieces;) work(worker, piece);
    } catch (...) {
      next = pieces;
      const std::lock_guard lock(failureMutex);
      if (!failure) failure = std::current_exception();
    }
  };
  std::vector<std::thread> threads;
  try {
    threads.reserve(workers - 1);
    for (unsigned worker = 1; worker < workers; ++worker) threads.emplace_back(run, worker);
  } catch (const std::system_error&) {
    // No thread to be had: those that run, this one at least, do the whole.
  }
  run(0);
  for (std::thread& thread : threads) thread.join();
  if (failure) std::rethrow_exception(failure);
}

}  // namespace quillmate::symbols
