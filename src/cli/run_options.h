#pragma once

#include <quillmate/analysis/scanner.h>
#include <quillmate/export/html.h>
#include <quillmate/export/rtf.h>
#include <quillmate/export/site.h>
#include <quillmate/settings/options.h>

#include "command_line.h"

namespace quillmate::cli {

/// The settings of this run: the defaults or, when asked for, the user's stored ones, with the single settings of the
/// command line on top. The user's settings are only read.
settings::Options RunOptions(const Invocation& invocation);

analysis::ScanOptions ScanOptionsOf(const settings::Options& options);
output::RtfOptions RtfOptionsOf(const settings::Options& options);
output::HtmlOptions HtmlOptionsOf(const settings::Options& options);
output::SiteStyle SiteStyleOf(const settings::Options& options);

}  // namespace quillmate::cli
