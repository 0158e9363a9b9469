#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/codedb/notes.h>
#include <quillmate/export/cover_page.h>
#include <quillmate/export/site_project.h>
#include <quillmate/export/spreadsheet.h>
#include <quillmate/project/understanding.h>
#include <quillmate/text/code_options.h>

#include "background_job.h"
#include "hand_over_choice.h"
#include "list_source.h"
#include "project_copy.h"
#include "project_pdf.h"

namespace quillmate::ui {

/// All that handing a project over needs, gathered while the project is loaded.
struct HandOverOrder {
  HandOverChoice choice;
  /// The folder that is to be made, or the zip file.
  std::filesystem::path target;
  /// The files of the project.
  std::filesystem::path source;
  /// Name of the project, UTF-8, and when it is handed over, in words.
  std::string title;
  std::string time;
  std::shared_ptr<const project::Understanding> known;
  std::vector<codedb::Note> notes;
  /// Without folder and modules.
  output::SiteProject site;
  text::CodeLook look;
  int moduleCount = 0;
  ProjectPdf pdf;
};

/// Hands a project over, in any thread: the target is there whole, or not at all. Throws files::Failure,
/// std::runtime_error, and what the job throws.
void HandProjectOver(const HandOverOrder& order, BackgroundJob& job);

}  // namespace quillmate::ui
