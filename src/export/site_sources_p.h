#pragma once

#include <string>

#include "site_model_p.h"

/// Where the code of a site comes from, and what is missing.
namespace quillmate::output {

/// The cell of a module's project for lists of modules, and the head of their column; both empty unless there are
/// several projects.
std::string ProjectCell(const SiteModel& model, const SiteModule& module);
std::string ProjectHead(const SiteModel& model);

/// Tables of what the documents say of themselves and of what could not be read; none where there is nothing to tell.
void AppendSources(std::string& html, const SiteModel& model);

}  // namespace quillmate::output
