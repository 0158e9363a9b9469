#include <quillmate/navigation/definition.h>

namespace quillmate::navigation {
namespace {

std::string SameModuleQuery(int view, std::string_view name) {
  return "SELECT td_rout.rou_start, td_rout.rou_open From td_rout "
         "WHERE (((td_rout.rou_name)='" +
         codedb::QuoteLiteral(name) + "') AND ((td_rout.mod_num)=" + std::to_string(view + 1) + "));";
}

std::string AnyModuleQuery(std::string_view name) {
  return "SELECT td_rout.rou_start, "
         "  td_rout.mod_num, "
         "  td_mod.mod_name, td_rout.rou_open"
         " FROM td_rout INNER JOIN td_mod ON td_rout.mod_num = td_mod.mod_num"
         " WHERE (((td_rout.rou_name)='" +
         codedb::QuoteLiteral(name) + "') AND ((td_rout.rou_open)<>2));";
}

long StartLine(const codedb::Recordset& routine) { return static_cast<long>(routine.Number(0).value_or(0)); }

}  // namespace

std::optional<Definition> FindDefinition(codedb::CodeDatabase& database, int view, std::string_view name) {
  codedb::Recordset own = database.OpenRecordset(SameModuleQuery(view, name));
  if (own.Next()) return Definition{view + 1, {}, StartLine(own), true};
  codedb::Recordset any = database.OpenRecordset(AnyModuleQuery(name));
  if (!any.Next()) return std::nullopt;
  return Definition{static_cast<int>(any.Number(1).value_or(0)), any.Text(2), StartLine(any), false};
}

}  // namespace quillmate::navigation
