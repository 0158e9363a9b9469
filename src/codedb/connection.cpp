#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <utility>

#include <sqlite3.h>

#include <quillmate/files/paths.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "collation_p.h"
#include "connection_p.h"
#include "foreign_file_p.h"

namespace quillmate::codedb {
namespace {

/// How long a file that another program is writing is waited for, in milliseconds: nobody should notice.
constexpr int kBusyTimeout = 200;

/// The index is scratch work until it is saved as a copy: its journal stays in memory and nothing waits for the disk.
/// None of these settings touches the file. A read writes from front to back and looks back seldom: a larger cache
/// would only hold what the system's own holds as well.
constexpr const char* kSettings =
    "PRAGMA journal_mode = MEMORY;"
    "PRAGMA synchronous = OFF;"
    "PRAGMA temp_store = MEMORY;"
    "PRAGMA cache_size = -4096;"
    "PRAGMA secure_delete = OFF;";

/// Names in double quotes that no column bears are errors, not texts.
constexpr std::array kQuotedTexts = {SQLITE_DBCONFIG_DQS_DML, SQLITE_DBCONFIG_DQS_DDL};

struct ExpectedTable {
  const char* name;
  const char* query;
};
constexpr std::array<ExpectedTable, 2> kExpectedTables = {{
    {"td_mod", "SELECT mod_num, mod_name, mod_typ, mod_zeilen FROM td_mod LIMIT 0"},
    {"td_rout",
     "SELECT rou_num, mod_num, rou_name, rou_typ, rou_open, anz_dec_zeilen, rou_start, rou_ende FROM td_rout LIMIT 0"},
}};

/// Rows with a number that is none, or so large that the next one would not be. Modules are counted from 1.
constexpr std::array<const char*, 2> kStrangeNumbers = {
    "SELECT 1 FROM td_mod WHERE typeof(mod_num) <> 'integer' OR mod_num NOT BETWEEN 1 AND 1000000000"
    " OR mod_typ NOT BETWEEN -32768 AND 32767 OR mod_zeilen NOT BETWEEN -1000000000 AND 1000000000 LIMIT 1",
    "SELECT 1 FROM td_rout WHERE typeof(rou_num) <> 'integer' OR rou_num NOT BETWEEN -1000000000 AND 1000000000"
    " OR mod_num NOT BETWEEN -1000000000 AND 1000000000 OR rou_typ NOT BETWEEN -32768 AND 32767"
    " OR rou_open NOT BETWEEN -32768 AND 32767 OR anz_dec_zeilen NOT BETWEEN -32768 AND 32767"
    " OR rou_start NOT BETWEEN -1000000000 AND 1000000000 OR rou_ende NOT BETWEEN -1000000000 AND 1000000000 LIMIT 1",
};

/// The engine's memory statistics are never read; without them a read is a tenth faster. Has no effect, and does no
/// harm, when somebody else used the engine before.
void ConfigureEngine() {
  static const int result = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  static_cast<void>(result);
}

int BindText(sqlite3_stmt* prepared, int index, std::string_view utf8, Binding binding) {
  return sqlite3_bind_text64(prepared, index, utf8.data() == nullptr ? "" : utf8.data(), utf8.size(),
                             binding == Binding::Borrowed ? SQLITE_STATIC : SQLITE_TRANSIENT, SQLITE_UTF8);
}

}  // namespace

Connection::Connection(const std::filesystem::path& file, Origin origin) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) {
    throw files::Failure(DatabaseReason::kMissing, file);
  }
  // An absolute path: SQLite would take a name that begins with "file:" for an address.
  const std::string name = files::PathText(files::AbsolutePath(file));
  ConfigureEngine();
  constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
  const bool opened = sqlite3_open_v2(name.c_str(), &db_, kFlags, nullptr) == SQLITE_OK;
  try {
    if (!opened) Fail({});
    SetUp();
    CheckTables();
    if (origin == Origin::kAnywhere) {
      CheckPages("PRAGMA quick_check(1)");
      for (const char* const query : kStrangeNumbers) CheckNumbers(query);
    } else if (origin == Origin::kModulesOfAnywhere) {
      CheckPages("PRAGMA quick_check(td_mod)");
      CheckNumbers(kStrangeNumbers.front());
    }
  } catch (const files::Failure& refused) {
    // The destructor of an object that never came to be does not run.
    Close();
    throw files::Failure(DatabaseReason::kNotOpened, refused, file);
  }
}

Connection::~Connection() { Close(); }

void Connection::Close() noexcept {
  forms_.clear();
  while (sqlite3_stmt* const statement = db_ == nullptr ? nullptr : sqlite3_next_stmt(db_, nullptr)) {
    sqlite3_finalize(statement);
  }
  sqlite3_close(std::exchange(db_, nullptr));
}

