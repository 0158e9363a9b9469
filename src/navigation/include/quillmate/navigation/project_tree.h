#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include <quillmate/codedb/code_database.h>

namespace quillmate::navigation {

struct TreeNode {
  /// "M" + `mod_num` or "R" + `rou_num`.
  std::string key;
  /// Windows-1252.
  std::string text;
  std::string image;
  /// Index of the parent node in `ProjectTree::nodes`; -1 for a module.
  int parent = -1;
};

/// The project tree `treProjekt` as plain data, nodes in the order in which they were added: all modules by kind and
/// name, then all routines by module and name.
struct ProjectTree {
  std::vector<TreeNode> nodes;
  int moduleCount = 0;

  /// Index of the node with that key; -1 when there is none.
  int Find(const std::string& key) const;

  std::unordered_map<std::string, int> byKey;
};

/// The two fills. Throw codedb::DatabaseError.
void FillModuleNodes(codedb::CodeDatabase& database, ProjectTree& tree);
void FillRoutineNodes(codedb::CodeDatabase& database, ProjectTree& tree);

/// The 1-based start line of each node of a tree that is filled; 0 for modules, and where the index has none. Throws
/// codedb::DatabaseError.
std::vector<long> StartLines(codedb::CodeDatabase& database, const ProjectTree& tree);

/// 1-based start line of a routine; 0 when the index has no such routine or no line for it.
long RoutineStartLine(codedb::CodeDatabase& database, long routineNumber);

}  // namespace quillmate::navigation
