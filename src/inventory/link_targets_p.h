#pragma once

#include <quillmate/inventory/content.h>
#include <quillmate/inventory/link_target.h>

#include "sqlite_p.h"

namespace quillmate::inventory {

/// Whether a reference leads to a file that could be in an inventory: projects, and libraries that are not at the
/// system's usual places.
bool IsLookedFor(const ReferenceRow& reference);

/// Fills the table `zieldatei` anew: schema.h tells what is in it. Time and memory are linear in files and links.
/// Within a transaction.
void FindTargets(Database& database);

}  // namespace quillmate::inventory
