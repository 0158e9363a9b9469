#pragma once

#include <filesystem>

namespace quillmate::startup {

/// True when a file can be made in the folder; it is gone again at once. Permissions tell little (read-only media,
/// access lists).
bool CanBeWritten(const std::filesystem::path& folder);

/// The user's folder for the program's data. It need not exist.
std::filesystem::path UserDataFolder();

}  // namespace quillmate::startup
