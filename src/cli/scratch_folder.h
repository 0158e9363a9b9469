#pragma once

#include <memory>

#include <quillmate/files/work_folder.h>

namespace quillmate::cli {

/// A folder that lives as long as the result: in memory, unless the user has chosen a place or it is short. Throws
/// CommandFailure.
std::unique_ptr<files::WorkFolder> MakeScratchFolder();

}  // namespace quillmate::cli
