#pragma once

#include <vector>

#include <quillmate/navigation/project_tree.h>
#include <quillmate/project/understanding.h>

namespace quillmate::project {

/// A project tree in which the modules hold their constants, variables, types, enums, events and controls, too, in this
/// order after the routines, and types and enums their members. Several projects come above their modules.
struct DeclarationTree {
  navigation::ProjectTree tree;
  /// For each node: its first line in the module's view, 0 for none; its declaration, kNone for modules, routines and
  /// projects.
  std::vector<codedb::Line> lines;
  std::vector<symbols::SymbolId> declarations;
};

/// `base`: modules with routines, and the first line of each node. What is known of a routine's inside stays there:
/// local names are not shown.
DeclarationTree MakeDeclarationTree(const Understanding& understanding, const navigation::ProjectTree& base,
                                    const std::vector<codedb::Line>& lines);

}  // namespace quillmate::project
