#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "site_model_p.h"

/// What all pages of a site have in common.
namespace quillmate::output {

// The pages that each page leads to, in this order.
inline constexpr const char* kStartFile = "index.html";
inline constexpr const char* kRoutinesFile = "routinen.html";
inline constexpr const char* kDeclarationsFile = "deklarationen.html";
inline constexpr const char* kUnusedFile = "unbenutzt.html";
inline constexpr const char* kDependenciesFile = "abhaengigkeiten.html";
inline constexpr const char* kTreesFile = "aufrufe.html";
inline constexpr const char* kFindingsFile = "befunde.html";
inline constexpr const char* kMetricsFile = "kennzahlen.html";
inline constexpr const char* kSearchFile = "suche.html";

/// A page that is made when its turn comes, on any thread.
struct SitePage {
  std::string file;
  std::function<std::string()> make;
};

/// What is before and after the content of a page. `title` is escaped; `file` tells which link of the navigation
/// is the page itself or, for one of several pages of a list, leads to its first one.
std::string PageHead(const SiteModel& model, std::string_view title, std::string_view file, bool isPart = false);
inline constexpr std::string_view kPageEnd = "</main>\n</body>\n</html>\n";

}  // namespace quillmate::output
