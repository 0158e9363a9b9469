#pragma once

#include <string>
#include <vector>

#include "site_contents_p.h"
#include "site_page_p.h"

/// Pictures of who calls whom.
namespace quillmate::output {

/// Trees to unfold: from each routine that no other calls, what it calls, what that calls and so on, kDeepest levels.
/// A routine is unfolded once in each tree; after the first nodes, once in all of them, so that the size stays
/// linear.
inline constexpr int kDeepest = 8;
std::vector<SitePage> TreePages(const SiteContents& site);

/// A routine with its callers on the left and what it calls on the right, each a link; nothing where there are neither.
void AppendNeighbours(std::string& html, const SiteContents& site, int routine);

}  // namespace quillmate::output
