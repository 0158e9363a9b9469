#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "site_contents_p.h"

/// The pages of a site, whole.
namespace quillmate::output {

inline constexpr const char* kStartFile = "index.html";
inline constexpr const char* kRoutinesFile = "routinen.html";
inline constexpr const char* kUnusedFile = "unbenutzt.html";

/// A page that is made when its turn comes, on any thread.
struct SitePage {
  std::string file;
  std::function<std::string()> make;
};

/// What is before and after the content of a page. `title` is escaped; `file` tells which link of the navigation
/// is the page itself or, for one of several pages of a list, leads to its first one.
std::string PageHead(const SiteModel& model, std::string_view title, std::string_view file, bool isPart = false);
inline constexpr std::string_view kPageEnd = "</main>\n</body>\n</html>\n";

std::string StartPage(const SiteModel& model);
/// Lists, the first page with the name above. Each page is made on any thread.
std::vector<SitePage> RoutinePages(const SiteModel& model);
std::vector<SitePage> UnusedPages(const SiteModel& model);
/// `markedText` is without the line breaks that storing has added.
std::string ModulePage(const SiteContents& site, int module, std::string_view markedText);

}  // namespace quillmate::output
