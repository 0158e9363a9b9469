#include <quillmate/ui/run_program.h>

int main(int argc, char** argv) { return quillmate::ui::RunProgram(QUILLMATE_HOST_SELECTOR, argc, argv); }
