#pragma once

#include <string>
#include <string_view>

#include "site_links_p.h"

/// The pages of a site, whole.
namespace quillmate::output {

inline constexpr const char* kStartFile = "index.html";
inline constexpr const char* kRoutinesFile = "routinen.html";
inline constexpr const char* kUnusedFile = "unbenutzt.html";

/// What is before and after the content of a page. `title` is escaped; `file` tells which link of the navigation
/// is the page itself.
std::string PageHead(const SiteModel& model, std::string_view title, std::string_view file);
inline constexpr std::string_view kPageEnd = "</main>\n</body>\n</html>\n";

std::string StartPage(const SiteModel& model);
std::string RoutinesPage(const SiteModel& model);
std::string UnusedPage(const SiteModel& model);
/// `markedText` is without the line breaks that storing has added.
std::string ModulePage(const SiteModel& model, int module, std::string_view markedText);

}  // namespace quillmate::output
