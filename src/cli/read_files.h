#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The program never writes to what it reads. Whatever a run reads or lists is noted here, by what it is and not by its
/// name, and whatever it replaces is looked up here, so that no command has to think of it.
namespace quillmate::cli {

void NoteRead(const std::filesystem::path& path);
/// The files of a saved project; only their names are looked at.
void NoteProjectRead(const std::filesystem::path& folder);

/// Throws UsageError, which speaks of `output`, when any of the paths leads to something that was noted.
void CheckNotRead(const std::string& output, const std::vector<std::filesystem::path>& replaced);

}  // namespace quillmate::cli
