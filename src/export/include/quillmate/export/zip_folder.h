#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>

namespace quillmate::output {

/// Packs a folder with all that it holds into a zip file, which replaces an earlier one as a whole
/// (files/replacement.h). The names in it begin with the folder's own, UTF-8, "/" between their parts. Links are left
/// out. `progress` is told about the share that is done, in per cent; what it throws leaves the target alone. Throws
/// files::Failure.
void ZipFolder(const std::filesystem::path& folder, const std::filesystem::path& target,
               const std::function<void(int percent)>& progress = {});

}  // namespace quillmate::output
