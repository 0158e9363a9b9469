#pragma once

#include <string>
#include <vector>

#include "site_contents_p.h"
#include "site_page_p.h"

/// Sizes, branching and coupling.
namespace quillmate::output {

/// What the numbers mean, the routines that stand out, and the numbers of all modules.
std::vector<SitePage> MetricPages(const SiteContents& site);

/// The section of a module's page; nothing without routines.
void AppendMetrics(std::string& html, const SiteContents& site, int module);

}  // namespace quillmate::output
