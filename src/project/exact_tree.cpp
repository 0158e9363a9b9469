#include <algorithm>
#include <string>
#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/collation.h>
#include <quillmate/project/exact_tree.h>
#include <quillmate/symbols/exact_routines.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::project {

ExactTree MakeExactTree(const Understanding& understanding, const navigation::ProjectTree& modules) {
  ExactTree made;
  for (const navigation::TreeNode& node : modules.nodes) {
    if (node.parent < 0) made.tree.Add(node);
  }
  made.lines.resize(made.tree.nodes.size());
  codedb::RoutineNumber number;
  for (int parent = 0; parent < made.tree.moduleCount; ++parent) {
    const codedb::ModuleNumber module = made.tree.nodes[static_cast<std::size_t>(parent)].module;
    const symbols::Index known = understanding.ModuleOf(codedb::ViewOf(module));
    if (known == symbols::kNone) continue;
    const language::Module& code = understanding.Index().Code(known);
    std::vector<std::pair<std::string, symbols::ExactRoutine>> routines;
    for (const symbols::ExactRoutine& routine : symbols::ExactRoutines(code)) {
      routines.emplace_back(symbols::ExactName(code, routine), routine);
    }
    std::ranges::stable_sort(routines,
                             [](const auto& a, const auto& b) { return codedb::CompareText(a.first, b.first) < 0; });
    for (const auto& [name, routine] : routines) {
      const language::Declaration& declaration = code.declarations[routine.declaration];
      ++number.value;
      made.tree.Add({module, number, text::CodeFromUtf8(name),
                     codedb::RoutineImageKey(symbols::IndexKind(declaration.kind),
                                             symbols::IndexVisibility(declaration.visibility)),
                     parent});
      made.lines.push_back({static_cast<std::int32_t>(understanding.ShownLine(known, routine.first))});
    }
  }
  return made;
}

}  // namespace quillmate::project
