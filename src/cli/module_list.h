#pragma once

#include <string>
#include <vector>

#include <quillmate/codedb/records.h>

#include "provenance.h"

/// The index as a list for people and as JSON, UTF-8 with LF, modules and routines in the order given.
namespace quillmate::cli {

std::string ModuleJson(const std::vector<codedb::ModuleRecord>& modules, const Provenance& provenance);
std::string ModuleTable(const std::vector<codedb::ModuleRecord>& modules);

}  // namespace quillmate::cli
