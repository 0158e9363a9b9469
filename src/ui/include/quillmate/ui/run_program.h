#pragma once

namespace quillmate::ui {

/// The whole program for one host (quillmate/startup/edition.h): starts, shows its window, ends. Returns the exit
/// status of the process.
int RunProgram(int selector, int argc, char** argv);

}  // namespace quillmate::ui
