#pragma once

#include <QPdfWriter>
#include <QString>
#include <cstddef>
#include <filesystem>
#include <vector>

#include <quillmate/navigation/code_views.h>

#include "background_job.h"
#include "code_printing.h"

namespace quillmate::ui {

/// A4, with the margins and the fine grid that all PDFs of the program have.
void SetUpPdf(QPdfWriter& writer, const QString& title);

/// A whole module for paper: without the empty lines at its end.
PrintedPart PartOfModule(navigation::CodeViews& views, codedb::ViewIndex view, const QString& title,
                         std::vector<LineMark> notes);

/// Code as PDF, put together so that any thread can make it.
struct ProjectPdf {
  struct Module {
    codedb::ViewIndex view;
    QString title;
    std::vector<LineMark> notes;
    /// 0-based; after the last one, 0 for the whole module.
    std::size_t firstLine = 0;
    std::size_t endLine = 0;
  };
  std::vector<Module> modules;
  /// Without parts and progress.
  PrintJob job;
};

/// Makes a new file from the project in `folder`, which holds `moduleCount` modules. Throws files::Failure, and what
/// the job throws, which is told how far it is.
void WriteProjectPdf(const ProjectPdf& project, const std::filesystem::path& folder, int moduleCount,
                     const std::filesystem::path& file, BackgroundJob& job);
/// The same in place of a file, which stays what it was until the new one is whole. The project is read to its end
/// first: `folder` may change while the pages are made.
void SaveAsPdf(const ProjectPdf& project, const std::filesystem::path& folder, const std::filesystem::path& target,
               BackgroundJob& job);

}  // namespace quillmate::ui
