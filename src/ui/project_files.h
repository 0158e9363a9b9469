#pragma once

namespace quillmate::ui {

class Shell;

/// Asks for folder and name and saves the loaded project there; the project folder is the current one from then on.
/// False when the user gave up; throws when the files can't be copied, and the project stays where it was.
bool SaveProject(Shell& shell);

}  // namespace quillmate::ui
