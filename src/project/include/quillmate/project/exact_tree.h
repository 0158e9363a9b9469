#pragma once

#include <vector>

#include <quillmate/navigation/project_tree.h>
#include <quillmate/project/understanding.h>

namespace quillmate::project {

/// A project tree with the modules of another one and the routines of the code, by name. Its routine numbers count on
/// from 1 and are not those of the index. `lines` holds the first line of each node in its view, 0 for modules.
struct ExactTree {
  navigation::ProjectTree tree;
  std::vector<codedb::Line> lines;
};
ExactTree MakeExactTree(const Understanding& understanding, const navigation::ProjectTree& modules);

}  // namespace quillmate::project
