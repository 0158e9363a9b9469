#pragma once

#include <QPdfWriter>
#include <QString>
#include <filesystem>
#include <functional>
#include <vector>

#include <quillmate/navigation/code_views.h>

#include "code_printing.h"

namespace quillmate::ui {

/// A4, with the margins and the fine grid that all PDFs of the program have.
void SetUpPdf(QPdfWriter& writer, const QString& title);

/// A whole module for paper: without the empty lines at its end.
PrintedPart PartOfModule(navigation::CodeViews& views, codedb::ViewIndex view, const QString& title,
                         std::vector<LineMark> notes);

/// A whole project as PDF, put together so that any thread can make it.
struct ProjectPdf {
  struct Module {
    codedb::ViewIndex view;
    QString title;
    std::vector<LineMark> notes;
  };
  std::vector<Module> modules;
  /// Without parts and progress.
  PrintJob job;
};

/// Makes a new file from the project in `folder`, which holds `moduleCount` modules. False when `progress` ended it.
/// Throws files::Failure.
bool WriteProjectPdf(const ProjectPdf& project, const std::filesystem::path& folder, int moduleCount,
                     const std::filesystem::path& file, std::function<bool(int page, int pages)> progress);

}  // namespace quillmate::ui
