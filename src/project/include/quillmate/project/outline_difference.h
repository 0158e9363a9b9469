#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <quillmate/codedb/records.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/symbols/reference_index.h>

/// How the routines of the code differ from those of the index, which a walk over the lines has found.
namespace quillmate::project {

/// How the routines of a module differ.
struct OutlineDifference {
  codedb::ModuleNumber module;
  int missing = 0;   ///< the code has them, the index has not
  int invented = 0;  ///< the other way round
  int shifted = 0;   ///< begin or end elsewhere
};

/// "Gliederung abweichend: 3 Routinen nicht erkannt, 1 Routine mit anderem Umfang"; UTF-8.
std::string DifferenceText(const OutlineDifference& difference);

/// The modules that differ, in the order of `records`, which are those of the index with their routines. `places` are
/// those of the modules of `index`.
std::vector<OutlineDifference> CompareOutlines(const symbols::ReferenceIndex& index,
                                               const std::vector<symbols::ModulePlaces>& places,
                                               const std::vector<codedb::ModuleRecord>& records);

}  // namespace quillmate::project
