#pragma once

#include <QString>

/// What the program leaves to other programs of the desktop. Paths may have either kind of separator.
namespace quillmate::ui {

/// Opens a file in the program that the desktop has for it, a page in a new window of the browser where the desktop can
/// tell it so. False when there is no such program.
bool OpenFile(const QString& file);

/// Opens compiled help (.chm) at one of its pages ("hilfe/suche.html"), or at its start when `page` is empty; where the
/// viewer takes no page, always at its start. False when there is no viewer.
bool OpenCompiledHelp(const QString& file, const QString& page);

}  // namespace quillmate::ui
