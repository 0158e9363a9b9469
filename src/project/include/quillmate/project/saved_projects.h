#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <quillmate/settings/settings_store.h>

/// Projects in folders of their own, and the list of those opened last: section "recent" of the settings, keys "F0"
/// (the last one) to "F9", each text the path of a project folder with a separator at its end. UTF-8.
namespace quillmate::project {

/// True for a folder that holds an index. What a killed run left half exchanged there is brought to its end first.
bool IsProjectFolder(const std::filesystem::path& folder);

/// Last part of a project folder's path, with or without a separator at its end.
std::string ProjectNameOf(const std::string& folder);

/// Length of the list.
inline constexpr std::size_t kRecentCount = 10;

/// The stored list, at most ten.
std::vector<std::string> LoadRecent(const settings::SettingsStore& store);
/// Puts a folder first and stores the list. A folder that is in it already is there twice; older ones that are gone
/// drop out, and the tenth old one does. Returns the list.
std::vector<std::string> AddRecent(settings::SettingsStore& store, const std::filesystem::path& folder);

}  // namespace quillmate::project
