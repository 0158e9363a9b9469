#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "site_contents_p.h"
#include "site_page_p.h"

/// Pages of a site: the first one, lists of routines, modules.
namespace quillmate::output {

std::string StartPage(const SiteModel& model);
/// Lists, the first page with the name above. Each page is made on any thread.
std::vector<SitePage> RoutinePages(const SiteModel& model);
std::vector<SitePage> UnusedPages(const SiteModel& model);
/// `markedText` is without the line breaks that storing has added.
std::string ModulePage(const SiteContents& site, int module, std::string_view markedText);

}  // namespace quillmate::output
