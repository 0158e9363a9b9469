#pragma once

#include <string>

#include "site_model_p.h"

namespace quillmate::output {

/// The notes of a module for its page; nothing without any.
void AppendNotes(std::string& html, const SiteModel& model, int module);

}  // namespace quillmate::output
