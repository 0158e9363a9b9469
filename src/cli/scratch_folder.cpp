#include "scratch_folder.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <quillmate/files/failure.h>
#include <quillmate/files/paths.h>

#include "messages.h"
#include "platform.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

/// Throws files::Failure.
std::unique_ptr<files::WorkFolder> MakeScratchFolderIn(const fs::path& place) {
  return std::make_unique<files::WorkFolder>(place, files::WorkFolder::Access::kPrivate);
}

}  // namespace

std::unique_ptr<files::WorkFolder> MakeScratchFolder() {
  constexpr std::uintmax_t kPlenty = std::uintmax_t{2} << 30U;
  const fs::path memory = MemoryFolder();
  const fs::path temporary = files::TemporaryFolder();
  const char* const chosen = std::getenv("TMPDIR");
  std::error_code error;
  const bool hasRoom = !memory.empty() && fs::space(memory, error).available >= kPlenty && !error;
  // What crashed runs left goes wherever they may have chosen to leave it.
  if (!memory.empty()) files::MendFolder(memory);
  files::MendFolder(temporary);
  try {
    if (hasRoom && (chosen == nullptr || *chosen == '\0')) return MakeScratchFolderIn(memory);
  } catch (const files::Failure&) {
    // There is still the other one.
  }
  try {
    return MakeScratchFolderIn(temporary);
  } catch (const files::Failure& failure) {
    throw CommandFailure("Im Ordner für temporäre Dateien " + files::PathText(failure.Path()) +
                         " lässt sich kein Ordner anlegen: " + files::ReasonText(failure.Code()));
  }
}

}  // namespace quillmate::cli
