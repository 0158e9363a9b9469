#include <algorithm>
#include <system_error>
#include <utility>

#include <quillmate/workers/ordered_work.h>

namespace quillmate::workers {
namespace {

/// More cores than this would only wait for the one that finishes.
constexpr std::size_t kMostThreads = 7;
constexpr std::size_t kPiecesPerThread = 8;
constexpr std::size_t kMostHeld = 8U << 20U;

std::size_t OtherCores() noexcept { return std::max(std::thread::hardware_concurrency(), 1U) - 1; }

}  // namespace

OrderedWork::OrderedWork() : mostThreads_(std::min(OtherCores(), kMostThreads)) {}

void OrderedWork::Stop() noexcept {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  waiting_.notify_all();
  for (std::thread& thread : threads_) thread.join();
  threads_.clear();
  pieces_.clear();
}

void OrderedWork::Add(Work work, Finish finish) {
  auto piece = std::make_unique<Piece>();
  piece->work = std::move(work);
  piece->finish = std::move(finish);
  bool another = false;
  {
    const std::lock_guard lock(mutex_);
    pieces_.push_back(std::move(piece));
    // The owner takes one itself.
    another = pieces_.size() - next_ > threads_.size() + 1;
  }
  if (another && threads_.size() < mostThreads_) StartThread();
  waiting_.notify_one();
}

bool OrderedWork::IsFull() {
  const std::lock_guard lock(mutex_);
  return pieces_.size() > kPiecesPerThread * (threads_.size() + 1) || held_ > kMostHeld;
}

bool OrderedWork::FinishFirst() {
  std::unique_ptr<Piece> first;
  {
    std::unique_lock lock(mutex_);
    if (pieces_.empty()) return false;
    while (pieces_.front()->state != Piece::State::kDone) {
      if (Piece* const piece = Take()) {
        Do(*piece, lock);
      } else {
        done_.wait(lock);
      }
    }
    first = std::move(pieces_.front());
    pieces_.pop_front();
    --next_;
    held_ -= first->bytes;
  }
  waiting_.notify_all();
  first->finish(first->failure);
  return true;
}

void OrderedWork::FinishAll() {
  while (FinishFirst()) {
  }
}

void OrderedWork::StartThread() {
  try {
    threads_.emplace_back([this] { Help(); });
  } catch (const std::system_error&) {
    // None to be had: those that run, the owner's at least, do the whole.
    mostThreads_ = threads_.size();
  }
}

void OrderedWork::Help() {
  std::unique_lock lock(mutex_);
  while (!ending_) {
    if (Piece* const piece = Take()) {
      Do(*piece, lock);
    } else {
      waiting_.wait(lock);
    }
  }
}

OrderedWork::Piece* OrderedWork::Take() {
  // The first one is always done: what is held waits for it.
  if (next_ == pieces_.size() || (next_ > 0 && held_ > kMostHeld)) return nullptr;
  Piece* const piece = pieces_[next_++].get();
  piece->state = Piece::State::kInWork;
  return piece;
}

void OrderedWork::Do(Piece& piece, std::unique_lock<std::mutex>& lock) {
  lock.unlock();
  std::size_t bytes = 0;
  std::exception_ptr failure;
  try {
    bytes = piece.work();
  } catch (...) {
    failure = std::current_exception();
  }
  // What the work alone has needed goes on the thread that did it.
  piece.work = nullptr;
  lock.lock();
  piece.bytes = bytes;
  piece.failure = failure;
  piece.state = Piece::State::kDone;
  held_ += bytes;
  done_.notify_one();
}

}  // namespace quillmate::workers
