#include <cstring>

#include <quillmate/inventory/reason.h>

#include "packing_p.h"
#include "reader_p.h"
#include "reading_pool_p.h"

namespace quillmate::inventory {
namespace {

using Clock = std::chrono::steady_clock;

/// Enough for the walk to be ahead, and no more memory than a few MB.
constexpr std::size_t kMostWaiting = 20000;
/// Fetching a file over a slow line takes its time too.
constexpr std::uint64_t kSlowBytesPerSecond = std::uint64_t{2} << 20U;
constexpr std::size_t kHashDigits = 64;
constexpr int kMemoryEnd = 99;

}  // namespace

ReadingPool::ReadingPool(Store& store, const ScanOptions& options, unsigned jobs) : store_(store), options_(options) {
  for (unsigned i = 0; i < jobs; ++i) slots_.push_back(std::make_unique<Slot>());
  Start(*slots_.front());
  for (const auto& slot : slots_) threads_.emplace_back([this, &slot = *slot] { RunThread(slot); });
  watch_ = std::thread([this] { WatchTimes(); });
}

ReadingPool::~ReadingPool() {
  {
    const std::lock_guard lock(queueMutex_);
    stopping_ = true;
  }
  work_.notify_all();
  end_.notify_all();
  for (const auto& slot : slots_) {
    const std::lock_guard lock(slot->mutex);
    if (slot->process) slot->process->Kill();
  }
  for (std::thread& thread : threads_) thread.join();
  watch_.join();
}

bool ReadingPool::Put(Job& job, std::chrono::milliseconds waited) {
  std::unique_lock lock(queueMutex_);
  if (!room_.wait_for(lock, waited, [this] { return queue_.size() < kMostWaiting || failed_; })) return false;
  queue_.push_back(std::move(job));
  ++waiting_;
  work_.notify_one();
  return true;
}

bool ReadingPool::WaitForEnd(std::chrono::milliseconds waited) {
  std::unique_lock lock(queueMutex_);
  return end_.wait_for(lock, waited, [this] { return waiting_ == 0 || failed_; });
}

void ReadingPool::Rethrow() {
  const std::lock_guard lock(queueMutex_);
  if (failure_) std::rethrow_exception(failure_);
}

bool ReadingPool::Take(Job& job) {
  std::unique_lock lock(queueMutex_);
  work_.wait(lock, [this] { return !queue_.empty() || stopping_ || failed_; });
  if (stopping_ || failed_) return false;
  job = std::move(queue_.front());
  queue_.pop_front();
  room_.notify_one();
  return true;
}

void ReadingPool::Done() {
  const std::lock_guard lock(queueMutex_);
  if (--waiting_ == 0) end_.notify_all();
}

void ReadingPool::RunThread(Slot& slot) {
  Job job;
  try {
    while (Take(job)) {
      Process(slot, job);
      Done();
    }
  } catch (...) {
    const std::lock_guard lock(queueMutex_);
    if (!failure_) failure_ = std::current_exception();
    failed_ = true;
    work_.notify_all();
    room_.notify_all();
    end_.notify_all();
  }
}

void ReadingPool::WatchTimes() {
  constexpr std::chrono::milliseconds kStep{100};
  std::unique_lock lock(queueMutex_);
  while (!stopping_) {
    end_.wait_for(lock, kStep);
    lock.unlock();
    for (const auto& slot : slots_) {
      const std::lock_guard guard(slot->mutex);
      if (!slot->deadline || Clock::now() < *slot->deadline || !slot->process) continue;
      slot->timedOut = true;
      slot->deadline.reset();
      slot->process->Kill();
    }
    lock.lock();
  }
}

void ReadingPool::Start(Slot& slot) {
  std::unique_ptr<WorkerProcess> process = WorkerProcess::Start(options_.readerCommand, options_.memoryLimit);
  if (!process) {
    throw files::Failure(InventoryReason::kNoReader, {}, {options_.readerCommand.front()});
  }
  const std::lock_guard lock(slot.mutex);
  slot.process = std::move(process);
  slot.timedOut = false;
  if (stopping_) slot.process->Kill();
}

std::optional<Message> ReadingPool::Ask(Slot& slot, char kind, std::string_view bytes, std::uint64_t size) {
  WorkerProcess* process = nullptr;
  {
    const std::lock_guard lock(slot.mutex);
    process = slot.process.get();
    slot.deadline = Clock::now() + options_.timeLimit + std::chrono::seconds(size / kSlowBytesPerSecond);
  }
  std::optional<Message> answer;
  if (process->Talk().Send(kind, bytes)) answer = process->Talk().Receive();
  const std::lock_guard lock(slot.mutex);
  slot.deadline.reset();
  // Killed in the moment in which it was done.
  if (slot.timedOut) answer.reset();
  return answer;
}

Content ReadingPool::EndOf(Slot& slot) {
  const std::lock_guard lock(slot.mutex);
  // One that has only closed its pipe still runs.
  slot.process->Kill();
  Content content;
  content.state = slot.timedOut ? State::kTimedOut : State::kCrashed;
  if (slot.timedOut) {
    content.reason = "Lesen dauerte länger als " + std::to_string(options_.timeLimit.count() / 1000) + " s";
  } else {
    const std::string end = slot.process->EndReason();
    const bool memory = end == "Rückgabewert " + std::to_string(kMemoryEnd);
    content.reason = memory ? "Lesen brauchte mehr Speicher als erlaubt" : "Lesen ist abgestürzt (" + end + ")";
  }
  slot.process.reset();
  return content;
}

void ReadingPool::Process(Slot& slot, const Job& job) {
  if (!slot.process) Start(slot);
  const std::optional<Message> answer = Ask(slot, 'F', MessageOf(job.path), job.size);
  if (stopping_) return;
  if (!answer) {
    const Content end = EndOf(slot);
    Stamp stamp;
    if (StampOf(job.path, stamp)) return PutRow(job, stamp, end.state, end.reason);
    return PutVanished(job);
  }
  Stamp stamp;
  switch (answer->kind) {
    case 'H':
      return ProcessContent(slot, job, *answer);
    case 'X':
    case 'U':
      if (StampOf(job.path, stamp)) {
        return PutRow(job, stamp, answer->kind == 'X' ? State::kForeign : State::kUnreadable, answer->bytes);
      }
      [[fallthrough]];
    default:
      return PutVanished(job);
  }
}

void ReadingPool::ProcessContent(Slot& slot, const Job& job, const Message& found) {
  const std::string_view bytes = found.bytes;
  FileRow row;
  row.folder = job.folder;
  row.name = job.name;
  std::memcpy(&row.stamp, bytes.data(), sizeof(row.stamp));
  const Key key{bytes.substr(sizeof(Stamp), kHashDigits), bytes.substr(sizeof(Stamp) + kHashDigits)};
  {
    const auto lock = StoreLock();
    const auto known = store_.FindContent(key.first, key.second);
    const auto reading = reading_.find(key);
    if (known) {
      row.content = known->number;
      row.state = known->state;
      store_.PutFile(row);
      store_.CommitIfLarge();
      Count(row.state);
    } else if (reading != reading_.end()) {
      reading->second.emplace_back(job, std::move(row));
      const std::lock_guard guard(queueMutex_);
      ++waiting_;
    } else {
      reading_.try_emplace(key);
    }
    if (known || reading != reading_.end()) {
      slot.process->Talk().Send('S');
      return;
    }
  }
  const std::optional<Message> answer = Ask(slot, 'G', {}, row.stamp.size);
  if (stopping_) return;
  if (!answer) return PutContent(key, std::move(row), EndOf(slot));
  if (answer->kind != 'R') {
    GiveBack(key);
    return answer->kind == 'V' ? PutVanished(job) : PutRow(job, row.stamp, State::kUnreadable, answer->bytes);
  }
  Content content;
  Unpacker unpacker(answer->bytes);
  Fields(unpacker, content);
  PutContent(key, std::move(row), content);
}

/// With it go all files that have waited for it.
void ReadingPool::PutContent(const Key& key, FileRow row, const Content& content) {
  const auto lock = StoreLock();
  row.state = content.state;
  row.content = store_.PutContent(key.first, key.second, row.stamp.size, content);
  store_.PutFile(row);
  Count(row.state);
  auto waiting = reading_.extract(key);
  for (auto& [job, each] : waiting.mapped()) {
    each.state = row.state;
    each.content = row.content;
    store_.PutFile(each);
    Count(each.state);
    Done();
  }
  store_.CommitIfLarge();
}

/// The content was lost on the way; whoever waited for it is tried by itself.
void ReadingPool::GiveBack(const Key& key) {
  const auto lock = StoreLock();
  auto waiting = reading_.extract(key);
  const std::lock_guard guard(queueMutex_);
  for (auto& [job, row] : waiting.mapped()) queue_.push_back(std::move(job));
  work_.notify_all();
}

void ReadingPool::PutRow(const Job& job, const Stamp& stamp, State state, std::string reason) {
  const auto lock = StoreLock();
  store_.PutFile({job.folder, job.name, stamp, state, std::move(reason), std::nullopt});
  store_.CommitIfLarge();
  Count(state);
}

void ReadingPool::PutVanished(const Job& job) {
  if (!job.known) return;
  const auto lock = StoreLock();
  store_.MarkVanished(job.known->number);
  ++vanished_;
}

void ReadingPool::Count(State state) noexcept {
  ++read_;
  if (IsUnread(state)) ++unread_;
}

}  // namespace quillmate::inventory
