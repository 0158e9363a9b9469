#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

#include <quillmate/codedb/index_files.h>
#include <quillmate/export/site.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/text/markers.h>
#include <quillmate/workers/ordered_work.h>

#include "site_comments_p.h"
#include "site_dependencies_p.h"
#include "site_files_p.h"
#include "site_findings_p.h"
#include "site_links_p.h"
#include "site_metrics_p.h"
#include "site_pages_p.h"
#include "site_search_p.h"
#include "site_style_p.h"
#include "site_trees_p.h"

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
      : project_(project),
        look_(look),
        folder_(folder),
        site_(project),
        comments_{std::vector<std::string>(site_.model.routines.size()),
                  std::vector<std::vector<std::pair<symbols::SymbolId, std::string>>>(site_.model.modules.size())} {}

  void Run(const SiteProgress& progress) {
    ReadModules();
    const SiteModel& model = site_.model;
    Write(kStyleFile, [this] { return StyleSheet(look_); });
    Write(kStartFile, [&] { return StartPage(model); });
    Write(RoutinePages(model));
    Write(UnusedPages(model));
    Write(kDependenciesFile, [&] { return DependenciesPage(site_); });
    Write(TreePages(site_));
    Write(FindingPages(site_));
    Write(MetricPages(site_));
    Write(search_.emplace(site_, comments_).Pages());
    for (std::size_t page = 0; page < site_.declarations.PageCount(); ++page) {
      Write(site_.declarations.File(page), [this, page] { return site_.declarations.Page(page); });
    }
    for (int i = 0; i < static_cast<int>(model.modules.size()); ++i) {
      Write(
          model.Module(i).page,
          [this, i] {
            const std::string stored = Stored(i);
            return ModulePage(site_, i, WithoutAddedBreaks(stored));
          },
          [&progress, i, &model] {
            if (progress) progress(static_cast<std::size_t>(i) + 1, model.modules.size());
          });
    }
    work_.FinishAll();
    WriteSiteList(folder_, files_);
  }

 private:
  std::string Stored(int module) const {
    return codedb::ReadModuleText(project_.indexFolder, site_.model.Module(module).record->number);
  }

  /// Each module changes what is its own alone.
  void ReadModules() {
    for (int i = 0; i < static_cast<int>(site_.model.modules.size()); ++i) {
      while (work_.IsFull()) work_.FinishFirst();
      work_.Add(
          [this, i] {
            const std::string stored = Stored(i);
            ReadModule(i, WithoutAddedBreaks(stored));
            return std::size_t{0};
          },
          Rethrow);
    }
    work_.FinishAll();
  }

  static void Rethrow(const std::exception_ptr& failure) {
    if (failure) std::rethrow_exception(failure);
  }

  void ReadModule(int position, std::string_view text) {
    SiteModel& model = site_.model;
    FindAnchors(text, position, model);
    SiteModule& module = model.modules[static_cast<std::size_t>(position)];
    const CommentLines lines(text);
    for (int i = module.first; i < module.last; ++i) {
      const codedb::RoutineRecord& record = *model.Routine(i).record;
      if (record.start)
        comments_.routines[static_cast<std::size_t>(i)] = lines.OfRoutine(*record.start, record.headerLines).text;
    }
    module.description = lines.OfModule([&](codedb::Line line) {
      const auto* const first = model.routines.data() + module.first;
      const auto* const last = model.routines.data() + module.last;
      return std::any_of(first, last, [&](const SiteRoutine& routine) { return routine.record->start == line; });
    });
    ReadDeclarations(position, lines);
  }

  void ReadDeclarations(int position, const CommentLines& lines) {
    const SiteModel& model = site_.model;
    const symbols::Index number = model.Module(position).number;
    if (number == symbols::kNone) return;
    const symbols::ModuleInfo& info = model.known.Modules()[number];
    for (symbols::SymbolId symbol = info.symbol; symbol < info.endSymbol; ++symbol) {
      const symbols::Symbol& found = model.known.SymbolAt(symbol);
      const bool has = site_.declarations.Has(symbol) && !symbols::IsRoutine(found.kind) && found.line != 0;
      const std::uint32_t line = has ? model.ShownLine(number, found.line) : 0;
      if (line == 0) continue;
      std::string comment =
          lines.OfDeclaration({static_cast<std::int32_t>(line)}, found.visibility != symbols::Visibility::kLocal);
      if (comment.empty()) continue;
      comments_.declarations[static_cast<std::size_t>(position)].emplace_back(symbol, std::move(comment));
    }
  }

  void Write(std::vector<SitePage> pages) {
    for (SitePage& page : pages) Write(page.file, std::move(page.make));
  }

  /// Makes and writes a page on any thread; `told` is called on this one, in the order of the pages.
  void Write(const std::string& file, std::function<std::string()> make, std::function<void()> told = {}) {
    files_.push_back(file);
    while (work_.IsFull()) work_.FinishFirst();
    work_.Add(
        [this, file, make = std::move(make)] {
          files::WriteWholeFile(folder_ / file, make());
          return std::size_t{0};
        },
        [told = std::move(told)](const std::exception_ptr& failure) {
          Rethrow(failure);
          if (told) told();
        });
  }

  const SiteProject& project_;
  const text::CodeLook& look_;
  const std::filesystem::path& folder_;
  SiteContents site_;
  std::vector<std::string> files_;
  SearchComments comments_;
  std::optional<SiteSearch> search_;  ///< once the comments are read
  workers::OrderedWork work_;         ///< goes first: what it still does needs the rest
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
