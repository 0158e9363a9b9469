#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>
#include <vector>

#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>

#include "link_targets_p.h"
#include "name_pattern_p.h"
#include "path_text_p.h"

namespace quillmate::inventory {
namespace {

/// Paths of Windows know no case: ASCII and the letters of Western Europe are folded, the separator is "/".
std::string Folded(std::string_view text) {
  std::string folded(text);
  constexpr unsigned char kLead = 0xC3, kFirst = 0x80, kLast = 0x9E, kTimes = 0x97;
  unsigned char before = 0;
  for (char& c : folded) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\\') {
      c = '/';
    } else if (c >= 'A' && c <= 'Z') {
      c = static_cast<char>(c - 'A' + 'a');
    } else if (before == kLead && byte >= kFirst && byte <= kLast && byte != kTimes) {
      c = static_cast<char>(byte + 0x20);
    }
    before = byte;
  }
  return folded;
}

int HexDigit(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string WithoutPercents(std::string_view address) {
  std::string text;
  for (std::size_t at = 0; at < address.size(); ++at) {
    const bool escape = address[at] == '%' && address.size() - at > 2 && HexDigit(address[at + 1]) >= 0 &&
                        HexDigit(address[at + 2]) >= 0;
    text += escape ? static_cast<char>(HexDigit(address[at + 1]) * 16 + HexDigit(address[at + 2])) : address[at];
    if (escape) at += 2;
  }
  return text;
}

/// "Excel 12.0;HDR=YES;DATABASE=C:\Daten.xlsx": the file; of anything without such a word, the text itself.
std::string_view FileOfConnection(std::string_view target) {
  constexpr std::string_view kKey = "DATABASE=";
  for (std::size_t at = 0; at + kKey.size() <= target.size(); ++at) {
    if (!text::StartsWithIgnoreCase(target.substr(at), kKey)) continue;
    target.remove_prefix(at + kKey.size());
    return target.substr(0, target.find(';'));
  }
  return target;
}

/// As the target is written, folded and stored as names of files are; empty for what is no file.
std::string CleanTarget(std::string_view target) {
  if (text::StartsWithIgnoreCase(target, "ODBC;") || text::StartsWithIgnoreCase(target, "mailto:")) return {};
  target = FileOfConnection(target);
  std::string path;
  if (text::StartsWithIgnoreCase(target, "file:")) {
    path = WithoutPercents(target.substr(5));
    // "file:///C:/x", "file:///\\server\x" and "file:///x"; "file://server/x" is as it has to be.
    if (path.starts_with("///")) path.erase(0, path.size() > 4 && (path[4] == ':' || path[3] == '\\') ? 3 : 2);
  } else if (target.find("://") != std::string_view::npos) {
    return {};
  } else {
    path = target.find('\\') == std::string_view::npos ? WithoutPercents(target) : std::string(target);
  }
  return Folded(StoredText(files::PathFromText(path)));
}

/// How much of a path is its root: "//server/share" counts as "//".
std::size_t RootSize(std::string_view path) noexcept {
  if (path.starts_with("//")) return 2;
  if (path.starts_with('/')) return 1;
  return path.size() > 1 && path[1] == ':' ? 2 : 0;
}

std::string Normal(std::string_view path) {
  const std::size_t root = RootSize(path);
  std::vector<std::string_view> names;
  for (std::string_view rest = path.substr(root); !rest.empty();) {
    const std::string_view name = rest.substr(0, rest.find('/'));
    rest.remove_prefix(name.size() < rest.size() ? name.size() + 1 : name.size());
    if (name.empty() || name == ".") continue;
    if (name != "..") {
      names.push_back(name);
    } else if (!names.empty()) {
      names.pop_back();
    }
  }
  std::string normal(path.substr(0, root));
  for (const std::string_view name : names) {
    if (!normal.empty() && !normal.ends_with('/')) normal += '/';
    normal += name;
  }
  return normal;
}

/// A name in a folder as stored; that of a root ends with its separator.
std::string In(std::string_view folder, std::string_view name) {
  std::string path = Folded(folder);
  if (!path.ends_with('/')) path += '/';
  return path.append(name);
}

std::string_view NameIn(std::string_view path) noexcept { return path.substr(path.find_last_of('/') + 1); }

/// The folder that a path is in; of one directly below the root that root.
std::string_view FolderOf(std::string_view path) noexcept {
  const std::size_t separator = path.find_last_of('/');
  if (separator == std::string_view::npos) return {};
  return path.substr(0, separator < RootSize(path) ? separator + 1 : separator);
}

struct RunInfo {
  /// It has seen all that is in its folders, but for what its patterns leave out.
  bool complete = false;
  NamePatterns patterns{{}};
};

std::map<std::int64_t, RunInfo> ReadRuns(Database& database) {
  struct Part {
    std::int64_t run;
    std::string group, shard;
  };
  std::map<std::int64_t, RunInfo> runs;
  std::vector<Part> parts;
  std::map<std::string, std::set<std::string>> shards;
  Statement ask(database, "SELECT nr, zustand = 'fertig', anteil, quellen, ausgelassen FROM lauf");
  while (ask.Next()) {
    const std::int64_t number = ask.Number();
    RunInfo& run = runs[number];
    run.complete = ask.Number() != 0;
    std::string shard = ask.Text();
    const std::string roots = ask.Text();
    std::vector<std::string> patterns;
    const std::string excluded = Folded(ask.TextView());
    for (const std::string_view each : text::Split(excluded, "\n")) {
      if (!each.empty()) patterns.emplace_back(each);
    }
    run.patterns = NamePatterns(std::move(patterns));
    if (shard.empty() || !run.complete) continue;
    Part& part = parts.emplace_back(Part{number, shard.substr(shard.find('/')) + roots, std::move(shard)});
    shards[part.group].insert(part.shard);
  }
  // Parts of a scan are complete together.
  for (const Part& part : parts) {
    const std::string count = std::to_string(shards[part.group].size());
    runs[part.run].complete = part.shard.substr(part.shard.find('/') + 1) == count;
  }
  return runs;
}

/// What is known of the places to which links may lead.
class Places {
 public:
  explicit Places(Database& database) : database_(database), runs_(ReadRuns(database)) {
    ReadNames();
    if (names_.empty()) return;
    ReadFiles();
    ReadFolders();
  }

  bool Empty() const noexcept { return names_.empty(); }

  struct Finding {
    std::string_view word;
    std::optional<std::int64_t> file;
  };
  Finding Find(const std::string& path) const {
    if (const auto file = files_.find(PathHash(path)); file != files_.end()) return {"da", file->second};
    if (IsMissing(path)) return {"nicht da", std::nullopt};
    const auto name = names_.find(std::string(NameIn(path)));
    return {name != names_.end() && name->second ? "gleicher Name" : "nicht im Bestand", std::nullopt};
  }

 private:
  void ReadNames() {
    Statement ask(database_,
                  "SELECT dateiname FROM verknuepfung WHERE dateiname <> '' UNION SELECT dateiname FROM verweis WHERE "
                  "dateiname <> ''");
    while (ask.Next()) names_.emplace(ask.Text(), false);
  }
  void ReadFiles() {
    Statement folder(database_, "SELECT pfad FROM ordner WHERE nr = ?");
    Statement ask(database_, "SELECT nr, ordner, name FROM datei WHERE verschwunden IS NULL");
    while (ask.Next()) {
      const std::int64_t number = ask.Number(), in = ask.Number();
      const std::string name = Folded(ask.TextView());
      const auto wanted = names_.find(name);
      if (wanted == names_.end()) continue;
      wanted->second = true;
      folder.Add(in);
      if (folder.Next()) files_.emplace(PathHash(Normal(In(folder.TextView(), name))), number);
      folder.Reset();
    }
  }
  void ReadFolders() {
    Statement ask(database_,
                  "SELECT pfad, coalesce(lauf, 0), grund <> '' FROM ordner WHERE lauf IS NOT NULL OR grund <> ''");
    while (ask.Next()) {
      const std::uint64_t key = PathHash(Normal(Folded(ask.TextView())));
      const std::int64_t run = ask.Number();
      folders_.emplace(key, ask.Number() != 0 ? 0 : run);
    }
  }
  /// True when somebody has looked where the file, or the folder that it should be in, would be.
  bool IsMissing(std::string_view path) const {
    for (std::string_view at = path; RootSize(at) < at.size();) {
      const std::string_view folder = FolderOf(at);
      if (folder.empty()) return false;
      if (const auto known = folders_.find(PathHash(folder)); known != folders_.end()) {
        const auto run = runs_.find(known->second);
        return run != runs_.end() && run->second.complete && !run->second.patterns.Match(NameIn(at), folder);
      }
      at = folder;
    }
    return false;
  }

  Database& database_;
  std::map<std::int64_t, RunInfo> runs_;
  /// Names that links lead to; true for those that any file has.
  std::unordered_map<std::string, bool> names_;
  /// Files of such names by their path, and folders with the run that was in them, 0 for those that can't be listed.
  std::unordered_map<std::uint64_t, std::int64_t> files_, folders_;
};

/// Numbers of rows for references begin here, after those of links.
constexpr std::int64_t kFirstReference = 1000000000;

void PutTargets(Database& database, const Places& places, const char* links) {
  Statement ask(database, links);
  Statement files(database,
                  "SELECT d.nr, o.pfad FROM datei d JOIN ordner o ON o.nr = d.ordner WHERE d.inhalt = ? AND "
                  "d.verschwunden IS NULL");
  Statement put(database, "INSERT INTO zieldatei VALUES(?,?,?,?,?,?,?)");
  while (ask.Next()) {
    const std::int64_t content = ask.Number(), place = ask.Number();
    const std::string kind = ask.Text(), target = ask.Text();
    files.Add(content);
    while (files.Next()) {
      const std::int64_t file = files.Number();
      const std::string path = TargetPath(target, files.TextView());
      const Places::Finding found = places.Find(path);
      // Of the system's libraries nobody expects that they are here.
      if (kind == "bibliothek" && found.word != "da" && found.word != "nicht da") continue;
      put.Add(file).Add(place).Add(kind).Add(target).Add(path).Add(found.word).Add(found.file).Run();
    }
  }
}

}  // namespace

