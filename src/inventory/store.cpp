#include <chrono>
#include <ctime>
#include <random>

#include <quillmate/text/operations.h>

#include "link_targets_p.h"
#include "schema_p.h"
#include "store_p.h"

namespace quillmate::inventory {
namespace {

/// Rows of files and contents in one step: a kill loses no more than these.
constexpr std::int64_t kStep = 4000;

std::string Now() {
  const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm parts = {};
#ifdef _WIN32
  gmtime_s(&parts, &now);
#else
  gmtime_r(&now, &parts);
#endif
  char text[32] = {};
  std::strftime(text, sizeof(text), "%Y-%m-%dT%H:%M:%SZ", &parts);
  return text;
}

std::string RandomId() {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::random_device device;
  std::string id;
  for (int i = 0; i < 4; ++i) {
    for (auto bits = device(), digits = 8U; digits > 0; --digits, bits >>= 4U) id += kDigits[bits & 0xFU];
  }
  return id;
}

std::string InsertInto(const ContentTable& table) {
  const auto columns = text::Split(table.columns, ", ").size();
  std::string sql = "INSERT INTO " + std::string(table.name) + " VALUES(?,?";
  for (std::size_t i = 0; i < columns; ++i) sql += ",?";
  return sql + ")";
}

std::string InsertContent() {
  const std::string columns = kContentColumns;
  std::string values = "?", updates;
  const auto names = text::Split(columns, ", ");
  for (std::size_t i = 1; i < names.size(); ++i) values += ",?";
  for (const std::string_view name : names) {
    updates.append(updates.empty() ? "" : ",").append(name).append("=excluded.").append(name);
  }
  return "INSERT INTO inhalt(" + columns + ") VALUES(" + values + ") ON CONFLICT(pruefsumme, art) DO UPDATE SET " +
         updates + " RETURNING nr";
}

constexpr const char* kPutFile =
    "INSERT INTO datei(ordner,name,groesse,zeit,inhalt,zustand,grund,erstmals,geaendert) VALUES(?1,?2,?3,?4,?5,?6,?7,"
    "?8,?8) ON CONFLICT(ordner,name) DO UPDATE SET groesse=?3, zeit=?4, geaendert=CASE WHEN inhalt IS ?5 AND "
    "zustand=?6 AND verschwunden IS NULL THEN geaendert ELSE ?8 END, inhalt=?5, zustand=?6, grund=?7, "
    "verschwunden=NULL";

constexpr const char* kKnownColumns =
    "SELECT d.nr, d.groesse, d.zeit, d.zustand, coalesce(i.fassung, ?2), d.inhalt IS NULL, "
    "d.verschwunden IS NOT NULL, d.name "
    "FROM datei d LEFT JOIN inhalt i ON i.nr = d.inhalt WHERE d.ordner = ?1";

KnownFile TakeKnown(Statement& row, bool retry) {
  KnownFile known;
  known.number = row.Number();
  known.stamp.size = static_cast<std::uint64_t>(row.Number());
  known.stamp.time = row.Number();
  const auto state = StateFromWord(row.TextView());
  const bool failed = state == State::kTimedOut || state == State::kCrashed;
  const bool old = row.Number() < kContentVersion;
  // What could not be opened may be open to us today.
  const bool unopened = state == State::kUnreadable && row.Number() != 0;
  if (state != State::kUnreadable) row.Skip();
  known.stale = !state || unopened || (retry && failed) || old;
  known.vanished = row.Number() != 0;
  return known;
}

}  // namespace

struct Store::Statements {
  explicit Statements(Database& database)
      : putFolder(database,
                  "INSERT INTO ordner(pfad,lauf,grund) VALUES(?1,?2,?3) ON CONFLICT(pfad) DO UPDATE SET "
                  "lauf=coalesce(?2,lauf), grund=?3 RETURNING nr"),
        filesIn(database, kKnownColumns),
        findFile(database, std::string(kKnownColumns) + " AND d.name = ?3"),
        missed(database,
               "SELECT nr, pfad FROM ordner WHERE (lauf IS NULL OR lauf<>?1) AND (pfad=?2 OR (pfad>=?3 AND pfad<?4))"),
        vanishFolder(database, "UPDATE datei SET verschwunden=?1 WHERE ordner=?2 AND verschwunden IS NULL"),
        vanish(database, "UPDATE datei SET verschwunden=?1 WHERE nr=?2"),
        back(database, "UPDATE datei SET verschwunden=NULL, geaendert=?1 WHERE nr=?2"),
        findContent(database, "SELECT nr, zustand FROM inhalt WHERE pruefsumme=? AND art=? AND fassung=?"),
        putContent(database, InsertContent()),
        putFile(database, kPutFile) {
    for (const ContentTable& table : kContentTables) {
      clear.emplace_back(database, "DELETE FROM " + std::string(table.name) + " WHERE inhalt=?");
      insert.emplace_back(database, InsertInto(table));
    }
  }

