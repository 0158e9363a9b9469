#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <utility>

#include <sqlite3.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/files/paths.h>
#include <quillmate/text/windows1252.h>

#include "collation_p.h"
#include "connection_p.h"
#include "database_error_p.h"

namespace quillmate::codedb {
namespace {

/// The program has about twenty shapes of statements; more are kept only until they go out of use.
constexpr std::size_t kMostShapes = 64;

/// How long a file that another program is writing is waited for, in milliseconds: nobody should notice.
constexpr int kBusyTimeout = 200;

/// The index is scratch work until it is saved as a copy: its journal stays in memory and nothing waits for the disk.
/// None of these settings touches the file.
constexpr const char* kSettings =
    "PRAGMA journal_mode = MEMORY;"
    "PRAGMA synchronous = OFF;"
    "PRAGMA temp_store = MEMORY;"
    "PRAGMA cache_size = -65536;"
    "PRAGMA secure_delete = OFF;";

/// A project may come from anywhere: what its file holds beside the two tables is never run. Names in double quotes
/// that no column bears are errors, not texts.
constexpr std::array kSwitchedOff = {SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW,
                                     SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_DQS_DML, SQLITE_DBCONFIG_DQS_DDL};

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

bool IsAscii(std::string_view text) noexcept {
  std::uint64_t seen = 0;
  std::size_t i = 0;
  for (; i + 8 <= text.size(); i += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + i, 8);
    seen |= word;
  }
  for (; i < text.size(); ++i) seen |= static_cast<unsigned char>(text[i]);
  return (seen & 0x8080808080808080U) == 0;
}

/// A number literal as SQLite reads it: 64 bits when it is whole and fits, else a double.
int BindNumber(sqlite3_stmt* prepared, int index, std::string_view digits) {
  std::int64_t whole = 0;
  const char* const end = digits.data() + digits.size();
  const auto asWhole = std::from_chars(digits.data(), end, whole);
  if (asWhole.ec == std::errc() && asWhole.ptr == end) return sqlite3_bind_int64(prepared, index, whole);
  double value = 0;
  std::from_chars(digits.data(), end, value);
  return sqlite3_bind_double(prepared, index, value);
}

int BindText(sqlite3_stmt* prepared, int index, std::string_view utf8, Binding binding) {
  return sqlite3_bind_text64(prepared, index, utf8.data() == nullptr ? "" : utf8.data(), utf8.size(),
                             binding == Binding::Borrowed ? SQLITE_STATIC : SQLITE_TRANSIENT, SQLITE_UTF8);
}

}  // namespace

Connection::Connection(const std::filesystem::path& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) {
    throw DatabaseError("Die Datenbank " + files::PathText(file) + " existiert nicht");
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
    CheckPages();
    CheckNumbers();
  } catch (const DatabaseError& reason) {
    // The destructor of an object that never came to be does not run.
    Close();
    throw DatabaseError("Die Datenbank " + files::PathText(file) + " lässt sich nicht öffnen.\r\n" + reason.what());
  }
}

Connection::~Connection() { Close(); }

void Connection::Close() noexcept {
  for (const auto& shape : shapes_) shape->idle.clear();
  shapes_.clear();
  while (sqlite3_stmt* const statement = db_ == nullptr ? nullptr : sqlite3_next_stmt(db_, nullptr)) {
    sqlite3_finalize(statement);
  }
  sqlite3_close(std::exchange(db_, nullptr));
}

void Connection::SetUp() {
  sqlite3_busy_timeout(db_, kBusyTimeout);
  for (const int option : kSwitchedOff) sqlite3_db_config(db_, option, 0, nullptr);
  if (!RegisterCollation(db_)) throw DatabaseError("Die Sprachdaten für die deutsche Sortierung fehlen");
  Run(kSettings);
}

void Connection::CheckTables() {
  for (const ExpectedTable& table : kExpectedTables) {
    const int result = sqlite3_exec(db_, table.query, nullptr, nullptr, nullptr);
    if (result == SQLITE_ERROR) throw DatabaseError(std::string("Die Tabelle ") + table.name + " fehlt darin");
    if (result != SQLITE_OK) Fail({});
  }
}

/// The program's own tables check their values, those of a file from anywhere may hold what nobody can count with.
void Connection::CheckNumbers() {
  for (const char* const query : kStrangeNumbers) {
    sqlite3_stmt* const check = Prepare(query, {});
    const int step = sqlite3_step(check);
    sqlite3_finalize(check);
    if (step != SQLITE_DONE) throw DatabaseError("Die Datenbank ist beschädigt: sie enthält unmögliche Nummern");
  }
}

