#pragma once

#include <functional>
#include <memory>
#include <string>
#include <thread>

#include <quillmate/project/understanding.h>

namespace quillmate::project {

/// Makes the understanding of the project on screen in a thread of its own. All calls come from one thread.
class UnderstandingBuilder {
 public:
  enum class State {
    kNone,      ///< nothing was asked for, or it was given up
    kBuilding,  ///< a thread is at it
    kWaiting,   ///< no thread could be started: made when it is first needed
    kReady,
    kFailed
  };

  /// `done` is called in the other thread when there is something to take.
  explicit UnderstandingBuilder(std::function<void()> done) : done_(std::move(done)) {}
  ~UnderstandingBuilder() { Drop(); }
  UnderstandingBuilder(const UnderstandingBuilder&) = delete;
  UnderstandingBuilder& operator=(const UnderstandingBuilder&) = delete;

  /// Begins anew; what was there is dropped.
  void Start(UnderstandingRequest request);
  /// Ends the thread and forgets everything. Returns when nothing reads the folder any more.
  void Drop();
  /// Returns when nothing reads the folder any more; the work goes on.
  void FinishReading();
  /// Takes what the thread has made, after `done` was called; makes it now where no thread could be started.
  void Take();

  State Now() const noexcept { return state_; }
  /// 0 to 100.
  int Percent() const noexcept;
  /// Null unless the state is kReady.
  const std::shared_ptr<const Understanding>& Made() const noexcept { return made_; }
  /// Why it failed, UTF-8.
  const std::string& Error() const noexcept { return error_; }

 private:
  struct Job {
    UnderstandingRequest request;
    UnderstandingProgress progress;
    std::shared_ptr<const Understanding> made;
    std::string error;
    std::atomic<bool> isDone = false;

    void Run() noexcept;
  };

  std::function<void()> done_;
  State state_ = State::kNone;
  std::unique_ptr<Job> job_;
  std::thread thread_;
  std::shared_ptr<const Understanding> made_;
  std::string error_;
};

}  // namespace quillmate::project
