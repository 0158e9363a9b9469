#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/navigation/project_tree.h>

namespace quillmate::navigation {
namespace {

constexpr int kNone = -1;

template <typename Number>
int FindIn(const std::unordered_map<Number, int>& nodes, Number number) {
  const auto found = nodes.find(number);
  return found == nodes.end() ? kNone : found->second;
}

}  // namespace

int ProjectTree::Find(codedb::ModuleNumber module) const { return FindIn(modules_, module); }
int ProjectTree::Find(codedb::RoutineNumber routine) const { return FindIn(routines_, routine); }

bool ProjectTree::IsModule(int node) const {
  const int parent = nodes[static_cast<std::size_t>(node)].parent;
  return !IsProject(node) && (parent == kNone || IsProject(parent));
}

int ProjectTree::ModuleOf(int node) const {
  while (node != kNone && !IsModule(node)) node = nodes[static_cast<std::size_t>(node)].parent;
  return node;
}

int ProjectTree::AddPlain(TreeNode node) {
  nodes.push_back(std::move(node));
  return static_cast<int>(nodes.size()) - 1;
}

int ProjectTree::Add(TreeNode node) {
  const int index = AddPlain(std::move(node));
  const TreeNode& added = nodes.back();
  if (IsModule(index)) {
    modules_.emplace(added.module, index);
    ++moduleCount;
  } else {
    routines_.emplace(added.routine, index);
  }
  return index;
}

void FillModuleNodes(codedb::CodeDatabase& database, ProjectTree& tree) {
  tree = {};
  for (codedb::ModuleRecord& module : database.TreeModules()) {
    tree.Add({module.number, {}, std::move(module.name), codedb::ModuleImageKey(module.kind), kNone});
  }
}

void FillRoutineNodes(codedb::CodeDatabase& database, ProjectTree& tree) {
  database.TreeRoutines([&](codedb::RoutineRecord&& routine) {
    const int parent = tree.Find(routine.module);
    if (parent == kNone)
      throw files::Failure(codedb::DatabaseReason::kNoModule, {}, {codedb::ModuleKey(routine.module)});
    tree.Add({routine.module, routine.number, std::move(routine.name),
              codedb::RoutineImageKey(routine.kind, routine.visibility), parent});
  });
}

std::vector<codedb::Line> StartLines(codedb::CodeDatabase& database, const ProjectTree& tree) {
  std::vector<codedb::Line> lines(tree.nodes.size());
  database.Starts([&](codedb::RoutineNumber routine, codedb::Line start) {
    const int node = tree.Find(routine);
    if (node != kNone) lines[static_cast<std::size_t>(node)] = start;
  });
  return lines;
}

}  // namespace quillmate::navigation
