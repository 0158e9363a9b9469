#include <quillmate/files/file_lock.h>
#include <quillmate/startup/session.h>

namespace quillmate::startup {

struct InstanceMark::State {
  files::FileLock lock;
  bool alone = false;
};

// Alone means: the exclusive lock was free. It is kept until the root is clean and then given up for a shared one,
// which every instance holds as long as it runs. Nothing hangs on the exchange being a single step: an instance that
// slips in between may clean as well, for no run folder exists before its owner holds the shared lock.
InstanceMark::InstanceMark(const std::filesystem::path& scratchRoot)
    : state_(std::make_unique<State>(State{files::FileLock(scratchRoot / kInstanceFile)})) {
  state_->alone = state_->lock.TryExclusive();
  if (!state_->alone) state_->lock.WaitShared();
}

InstanceMark::~InstanceMark() = default;

bool InstanceMark::IsAlone() const noexcept { return state_->alone; }

void InstanceMark::AdmitOthers() noexcept {
  if (state_->alone) state_->lock.WaitShared();
}

}  // namespace quillmate::startup
