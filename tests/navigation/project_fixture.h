#pragma once

#include <string>

#include <gtest/gtest.h>

#include <quillmate/codedb/codes.h>
#include <quillmate/navigation/project_tree.h>

#include "codedb/scratch.h"

namespace quillmate::navigation {

/// A fresh project folder with an empty index, open.
class Project : public testing::Test, protected codedb::FreshIndex {
 protected:
  /// A routine with its lines.
  void Add(int number, int module, const std::string& name, int start, int end, const std::string& kind = "1",
           const std::string& visibility = "1") {
    AddRoutine(number, module, name, kind, visibility);
    SetSpan(number, start, end);
  }
  void Write(int module, std::string_view text) const { codedb::WriteModuleText(folder.Path(), {module}, text); }
};

inline std::string Describe(const ProjectTree& tree) {
  std::string lines;
  for (const TreeNode& node : tree.nodes) {
    lines += (node.parent < 0 ? codedb::ModuleKey(node.module) : codedb::RoutineKey(node.routine)) + " " + node.text +
             " " + node.image + " " + std::to_string(node.parent) + "\n";
  }
  return lines;
}

}  // namespace quillmate::navigation
