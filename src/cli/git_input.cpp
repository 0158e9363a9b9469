#include "git_input.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <map>
#include <utility>

#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "child_process.h"
#include "git_objects.h"
#include "git_paths.h"
#include "messages.h"
#include "scratch_folder.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "git:";

// Kinds of entries in a tree.
constexpr std::string_view kLink = "120000";
constexpr std::string_view kSubmodule = "160000";

struct Entry {
  std::string mode, hash;
};
/// By path from the top, with "/".
using Tree = std::map<std::string, Entry, std::less<>>;

std::string FirstLine(std::string_view text) {
  text = text.substr(0, text.find('\n'));
  for (const std::string_view word : {"fatal: ", "error: "}) {
    if (text.starts_with(word)) text.remove_prefix(word.size());
  }
  return std::string(text);
}

}  // namespace

std::optional<GitInput> ParseGitInput(std::string_view input) {
  if (!input.starts_with(kPrefix)) return std::nullopt;
  input.remove_prefix(kPrefix.size());
  const std::size_t colon = input.find(':');
  if (colon == std::string_view::npos) {
    throw UsageError("Die Eingabe " + Quoted(std::string(kPrefix).append(input)) + " hat nicht die Form git:REV:PFAD");
  }
  GitInput parsed{std::string(input.substr(0, colon)), std::string(input.substr(colon + 1))};
  // What begins like an option, or holds what no name of a revision may hold, never reaches the program.
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
  if (parsed.revision.starts_with('-') || std::ranges::any_of(parsed.revision, isControl)) {
    throw UsageError(Quoted(parsed.revision) + " ist keine Revision");
  }
  return parsed;
}

/// One repository and the submodules in it, down to the path that is wanted.
class GitFiles::Reader {
 public:
  Reader(GitFiles& files, const GitInput& input)
      : files_(files), input_(input), name_(std::string(kPrefix) + input.revision + ":" + input.path) {
    const auto program = FindProgram("git");
    if (!program) throw CommandFailure(name_ + ": Das Programm git ist nicht installiert");
    git_ = *program;
  }

  void Run() {
    FindRepository();
    const std::string tree = input_.revision.empty() ? std::string() : TreeOf(top_, input_.revision);
    waiting_.push_back({top_, {}, tree});
    bool found = wanted_.empty();
    while (!waiting_.empty()) {
      const Repository repository = std::move(waiting_.back());
      waiting_.pop_back();
      found = TakeFrom(repository) || found;
    }
    if (!found && files_.problems_.empty()) {
      throw CommandFailure(name_ + ": Das gibt es dort nicht");
    }
    const fs::path root = files_.scratch_->Path() / kTreeFolder;
    files_.path_ = wanted_.empty() ? root : root / files::PathFromText(wanted_);
    files_.place_ = files::PathText(root);
    files_.shownPlace_ = std::string(kPrefix) + input_.revision + ":";
    std::error_code error;
    if (fs::exists(files_.path_, error)) return;
    // A folder without anything that could be read.
    if (!files_.problems_.empty()) throw CommandFailure(files_.problems_.back());
    throw CommandFailure(name_ + ": Dort liegt nichts, was Makros enthalten kann");
  }

 private:
  static constexpr const char* kTreeFolder = "baum";

  /// A repository, its place in the one above all, and the tree that is meant (none: what is staged).
  struct Repository {
    fs::path folder;
    std::string place;
    std::string tree;
  };

