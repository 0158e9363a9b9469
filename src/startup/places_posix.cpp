#include <QStandardPaths>
#include <QTemporaryFile>

#include <quillmate/startup/session.h>

#include "places_p.h"

namespace quillmate::startup {

namespace fs = std::filesystem;

bool CanBeWritten(const fs::path& folder) {
  QTemporaryFile probe(QString::fromStdU16String((folder / kScratchRoot).u16string()) + QStringLiteral("_XXXXXX"));
  return probe.open();
}

fs::path UserDataFolder() {
  const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return fs::path(base.toStdU16String()) / "quillmate";
}

}  // namespace quillmate::startup
