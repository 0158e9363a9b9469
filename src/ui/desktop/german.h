#pragma once

class QApplication;

namespace quillmate::ui {

/// Makes German the language of the program, whatever the desktop's: numbers, and the texts of the toolkit's own
/// buttons and dialogs.
void SpeakGerman(QApplication& app);

}  // namespace quillmate::ui
