#pragma once

#include <string>

#include "site_contents_p.h"

namespace quillmate::output {

/// The section of a module's page for the controls of its form, sheet or document: kind, caption, the routines that
/// handle their events, and how often the code uses them. Nothing without controls.
void AppendControls(std::string& html, const SiteContents& site, int module);

}  // namespace quillmate::output
