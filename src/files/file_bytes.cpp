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

[[noreturn]] void Fail(const fs::path& file, const char* what, int code) {
  throw std::runtime_error("Die Datei " + PathText(file) + " kann nicht " + what + " werden: " + ReasonText(code) +
                           ".");
}

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

std::string ReadWholeFile(const fs::path& file) {
  std::error_code error;
  if (fs::is_directory(file, error)) Fail(file, "gelesen", EISDIR);
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  if (!in) Fail(file, "gelesen", errno);
  // The size is a first guess: a pipe has none, and a file may grow meanwhile. One byte more tells the end.
  const std::uintmax_t size = fs::is_regular_file(file, error) ? fs::file_size(file, error) : 0;
  std::string bytes(error ? kFirstGuess : std::max(static_cast<std::size_t>(size) + 1, kFirstGuess), '\0');
  std::size_t used = 0;
  while (in.read(bytes.data() + used, static_cast<std::streamsize>(bytes.size() - used))) {
    used = bytes.size();
    bytes.resize(2 * used);
  }
  bytes.resize(used + static_cast<std::size_t>(in.gcount()));
  if (in.bad()) Fail(file, "gelesen", errno);
  return bytes;
}

void FailToWrite(const fs::path& file, int code) { Fail(file, "geschrieben", ReasonOf(file, code)); }

void WriteWholeFile(const fs::path& file, std::string_view bytes) { WriteWholeFile(file, {bytes}); }

}  // namespace quillmate::files