std::string TargetName(std::string_view target) {
  const std::string path = CleanTarget(target);
  return std::string(NameIn(path));
}

std::string TargetPath(std::string_view target, std::string_view folder) {
  const std::string path = CleanTarget(target);
  if (path.empty()) return {};
  return Normal(RootSize(path) > 0 ? path : In(folder, path));
}

bool IsLookedFor(const ReferenceRow& reference) {
  if (reference.toProject) return true;
  constexpr std::array<std::string_view, 6> kUsual{"/windows/",      "/winnt/",     "/program files",
                                                   "/common files/", "/programme/", "/system32/"};
  const std::string path = Folded(reference.path);
  if (path.find('/') == std::string::npos) return false;
  for (const std::string_view usual : kUsual) {
    if (path.find(usual) != std::string::npos) return false;
  }
  return true;
}

void FindTargets(Database& database) {
  database.Run("DELETE FROM zieldatei");
  const Places places(database);
  if (places.Empty()) return;
  PutTargets(database, places, "SELECT inhalt, folge, art, ziel FROM verknuepfung WHERE dateiname <> ''");
  PutTargets(database, places,
             ("SELECT inhalt, folge + " + std::to_string(kFirstReference) +
              ", CASE projekt WHEN 0 THEN 'bibliothek' ELSE 'verweis' END, pfad FROM verweis WHERE dateiname <> ''")
                 .c_str());
}

}  // namespace quillmate::inventory
