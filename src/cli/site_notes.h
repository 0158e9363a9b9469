#pragma once

#include <filesystem>
#include <vector>

#include <quillmate/codedb/records.h>
#include <quillmate/export/site.h>

#include "understanding.h"

namespace quillmate::cli {

/// What the user has noted in a saved project, beside the lines where the window shows it: by module, then line. Notes
/// of modules that the project no longer has are left out. Throws files::Failure.
std::vector<output::SiteNote> ReadSiteNotes(const std::filesystem::path& folder,
                                            const std::vector<codedb::ModuleRecord>& modules,
                                            const IndexUnderstanding& understanding);

}  // namespace quillmate::cli
