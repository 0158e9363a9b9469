#pragma once

#include <filesystem>

namespace quillmate::ui {

class Shell;

/// True for a folder that holds an index.
bool IsProjectFolder(const std::filesystem::path& folder);

/// Shows the project that is saved in a folder; it is the current one from then on. A folder that is no project is
/// told, a damaged one as well; what was on screen stays then.
void OpenProjectFolder(Shell& shell, const std::filesystem::path& folder);

}  // namespace quillmate::ui
