#include <algorithm>

#include <quillmate/codedb/index_files.h>
#include <quillmate/export/site.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/text/markers.h>

#include "site_comments_p.h"
#include "site_dependencies_p.h"
#include "site_files_p.h"
#include "site_pages_p.h"
#include "site_search_p.h"
#include "site_style_p.h"

namespace quillmate::output {
namespace {

/// Scanning and storing have added a line break each.
std::string_view WithoutAddedBreaks(std::string_view stored) noexcept {
  for (int i = 0; i < 2 && stored.ends_with(text::kLineBreak); ++i) stored.remove_suffix(text::kLineBreak.size());
  return stored;
}

class SiteWriter {
 public:
  SiteWriter(const SiteProject& project, const text::CodeLook& look, const std::filesystem::path& folder)
      : project_(project), look_(look), folder_(folder), model_(project) {}

  void Run(const SiteProgress& progress) {
    ForEachModule([&](int module, std::string_view text) { ReadModule(module, text); });
    Write(kStyleFile, StyleSheet(look_));
    Write(kStartFile, StartPage(model_));
    Write(kRoutinesFile, RoutinesPage(model_));
    Write(kUnusedFile, UnusedPage(model_));
    Write(kDependenciesFile, DependenciesPage(model_));
    Write(kSearchFile, SearchPage(model_));
    Write(kSearchScript, SearchScript(model_, comments_));
    comments_ = {};
    ForEachModule([&](int module, std::string_view text) {
      Write(model_.Module(module).page, ModulePage(model_, module, text));
      if (progress) progress(static_cast<std::size_t>(module) + 1, model_.modules.size());
    });
    WriteSiteList(folder_, files_);
  }

 private:
  template <typename Handler>
  void ForEachModule(Handler handle) {
    for (int i = 0; i < static_cast<int>(model_.modules.size()); ++i) {
      const std::string stored = codedb::ReadModuleText(project_.indexFolder, model_.Module(i).record->number);
      handle(i, WithoutAddedBreaks(stored));
    }
  }

  void ReadModule(int position, std::string_view text) {
    FindAnchors(text, position, model_);
    SiteModule& module = model_.modules[static_cast<std::size_t>(position)];
    const CommentLines lines(text);
    comments_.resize(model_.routines.size());
    for (int i = module.first; i < module.last; ++i) {
      const codedb::RoutineRecord& record = *model_.Routine(i).record;
      if (record.start) comments_[static_cast<std::size_t>(i)] = lines.OfRoutine(*record.start, record.headerLines);
    }
    module.description = lines.OfModule([&](codedb::Line line) {
      const auto* const first = model_.routines.data() + module.first;
      const auto* const last = model_.routines.data() + module.last;
      return std::any_of(first, last, [&](const SiteRoutine& routine) { return routine.record->start == line; });
    });
  }

  void Write(const std::string& file, std::string_view page) {
    files::WriteWholeFile(folder_ / file, page);
    files_.push_back(file);
  }

  const SiteProject& project_;
  const text::CodeLook& look_;
  const std::filesystem::path& folder_;
  SiteModel model_;
  std::vector<std::string> files_;
  std::vector<std::string> comments_;  ///< by routine, until the search has them
};

}  // namespace

void WriteSite(const SiteProject& project, const text::CodeLook& look, const std::filesystem::path& folder,
               const SiteProgress& progress) {
  SiteWriter(project, look, folder).Run(progress);
}

void ExportSite(const SiteProject& project, const text::CodeLook& look, const std::filesystem::path& target, bool force,
                const SiteProgress& progress) {
  SiteFolder folder(target, force);
  WriteSite(project, look, folder.Path(), progress);
  folder.Commit();
}

}  // namespace quillmate::output
