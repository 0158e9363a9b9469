#include <charconv>
#include <cstring>
#include <memory>
#include <system_error>
#include <utility>

#include <sqlite3.h>

#include <quillmate/codedb/database_reason.h>
#include <quillmate/codedb/facts.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "foreign_file_p.h"

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

/// Numbers of rows are positions plus one. Texts that are unknown are empty, other values NULL.
constexpr const char* kSchema = R"sql(
CREATE TABLE projekt(nr INTEGER PRIMARY KEY, name TEXT NOT NULL, datei TEXT NOT NULL, host TEXT NOT NULL,
  codepage INTEGER NOT NULL, gesperrt INTEGER NOT NULL, pruefsumme TEXT NOT NULL);
CREATE TABLE verweis(projekt INTEGER NOT NULL REFERENCES projekt, folge INTEGER NOT NULL, name TEXT NOT NULL,
  version TEXT NOT NULL, pfad TEXT NOT NULL, ziel INTEGER REFERENCES projekt);
CREATE TABLE konstante(projekt INTEGER NOT NULL REFERENCES projekt, name TEXT NOT NULL, wert INTEGER NOT NULL);
CREATE TABLE dokument(projekt INTEGER NOT NULL REFERENCES projekt, eigenschaft TEXT NOT NULL, wert TEXT NOT NULL);
CREATE TABLE modul(nr INTEGER PRIMARY KEY, mod_num INTEGER, projekt INTEGER NOT NULL REFERENCES projekt,
  name TEXT NOT NULL, datei TEXT NOT NULL, art TEXT NOT NULL, aussenname TEXT NOT NULL, praedeklariert INTEGER,
  exponiert INTEGER, steuerelemente_bekannt INTEGER NOT NULL, ersetzte_zeichen INTEGER NOT NULL,
  dateizeilen INTEGER NOT NULL, code TEXT, zeilenplan TEXT NOT NULL);
CREATE TABLE verborgene_zeile(modul INTEGER NOT NULL REFERENCES modul, vor_zeile INTEGER NOT NULL, text TEXT NOT NULL);
CREATE TABLE attribut(modul INTEGER NOT NULL REFERENCES modul, zeile INTEGER NOT NULL, element TEXT NOT NULL,
  name TEXT NOT NULL, wert TEXT NOT NULL);
CREATE TABLE steuerelement(modul INTEGER NOT NULL REFERENCES modul, folge INTEGER NOT NULL, name TEXT NOT NULL,
  typ TEXT NOT NULL, beschriftung TEXT NOT NULL, behaelter TEXT NOT NULL, feld INTEGER NOT NULL, links INTEGER,
  oben INTEGER, breite INTEGER, hoehe INTEGER, tabindex INTEGER);
CREATE TABLE bindung(projekt INTEGER NOT NULL REFERENCES projekt, modul TEXT NOT NULL, text TEXT NOT NULL,
  ort TEXT NOT NULL, art TEXT NOT NULL);
CREATE TABLE ausgelassen(datei TEXT NOT NULL, projekt TEXT NOT NULL, modul TEXT NOT NULL, grund TEXT NOT NULL);
)sql";

struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};
/// A statement whose values are bound or read from left to right.
class Statement {
 public:
  Statement(sqlite3* database, const fs::path& file, const char* sql) : database_(database), file_(file) {
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database, sql, -1, &prepared, nullptr) != SQLITE_OK) throw EngineFailure(database, file);
    statement_.reset(prepared);
  }

  Statement& Add(std::string_view text) {
    Check(sqlite3_bind_text64(statement_.get(), ++column_, text.data() == nullptr ? "" : text.data(), text.size(),
                              SQLITE_STATIC, SQLITE_UTF8));
    return *this;
  }
  Statement& Add(std::int64_t number) {
    Check(sqlite3_bind_int64(statement_.get(), ++column_, number));
    return *this;
  }
  template <typename Number>
  Statement& Add(const std::optional<Number>& number) {
    if (number) return Add(static_cast<std::int64_t>(*number));
    return AddNull();
  }
  Statement& AddNull() {
    Check(sqlite3_bind_null(statement_.get(), ++column_));
    return *this;
  }
  /// Runs it with what was added and makes it ready for the next row.
  void Run() {
    if (sqlite3_step(statement_.get()) != SQLITE_DONE) throw EngineFailure(database_, file_);
    sqlite3_reset(statement_.get());
    column_ = 0;
  }

  bool Next() {
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) throw EngineFailure(database_, file_);
    column_ = 0;
    return result == SQLITE_ROW;
  }
  std::string Text() {
    const int column = column_++;
    const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
    const int length = sqlite3_column_bytes(statement_.get(), column);
    return bytes == nullptr ? std::string() : std::string(bytes, static_cast<std::size_t>(length));
  }
  std::int64_t Number() { return sqlite3_column_int64(statement_.get(), column_++); }
  std::int32_t SmallNumber() { return static_cast<std::int32_t>(Number()); }
  bool Flag() { return Number() != 0; }
  bool IsNull() const { return sqlite3_column_type(statement_.get(), column_) == SQLITE_NULL; }
  std::optional<std::int32_t> NumberIfAny() {
    const bool none = IsNull();
    const std::int32_t number = SmallNumber();
    return none ? std::nullopt : std::optional(number);
  }
  std::optional<bool> FlagIfAny() {
    const auto number = NumberIfAny();
    return number ? std::optional(*number != 0) : std::nullopt;
  }

 private:
  void Check(int result) {
    if (result != SQLITE_OK) throw EngineFailure(database_, file_);
  }

  sqlite3* database_;
  const fs::path& file_;
  std::unique_ptr<sqlite3_stmt, FinalizeStatement> statement_;
  int column_ = 0;
};

