#pragma once

#include "invocation.h"

/// The commands after `inventory`; what they need from the command line is in the invocation, the first input is
/// the command's name.
namespace quillmate::cli {

void RunInventoryScan(const Invocation& invocation);
void RunInventoryMerge(const Invocation& invocation);
void RunInventoryReport(const Invocation& invocation);

}  // namespace quillmate::cli
