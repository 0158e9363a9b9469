#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <quillmate/codedb/database_reason.h>
#include <quillmate/codedb/jet_sql.h>
#include <quillmate/codedb/records.h>

/// The index of one project: a SQLite file that takes the statements of the Jet dialect.
///
/// Tables (made once in the template, never by the program):
///   td_mod  (mod_num 32 bit key, mod_name text, mod_typ 16 bit, mod_zeilen 32 bit)
///   td_rout (rou_num 32 bit key, mod_num 32 bit, rou_name text, rou_typ 16 bit, rou_open 16 bit,
///            anz_dec_zeilen 16 bit, rou_start 32 bit, rou_ende 32 bit)
/// Text compares and sorts as collation.h says. Values may be given as text; what is no whole number or does not fit
/// its column is refused. Where a query leaves the order open, rows come in the order of their numbers.
namespace quillmate::codedb {

/// Version of the database engine, for instance "3.40.1".
std::string EngineVersion();

/// A forward-readable result. It may outlive its database: once that is closed, every call throws files::Failure. So
/// does reading a field before the first or after the last record.
class Recordset {
 public:
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(Recordset&&) noexcept;
  ~Recordset();

  /// Steps to the next record (the first call steps to the first one); false after the last.
  bool Next();
  /// A field of the current record as Windows-1252 text; NULL reads as empty. Names compare without regard to case.
  /// An unknown name throws files::Failure.
  std::string Text(std::string_view field) const;
  /// A field as a number; nothing when it is NULL.
  std::optional<std::int64_t> Number(std::string_view field) const;
  /// The same by position, 0-based.
  std::string Text(int column) const;
  std::optional<std::int64_t> Number(int column) const;

 private:
  friend class CodeDatabase;
  struct State;
  explicit Recordset(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

/// The open database (there is one at a time). What is read and written has an operation here, whose statement is a
/// form that is prepared once; other statements are texts (Windows-1252). All operations throw files::Failure, also
/// when nothing is open.
class CodeDatabase {
 public:
  CodeDatabase();
  ~CodeDatabase();
  CodeDatabase(const CodeDatabase&) = delete;
  CodeDatabase& operator=(const CodeDatabase&) = delete;

  /// Opens a folder's database shared and writable (read-only where the medium allows no more) and looks through all of
  /// it. Throws files::Failure when the file is missing, damaged, locked, or lacks one of the two tables; it is never
  /// created. An earlier database is closed first. A mere reader writes nothing, neither into the file nor beside it.
  void OpenCodeDatabase(const std::filesystem::path& folder);
  /// The same for who wants nothing but `Modules`: the rest of the file is not looked through.
  void OpenModules(const std::filesystem::path& folder);
  /// The same for a file that this process has just written: only its tables are looked for.
  void OpenOwnCodeDatabase(const std::filesystem::path& folder);
  /// Never fails; also when nothing is open.
  void CloseCodeDatabase() noexcept;
  bool IsOpen() const noexcept;

  /// Runs an action statement.
  void ExecuteSql(std::string_view statement);
  /// Runs a select statement.
  Recordset OpenRecordset(std::string_view statement);

  /// One read is one transaction: everything up to Commit becomes visible at once, Rollback (or closing) drops it.
  /// Begin within a transaction and Commit without one throw files::Failure; Rollback without one does nothing.
  void Begin();
  void Commit();
  void Rollback() noexcept;

  // What a read writes.

  /// The module's row.
  void InsertModule(const ModuleRecord& module);
  /// The routine's row.
  void InsertRoutine(const RoutineRecord& routine);

  // All of the index.

  /// The modules by number, without their routines.
  std::vector<ModuleRecord> Modules();
  /// The modules by number, each with its routines by number. Routines of no module are left out.
  std::vector<ModuleRecord> ReadIndex();
  int ModuleCount();

  // The project tree. Neither lines nor header lines are filled.

  /// The modules by kind and name.
  std::vector<ModuleRecord> TreeModules();
  /// Hands out the start lines of all routines, 0 for one without.
  void Starts(const std::function<void(RoutineNumber, Line)>& visit);
  /// Hands out the routines by module and name.
  void TreeRoutines(const std::function<void(RoutineRecord&&)>& visit);

  // One module or routine. Where several fit it is the one with the lowest number; nothing when none does.

  /// Kind, name and number.
  std::optional<ModuleRecord> Module(ModuleNumber number);
  /// Names compare as in the index, so that several may differ in case; by number.
  std::vector<ModuleRecord> ModulesNamed(std::string_view name);
  /// The same for the routines of a module. Lines and header lines are not filled.
  std::vector<RoutineRecord> RoutinesNamed(std::string_view name, ModuleNumber module);
  /// Line 0 for a routine without one.
  std::optional<Line> StartOf(RoutineNumber number);
  /// Start and visibility.
  std::optional<RoutineRecord> RoutineInModule(std::string_view name, ModuleNumber module);
  /// A routine that is not private and the name of its module. Start, module and visibility are filled.
  std::optional<std::pair<RoutineRecord, std::string>> RoutineInProject(std::string_view name);
  /// The routine around a line: name, start and end.
  std::optional<RoutineRecord> RoutineAt(Line line, ModuleNumber module);
  /// All routines of a module that have lines, in the order in which RoutineAt prefers them; header lines are not
  /// filled.
  std::vector<RoutineRecord> RoutinesWithLines(ModuleNumber module);
  /// The last line before the module's first routine.
  std::optional<Line> LastDeclarationLine(ModuleNumber module);

  // Subs, Functions and Declares that may be unused.

  /// Public names that occur once in the project.
  std::vector<std::string> PublicCandidates();
  /// The others of one module.
  std::vector<std::string> PrivateCandidates(ModuleNumber module);

 private:
  friend class Recordset;
  class Rows;
  struct State;

  void Execute(std::string_view form, std::initializer_list<JetValue> values);
  Rows Query(std::string_view form, std::initializer_list<JetValue> values = {});

  std::unique_ptr<State> state_;
};

}  // namespace quillmate::codedb
