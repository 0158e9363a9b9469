#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <quillmate/settings/settings_store.h>

#include "command_table.h"

/// The list of the projects opened last: section "recent", keys "F0" (the last one) to "F9", each text the path of a
/// project folder with a separator at its end. UTF-8.
namespace quillmate::ui {

class Shell;

/// As many as the Datei menu has items for them.
inline constexpr std::size_t kRecentCount = kRecentCommands;

/// The stored list, at most ten.
std::vector<std::string> LoadRecent(const settings::SettingsStore& store);
/// Puts a folder first and stores the list. A folder that is in it already stands there twice; older ones that are gone
/// drop out, and the tenth old one does. Returns the list.
std::vector<std::string> AddRecent(settings::SettingsStore& store, const std::string& folder);

/// Last part of a project folder's path, with or without a separator at its end.
std::string ProjectNameOf(const std::string& folder);

/// Shows the stored list in the menu.
void LoadRecentMenu(Shell& shell);
/// Adds a folder to the list and to the menu.
void AddRecentProject(Shell& shell, const std::filesystem::path& folder);

}  // namespace quillmate::ui
