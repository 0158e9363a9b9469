#include <quillmate/codedb/index_files.h>
#include <quillmate/files/paths.h>
#include <quillmate/startup/session.h>

#include "places_p.h"

namespace quillmate::startup {
namespace {

namespace fs = std::filesystem;

bool HasTemplate(const fs::path& folder) {
  std::error_code ignored;
  return fs::is_regular_file(folder / codedb::kTemplateFile, ignored);
}

fs::path InstalledDataFolder(const fs::path& executableFolder) {
  return files::NormalPath(executableFolder / ".." / "share" / "quillmate");
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
