#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/paths.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kScratchRoot = "TempDateien";
constexpr std::size_t kFirstGuess = 4096;

/// What the database engine may have left beside a file.
constexpr std::array<const char*, 3> kCompanions = {"-journal", "-wal", "-shm"};

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

/// Writes the pieces one behind the other. A file that could not be written whole is removed: half a file would pass
/// for a whole one.
void WritePieces(const fs::path& file, std::initializer_list<std::string_view> pieces) {
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

bool HasScratchRoot(const fs::path& path) {
  return std::any_of(path.begin(), path.end(), [](const fs::path& part) { return part == kScratchRoot; });
}

/// True when the folder lies in the scratch root, by its name and in truth: neither ".." nor a link leads out of it.
bool IsScratchFolder(const fs::path& folder) {
  const fs::path plain = NormalPath(AbsolutePath(folder));
  const fs::path named = plain.has_filename() ? plain : plain.parent_path();
  return fs::is_directory(named) && !IsLink(named) && HasScratchRoot(named) && HasScratchRoot(RealPath(named));
}

std::string MissingTemplateMessage(const fs::path& templateFile) {
  fs::path native = templateFile;
  return "Die notwendige Datenbank\r\n" + PathText(native.make_preferred()) +
         "\r\nexistiert nicht !!!\r\nBitte kopieren Sie diese wieder an diese Stelle";
}

void Remove(const fs::path& file) {
  std::error_code error;
  RemovePath(file, error);
  if (error) throw fs::filesystem_error("remove", file, error);
}

/// The earlier file goes first: a link is not written through, and the copy does not inherit a write protection.
void ReplaceByCopy(const fs::path& source, const fs::path& target) {
  const std::string bytes = ReadWholeFile(source);
  Remove(target);
  for (const char* const companion : kCompanions) Remove(fs::path(target) += companion);
  WriteWholeFile(target, bytes);
}

}  // namespace

PrepareResult PrepareCodeDatabase(const fs::path& folder, const fs::path& templateFile) {
  std::error_code error;
  const fs::file_status status = fs::status(templateFile, error);
  if (status.type() == fs::file_type::not_found) return {false, MissingTemplateMessage(templateFile)};
  try {
    ReplaceByCopy(templateFile, DatabasePath(folder));
    return {true, {}};
  } catch (const std::exception&) {
    return {};
  }
}

fs::path DatabasePath(const fs::path& folder) { return folder / kDatabaseFile; }

fs::path ModuleTextPath(const fs::path& folder, int moduleNumber) {
  return folder / (ModuleKey(moduleNumber) + ".txt");
}

void WriteModuleText(const fs::path& folder, int moduleNumber, std::string_view markedText) {
  WritePieces(ModuleTextPath(folder, moduleNumber), {markedText, text::kLineBreak});
}

std::string ReadModuleText(const fs::path& folder, int moduleNumber) {
  return ReadWholeFile(ModuleTextPath(folder, moduleNumber));
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

void WriteWholeFile(const fs::path& file, std::string_view bytes) { WritePieces(file, {bytes}); }

void DeleteScratchFiles(const fs::path& folder) noexcept {
  try {
    if (!IsScratchFolder(folder)) return;
    std::error_code ignored;
    for (const FolderEntry& entry : FolderEntries(folder, ignored)) {
      if (!entry.isFolder || entry.isLink) RemovePath(entry.path, ignored);
    }
  } catch (const std::exception&) {
    // What can't be listed stays; the next start cleans up.
  }
}

std::string PathText(const fs::path& path) {
  const std::u8string utf8 = path.u8string();
  return {utf8.begin(), utf8.end()};
}

fs::path PathFromText(std::string_view utf8) { return fs::path(std::u8string(utf8.begin(), utf8.end())); }

std::string BrokenProjectMessage(const fs::path& folder) {
  return "Projekt in " + text::EnsureBackslash(PathText(folder)) + "\r\nist nicht mehr intakt";
}

}  // namespace quillmate::codedb
