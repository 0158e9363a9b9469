#pragma once

#include <quillmate/codedb/facts.h>
#include <quillmate/inventory/content.h>

namespace quillmate::inventory {

/// Fills in what the understanding of the code tells: modules, routines, findings, Declares.
void TakeCode(codedb::Facts facts, Content& content);

}  // namespace quillmate::inventory
