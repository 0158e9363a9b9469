#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

namespace quillmate::files {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kFirstGuess = 4096;
constexpr const char* kTooLarge = "die Datei ist zu groß";

constexpr auto kReasons = std::to_array<std::pair<int, const char*>>({
    {ENOSPC, "auf dem Datenträger ist kein Platz mehr"},
#ifdef EDQUOT
    {EDQUOT, "der Platz, der Ihnen auf dem Datenträger zusteht, ist belegt"},
#endif
    {ENOENT, "die Datei oder ihr Ordner existiert nicht"},
    {ENOTDIR, "der Ordner existiert nicht"},
    {EACCES, "der Zugriff ist nicht erlaubt"},
    {EPERM, "der Zugriff ist nicht erlaubt"},
    {EROFS, "der Datenträger ist schreibgeschützt"},
    {EISDIR, "unter diesem Namen gibt es einen Ordner"},
    {EFBIG, "die Datei würde zu groß"},
    {EIO, "der Datenträger meldet einen Fehler"},
    {EMFILE, "zu viele Dateien sind geöffnet"},
    {ENFILE, "zu viele Dateien sind geöffnet"},
    {ENAMETOOLONG, "der Name ist zu lang"},
    {EINVAL, "der Name ist nicht erlaubt"},
});

std::string ReasonText(int code) {
  for (const auto& [known, text] : kReasons) {
    if (known == code) return text;
  }
  return code == 0 ? "der Grund ist unbekannt" : std::generic_category().message(code);
}

[[noreturn]] void Fail(const fs::path& file, const char* what, const std::string& reason) {
  throw std::runtime_error("Die Datei " + PathText(file) + " kann nicht " + what + " werden: " + reason + ".");
}

[[noreturn]] void Fail(const fs::path& file, const char* what, int code) { Fail(file, what, ReasonText(code)); }

[[noreturn]] void FailToRead(const fs::path& file, const char* reason) { Fail(file, "gelesen", std::string(reason)); }

/// Some systems only say of a folder that it must not be written.
int ReasonOf(const fs::path& file, int code) {
  std::error_code ignored;
  return fs::is_directory(file, ignored) ? EISDIR : code;
}

}  // namespace

void WriteWholeFile(const fs::path& file, std::initializer_list<std::string_view> pieces) {
  errno = 0;
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  if (!out) Fail(file, "geschrieben", ReasonOf(file, errno));
  for (const std::string_view piece : pieces) out.write(piece.data(), static_cast<std::streamsize>(piece.size()));
  out.close();
  if (out) return;
  const int code = errno;
  std::error_code ignored;
  if (fs::is_regular_file(file, ignored)) fs::remove(file, ignored);
  Fail(file, "geschrieben", code);
}

std::string ReadWholeFile(const fs::path& file, std::size_t most) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (fs::is_directory(status)) Fail(file, "gelesen", EISDIR);
  if (fs::exists(status) && !fs::is_regular_file(status)) FailToRead(file, "es ist keine gewöhnliche Datei");
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  if (!in) Fail(file, "gelesen", errno);
  // A file may grow meanwhile: one byte more than it has tells the end.
  const std::uintmax_t size = fs::file_size(file, error);
  if (!error && size > most) FailToRead(file, kTooLarge);
  std::string bytes(error ? kFirstGuess : std::max(static_cast<std::size_t>(size) + 1, kFirstGuess), '\0');
  std::size_t used = 0;
  while (in.read(bytes.data() + used, static_cast<std::streamsize>(bytes.size() - used))) {
    used = bytes.size();
    if (used > most) FailToRead(file, kTooLarge);
    bytes.resize(2 * used);
  }
  bytes.resize(used + static_cast<std::size_t>(in.gcount()));
  if (in.bad()) Fail(file, "gelesen", errno);
  return bytes;
}

void FailToWrite(const fs::path& file, int code) { Fail(file, "geschrieben", ReasonOf(file, code)); }

void WriteWholeFile(const fs::path& file, std::string_view bytes) { WriteWholeFile(file, {bytes}); }

}  // namespace quillmate::files
