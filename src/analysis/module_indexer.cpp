#include <cstdint>
#include <limits>
#include <utility>

#include <quillmate/analysis/module_indexer.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::analysis {
namespace {

/// A single-row INSERT: every value is a quoted literal with a name of its own.
class InsertStatement {
 public:
  explicit InsertStatement(std::string_view into) : text_(into) { text_ += "SELECT "; }

  InsertStatement& Value(std::string_view value) {
    if (count_ > 0) text_ += ", ";
    text_.append("'").append(codedb::QuoteLiteral(value)).append("' AS AX").append(std::to_string(++count_));
    return *this;
  }
  InsertStatement& Value(std::int64_t value) { return Value(std::to_string(value)); }

  const std::string& Text() const noexcept { return text_; }

 private:
  std::string text_;
  int count_ = 0;
};

void InsertRoutine(codedb::CodeDatabase& database, const ScannedRoutine& routine, int moduleNumber) {
  InsertStatement statement("INSERT INTO td_rout(rou_typ,rou_open,anz_dec_zeilen,rou_name,rou_num,mod_num) ");
  statement.Value(routine.kind).Value(routine.visibility).Value(routine.headerLines).Value(routine.name);
  statement.Value(routine.number).Value(moduleNumber);
  database.ExecuteSql(statement.Text());
}

void UpdateLine(codedb::CodeDatabase& database, const RoutineLine& line) {
  database.ExecuteSql(
      (line.isStart ? "UPDATE td_rout SET td_rout.rou_start =" : "UPDATE td_rout SET td_rout.rou_ende =") +
      std::to_string(line.line) + " WHERE (([rou_num]=" + std::to_string(line.routine) + "));");
}

void UpdateDeclareEnds(codedb::CodeDatabase& database, int moduleNumber) {
  database.ExecuteSql(
      "UPDATE td_rout SET td_rout.rou_ende = [rou_start]+([anz_dec_zeilen]-1)"
      " WHERE (([rou_typ]>10) And (mod_num=" +
      std::to_string(moduleNumber) + "));");
}

void InsertModule(codedb::CodeDatabase& database, const ReadState& state, std::int64_t lineCount) {
  InsertStatement statement("INSERT INTO td_mod(mod_num,mod_name,mod_typ,mod_zeilen) ");
  statement.Value(state.moduleNumber).Value(state.moduleName).Value(state.moduleKind).Value(lineCount);
  database.ExecuteSql(statement.Text());
}

/// A header's lines are counted in 16 bits.
void CheckFits(const ScanResult& scan) {
  for (const ScannedRoutine& routine : scan.routines) {
    if (routine.headerLines <= std::numeric_limits<std::int16_t>::max()) continue;
    throw ModuleError("Der Kopf der Routine \"" + text::Utf8FromCode(routine.name.substr(0, 40)) + "\" hat " +
                      std::to_string(routine.headerLines) + " Zeilen, das sind zu viele");
  }
}

}  // namespace

void ScanModule(codedb::CodeDatabase& database, const std::filesystem::path& folder, ReadState& state,
                std::string_view code, const ScanOptions& options) {
  const ScanResult scan = ScanForIndex(code, options, state.routineCounter);
  CheckFits(scan);
  state.routineCounter = scan.routineCounter;
  for (const ScannedRoutine& routine : scan.routines) InsertRoutine(database, routine, state.moduleNumber);
  for (const RoutineLine& line : scan.lines) UpdateLine(database, line);
  UpdateDeclareEnds(database, state.moduleNumber);
  InsertModule(database, state, scan.lineCount);
  codedb::WriteModuleText(folder, state.moduleNumber, scan.markedText);
}

}  // namespace quillmate::analysis