void RunAll(sqlite3* database, const fs::path& file, const char* sql) {
  if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) throw EngineFailure(database, file);
}

/// "1:1+3*20 22:21*5": shown, original, shift, count.
std::string PlanText(const std::vector<LineRun>& lines) {
  std::string plan;
  for (const LineRun& run : lines) {
    if (!plan.empty()) plan += ' ';
    plan += std::to_string(run.shown) + ":" + std::to_string(run.original);
    if (run.shift != 0) plan += (run.shift > 0 ? "+" : "") + std::to_string(run.shift);
    plan += "*" + std::to_string(run.count);
  }
  return plan;
}

std::optional<std::vector<LineRun>> ReadPlan(std::string_view plan) {
  std::vector<LineRun> lines;
  const char* at = plan.data();
  const char* const end = at + plan.size();
  const auto take = [&](std::int32_t& number) {
    const auto read = std::from_chars(at, end, number);
    at = read.ptr;
    return read.ec == std::errc();
  };
  const auto skip = [&](char mark) { return at != end && *at == mark ? (++at, true) : false; };
  while (at != end) {
    LineRun run;
    if (!take(run.shown) || !skip(':') || !take(run.original)) return std::nullopt;
    if ((skip('+') || (at != end && *at == '-')) && !take(run.shift)) return std::nullopt;
    if (!skip('*') || !take(run.count) || (at != end && !skip(' '))) return std::nullopt;
    if (run.shown < 1 || run.original < 1 || run.count < 1) return std::nullopt;
    lines.push_back(run);
  }
  return lines;
}

class Writer {
 public:
  Writer(sqlite3* database, const fs::path& file) : database_(database), file_(file) {}

  void Write(const Facts& facts) {
    RunAll(database_, file_, "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN;");
    RunAll(database_, file_, kSchema);
    RunAll(database_, file_, ("PRAGMA user_version = " + std::to_string(kFactsVersion)).c_str());
    WriteProjects(facts.projects);
    WriteModules(facts.modules);
    Statement binding = Insert("INSERT INTO bindung VALUES(?, ?, ?, ?, ?)");
    for (const BindingFact& fact : facts.bindings) {
      binding.Add(fact.project + std::int64_t{1}).Add(fact.module).Add(fact.text).Add(fact.place).Add(fact.kind).Run();
    }
    Statement omission = Insert("INSERT INTO ausgelassen VALUES(?, ?, ?, ?)");
    for (const OmissionFact& fact : facts.omissions) {
      omission.Add(fact.file).Add(fact.project).Add(fact.module).Add(fact.reason).Run();
    }
    RunAll(database_, file_, "COMMIT;");
  }

 private:
  Statement Insert(const char* sql) { return {database_, file_, sql}; }

  void WriteProjects(const std::vector<ProjectFacts>& projects) {
    Statement project = Insert("INSERT INTO projekt VALUES(?, ?, ?, ?, ?, ?, ?)");
    Statement reference = Insert("INSERT INTO verweis VALUES(?, ?, ?, ?, ?, ?)");
    Statement constant = Insert("INSERT INTO konstante VALUES(?, ?, ?)");
    Statement document = Insert("INSERT INTO dokument VALUES(?, ?, ?)");
    std::int64_t number = 0;
    for (const ProjectFacts& facts : projects) {
      project.Add(++number).Add(facts.name).Add(facts.file).Add(facts.host).Add(std::int64_t{facts.codePage});
      project.Add(std::int64_t{facts.locked}).Add(facts.hash).Run();
      std::int64_t order = 0;
      for (const ReferenceFact& fact : facts.references) {
        reference.Add(number).Add(++order).Add(fact.name).Add(fact.version).Add(fact.path);
        reference.Add(fact.project < 0 ? std::nullopt : std::optional(fact.project + 1)).Run();
      }
      for (const ConstantFact& fact : facts.constants) constant.Add(number).Add(fact.name).Add(fact.value).Run();
      for (const DocumentFact& fact : facts.document) document.Add(number).Add(fact.property).Add(fact.value).Run();
    }
  }

