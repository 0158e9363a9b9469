#include "scratch_folder.h"

#include <quillmate/files/paths.h>

#include "messages.h"
#include "platform.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

fs::path MakeScratchFolder() try {
  return MakePrivateFolder(FolderForScratch(), "Quillmate-TempDateien-");
} catch (const fs::filesystem_error& error) {
  throw CommandFailure("Im Ordner für temporäre Dateien " + files::PathText(error.path1()) +
                       " lässt sich kein Ordner anlegen: " + SystemReason(error.code()));
}

}  // namespace

ScratchFolder::ScratchFolder() : folder_(MakeScratchFolder) {}

}  // namespace quillmate::cli
