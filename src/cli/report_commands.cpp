#include <quillmate/codedb/records.h>
#include <quillmate/export/outline.h>
#include <quillmate/navigation/project_tree.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "commands.h"
#include "module_list.h"
#include "modules_exact.h"
#include "output.h"
#include "project_input.h"
#include "run_options.h"

namespace quillmate::cli {
namespace {

std::vector<output::OutlineNode> OutlineNodes(codedb::CodeDatabase& database) {
  navigation::ProjectTree tree;
  navigation::FillModuleNodes(database, tree);
  navigation::FillRoutineNodes(database, tree);
  std::vector<output::OutlineNode> nodes;
  nodes.reserve(tree.nodes.size());
  for (navigation::TreeNode& node : tree.nodes) {
    nodes.push_back({std::move(node.text), node.parent});
  }
  return nodes;
}

}  // namespace

void RunModules(const Invocation& invocation) {
  if (invocation.exact) return RunModulesExact(invocation);
  ProjectInput input(invocation, RunOptions(invocation));
  const auto modules = input.Database().ReadIndex();
  WriteWhole(invocation.output,
             invocation.json ? ModuleJson(modules, Provenance(input.Folder())) : ModuleTable(modules));
}

void RunOutline(const Invocation& invocation) {
  if (invocation.exact) return RunOutlineExact(invocation);
  ProjectInput input(invocation, RunOptions(invocation));
  const std::string outline = output::BuildOutline(OutlineNodes(input.Database()));
  WriteWhole(invocation.output, text::Utf8FromCode(text::ReplaceAll(outline, text::kLineBreak, "\n")));
}

}  // namespace quillmate::cli
