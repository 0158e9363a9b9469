#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include <quillmate/codedb/code_database.h>

namespace quillmate::navigation {

struct TreeNode {
  /// The module that the node is or belongs to; 0 for a project's node.
  codedb::ModuleNumber module;
  /// 0 for a node that is no routine's.
  codedb::RoutineNumber routine;
  /// Windows-1252.
  std::string text;
  /// Image key.
  std::string image;
  /// Index of the parent node in `ProjectTree::nodes`, which comes before it; -1 for a node at the top: a module, or a
  /// project with the modules below it.
  int parent = -1;
};

/// The project tree `treProjekt` as plain data, nodes in the order in which they were added: all modules by kind and
/// name, then all routines by module and name.
struct ProjectTree {
  std::vector<TreeNode> nodes;
  int moduleCount = 0;

  /// Index of the first node of a module or routine; -1 when there is none.
  int Find(codedb::ModuleNumber module) const;
  int Find(codedb::RoutineNumber routine) const;
  /// The node for the same module or routine as one of another tree without projects.
  int Find(const TreeNode& other) const { return other.parent < 0 ? Find(other.module) : Find(other.routine); }
  bool IsProject(int node) const { return nodes[static_cast<std::size_t>(node)].module.value == 0; }
  bool IsModule(int node) const;
  /// The module that a node is or is in; -1 for a project.
  int ModuleOf(int node) const;
  /// Adds the node of a module or routine and returns its index.
  int Add(TreeNode node);
  /// Adds any other node, which nobody has to find.
  int AddPlain(TreeNode node);

 private:
  std::unordered_map<codedb::ModuleNumber, int> modules_;
  std::unordered_map<codedb::RoutineNumber, int> routines_;
};

/// The two fills. Throw files::Failure.
void FillModuleNodes(codedb::CodeDatabase& database, ProjectTree& tree);
void FillRoutineNodes(codedb::CodeDatabase& database, ProjectTree& tree);

/// The start line of each node of a tree that is filled; 0 for modules, and where the index has none. Throws
/// files::Failure.
std::vector<codedb::Line> StartLines(codedb::CodeDatabase& database, const ProjectTree& tree);

}  // namespace quillmate::navigation
