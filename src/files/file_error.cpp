#include <array>
#include <cerrno>
#include <new>
#include <utility>

#include <quillmate/files/file_error.h>
#include <quillmate/files/paths.h>

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

constexpr auto kReasons = std::to_array<std::pair<int, const char*>>({
    {ENOENT, "Datei oder Ordner existiert nicht"},
    {EACCES, "Zugriff verweigert"},
    {EPERM, "Zugriff verweigert"},
    {EROFS, "Der Datenträger ist schreibgeschützt"},
    {ENOSPC, "Der Datenträger ist voll"},
#ifdef EDQUOT
    {EDQUOT, "Der Platz, der Ihnen auf dem Datenträger zusteht, ist belegt"},
#endif
    {EFBIG, "Die Datei ist zu groß"},
    {EIO, "Der Datenträger meldet einen Fehler"},
    {EISDIR, "Das ist ein Ordner"},
    {ENOTDIR, "Der Weg führt durch eine Datei"},
    {ENOTEMPTY, "Der Ordner ist nicht leer"},
    {EEXIST, "Der Name ist schon vergeben"},
    {ENAMETOOLONG, "Der Name ist zu lang"},
    {EINVAL, "Der Name ist nicht erlaubt"},
    {ELOOP, "Die Verknüpfungen laufen im Kreis"},
    {EMFILE, "Zu viele offene Dateien"},
    {ENFILE, "Zu viele offene Dateien"},
    {EBUSY, "Ein anderes Programm benutzt die Datei oder den Ordner"},
    {ETXTBSY, "Ein anderes Programm benutzt die Datei oder den Ordner"},
    {EXDEV, "Das Ziel liegt auf einem anderen Datenträger"},
    {EBADF, "Geschlossen"},
    {ENOTSUP, "Das ist keine gewöhnliche Datei"},
});

const char* ActionText(FileAction action) noexcept {
  switch (action) {
    case FileAction::kRead:
      return "gelesen";
    case FileAction::kWrite:
      return "geschrieben";
    case FileAction::kMakeFolder:
      return "angelegt";
    case FileAction::kList:
      return "aufgelistet";
    case FileAction::kRemove:
      return "entfernt";
  }
  return "";
}

}  // namespace

std::string ReasonText(const std::error_code& code) {
  const std::error_condition condition = code.default_error_condition();
  if (condition.category() == std::generic_category()) {
    for (const auto& [known, text] : kReasons) {
      if (known == condition.value()) return text;
    }
  }
  if (!code) return "Der Grund ist unbekannt";
  return "Fehler " + std::to_string(code.value()) + " des Betriebssystems";
}

std::string ReasonText(int code) { return ReasonText(std::error_code(code, std::generic_category())); }

FileError::FileError(FileAction action, fs::path path, const std::error_code& code)
    : std::runtime_error(PathText(path) + " kann nicht " + ActionText(action) + " werden: " + ReasonText(code)),
      path_(std::move(path)),
      code_(code) {}

FileError::FileError(FileAction action, fs::path path, int code)
    : FileError(action, std::move(path), std::error_code(code, std::generic_category())) {}

std::string FailureText(const std::exception& failure, const char* separator) {
  if (const auto* error = dynamic_cast<const FileError*>(&failure)) {
    return PathText(error->Path()) + separator + ReasonText(error->Code());
  }
  if (const auto* error = dynamic_cast<const fs::filesystem_error*>(&failure)) {
    return PathText(error->path1()) + separator + ReasonText(error->code());
  }
  if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) return "Der Arbeitsspeicher reicht nicht aus";
  return failure.what();
}

}  // namespace quillmate::files
