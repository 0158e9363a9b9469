#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillmate::output {

/// Writes the list of a site's files into its folder.
void WriteSiteList(const std::filesystem::path& folder, const std::vector<std::string>& files);

}  // namespace quillmate::output