/// Looks at the whole file: one that was cut off or written over has to be found now, not in the middle of the work.
void Connection::CheckPages() {
  sqlite3_stmt* const check = Prepare("PRAGMA quick_check(1)", {});
  const int step = sqlite3_step(check);
  const auto* const verdict = step == SQLITE_ROW ? sqlite3_column_text(check, 0) : nullptr;
  const bool whole = verdict != nullptr && std::strcmp(reinterpret_cast<const char*>(verdict), "ok") == 0;
  const std::string reason = step == SQLITE_ROW ? "Die Datenbank ist beschädigt" : ErrorText(db_, {});
  sqlite3_finalize(check);
  if (!whole) throw DatabaseError(reason);
}

void Connection::Run(const char* sql) {
  if (sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail({});
}

bool Connection::InTransaction() const noexcept { return db_ != nullptr && sqlite3_get_autocommit(db_) == 0; }

void Connection::Fail(std::string_view statement) const { throw DatabaseError(ErrorText(db_, statement)); }

/// The shape of a statement that came before; its literals are then in literals_.
std::shared_ptr<PreparedShape> Connection::FindShape(std::string_view statement) {
  const auto found = std::find_if(shapes_.begin(), shapes_.end(), [&](const std::shared_ptr<PreparedShape>& shape) {
    return MatchJetShape(shape->shape, statement, literals_);
  });
  if (found == shapes_.end()) return nullptr;
  std::rotate(shapes_.begin(), found, found + 1);
  return shapes_.front();
}

std::shared_ptr<PreparedShape> Connection::AddShape(std::string_view statement) {
  try {
    JetStatement translated = TranslateJet(statement);
    literals_ = std::move(translated.literals);
    auto shape = std::make_shared<PreparedShape>();
    shape->shape = std::move(translated.shape);
    shapes_.insert(shapes_.begin(), shape);
  } catch (const JetSyntaxError& error) {
    throw DatabaseError(error.what());
  }
  if (shapes_.size() > kMostShapes) {
    // Its statements out on loan are finalized when they come back.
    for (sqlite3_stmt* const idle : std::exchange(shapes_.back()->idle, {})) sqlite3_finalize(idle);
    shapes_.pop_back();
  }
  return shapes_.front();
}

sqlite3_stmt* Connection::Prepare(const std::string& sql, std::string_view statement) {
  sqlite3_stmt* prepared = nullptr;
  const int result =
      sqlite3_prepare_v3(db_, sql.c_str(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
  if (result != SQLITE_OK || prepared == nullptr) Fail(statement);
  return prepared;
}

BoundStatement Connection::Borrow(std::string_view statement, Binding binding) {
  BoundStatement loan{FindShape(statement), nullptr};
  if (!loan.shape) loan.shape = AddShape(statement);
  std::vector<sqlite3_stmt*>& idle = loan.shape->idle;
  if (idle.empty()) {
    loan.statement = Prepare(loan.shape->shape.sql, statement);
  } else {
    loan.statement = idle.back();
    idle.pop_back();
  }
  if (Bind(loan.statement, binding)) return loan;
  const std::string reason = ErrorText(db_, statement);
  GiveBack(std::move(loan));
  throw DatabaseError(reason);
}

bool Connection::Bind(sqlite3_stmt* prepared, Binding binding) {
  converted_.resize(std::max(converted_.size(), literals_.size()));
  int result = SQLITE_OK;
  for (std::size_t i = 0; i < literals_.size() && result == SQLITE_OK; ++i) {
    const JetLiteral& literal = literals_[i];
    const int index = static_cast<int>(i) + 1;
    if (!literal.isText) {
      result = BindNumber(prepared, index, literal.source);
    } else if (literal.doubledQuote == 0 && IsAscii(literal.source)) {
      result = BindText(prepared, index, literal.source, binding);
    } else {
      converted_[i] = text::Utf8FromCode(JetLiteralText(literal));
      result = BindText(prepared, index, converted_[i], binding);
    }
  }
  return result == SQLITE_OK;
}

void Connection::GiveBack(BoundStatement&& loan) noexcept {
  const BoundStatement taken = std::move(loan);
  if (!IsOpen() || taken.statement == nullptr) return;
  if (taken.shape.use_count() == 1) {
    sqlite3_finalize(taken.statement);
    return;
  }
  sqlite3_reset(taken.statement);
  sqlite3_clear_bindings(taken.statement);
  taken.shape->idle.push_back(taken.statement);
}

}  // namespace quillmate::codedb