void Connection::SetUp() {
  sqlite3_busy_timeout(db_, kBusyTimeout);
  SwitchOffForeign(db_);
  for (const int option : kQuotedTexts) sqlite3_db_config(db_, option, 0, nullptr);
  if (!RegisterCollation(db_)) throw files::Failure(DatabaseReason::kNoSorting);
  Run(kSettings);
}

void Connection::CheckTables() {
  for (const ExpectedTable& table : kExpectedTables) {
    const int result = sqlite3_exec(db_, table.query, nullptr, nullptr, nullptr);
    if (result == SQLITE_ERROR) throw files::Failure(DatabaseReason::kNoTable, {}, {table.name});
    if (result != SQLITE_OK) Fail({});
  }
}

/// The program's own tables check their values, those of a file from anywhere may hold what nobody can count with.
void Connection::CheckNumbers(const char* query) {
  sqlite3_stmt* const check = PrepareSqlite(query, {}, 0);
  const int step = sqlite3_step(check);
  sqlite3_finalize(check);
  if (step != SQLITE_DONE) throw files::Failure(DatabaseReason::kBadNumbers);
}

/// A file that was cut off or written over has to be found now, not in the middle of the work.
void Connection::CheckPages(const char* pragma) {
  sqlite3_stmt* const check = PrepareSqlite(pragma, {}, 0);
  const int step = sqlite3_step(check);
  const auto* const verdict = step == SQLITE_ROW ? sqlite3_column_text(check, 0) : nullptr;
  const bool whole = verdict != nullptr && std::strcmp(reinterpret_cast<const char*>(verdict), "ok") == 0;
  const files::Failure failure = step == SQLITE_ROW ? files::Failure(DatabaseReason::kDamaged) : EngineFailure(db_);
  sqlite3_finalize(check);
  if (!whole) throw files::Failure(failure);
}

void Connection::Run(const char* sql) {
  if (sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail({});
}

bool Connection::InTransaction() const noexcept { return db_ != nullptr && sqlite3_get_autocommit(db_) == 0; }

files::Failure StatementFailure(sqlite3* database, std::string_view statement) {
  constexpr std::size_t kQuoted = 200;
  files::Failure failure = EngineFailure(database);
  if (statement.empty()) return failure;
  const char* const more = statement.size() > kQuoted ? " ..." : "";
  return files::Failure(DatabaseReason::kStatement, failure, {},
                        {text::Utf8FromCode(statement.substr(0, kQuoted)) + more});
}

void Connection::Fail(std::string_view statement) const { throw StatementFailure(db_, statement); }

sqlite3_stmt* Connection::PrepareSqlite(const std::string& sql, std::string_view statement, unsigned flags) {
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v3(db_, sql.c_str(), static_cast<int>(sql.size()) + 1, flags, &prepared, nullptr);
  if (result != SQLITE_OK || prepared == nullptr) Fail(statement);
  return prepared;
}

sqlite3_stmt* Connection::Prepare(std::string_view statement) {
  return PrepareSqlite(TranslateJet(statement), statement, 0);
}

sqlite3_stmt* Connection::PrepareForm(std::string_view form) {
  const auto known =
      std::find_if(forms_.begin(), forms_.end(), [&](const auto& entry) { return entry.first == form.data(); });
  if (known != forms_.end()) return known->second;
  sqlite3_stmt* const prepared = PrepareSqlite(TranslateJetForm(form), form, SQLITE_PREPARE_PERSISTENT);
  forms_.emplace_back(form.data(), prepared);
  return prepared;
}

sqlite3_stmt* Connection::Bind(std::string_view form, std::initializer_list<JetValue> values, Binding binding) {
  sqlite3_stmt* const prepared = PrepareForm(form);
  converted_.resize(std::max(converted_.size(), values.size()));
  int result = SQLITE_OK;
  int index = 0;
  for (const JetValue& value : values) {
    ++index;
    if (value.isNull) {
      result = sqlite3_bind_null(prepared, index);
    } else if (!value.isText) {
      result = sqlite3_bind_int(prepared, index, value.number);
    } else if (text::IsAscii(value.text)) {
      result = BindText(prepared, index, value.text, binding);
    } else {
      std::string& utf8 = converted_[static_cast<std::size_t>(index) - 1];
      utf8 = text::Utf8FromCode(value.text);
      result = BindText(prepared, index, utf8, binding);
    }
    if (result != SQLITE_OK) Fail(FillJetForm(form, values));
  }
  return prepared;
}

std::string ColumnText(sqlite3_stmt* statement, int column) {
  const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (bytes == nullptr) return {};
  return text::CodeFromUtf8({bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))});
}

std::optional<std::int64_t> ColumnNumber(sqlite3_stmt* statement, int column) {
  if (sqlite3_column_type(statement, column) == SQLITE_NULL) return std::nullopt;
  return sqlite3_column_int64(statement, column);
}

}  // namespace quillmate::codedb