  Statement putFolder, filesIn, findFile, missed, vanishFolder, vanish, back, findContent, putContent, putFile;
  std::vector<Statement> clear, insert;
};

Store::Store(const std::filesystem::path& file, bool retry)
    : database_(NoSource(file), Database::Mode::kCreate), retry_(retry) {
  PrepareSchema(database_);
  statements_ = std::make_unique<Statements>(database_);
  database_.Run("BEGIN IMMEDIATE");
}

Store::~Store() = default;

void Store::Touched() { ++pending_; }

void Store::BeginRun(const std::string& roots, const std::string& shard, const std::string& exclude,
                     const std::string& program) {
  Statement last(database_, "SELECT zustand <> 'fertig' OR ausgelassen <> ? FROM lauf ORDER BY nr DESC LIMIT 1");
  last.Add(exclude);
  changed_ = !last.Next() || last.Number() != 0;
  last.Reset();
  // One that was killed can't have said so.
  database_.Run("UPDATE lauf SET zustand='abgebrochen' WHERE zustand='läuft'");
  const std::string id = RandomId(), now = Now();
  Statement insert(database_,
                   "INSERT INTO lauf(kennung,begonnen,zustand,programm,quellen,anteil,ausgelassen) "
                   "VALUES(?,?,'läuft',?,?,?,?)");
  insert.Add(id).Add(now).Add(program).Add(roots).Add(shard).Add(exclude).Run();
  run_ = database_.LastRow();
  Commit();
}

void Store::EndRun(const RunCounts& counts, std::string_view state) {
  // One that was cancelled leaves it to the next one.
  const std::string now = Now();
  Statement update(database_,
                   "UPDATE lauf SET beendet=?,zustand=?,dateien=?,gelesen=?,unveraendert=?,verschwunden=? WHERE nr=?");
  update.Add(now).Add(state).Add(counts.files).Add(counts.read).Add(counts.unchanged).Add(counts.vanished);
  update.Add(run_).Run();
  // One that was cancelled leaves it to the next one.
  const bool changed = changed_ || counts.read > 0 || counts.vanished > 0;
  if (changed && state == "fertig") FindTargets(database_);
  Commit();
  // Takes the emptied journal away.
  database_.Run("COMMIT; PRAGMA journal_mode=DELETE; BEGIN IMMEDIATE");
}

std::int64_t Store::LastCount() {
  Statement ask(database_, "SELECT dateien FROM lauf WHERE zustand='fertig' ORDER BY nr DESC LIMIT 1");
  return ask.Next() ? ask.Number() : 0;
}

std::int64_t Store::PutFolder(std::string_view path, std::string_view reason, bool entered) {
  Statement& put = statements_->putFolder;
  put.Add(path).Add(entered ? std::optional(run_) : std::nullopt).Add(reason);
  const std::int64_t number = put.Next() ? put.Number() : 0;
  put.Reset();
  Touched();
  return number;
}

std::unordered_map<std::string, KnownFile> Store::FilesIn(std::int64_t folder) {
  std::unordered_map<std::string, KnownFile> known;
  Statement& ask = statements_->filesIn;
  ask.Add(folder).Add(std::int64_t{kContentVersion});
  while (ask.Next()) {
    const KnownFile file = TakeKnown(ask, retry_);
    known.emplace(ask.Text(), file);
  }
  return known;
}

std::optional<KnownFile> Store::FindFile(std::int64_t folder, std::string_view name) {
  Statement& ask = statements_->findFile;
  ask.Add(folder).Add(std::int64_t{kContentVersion}).Add(name);
  std::optional<KnownFile> known;
  if (ask.Next()) known = TakeKnown(ask, retry_);
  ask.Reset();
  return known;
}

std::vector<std::pair<std::int64_t, std::string>> Store::MissedFolders(std::string_view root) {
  std::vector<std::pair<std::int64_t, std::string>> folders;
  // Everything that begins with the root and a separator.
  std::string first(root);
  const char separator = first.find('/') != std::string::npos ? '/' : '\\';
  if (!first.ends_with(separator)) first += separator;
  std::string behind = first;
  ++behind.back();
  Statement& ask = statements_->missed;
  ask.Add(run_).Add(root).Add(first).Add(behind);
  while (ask.Next()) {
    const std::int64_t number = ask.Number();
    folders.emplace_back(number, ask.Text());
  }
  return folders;
}

std::int64_t Store::MarkFolderVanished(std::int64_t folder) {
  Statement count(database_, "SELECT count(*) FROM datei WHERE ordner=? AND verschwunden IS NULL");
  count.Add(folder);
  const std::int64_t files = count.Next() ? count.Number() : 0;
  statements_->vanishFolder.Add(run_).Add(folder).Run();
  Touched();
  return files;
}

void Store::MarkVanished(std::int64_t file) {
  statements_->vanish.Add(run_).Add(file).Run();
  Touched();
}

void Store::MarkBack(std::int64_t file) {
  changed_ = true;
  statements_->back.Add(run_).Add(file).Run();
  Touched();
}

std::optional<Store::FoundContent> Store::FindContent(std::string_view hash, std::string_view reading) {
  Statement& ask = statements_->findContent;
  ask.Add(hash).Add(reading).Add(std::int64_t{kContentVersion});
  std::optional<FoundContent> found;
  if (ask.Next()) {
    const std::int64_t number = ask.Number();
    found = FoundContent{number, StateFromWord(ask.TextView()).value_or(State::kUnreadable)};
  }
  ask.Reset();
  if (found && retry_ && (found->state == State::kTimedOut || found->state == State::kCrashed)) found.reset();
  return found;
}

std::int64_t Store::PutContent(std::string_view hash, std::string_view reading, std::uint64_t size,
                               const Content& content) {
  std::int64_t lines = 0, codeLines = 0;
  for (const ModuleRow& module : content.modules) {
    lines += module.lines;
    codeLines += module.codeLines;
  }
  Statement& put = statements_->putContent;
  put.Add(hash).Add(reading).Add(std::int64_t{kContentVersion}).Add(static_cast<std::int64_t>(size));
  put.Add(Word(content.state)).Add(content.reason).Add(content.format).Add(std::int64_t{content.codePage});
  put.Add(content.project).Add(content.protection).Add(content.isSigned).Add(content.title).Add(content.author);
  put.Add(content.lastAuthor).Add(content.company).Add(content.application).Add(content.created);
  put.Add(content.modified).Add(std::int64_t{content.excel4Sheets}).Add(std::int64_t{content.replaced});
  put.Add(static_cast<std::int64_t>(content.modules.size())).Add(static_cast<std::int64_t>(content.routines.size()));
  put.Add(lines).Add(codeLines).Add(static_cast<std::int64_t>(content.findings.size()));
  put.Add(content.signer).Add(content.signerIssuer).Add(content.signedFrom).Add(content.signedUntil);
  const std::int64_t number = put.Next() ? put.Number() : 0;
  put.Reset();
  // Rows that an older program has left.
  for (Statement& clear : statements_->clear) clear.Add(number).Run();
  PutRows(number, content);
  Touched();
  return number;
}

void Store::PutRows(std::int64_t number, const Content& content) {
  std::vector<Statement>& insert = statements_->insert;
  const auto each = [number](Statement& statement, const auto& rows, auto add) {
    std::int64_t place = 0;
    for (const auto& row : rows) {
      statement.Add(number).Add(place++);
      add(statement, row);
      statement.Run();
    }
  };
  const auto n = [](auto value) { return static_cast<std::int64_t>(value); };
  each(insert[0], content.modules, [&](Statement& s, const ModuleRow& m) {
    s.Add(m.name).Add(m.kind).Add(n(m.lines)).Add(n(m.codeLines)).Add(n(m.commentLines)).AddHash(m.hash);
  });
  each(insert[1], content.routines, [&](Statement& s, const RoutineRow& r) {
    s.Add(n(r.module)).Add(r.name).Add(r.kind).Add(r.visibility).Add(r.signature).Add(n(r.line)).Add(n(r.lines));
    s.Add(n(r.statements)).Add(n(r.complexity)).Add(n(r.nesting)).Add(n(r.parameters)).AddHash(r.hash);
  });
  std::string target;
  each(insert[2], content.references, [&](Statement& s, const ReferenceRow& r) {
    target = IsLookedFor(r) ? TargetName(r.path) : std::string();
    s.Add(r.name).Add(r.version).Add(r.path).Add(n(r.toProject)).Add(target).Add(r.broken);
  });
  each(insert[3], content.links, [&](Statement& s, const LinkRow& l) {
    target = TargetName(l.target);
    s.Add(l.kind).Add(l.target).Add(target);
  });
  each(insert[4], content.bindings,
       [&](Statement& s, const BindingRow& b) { s.Add(b.kind).Add(b.module).Add(b.target).Add(b.place); });
  std::map<std::string_view, std::int64_t> counts;
  each(insert[5], content.findings, [&](Statement& s, const FindingRow& f) {
    ++counts[f.check];
    s.Add(f.check).Add(n(f.module)).Add(f.routine).Add(n(f.line)).Add(n(f.column)).Add(f.text);
  });
  each(insert[6], counts, [](Statement& s, const auto& count) { s.Add(count.first).Add(count.second); });
  each(insert[7], content.apis, [&](Statement& s, const ApiRow& a) {
    s.Add(n(a.module)).Add(a.name).Add(a.library).Add(a.alias).Add(n(a.ptrSafe)).Add(n(a.line));
  });
}

void Store::PutFile(const FileRow& file) {
  statements_->putFile.Add(file.folder).Add(file.name).Add(static_cast<std::int64_t>(file.stamp.size));
  statements_->putFile.Add(file.stamp.time).Add(file.content).Add(Word(file.state)).Add(file.reason).Add(run_).Run();
  Touched();
}

void Store::CommitIfLarge() {
  if (pending_ >= kStep) Commit();
}

void Store::Commit() {
  database_.Run("COMMIT; BEGIN IMMEDIATE");
  pending_ = 0;
}

}  // namespace quillmate::inventory
