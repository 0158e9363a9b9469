#include <windows.h>

#include "window_windows.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) { return QuillmateRun(QUILLMATE_HOST_SELECTOR); }
