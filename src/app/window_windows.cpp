#include "window_windows.h"

#include <cstdlib>

#include <quillmate/ui/run_program.h>

int QuillmateRun(int selector) { return quillmate::ui::RunProgram(selector, __argc, __argv); }
