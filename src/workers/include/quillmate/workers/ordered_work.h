#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quillmate::workers {

/// Work that is done ahead on the other cores and finished piece by piece, in its order, on one thread: the owner's.
/// Where no thread can be started the owner does all of it.
class OrderedWork {
 public:
  OrderedWork();
  ~OrderedWork() { Stop(); }
  OrderedWork(const OrderedWork&) = delete;
  OrderedWork& operator=(const OrderedWork&) = delete;

  using Work = std::function<std::size_t()>;
  using Finish = std::function<void(std::exception_ptr)>;

  /// `work` is done once, on any thread, and tells how many bytes it holds until it is finished; `finish` gets what it
  /// has thrown.
  void Add(Work work, Finish finish);
  /// Calls `finish` of the oldest piece when its work is done, and until then does work itself. Throws what it throws.
  /// False when there is no piece.
  bool FinishFirst();
  /// True when enough is under way: more would only need memory.
  bool IsFull();
  void FinishAll();
  /// Drops what has not been begun and waits for the rest. No more may be added.
  void Stop() noexcept;

 private:
  struct Piece {
    enum class State { kWaiting, kInWork, kDone };
    Work work;
    Finish finish;
    State state = State::kWaiting;
    std::size_t bytes = 0;
    std::exception_ptr failure;
  };

  void StartThread();
  void Help();
  /// The first piece that waits, now in work; null when none does, or when too much is held already.
  Piece* Take();
  void Do(Piece& piece, std::unique_lock<std::mutex>& lock);

  std::mutex mutex_;
  std::condition_variable waiting_, done_;
  std::deque<std::unique_ptr<Piece>> pieces_;
  /// Pieces before this position wait no longer.
  std::size_t next_ = 0;
  std::size_t held_ = 0;
  std::size_t mostThreads_;
  bool ending_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace quillmate::workers
