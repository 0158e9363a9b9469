#include <QDesktopServices>
#include <QUrl>

#include "desktop_programs.h"

namespace quillmate::ui {

bool OpenFile(const QString& file) { return QDesktopServices::openUrl(QUrl::fromLocalFile(file)); }

bool OpenCompiledHelp(const QString& file, const QString&) { return OpenFile(file); }

}  // namespace quillmate::ui
