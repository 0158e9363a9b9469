#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "site_model_p.h"

/// A search over names and comments that needs no server: a page with a field, and a script that holds the entries and
/// looks through them. Without scripts the page says where else names stand.
namespace quillmate::output {

inline constexpr const char* kSearchFile = "suche.html";
inline constexpr const char* kSearchScript = "suche.js";

std::string SearchPage(const SiteModel& model);

/// The script. `comments`: what each routine says about itself, by position in the model, plain UTF-8. Modules and
/// routines in the order of the model.
std::string SearchScript(const SiteModel& model, const std::vector<std::string>& comments);

}  // namespace quillmate::output
