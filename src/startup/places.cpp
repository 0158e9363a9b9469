#include <QStandardPaths>
#include <QTemporaryFile>

#include <quillmate/codedb/index_files.h>
#include <quillmate/startup/session.h>

namespace quillmate::startup {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kDataFolder = "quillmate";

bool HasTemplate(const fs::path& folder) {
  std::error_code ignored;
  return fs::is_regular_file(folder / codedb::kTemplateFile, ignored);
}

/// Permissions tell little (read-only media, access lists): only a file tells.
bool CanBeWritten(const fs::path& folder) {
  QTemporaryFile probe(QString::fromStdU16String((folder / kScratchRoot).u16string()) + QStringLiteral("_XXXXXX"));
  return probe.open();
}

fs::path InstalledDataFolder(const fs::path& executableFolder) {
  return (executableFolder / ".." / "share" / kDataFolder).lexically_normal();
}

fs::path UserDataFolder() {
  const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return fs::path(base.toStdU16String()) / kDataFolder;
}

}  // namespace

ProgramPlaces FindProgramPlaces(const fs::path& executableFolder) {
  const fs::path dataFolder = InstalledDataFolder(executableFolder);
  const bool installed = !HasTemplate(executableFolder) && HasTemplate(dataFolder);
  const bool portable = !installed && CanBeWritten(executableFolder);
  return {.programFolder = portable ? executableFolder : UserDataFolder(),
          .templateFile = (installed ? dataFolder : executableFolder) / codedb::kTemplateFile};
}

}  // namespace quillmate::startup
