#include "quit_signals.h"

namespace quillmate::ui {

// The system asks windows, and the toolkit listens.
void QuitWithSignals() {}

}  // namespace quillmate::ui
