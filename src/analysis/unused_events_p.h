#pragma once

#include <string_view>

namespace quillmate::analysis {

/// True when the host calls a Sub of that name in a module of that kind (`mod_typ`): an event handler of the module's
/// own object or, where a module may have controls, of one of them; a start-up macro. Case does not count.
bool IsCalledByHost(std::string_view name, int moduleKind);

}  // namespace quillmate::analysis
