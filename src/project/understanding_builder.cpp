#include <exception>
#include <system_error>
#include <utility>

#include <quillmate/project/understanding_builder.h>

namespace quillmate::project {

void UnderstandingBuilder::Job::Run() noexcept {
  try {
    made = MakeUnderstanding(request, progress);
  } catch (const std::exception& failure) {
    error = failure.what();
  }
  progress.hasRead = true;
  progress.hasRead.notify_all();
  isDone = true;
}

void UnderstandingBuilder::Start(UnderstandingRequest request) {
  Drop();
  job_ = std::make_unique<Job>();
  job_->request = std::move(request);
  state_ = State::kBuilding;
  try {
    thread_ = std::thread([job = job_.get(), done = done_] {
      job->Run();
      done();
    });
  } catch (const std::system_error&) {
    state_ = State::kWaiting;
  }
}

void UnderstandingBuilder::Drop() {
  if (thread_.joinable()) {
    job_->progress.cancelled = true;
    thread_.join();
  }
  job_.reset();
  made_.reset();
  error_.clear();
  state_ = State::kNone;
}

void UnderstandingBuilder::FinishReading() {
  if (state_ == State::kBuilding) job_->progress.hasRead.wait(false);
}

void UnderstandingBuilder::Take() {
  if (state_ == State::kWaiting) {
    job_->Run();
  } else if (state_ != State::kBuilding || !job_->isDone) {
    return;
  }
  if (thread_.joinable()) thread_.join();
  made_ = std::move(job_->made);
  error_ = std::move(job_->error);
  state_ = made_ != nullptr ? State::kReady : State::kFailed;
  job_.reset();
}

int UnderstandingBuilder::Percent() const noexcept {
  if (state_ != State::kBuilding) return state_ == State::kReady ? 100 : 0;
  const std::size_t steps = job_->progress.steps;
  return steps == 0 ? 0 : static_cast<int>(job_->progress.done * 100 / steps);
}

}  // namespace quillmate::project
