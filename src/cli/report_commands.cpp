#include <quillmate/checks/checks.h>
#include <quillmate/checks/metrics.h>
#include <quillmate/codedb/records.h>
#include <quillmate/export/digest.h>
#include <quillmate/navigation/project_tree.h>
#include <quillmate/text/windows1252.h>

#include "commands.h"
#include "module_list.h"
#include "outline_text.h"
#include "output.h"
#include "project_input.h"
#include "provenance.h"
#include "run_options.h"
#include "understanding.h"

namespace quillmate::cli {
namespace {

/// As the tree has them.
std::vector<OutlineModule> OutlineModules(ProjectInput& input) {
  navigation::ProjectTree tree;
  navigation::FillModuleNodes(input.Database(), tree);
  navigation::FillRoutineNodes(input.Database(), tree);
  const Provenance provenance(input.Folder());
  std::vector<OutlineModule> modules;
  std::vector<std::size_t> places(tree.nodes.size());
  for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
    const navigation::TreeNode& node = tree.nodes[i];
    std::string name = text::Utf8FromCode(node.text);
    if (node.parent < 0) {
      places[i] = modules.size();
      modules.push_back({provenance.Heading(node.module), node.module.value, std::move(name), {}});
    } else {
      modules[places[static_cast<std::size_t>(node.parent)]].routines.push_back(std::move(name));
    }
  }
  return modules;
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
  WriteWhole(invocation.output, OutlineText(OutlineModules(input)));
}

void RunDigest(const Invocation& invocation) {
  constexpr std::size_t kKilobyte = 1000;
  output::DigestOptions options;
  if (invocation.limit) options.limit = *invocation.limit * kKilobyte;
  options.title = TitleOf(invocation);
  const symbols::ReferenceIndex index = ReadUnderstanding(invocation);
  WriteWhole(invocation.output,
             output::ProjectDigest(index, checks::Measure(index), checks::RunChecks(index), options));
}

}  // namespace quillmate::cli
