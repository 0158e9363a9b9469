#pragma once

#include <filesystem>

#include "interruption.h"

namespace quillmate::cli {

/// A private folder below the system's folder for temporary files, removed with all it holds at the end of the run.
/// Its name holds "TempDateien", without which the program deletes nothing.
class ScratchFolder {
 public:
  /// Throws CommandFailure.
  ScratchFolder();
  const std::filesystem::path& Path() const noexcept { return folder_.Path(); }

 private:
  Leftover folder_;
};

}  // namespace quillmate::cli
