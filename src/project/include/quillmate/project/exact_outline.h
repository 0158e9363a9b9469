#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <quillmate/codedb/records.h>
#include <quillmate/navigation/project_tree.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/symbols/reference_index.h>

/// The routines of a project as the code has them, beside those of the index, which a walk over the lines has found.
namespace quillmate::project {

class Understanding;

/// How the routines of a module differ.
struct OutlineDifference {
  codedb::ModuleNumber module;
  int missing = 0;   ///< the code has them, the index has not
  int invented = 0;  ///< the other way round
  int shifted = 0;   ///< begin or end elsewhere
};

/// "Gliederung abweichend: 3 Routinen nicht erkannt, 1 mit anderem Umfang"; UTF-8.
std::string DifferenceText(const OutlineDifference& difference);

/// The modules that differ, in the order of `records`, which are those of the index with their routines. `places` are
/// those of the modules of `index`.
std::vector<OutlineDifference> CompareOutlines(const symbols::ReferenceIndex& index,
                                               const std::vector<symbols::ModulePlaces>& places,
                                               const std::vector<codedb::ModuleRecord>& records);

/// A project tree with the modules of another one and the routines of the code, by name. Its routine numbers count on
/// from 1 and are not those of the index. `lines` holds the first line of each node in its view, 0 for modules.
struct ExactTree {
  navigation::ProjectTree tree;
  std::vector<codedb::Line> lines;
};
ExactTree MakeExactTree(const Understanding& understanding, const navigation::ProjectTree& modules);

}  // namespace quillmate::project
