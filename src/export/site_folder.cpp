#include <array>
#include <set>
#include <string_view>
#include <system_error>
#include <vector>

#include <quillmate/export/output_reason.h>
#include <quillmate/export/site.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>
#include <quillmate/files/work_folder.h>
#include <quillmate/text/operations.h>

#include "site_files_p.h"

namespace quillmate::output {
namespace {

namespace fs = std::filesystem;

using Words = files::ReasonWords<OutputReason>;

constexpr std::array kWords{
    Words{OutputReason::kNoSite, "Der Ordner ist nicht leer und keine HTML-Dokumentation"},
    Words{OutputReason::kForeignFile, "Das gehört nicht zur HTML-Dokumentation und wird nicht überschrieben"},
    Words{OutputReason::kNoWorkbook, "%c"},
};
static_assert(files::IsComplete(kWords, OutputReason::kNoWorkbook));

constexpr std::string_view kListTitle = "Quillmate HTML-Dokumentation";

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

void CheckTarget(const fs::path& target, bool force) {
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (!fs::exists(status)) return;
  if (!fs::is_directory(status)) throw files::Failure(files::FileReason::kNoFolder, target);
  files::MendFolder(target);
  if (force || IsSite(target) || (files::FolderEntries(target, error).empty() && !error)) return;
  throw files::Failure(OutputReason::kNoSite, target);
}

}  // namespace

std::error_code make_error_code(OutputReason reason) noexcept {
  static const files::ReasonCategory category("export", kWords);
  return {static_cast<int>(reason), category};
}

void WriteSiteList(const fs::path& folder, const std::vector<std::string>& files) {
  std::string list(kListTitle);
  list += '\n';
  for (const std::string& file : files) list.append(file).append("\n");
  files::WriteWholeFile(folder / kSiteListFile, list);
}

SiteFolder::SiteFolder(const fs::path& target, bool force) : force_(force) {
  const fs::path real = files::RealPath(target);
  CheckTarget(real, force);
  folder_ = std::make_unique<files::FolderReplacement>(real);
}

std::vector<fs::path> SiteFolder::OwnNames() const {
  const std::set<fs::path> earlier = FilesOfSite(folder_->Target());
  std::vector<fs::path> own(earlier.begin(), earlier.end());
  if (!force_) return own;
  const std::vector<fs::path> fresh = folder_->Names();
  own.insert(own.end(), fresh.begin(), fresh.end());
  return own;
}

std::vector<fs::path> SiteFolder::Replaced() const {
  std::vector<fs::path> paths;
  for (const fs::path& name : OwnNames()) paths.push_back(folder_->Target() / name);
  return paths;
}

void SiteFolder::Commit() try { folder_->Commit(OwnNames()); } catch (const files::Failure& error) {
  if (error.Code() != std::errc::file_exists) throw;
  throw files::Failure(OutputReason::kForeignFile, error.Path());
}

}  // namespace quillmate::output