  void WriteModules(const std::vector<ModuleFacts>& modules) {
    Statement module = Insert("INSERT INTO modul VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    Statement hidden = Insert("INSERT INTO verborgene_zeile VALUES(?, ?, ?)");
    Statement attribute = Insert("INSERT INTO attribut VALUES(?, ?, ?, ?, ?)");
    Statement control = Insert("INSERT INTO steuerelement VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    std::int64_t number = 0;
    for (const ModuleFacts& facts : modules) {
      const std::string plan = PlanText(facts.lines);
      module.Add(++number).Add(facts.number == 0 ? std::nullopt : std::optional(facts.number));
      module.Add(facts.project + std::int64_t{1})
          .Add(facts.name)
          .Add(facts.file)
          .Add(facts.kind)
          .Add(facts.outsideName);
      module.Add(facts.predeclared).Add(facts.exposed).Add(std::int64_t{facts.controlsKnown});
      module.Add(facts.replacedCharacters).Add(std::int64_t{facts.linesOfFile});
      (facts.code ? module.Add(std::string_view(*facts.code)) : module.AddNull()).Add(plan).Run();
      for (const HiddenLines& lines : facts.hidden)
        hidden.Add(number).Add(std::int64_t{lines.line}).Add(lines.text).Run();
      for (const AttributeFact& fact : facts.attributes) {
        attribute.Add(number).Add(std::int64_t{fact.line}).Add(fact.member).Add(fact.name).Add(fact.value).Run();
      }
      std::int64_t order = 0;
      for (const ControlFact& fact : facts.controls) {
        control.Add(number).Add(++order).Add(fact.name).Add(fact.type).Add(fact.caption).Add(fact.parent);
        control.Add(std::int64_t{fact.inArray}).Add(fact.left).Add(fact.top).Add(fact.width).Add(fact.height);
        control.Add(fact.tabIndex).Run();
      }
    }
  }

  sqlite3* database_;
  const fs::path& file_;
};

class Reader {
 public:
  Reader(sqlite3* database, const fs::path& file) : database_(database), file_(file) {}

  Facts Read() {
    CheckVersion();
    ReadProjects();
    ReadModules();
    Statement rows = Select("SELECT projekt, modul, text, ort, art FROM bindung ORDER BY rowid");
    while (rows.Next()) {
      const int project = ProjectAt(rows.Number());
      BindingFact fact{project, rows.Text(), rows.Text(), rows.Text(), rows.Text()};
      facts_.bindings.push_back(std::move(fact));
    }
    ReadOmissions();
    return std::move(facts_);
  }

 private:
  Statement Select(const char* sql) { return {database_, file_, sql}; }

  [[noreturn]] void Refuse(DatabaseReason reason = DatabaseReason::kDamagedFacts) const {
    throw files::Failure(reason, file_);
  }

  void CheckVersion() {
    Statement version = Select("PRAGMA user_version");
    if (version.Next() && version.Number() > kFactsVersion) {
      Refuse(DatabaseReason::kNewerFacts);
    }
  }

  /// Row numbers are consecutive from 1 on, as they were written.
  template <typename Rows>
  std::size_t Position(std::int64_t number, const Rows& rows) const {
    if (number < 1 || static_cast<std::uint64_t>(number) > rows.size()) Refuse();
    return static_cast<std::size_t>(number - 1);
  }
  int ProjectAt(std::int64_t number) const { return static_cast<int>(Position(number, facts_.projects)); }
  ModuleFacts& ModuleAt(std::int64_t number) { return facts_.modules[Position(number, facts_.modules)]; }

  void ReadProjects() {
    Statement rows = Select("SELECT nr, name, datei, host, codepage, gesperrt, pruefsumme FROM projekt ORDER BY nr");
    while (rows.Next()) {
      if (rows.Number() != static_cast<std::int64_t>(facts_.projects.size()) + 1) Refuse();
      ProjectFacts& project = facts_.projects.emplace_back();
      project.name = rows.Text();
      project.file = rows.Text();
      project.host = rows.Text();
      project.codePage = rows.SmallNumber();
      project.locked = rows.Flag();
      project.hash = rows.Text();
    }
    Statement references = Select("SELECT projekt, name, version, pfad, ziel FROM verweis ORDER BY projekt, folge");
    while (references.Next()) {
      ProjectFacts& project = facts_.projects[Position(references.Number(), facts_.projects)];
      ReferenceFact fact{references.Text(), references.Text(), references.Text(), -1};
      if (!references.IsNull()) fact.project = ProjectAt(references.Number());
      project.references.push_back(std::move(fact));
    }
    Statement constants = Select("SELECT projekt, name, wert FROM konstante ORDER BY rowid");
    while (constants.Next()) {
      ProjectFacts& project = facts_.projects[Position(constants.Number(), facts_.projects)];
      std::string name = constants.Text();
      project.constants.push_back({std::move(name), constants.Number()});
    }
    Statement document = Select("SELECT projekt, eigenschaft, wert FROM dokument ORDER BY rowid");
    while (document.Next()) {
      ProjectFacts& project = facts_.projects[Position(document.Number(), facts_.projects)];
      std::string property = document.Text();
      project.document.push_back({std::move(property), document.Text()});
    }
  }

  /// Files of the first release lack the table.
  void ReadOmissions() {
    Statement tables = Select("SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = 'ausgelassen'");
    if (!tables.Next()) return;
    Statement rows = Select("SELECT datei, projekt, modul, grund FROM ausgelassen ORDER BY rowid");
    while (rows.Next()) facts_.omissions.push_back({rows.Text(), rows.Text(), rows.Text(), rows.Text()});
  }

  void ReadModules() {
    Statement rows = Select(
        "SELECT nr, mod_num, projekt, name, datei, art, aussenname, praedeklariert, exponiert, steuerelemente_bekannt,"
        " ersetzte_zeichen, dateizeilen, zeilenplan, code FROM modul ORDER BY nr");
    while (rows.Next()) {
      if (rows.Number() != static_cast<std::int64_t>(facts_.modules.size()) + 1) Refuse();
      ModuleFacts& module = facts_.modules.emplace_back();
      module.number = rows.NumberIfAny().value_or(0);
      module.project = ProjectAt(rows.Number());
      module.name = rows.Text();
      module.file = rows.Text();
      module.kind = rows.Text();
      module.outsideName = rows.Text();
      module.predeclared = rows.FlagIfAny();
      module.exposed = rows.FlagIfAny();
      module.controlsKnown = rows.Flag();
      module.replacedCharacters = rows.Number();
      module.linesOfFile = rows.Flag();
      auto plan = ReadPlan(rows.Text());
      if (!plan) Refuse();
      module.lines = std::move(*plan);
      if (!rows.IsNull()) module.code = rows.Text();
    }
    ReadModuleParts();
  }

  void ReadModuleParts() {
    Statement hidden = Select("SELECT modul, vor_zeile, text FROM verborgene_zeile ORDER BY modul, vor_zeile, rowid");
    while (hidden.Next()) {
      ModuleFacts& module = ModuleAt(hidden.Number());
      const std::int32_t line = hidden.SmallNumber();
      module.hidden.push_back({line, hidden.Text()});
    }
    Statement attributes = Select("SELECT modul, zeile, element, name, wert FROM attribut ORDER BY rowid");
    while (attributes.Next()) {
      ModuleFacts& module = ModuleAt(attributes.Number());
      const std::int32_t line = attributes.SmallNumber();
      AttributeFact fact{line, attributes.Text(), attributes.Text(), attributes.Text()};
      module.attributes.push_back(std::move(fact));
    }
    Statement controls = Select(
        "SELECT modul, name, typ, beschriftung, behaelter, feld, links, oben, breite, hoehe, tabindex FROM "
        "steuerelement"
        " ORDER BY modul, folge");
    while (controls.Next()) {
      ModuleFacts& module = ModuleAt(controls.Number());
      ControlFact fact{
          controls.Text(), controls.Text(), controls.Text(), controls.Text(), controls.Flag(), {}, {}, {}, {}, {}};
      for (auto* const place : {&fact.left, &fact.top, &fact.width, &fact.height, &fact.tabIndex}) {
        *place = controls.NumberIfAny();
      }
      module.controls.push_back(std::move(fact));
    }
  }

  sqlite3* database_;
  const fs::path& file_;
  Facts facts_;
};

}  // namespace

fs::path FactsPath(const fs::path& folder) { return folder / kFactsFile; }

void WriteFacts(const fs::path& folder, const Facts& facts) {
  const fs::path file = FactsPath(folder);
  std::error_code ignored;
  fs::remove(file, ignored);
  // With the rights of all new files, which the database engine would narrow.
  files::WriteWholeFile(file, "");
  try {
    const Database database = OpenForeign(file, SQLITE_OPEN_READWRITE);
    Writer(database.get(), file).Write(facts);
  } catch (...) {
    fs::remove(file, ignored);
    throw;
  }
}

std::optional<Facts> ReadFacts(const fs::path& folder) {
  const fs::path file = FactsPath(folder);
  std::error_code ignored;
  if (!fs::is_regular_file(file, ignored)) return std::nullopt;
  const Database database = OpenForeign(file, SQLITE_OPEN_READONLY);
  return Reader(database.get(), file).Read();
}

}  // namespace quillmate::codedb
