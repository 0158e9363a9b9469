#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/host/host_automation.h>

namespace quillmate::host {

/// Everything that the first `projects` projects of a host's listing hold, every module with its code, those of one or
/// two lines too. Locked projects are left out, and modules that can't be read: `problems` gets a German line for each,
/// UTF-8. They are among the facts' omissions too, with what the listing had to leave out. `step` is called before each
/// module, which counts from 0; what it throws ends the collecting.
codedb::Facts CollectFacts(HostAutomation& host, int projects, std::vector<std::string>& problems,
                           const std::function<void(std::size_t)>& step = {});

}  // namespace quillmate::host
