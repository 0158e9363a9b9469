#include <quillmate/navigation/project_tree.h>

namespace quillmate::navigation {
namespace {

constexpr std::string_view kModules =
    "SELECT td_Mod.mod_typ, "
    "  td_Mod.mod_name, "
    "  td_Mod.mod_num"
    " FROM td_Mod"
    " ORDER BY td_Mod.mod_typ, "
    "  td_Mod.mod_name;";

constexpr std::string_view kRoutines =
    "SELECT 'M' & [mod_num] AS mnum, "
    "  'R' & [rou_num] AS rnum, "
    "  td_rout.rou_name, "
    "  'R' & [rou_typ] & 'O' & [rou_open] AS iflag"
    " FROM td_rout"
    " ORDER BY td_rout.mod_num, "
    "  td_rout.rou_name;";

constexpr std::string_view kStartLines =
    "SELECT 'R' & [rou_num] AS rnum, "
    "  td_rout.rou_start"
    " FROM td_rout;";

constexpr int kTop = -1;

void AddNode(ProjectTree& tree, TreeNode node) {
  tree.byKey.emplace(node.key, static_cast<int>(tree.nodes.size()));
  tree.nodes.push_back(std::move(node));
}

std::string StartLineQuery(long routineNumber) {
  return "SELECT td_rout.rou_start, "
         "  td_rout.rou_num"
         " FROM td_rout"
         " WHERE (((td_rout.rou_num)=" +
         std::to_string(routineNumber) + "));";
}

}  // namespace

int ProjectTree::Find(const std::string& key) const {
  const auto found = byKey.find(key);
  return found == byKey.end() ? kTop : found->second;
}

void FillModuleNodes(codedb::CodeDatabase& database, ProjectTree& tree) {
  codedb::Recordset modules = database.OpenRecordset(kModules);
  tree = {};
  while (modules.Next()) {
    AddNode(tree, {"M" + modules.Text(2), modules.Text(1), "M" + modules.Text(0), kTop});
    ++tree.moduleCount;
  }
}

void FillRoutineNodes(codedb::CodeDatabase& database, ProjectTree& tree) {
  codedb::Recordset routines = database.OpenRecordset(kRoutines);
  while (routines.Next()) {
    const std::string module = routines.Text(0);
    const int parent = tree.Find(module);
    if (parent < 0) throw codedb::DatabaseError("Das Modul " + module + " fehlt im Projekt.");
    AddNode(tree, {routines.Text(1), routines.Text(2), routines.Text(3), parent});
  }
}

std::vector<long> StartLines(codedb::CodeDatabase& database, const ProjectTree& tree) {
  std::vector<long> lines(tree.nodes.size(), 0);
  codedb::Recordset routines = database.OpenRecordset(kStartLines);
  while (routines.Next()) {
    const int node = tree.Find(routines.Text(0));
    if (node >= 0) lines[static_cast<std::size_t>(node)] = static_cast<long>(routines.Number(1).value_or(0));
  }
  return lines;
}

long RoutineStartLine(codedb::CodeDatabase& database, long routineNumber) {
  codedb::Recordset routine = database.OpenRecordset(StartLineQuery(routineNumber));
  return routine.Next() ? static_cast<long>(routine.Number(0).value_or(0)) : 0;
}

}  // namespace quillmate::navigation
