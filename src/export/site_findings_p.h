#pragma once

#include <string>
#include <vector>

#include "site_contents_p.h"
#include "site_page_p.h"

/// What the checks of the program find, for a module and for all of them.
namespace quillmate::output {

/// An overview by check, then the places of each check; on pages of their own where there are many.
std::vector<SitePage> FindingPages(const SiteContents& site);

/// The section of a module's page; nothing without findings.
void AppendFindings(std::string& html, const SiteContents& site, int module);

}  // namespace quillmate::output
