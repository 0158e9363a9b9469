#include <array>
#include <mutex>
#include <utility>

#include <sqlite3.h>

#include <quillmate/codedb/database_reason.h>
#include <quillmate/files/paths.h>
#include <quillmate/inventory/reason.h>

#include "sqlite_p.h"

namespace quillmate::inventory {
namespace {

using enum InventoryReason;
using codedb::DatabaseReason;
using Words = files::ReasonWords<InventoryReason>;

constexpr std::array kWords{
    Words{kBusy, "Ein anderes Programm schreibt gerade in diesen Bestand"},
    Words{kFull, "%c; was bis hierher gelesen wurde, ist gesichert, und der nächste Lauf macht weiter"},
    Words{kNoInventory, "Die Datei ist kein Bestand"},
    Words{kDamaged, "Der Bestand ist beschädigt"},
    Words{kCannotOpen, "Die Datei kann nicht geöffnet werden"},
    Words{kReadOnly, "Die Datei ist schreibgeschützt"},
    Words{kInputOutput, "Der Datenträger lässt sich nicht lesen oder beschreiben"},
    Words{kNewer, "Der Bestand stammt von einer neueren Fassung des Programms und wird nicht angefasst"},
    Words{kOlder,
          "Der Bestand stammt von einer älteren Fassung des Programms; ein Lauf von inventory scan bringt ihn auf den "
          "neuen Stand"},
    Words{kIsTarget, "Dieser Teil ist der Bestand selbst"},
    Words{kNoReader, "%1 lässt sich nicht als Leser starten"},
    Words{kBrokenAnswer, "Die Antwort des Lesers bricht ab"},
};
static_assert(files::IsComplete(kWords, kBrokenAnswer));

constexpr auto kOfEngine = std::to_array<std::pair<DatabaseReason, InventoryReason>>({
    {DatabaseReason::kBusy, kBusy},
    {DatabaseReason::kQueryOpen, kBusy},
    {DatabaseReason::kNoDatabase, kNoInventory},
    {DatabaseReason::kDamaged, kDamaged},
    {DatabaseReason::kCannotOpen, kCannotOpen},
    {DatabaseReason::kReadOnly, kReadOnly},
    {DatabaseReason::kInputOutput, kInputOutput},
});

files::Failure FailureOf(sqlite3* database, const std::filesystem::path& file) {
  const files::Failure failure = codedb::EngineFailure(database);
  if (failure.Code() == std::errc::no_space_on_device) return files::Failure(kFull, failure, file);
  for (const auto& [engines, reason] : kOfEngine) {
    if (failure.Code() == engines) return files::Failure(reason, file);
  }
  return failure.At(file);
}

constexpr int FlagsOf(Database::Mode mode) {
  switch (mode) {
    case Database::Mode::kRead:
      return SQLITE_OPEN_READONLY;
    case Database::Mode::kWrite:
      return SQLITE_OPEN_READWRITE;
    default:
      return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  }
}

}  // namespace

std::error_code make_error_code(InventoryReason reason) noexcept {
  static const files::ReasonCategory category("inventory", kWords);
  return {static_cast<int>(reason), category};
}

Database::Database(const std::filesystem::path& file, Mode mode) : file_(file) {
  // Nobody asks how much memory is in use, and counting it takes a lock for each value that is copied. Too late, and
  // without effect, where the program has used the library before.
  static std::once_flag once;
  std::call_once(once, [] { sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0); });
  const std::string path = files::PathText(files::AbsolutePath(file));
  if (sqlite3_open_v2(path.c_str(), &handle_, FlagsOf(mode) | SQLITE_OPEN_NOMUTEX, nullptr) != SQLITE_OK) {
    failure_ = FailureOf(handle_, file_);
    sqlite3_close(handle_);
    CheckUsable();
  }
  sqlite3_extended_result_codes(handle_, 1);
  // An inventory may come from anywhere: nothing that it holds is run but its tables and our own views.
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(handle_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

Database::~Database() { sqlite3_close_v2(handle_); }

void Database::Run(const char* sql) {
  CheckUsable();
  if (sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail();
}

std::int64_t Database::LastRow() const noexcept { return sqlite3_last_insert_rowid(handle_); }

bool Database::InTransaction() const noexcept { return sqlite3_get_autocommit(handle_) == 0; }

void Database::Fail() {
  failure_ = FailureOf(handle_, file_);
  throw files::Failure(*failure_);
}

void Database::CheckUsable() const {
  if (failure_) throw files::Failure(*failure_);
}

Statement::Statement(Database& database, std::string_view sql) : database_(&database) {
  if (sqlite3_prepare_v3(database.Handle(), sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                         &statement_, nullptr) != SQLITE_OK) {
    database.Fail();
  }
}

Statement::Statement(Statement&& other) noexcept
    : database_(other.database_), statement_(std::exchange(other.statement_, nullptr)), column_(other.column_) {}

Statement::~Statement() { sqlite3_finalize(statement_); }

Statement& Statement::Add(std::string_view text) {
  const char* const data = text.data() == nullptr ? "" : text.data();
  if (sqlite3_bind_text64(statement_, ++column_, data, text.size(), SQLITE_STATIC, SQLITE_UTF8) != SQLITE_OK) {
    database_->Fail();
  }
  return *this;
}

Statement& Statement::Add(std::int64_t number) {
  if (sqlite3_bind_int64(statement_, ++column_, number) != SQLITE_OK) database_->Fail();
  return *this;
}

Statement& Statement::AddHash(std::uint64_t hash) {
  return hash == 0 ? AddNull() : Add(static_cast<std::int64_t>(hash));
}

Statement& Statement::AddNull() {
  if (sqlite3_bind_null(statement_, ++column_) != SQLITE_OK) database_->Fail();
  return *this;
}

void Statement::Run() {
  database_->CheckUsable();
  const int result = sqlite3_step(statement_);
  if (result != SQLITE_DONE && result != SQLITE_ROW) {
    Reset();
    database_->Fail();
  }
  Reset();
}

bool Statement::Next() {
  database_->CheckUsable();
  const int result = sqlite3_step(statement_);
  column_ = 0;
  if (result == SQLITE_ROW) return true;
  Reset();
  if (result != SQLITE_DONE) database_->Fail();
  return false;
}

void Statement::Reset() noexcept {
  sqlite3_reset(statement_);
  column_ = 0;
}

std::string_view Statement::TextView() {
  const int column = column_++;
  const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  if (bytes == nullptr) return {};
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
}

std::string Statement::Text() { return std::string(TextView()); }

std::int64_t Statement::Number() { return sqlite3_column_int64(statement_, column_++); }

bool Statement::IsNull() const { return sqlite3_column_type(statement_, column_) == SQLITE_NULL; }

bool Statement::IsNumber() const { return sqlite3_column_type(statement_, column_) == SQLITE_INTEGER; }

const char* Statement::ColumnName(int column) const { return sqlite3_column_name(statement_, column); }

int Statement::Columns() const noexcept { return sqlite3_column_count(statement_); }

}  // namespace quillmate::inventory