  /// Runs git in a folder; gives its output. Throws CommandFailure with its own words.
  std::string Ask(const fs::path& folder, const std::vector<std::string>& arguments) const {
    std::string output;
    std::vector<std::string> words{"-C", folder.empty() ? std::string(".") : files::PathText(folder), "--no-pager",
                                   "--no-optional-locks", "--literal-pathspecs"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const ChildEnd end = RunChild(git_, words, {}, [&](std::string_view bytes) { output += bytes; });
    if (end.status != 0) throw CommandFailure(name_ + ": git: " + FirstLine(end.errors));
    return output;
  }

  static std::string Line(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    return text;
  }

  /// The top of the repository, and the wanted path from there.
  void FindRepository() {
    std::string path = input_.path;
#ifdef _WIN32
    std::ranges::replace(path, '\\', '/');
#endif
    const fs::path asPath = files::PathFromText(path);
    fs::path start;
    if (files::IsAbsolutePath(asPath)) {
      start = asPath;
      // The file may be gone by now, its folder too.
      std::error_code error;
      while (start.has_relative_path() && !fs::is_directory(start, error)) start = start.parent_path();
    }
    const bool bare = Line(Ask(start, {"rev-parse", "--is-bare-repository"})) == "true";
    top_ = bare ? start : files::PathFromText(Line(Ask(start, {"rev-parse", "--show-toplevel"})));
    std::optional<std::string> wanted;
    if (!start.empty()) {
      const std::string below = files::PathText(files::NormalPath(asPath).lexically_relative(start));
      const std::string prefix = Line(Ask(start, {"rev-parse", "--show-prefix"}));
      wanted = Resolved(prefix, below);
    } else if (path == "." || path.starts_with("./") || path == ".." || path.starts_with("../")) {
      wanted = Resolved(Line(Ask({}, {"rev-parse", "--show-prefix"})), path);
    } else {
      wanted = Resolved({}, path);
    }
    if (!wanted) throw CommandFailure(name_ + ": Der Pfad führt aus dem Repository hinaus");
    wanted_ = *std::move(wanted);
  }

  std::string TreeOf(const fs::path& folder, const std::string& revision) const {
    std::string output;
    const std::vector<std::string> words{"-C",        folder.empty() ? std::string(".") : files::PathText(folder),
                                         "rev-parse", "--verify",
                                         "--quiet",   revision + "^{tree}"};
    const ChildEnd end = RunChild(git_, words, {}, [&](std::string_view bytes) { output += bytes; });
    if (end.status != 0) throw CommandFailure(name_ + ": Die Revision " + Quoted(revision) + " gibt es nicht");
    return Line(output);
  }

  Tree ReadTree(const Repository& repository) {
    const bool staged = repository.tree.empty();
    const std::string list = staged ? Ask(repository.folder, {"ls-files", "--stage", "-z", "--full-name"})
                                    : Ask(repository.folder, {"ls-tree", "-r", "-z", "--full-tree", repository.tree});
    Tree tree;
    std::string_view rest = list;
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find('\0'), rest.size());
      const std::string_view line = rest.substr(0, end);
      rest.remove_prefix(std::min(end + 1, rest.size()));
      const std::size_t tab = line.find('\t');
      const std::size_t first = line.find(' ');
      if (tab == std::string_view::npos || first == std::string_view::npos || first > tab) continue;
      // "MODE HASH STAGE" or "MODE KIND HASH"
      const std::size_t second = line.find(' ', first + 1);
      const std::string_view hash =
          staged ? line.substr(first + 1, second - first - 1) : line.substr(second + 1, tab - second - 1);
      tree.insert_or_assign(std::string(line.substr(tab + 1)),
                            Entry{std::string(line.substr(0, first)), std::string(hash)});
    }
    return tree;
  }

  /// Whether the wanted path is in this repository or below.
  bool TakeFrom(const Repository& repository) {
    const Tree tree = ReadTree(repository);
    const auto whole = [&](const std::string& path) {
      return repository.place.empty() ? path : repository.place + "/" + path;
    };
    bool found = false, hasVbProject = false;
    std::map<std::string, std::string> files;  // path in this repository to hash
    for (const auto& [path, entry] : tree) {
      const std::string full = whole(path);
      const bool asked = full == wanted_;
      if (entry.mode == kSubmodule) {
        const bool leadsThere = asked || IsBelow(full, wanted_) || IsBelow(wanted_, full);
        if (leadsThere) found = Enter(repository, path, full, entry.hash) || found;
        continue;
      }
      if (!asked && !(IsBelow(full, wanted_) && IsWanted(path))) continue;
      found = true;
      hasVbProject = hasVbProject || IsVbProject(path);
      TakeEntry(repository, tree, path, entry, files);
    }
    if (hasVbProject) {
      for (const auto& [path, entry] : tree) {
        if (IsModuleFile(path) && entry.mode != kSubmodule) TakeEntry(repository, tree, path, entry, files);
      }
    }
    if (!found && !wanted_.empty()) found = HasFolder(tree, repository);
    Fetch(repository, files);
    return found;
  }

  bool HasFolder(const Tree& tree, const Repository& repository) const {
    std::string_view folder = wanted_;
    if (!repository.place.empty()) {
      if (!IsBelow(folder, repository.place)) return folder == repository.place;
      folder.remove_prefix(repository.place.size() + 1);
    }
    const auto next = tree.lower_bound(std::string(folder) + "/");
    return next != tree.end() && IsBelow(next->first, folder);
  }

  /// A submodule is a repository of its own; the tree knows only which commit of it.
  bool Enter(const Repository& repository, const std::string& path, const std::string& full, const std::string& hash) {
    const fs::path folder = repository.folder / files::PathFromText(path);
    std::error_code error;
    if (!fs::exists(folder / ".git", error)) {
      AddProblem(full, "Das Submodul ist nicht ausgecheckt");
      return false;
    }
    try {
      waiting_.push_back({folder, full, TreeOf(folder, hash)});
    } catch (const CommandFailure&) {
      AddProblem(full, "Das Submodul hat die Revision " + hash + " nicht");
      return false;
    }
    return full == wanted_ || IsBelow(full, wanted_);
  }

  /// Links lead to the file that they name, within the tree.
  void TakeEntry(const Repository& repository, const Tree& tree, const std::string& path, const Entry& entry,
                 std::map<std::string, std::string>& files) {
    if (entry.mode != kLink) {
      files.insert_or_assign(path, entry.hash);
      return;
    }
    const std::string target = Ask(repository.folder, {"cat-file", "blob", entry.hash});
    const std::optional<std::string> resolved = Resolved(FolderOf(path), target);
    const auto found = resolved ? tree.find(*resolved) : tree.end();
    if (found == tree.end() || found->second.mode == kLink || found->second.mode == kSubmodule) {
      AddProblem(repository.place.empty() ? path : repository.place + "/" + path,
                 "Die Verknüpfung führt zu keiner Datei derselben Revision");
    } else {
      files.insert_or_assign(path, found->second.hash);
    }
  }

  void AddProblem(const std::string& path, const std::string& reason) {
    files_.problems_.push_back(std::string(kPrefix) + input_.revision + ":" + path + ": " + reason);
  }

  /// The file in the scratch folder; nothing for names that it can't hold, or holds already in another case.
  std::optional<fs::path> MakePlace(const std::string& full) {
    fs::path file = files_.scratch_->Path() / kTreeFolder;
    for (std::string_view rest = full; !rest.empty();) {
      const std::size_t end = std::min(rest.find('/'), rest.size());
      const std::string_view name = rest.substr(0, end);
      rest.remove_prefix(std::min(end + 1, rest.size()));
      if (!IsPlainName(name)) return std::nullopt;
      file /= files::PathFromText(name);
    }
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    if (error || fs::exists(file, error)) return std::nullopt;
    return file;
  }

  void Fetch(const Repository& repository, const std::map<std::string, std::string>& files) {
    if (files.empty()) return;
    std::string request;
    std::vector<std::string> paths;
    for (const auto& [path, hash] : files) {
      request.append(hash).append("\n");
      paths.push_back(repository.place.empty() ? path : repository.place + "/" + path);
    }
    const fs::path input = files_.scratch_->Path() / "anfrage";
    files::WriteWholeFile(input, request);
    std::vector<fs::path> written;
    std::ofstream file;
    ObjectStream stream({[&](std::size_t number, bool missing) {
                           if (number >= paths.size()) return;
                           const auto place = missing ? std::nullopt : MakePlace(paths[number]);
                           if (!place) {
                             AddProblem(paths[number], missing ? "Das Repository hat den Inhalt nicht"
                                                               : "Der Name lässt sich hier nicht anlegen");
                             return;
                           }
                           written.push_back(*place);
                           file.open(*place, std::ios::binary);
                         },
                         [&](std::string_view bytes) {
                           if (file.is_open()) file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
                         },
                         [&] {
                           if (!file.is_open()) return;
                           file.close();
                           if (!file) throw CommandFailure(name_ + ": Der Platz für temporäre Dateien reicht nicht");
                         }});
    const ChildEnd end =
        RunChild(git_,
                 {"-C", repository.folder.empty() ? std::string(".") : files::PathText(repository.folder),
                  "--no-optional-locks", "-c", "protocol.allow=never", "cat-file", "--batch"},
                 input, [&](std::string_view bytes) { stream.Take(bytes); });
    if (end.status != 0 || stream.Count() != paths.size()) {
      throw CommandFailure(name_ + ": git: " + FirstLine(end.errors));
    }
    for (const fs::path& each : written) ReplacePointer(repository, each);
  }

  std::string PathInTree(const fs::path& file) const {
    return file.lexically_relative(files_.scratch_->Path() / kTreeFolder).generic_string();
  }

  void ReplacePointer(const Repository& repository, const fs::path& file) {
    std::error_code error;
    if (!fs::is_regular_file(file, error))
      return AddProblem(PathInTree(file), "Der Name lässt sich hier nicht anlegen");
    const std::optional<std::string> hash = PointedTo(file);
    if (!hash) return;
    const fs::path common = files::PathFromText(Line(Ask(repository.folder, {"rev-parse", "--git-common-dir"})));
    const fs::path store = files::IsAbsolutePath(common) ? common : repository.folder / common;
    const fs::path kept = store / "lfs" / "objects" / hash->substr(0, 2) / hash->substr(2, 2) / *hash;
    if (fs::copy_file(kept, file, fs::copy_options::overwrite_existing, error) && !error) return;
    fs::remove(file, error);
    AddProblem(PathInTree(file), "Das Repository hat nur einen LFS-Verweis auf den Inhalt; \"git lfs fetch\" holt ihn");
  }

  GitFiles& files_;
  const GitInput& input_;
  const std::string name_;
  fs::path git_;
  fs::path top_;
  std::string wanted_;
  std::vector<Repository> waiting_;
};

GitFiles::GitFiles(const GitInput& input) : scratch_(MakeScratchFolder()) { Reader(*this, input).Run(); }
GitFiles::~GitFiles() = default;

std::string GitFiles::Shown(std::string text) const {
  for (std::size_t at = text.find(place_); at != std::string::npos; at = text.find(place_, at)) {
    std::size_t end = at + place_.size();
    if (end < text.size() && (text[end] == '/' || text[end] == '\\')) ++end;
    text.replace(at, end - at, shownPlace_);
    at += shownPlace_.size();
  }
  return text;
}

}  // namespace quillmate::cli
