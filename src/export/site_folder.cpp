#include <algorithm>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

#include <quillmate/export/site.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/folder_swap.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>

#include "site_files_p.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kListTitle = "Quillmate HTML-Dokumentation";

[[noreturn]] void Fail(const fs::path& path, const std::string& what) {
  throw std::runtime_error(files::PathText(path) + ": " + what);
}

/// Absolute, symbolic links resolved, without a separator at its end.
fs::path ResolveTarget(const fs::path& target) {
  fs::path path = files::RealPath(target);
  return path.has_filename() ? path : path.parent_path();
}

/// A new hidden folder beside the target.
fs::path MakeFolderBeside(const fs::path& target) {
  for (int number = 1;; ++number) {
    fs::path folder = target.parent_path() / ".";
    folder += target.filename();
    folder += ".neu-" + std::to_string(number);
    std::error_code error;
    if (fs::create_directory(folder, error)) return folder;
    if (error) throw fs::filesystem_error("create_directory", target, error);
  }
}

bool IsPlainName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find_first_of("/\\:") == std::string_view::npos;
}

bool IsSite(const fs::path& folder) {
  const fs::path list = folder / kSiteListFile;
  std::error_code error;
  return fs::is_regular_file(list, error) &&
         files::ReadWholeFile(list).starts_with(std::string(kListTitle).append("\n"));
}

/// The names of the files that make up the site in a folder, the list included; empty when there is no site.
std::set<fs::path> FilesOfSite(const fs::path& folder) {
  if (!IsSite(folder)) return {};
  std::set<fs::path> files{kSiteListFile};
  const std::string list = files::ReadWholeFile(folder / kSiteListFile);
  for (const std::string_view name : text::Split(list, "\n")) {
    if (IsPlainName(name) && name != kListTitle) files.insert(files::PathFromText(name));
  }
  return files;
}

/// What lies in a folder besides the files of a site.
std::vector<fs::path> OthersIn(const fs::path& folder, const std::set<fs::path>& siteFiles) {
  std::vector<fs::path> others;
  std::error_code error;
  for (const files::FolderEntry& entry : files::FolderEntries(folder, error)) {
    const bool isFolder = entry.isFolder && !entry.isLink;
    const fs::path name = entry.path.filename();
    if (isFolder || !siteFiles.contains(name)) others.push_back(name);
  }
  if (error) throw fs::filesystem_error("list", folder, error);
  return others;
}

/// Where the old folder waits while the new one takes its place.
fs::path Aside(fs::path fresh) { return fresh += ".alt"; }

}  // namespace

void WriteSiteList(const fs::path& folder, const std::vector<std::string>& files) {
  std::string list(kListTitle);
  list += '\n';
  for (const std::string& file : files) list.append(file).append("\n");
  files::WriteWholeFile(folder / kSiteListFile, list);
}

SiteFolder::SiteFolder(const fs::path& target, bool force) : target_(ResolveTarget(target)), force_(force) {
  CheckTarget();
  fresh_ = MakeFolderBeside(target_);
}

SiteFolder::~SiteFolder() {
  std::error_code ignored;
  if (!fresh_.empty()) files::RemoveFolder(fresh_, ignored);
}

void SiteFolder::CheckTarget() const {
  std::error_code error;
  const fs::file_status status = fs::status(target_, error);
  if (!fs::exists(status)) return;
  if (!fs::is_directory(status)) Fail(target_, "Das ist kein Ordner");
  if (force_ || IsSite(target_) || files::FolderEntries(target_, error).empty()) return;
  Fail(target_, "Der Ordner ist nicht leer und keine HTML-Dokumentation");
}

void SiteFolder::CheckNames() const {
  for (const fs::path& name : OthersIn(target_, FilesOfSite(target_))) {
    const fs::path page = fresh_ / name;
    if (!fs::exists(page)) continue;
    if (!force_ || fs::is_directory(target_ / name)) {
      Fail(target_ / name, "Das gehört nicht zur HTML-Dokumentation und wird nicht überschrieben");
    }
  }
}

void SiteFolder::PutInPlace() {
  if (!fs::exists(target_)) {
    files::RenamePath(fresh_, target_);
  } else {
    CheckNames();
    fs::permissions(fresh_, fs::status(target_).permissions());
    old_ = files::SwapFolders(fresh_, target_, Aside(fresh_));
  }
  fresh_.clear();
}

void SiteFolder::RemoveOld() try {
  if (old_.empty()) return;
  const std::set<fs::path> siteFiles = FilesOfSite(old_);
  for (const fs::path& name : OthersIn(old_, siteFiles)) {
    if (!fs::exists(fs::symlink_status(target_ / name))) files::RenamePath(old_ / name, target_ / name);
  }
  std::error_code error;
  files::RemoveFolder(old_, error);
  if (error) throw fs::filesystem_error("remove", old_, error);
} catch (const fs::filesystem_error&) {
  Fail(target_,
       "Die neue HTML-Dokumentation ist geschrieben, in " + files::PathText(old_) + " liegen noch Dateien von vorher");
}

}  // namespace quillmate::output
