#pragma once

namespace quillmate::ui {

/// From now on a request of the system to end (SIGTERM, SIGINT, SIGHUP) ends the program as closing the window would.
/// A file that grows beyond the user's limit is a failed write and no end. To be called before other threads are
/// started; a signal that the caller has set to be ignored stays ignored.
void QuitWithSignals();

}  // namespace quillmate::ui
