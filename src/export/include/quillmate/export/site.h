#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include <quillmate/export/site_project.h>
#include <quillmate/files/replacement.h>
#include <quillmate/text/code_options.h>

/// The documentation of a project as a folder of linked pages: HTML5 in German, UTF-8 with LF, without anything
/// from a network; only the search has a script.
///
///   index.html          the modules with kind, lines, routines and what they say about themselves; totals
///   routinen.html       all routines from A to Z
///   deklarationen.html  everything that is declared, by project and kind, with every line that uses it
///   unbenutzt.html      the routines that nothing surely calls, with their grades
///   abhaengigkeiten.html  which module calls routines of which others, as a matrix and as a list, cycles marked
///   aufrufe.html        what runs from each routine that no other calls, as trees to unfold
///   befunde.html        what the checks find, by check
///   kennzahlen.html     the numbers of all modules and of the routines that stand out
///   suche.html, suche.js  a search over names and comments
///   modul-<name>.html   a module: each routine with header, comment, callers and calls; the coloured code
///   stil.css            colours and layout, light, dark and for print
///   quillmate-site.txt  a line that names its kind, then the names of all other files: what the program may replace
///
/// Lists that are too long for one page go on in others, whose names begin alike and tell the kind or the letter.
///
/// Anchors of a module's page: "z" + line (1-based, of the stored text), "r-" + routine for what is told about it, "c-"
/// + routine for its code. Names in files and anchors are ASCII and unique regardless of case. The same project gives
/// the same bytes.
///
/// Names in the code lead to the declarations that they mean, callers and calls are told with their lines, possible
/// ones apart: all of it as the understanding of the project binds it.
namespace quillmate::output {

/// Told about each module page that is written, `done` from 1.
using SiteProgress = std::function<void(std::size_t done, std::size_t total)>;

inline constexpr const char* kSiteListFile = "quillmate-site.txt";

/// Writes all files into an existing folder. Of the look the colours and the bold lines count, of the colours 24 bits;
/// on dark ground they are made light enough to be read. Linear in the size of the project; pages are made on all
/// cores, a few at a time. Throws files::Failure and what `progress` throws.
void WriteSite(const SiteProject& project, const text::CodeLook& look, const std::filesystem::path& folder,
               const SiteProgress& progress = {});

/// A site that is being written into a folder, whose earlier site it replaces; other files there stay. Failures are
/// files::Failure, also for a place that is not to be overwritten.
class SiteFolder {
 public:
  /// A target that exists must be a folder: an empty one, an earlier site or, with `force`, any other.
  SiteFolder(const std::filesystem::path& target, bool force);

  /// Where the site is to be written.
  const std::filesystem::path& Path() const noexcept { return folder_->Path(); }
  /// The full paths of what Commit replaces or removes, known once the site is whole.
  std::vector<std::filesystem::path> Replaced() const;
  /// A file that is no page of the earlier site but has a name of the new one makes it fail unless `force` was given.
  void Commit();

 private:
  std::vector<std::filesystem::path> OwnNames() const;

  bool force_;
  std::unique_ptr<files::FolderReplacement> folder_;
};

/// All steps in one.
void ExportSite(const SiteProject& project, const text::CodeLook& look, const std::filesystem::path& target, bool force,
                const SiteProgress& progress = {});

}  // namespace quillmate::output
