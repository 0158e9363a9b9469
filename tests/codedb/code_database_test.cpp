#include <algorithm>
#include <fstream>
#include <memory>

#include <gtest/gtest.h>
#include <sqlite3.h>
#ifndef _WIN32
#include <unistd.h>
#endif

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/codes.h>
#include <quillmate/files/failure.h>
#include <quillmate/files/file_bytes.h>
#include <quillmate/files/paths.h>

#include "scratch.h"

namespace quillmate::codedb {
namespace {

namespace fs = std::filesystem;

constexpr const char* kModuleTree =
    "SELECT td_Mod.mod_typ,   td_Mod.mod_name,   td_Mod.mod_num FROM td_Mod ORDER BY td_Mod.mod_typ,   "
    "td_Mod.mod_name;";

/// Other tools lack the collation of the tables; the views need none.
TEST(CodeDatabase, ViewsAnswerWithoutTheProgram) {
  FreshIndex index;
  index.AddModule(1, "M\304", "2");
  index.AddRoutine(1, 1, "Zwei");
  index.AddRoutine(2, 1, "eins");
  index.database.CloseCodeDatabase();
  sqlite3* opened = nullptr;
  ASSERT_EQ(sqlite3_open(CodeDbPath(index.folder.Path()).string().c_str(), &opened), SQLITE_OK);
  const std::unique_ptr<sqlite3, int (*)(sqlite3*)> db(opened, sqlite3_close);
  std::string names;
  const auto collect = [](void* text, int count, char** values, char**) {
    for (int i = 0; i < count; ++i) static_cast<std::string*>(text)->append(values[i]).append(" ");
    return 0;
  };
  EXPECT_EQ(
      sqlite3_exec(opened,
                   "SELECT rou_name, mod_name FROM v_rout JOIN v_mod USING (mod_num) WHERE rou_name <> 'x' ORDER BY "
                   "rou_name; SELECT rou_num FROM v_rout WHERE rou_name = 'ZWEI'",
                   collect, &names, nullptr),
      SQLITE_OK);
  EXPECT_EQ(names, "eins MÄ Zwei MÄ 1 ");
}

TEST(CodeDatabase, QueriesOfTheProgram) {
  FreshIndex index;
  index.AddModule(1, "Zahlen", "2");
  index.AddModule(2, "\304pfel", "2");
  index.AddModule(3, "Apfelmus", "2");
  index.AddModule(4, "Fremd", "32");
  index.AddModule(5, "B", "1");
  index.AddRoutine(1, 1, "Zebra", "1", "2");
  index.AddRoutine(2, 1, "adler", "2");
  index.AddRoutine(3, 1, "\326l", "4");
  index.AddRoutine(4, 2, "ZEBRA", "2", "3");
  index.AddRoutine(5, 3, "zebra", "1");
  index.AddRoutine(6, 3, "GetTickCount", "12", "1", "3");
  index.AddRoutine(7, 2, "Wert", "4");
  index.AddRoutine(8, 2, "Wert", "3");
  index.SetSpan(1, 5, 20);
  index.SetSpan(2, 22, 40);
  index.SetSpan(3, 42, 44);
  index.SetSpan(4, 1, 9);
  index.SetSpan(7, 3, 4);
  index.SetSpan(8, 6, 8);
  index.SetLine("rou_start", "7", 6);
  index.database.ExecuteSql(
      "UPDATE td_rout SET td_rout.rou_ende = [rou_start]+([anz_dec_zeilen]-1) WHERE (([rou_typ]>10) And (mod_num=3));");

  const std::string otherModules =
      "SELECT td_rout.rou_start,   td_rout.mod_num,   td_mod.mod_name, td_rout.rou_open FROM td_rout INNER JOIN td_mod "
      "ON td_rout.mod_num = td_mod.mod_num WHERE (((td_rout.rou_name)='zEbra') AND ((td_rout.rou_open)<>2));";
  const auto atLine = [](const std::string& line, const std::string& module) {
    return "SELECT td_rout.rou_name,   td_rout.rou_start,   td_rout.rou_ende FROM td_rout WHERE "
           "(((td_rout.rou_start)<=" +
           line + ") AND ((td_rout.rou_ende)>=" + line + ") AND ((td_rout.mod_num)=" + module + "));";
  };
  const struct {
    std::string query;
    int fields;
    std::string rows;
  } cases[] = {
      {kModuleTree, 3, "1|B|5;2|\304pfel|2;2|Apfelmus|3;2|Zahlen|1;32|Fremd|4"},
      {"SELECT 'M' & [mod_num] AS mnum,   'R' & [rou_num] AS rnum,   td_rout.rou_name,   'R' & [rou_typ] & 'O' & "
       "[rou_open] AS iflag FROM td_rout ORDER BY td_rout.mod_num,   td_rout.rou_name;",
       4,
       "M1|R2|adler|R2O1;M1|R3|\326l|R4O1;M1|R1|Zebra|R1O2;M2|R7|Wert|R4O1;M2|R8|Wert|R3O1;M2|R4|ZEBRA|R2O3;M3|R6|"
       "GetTickCount|R12O1;M3|R5|zebra|R1O1"},
      {"SELECT td_rout.rou_start, td_rout.rou_open From td_rout WHERE (((td_rout.rou_name)='\366L') AND "
       "((td_rout.mod_num)=1));",
       2, "42|1"},
      // The first record counts: of a name the routine read first, at a line the one that started last.
      {"SELECT td_rout.rou_start, td_rout.rou_open From td_rout WHERE (((td_rout.rou_name)='wert') AND "
       "((td_rout.mod_num)=2));",
       1, "3;6"},
      {atLine("7", "2"), 1, "ZEBRA;Wert"},
      {otherModules, 4, "1|2|\304pfel|3;|3|Apfelmus|1"},
      {"SELECT td_Mod.mod_typ,   td_Mod.mod_name,   td_Mod.mod_num FROM td_Mod Where td_mod.mod_num = 4", 3,
       "32|Fremd|4"},
      {atLine("21", "1"), 3, ""},
      {atLine("22", "1"), 3, "adler|22|40"},
      {atLine("9", "3"), 3, "GetTickCount|7|9"},
      {"SELECT Min([rou_start])-1 AS Letzte FROM td_rout WHERE (([mod_num]=1));", 1, "4"},
      {"SELECT Min([rou_start])-1 AS Letzte FROM td_rout WHERE (([mod_num]=99));", 1, ""},
      {"SELECT td_rout.rou_name,   Count(td_rout.rou_name) AS Anzahlvonrou_name FROM td_rout WHERE "
       "(((td_rout.rou_typ)<3 Or (td_rout.rou_typ)>10) AND ((td_rout.rou_open)=1)) GROUP BY td_rout.rou_name HAVING "
       "(((Count(td_rout.rou_name))<2));",
       2, "adler|1;GetTickCount|1;zebra|1"},
      {"SELECT rou_name FROM td_rout WHERE rou_num='2'", 1, "adler"},
      {"SELECT rou_num FROM td_rout WHERE 'r' & [rou_num] = 'R4'", 1, "4"},
      {"SELECT rou_start & '-' & rou_ende FROM td_rout WHERE rou_num=5", 1, "-"},
  };
  for (const auto& c : cases) EXPECT_EQ(index.Rows(c.query, c.fields), c.rows) << c.query;
}

TEST(CodeDatabase, EveryCodeSurvivesAndNamesChangeNothing) {
  FreshIndex index;
  std::string all;
  for (int c = 0; c < 256; ++c) all += static_cast<char>(c);
  const std::string names[] = {all, "'); DELETE FROM td_mod; --", "x' AS AX2, '9", "[a]?;\"b\"", "''",
                               "",  "\201\215\217\220\235"};
  int number = 0;
  for (const std::string& name : names) index.database.InsertModule({{++number}, name, kStandard, 1, {}});
  for (int i = 1; i <= number; ++i) {
    Recordset rows = index.database.OpenRecordset("SELECT mod_name FROM td_mod WHERE mod_num=" + std::to_string(i));
    ASSERT_TRUE(rows.Next());
    EXPECT_EQ(rows.Text("MOD_NAME"), names[i - 1]);
    EXPECT_EQ(index.Rows("SELECT mod_num FROM td_mod WHERE mod_name='" + QuoteLiteral(names[i - 1]) +
                             "' AND mod_num=" + std::to_string(i),
                         1),
              std::to_string(i));
    const std::vector<ModuleRecord> found = index.database.ModulesNamed(names[i - 1]);
    EXPECT_TRUE(std::ranges::any_of(found, [&](const ModuleRecord& m) { return m.number.value == i; }));
  }
  EXPECT_EQ(index.database.ReadIndex().size(), std::size(names));
}

TEST(CodeDatabase, ColumnsRefuseWhatDoesNotFit) {
  FreshIndex index;
  index.AddModule(1, "A", "32767", "2147483647");
  index.AddModule(2, "B", "-32768", "-2147483648");
  index.AddModule(2147483647, "C", "2");
  const struct {
    std::string number, kind, lines, named;
  } cases[] = {
      {"3", "32768", "1", "\"mod_typ\""},
      {"3", "-32769", "1", "\"mod_typ\""},
      {"3", "2", "2147483648", "\"mod_zeilen\""},
      {"3", "2", "1.5", "\"mod_zeilen\""},
      {"3", "zwei", "1", "\"mod_typ\""},
      {"3", "", "1", "\"mod_typ\""},
      {"1", "2", "1", "\"mod_num\""},
      {"x", "2", "1", "ganze Zahl"},
      {"2147483648", "2", "1", "\"mod_num\""},
  };
  for (const auto& c : cases) {
    const std::string statement = "INSERT INTO td_mod(mod_num,mod_name,mod_typ,mod_zeilen) SELECT '" + c.number +
                                  "' AS AX1, 'N' AS AX2, '" + c.kind + "' AS AX3, '" + c.lines + "' AS AX4";
    const std::string message = MessageOf([&] { index.database.ExecuteSql(statement); });
    EXPECT_NE(message.find(c.named), std::string::npos) << statement << "\n" << message;
  }
  index.AddRoutine(1, 1, "R");
  const std::string refused = MessageOf([&] {
    index.database.InsertRoutine({{2}, {1}, "S's", kSub, kPublic, 40000, {}, {}});
  });
  EXPECT_NE(refused.find("\"anz_dec_zeilen\""), std::string::npos) << refused;
  EXPECT_NE(refused.find("SELECT '1' AS AX1, '1' AS AX2, '40000' AS AX3, 'S''s' AS AX4, '2' AS AX5, '1' AS AX6, "),
            std::string::npos)
      << refused;
  EXPECT_THROW(index.SetLine("rou_start", "3000000000", 1), files::Failure);
  EXPECT_THROW(index.SetLine("rou_ende", "2.5", 1), files::Failure);
  EXPECT_EQ(index.Rows("SELECT Count(*) FROM td_mod", 1) + index.Rows("SELECT Count(*) FROM td_rout", 1), "31");
}

TEST(CodeDatabase, WrongStatementsAreNamed) {
  FreshIndex index;
  for (const char* const statement : {"SELECT nichts FROM td_mod", "SELECT mod_num FROM td_gibtsnicht",
                                      "SELECT mod_num FROM", "CREATE TABLE x (y)", "SELECT 'a' & & 'b'"}) {
    EXPECT_NE(MessageOf([&] { index.database.OpenRecordset(statement); }), "") << statement;
  }
  EXPECT_THROW(index.database.ExecuteSql("SELECT mod_num FROM td_mod"), files::Failure);
  EXPECT_THROW(index.database.OpenRecordset("DELETE FROM td_mod"), files::Failure);
  index.AddModule(1, "A", "2");
  EXPECT_EQ(index.Rows("SELECT mod_num FROM td_mod", 1), "1");
}

TEST(CodeDatabase, TransactionsShowAllOrNothing) {
  FreshIndex index;
  CodeDatabase reader;
  reader.OpenCodeDatabase(index.folder.Path());
  const auto count = [](CodeDatabase& database) { return database.ReadIndex().size(); };

  index.database.Begin();
  EXPECT_THROW(index.database.Begin(), files::Failure);
  index.AddModule(1, "A", "2");
  EXPECT_THROW(index.AddModule(1, "A", "2"), files::Failure);
  index.AddModule(2, "B", "2");
  EXPECT_EQ(count(index.database), 2U);
  EXPECT_EQ(count(reader), 0U);
  index.database.Commit();
  EXPECT_EQ(count(reader), 2U);
  EXPECT_THROW(index.database.Commit(), files::Failure);

  index.database.Begin();
  Recordset open = index.database.OpenRecordset(kModuleTree);
  ASSERT_TRUE(open.Next());
  index.database.ExecuteSql("DELETE FROM td_mod");
  index.database.Rollback();
  index.database.Rollback();
  EXPECT_EQ(count(index.database), 2U);

  index.database.Begin();
  index.database.ExecuteSql("DELETE FROM td_mod");
  index.database.OpenCodeDatabase(index.folder.Path());
  EXPECT_EQ(count(index.database), 2U);
}

TEST(CodeDatabase, RecordsetsStandAloneAndOutliveTheDatabase) {
  FreshIndex index;
  for (int i = 1; i <= 3; ++i) index.AddModule(i, "Modul" + std::to_string(i), "2");
  const auto open = [&](int from) {
    return index.database.OpenRecordset("SELECT mod_num, mod_name, NULL AS leer FROM td_mod WHERE mod_num>=" +
                                        std::to_string(from) + " ORDER BY mod_num");
  };
  Recordset first = open(1);
  Recordset second = open(2);
  EXPECT_THROW(static_cast<void>(first.Text(0)), files::Failure);
  ASSERT_TRUE(first.Next());
  ASSERT_TRUE(second.Next());
  EXPECT_EQ(first.Text("mod_name") + second.Text("mod_name"), "Modul1Modul2");
  EXPECT_EQ(first.Number("mod_num"), 1);
  EXPECT_EQ(first.Number("leer"), std::nullopt);
  EXPECT_EQ(first.Text("LEER"), "");
  EXPECT_THROW(static_cast<void>(first.Text("fehlt")), files::Failure);
  EXPECT_THROW(static_cast<void>(first.Number(3)), files::Failure);
  EXPECT_THROW(static_cast<void>(first.Text(-1)), files::Failure);
  ASSERT_TRUE(second.Next());
  EXPECT_FALSE(second.Next());
  EXPECT_FALSE(second.Next());
  EXPECT_THROW(static_cast<void>(second.Text(0)), files::Failure);

  second = open(3);
  ASSERT_TRUE(first.Next());
  EXPECT_EQ(first.Text(1), "Modul2");
  {
    const Recordset unfinished = std::move(first);
    index.database.CloseCodeDatabase();
    index.database.CloseCodeDatabase();
    EXPECT_THROW(static_cast<void>(unfinished.Text(1)), files::Failure);
  }
  EXPECT_THROW(second.Next(), files::Failure);
  EXPECT_FALSE(index.database.IsOpen());
  EXPECT_THROW(index.AddModule(9, "A", "2"), files::Failure);
  EXPECT_THROW(index.database.Begin(), files::Failure);
  index.database.Rollback();
}

void WriteBytes(const fs::path& file, const std::string& bytes) { std::ofstream(file, std::ios::binary) << bytes; }

/// A filled index of some dozen pages.
std::string FilledIndex(const fs::path& folder) {
  FreshIndex index;
  index.AddModule(1, "Modul1", "2");
  for (int i = 1; i <= 500; ++i) index.AddRoutine(i, 1, std::string(60, 'x') + std::to_string(i));
  index.database.CloseCodeDatabase();
  std::string bytes = files::ReadWholeFile(CodeDbPath(index.folder.Path()));
  WriteBytes(CodeDbPath(folder), bytes);
  return bytes;
}

TEST(OpenDatabase, WhatIsNoWholeIndexIsRefused) {
  const ScratchFolder folder;
  const fs::path file = CodeDbPath(folder.Path());
  const std::string whole = FilledIndex(folder.Path());
  std::string scribbled = whole;
  scribbled.replace(whole.size() / 2, 4096, 4096, 'x');
  std::string modulesScribbled = whole;
  modulesScribbled.replace(4096, 4096, 4096, 'x');  // the second page
  const struct {
    const char* name;
    std::string bytes;
    bool holdsModules;
  } cases[] = {{"empty", "", false},
               {"text", std::string(9000, 'x'), false},
               {"cut off", whole.substr(0, whole.size() / 2), false},
               {"cut in the header", whole.substr(0, 60), false},
               {"modules scribbled over", modulesScribbled, false},
               {"routines scribbled over", scribbled, true}};
  CodeDatabase database;
  for (const auto& c : cases) {
    WriteBytes(file, c.bytes);
    if (c.holdsModules) {
      database.OpenModules(file.parent_path());
      EXPECT_EQ(database.Modules().size(), std::size_t{1}) << c.name;
    } else {
      EXPECT_THROW(database.OpenModules(file.parent_path()), files::Failure) << c.name;
    }
    const std::string message = MessageOf([&] { database.OpenCodeDatabase(file.parent_path()); });
    EXPECT_NE(message.find("Prüf Ordner"), std::string::npos) << c.name << message;
    EXPECT_FALSE(database.IsOpen()) << c.name;
    EXPECT_EQ(files::ReadWholeFile(file), c.bytes) << c.name;
  }
  WriteBytes(file, whole);
  database.OpenCodeDatabase(file.parent_path());
  EXPECT_TRUE(database.IsOpen());
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);

  database.CloseCodeDatabase();
  fs::remove(file);
  EXPECT_THROW(database.OpenCodeDatabase(folder.Path()), files::Failure);
  EXPECT_FALSE(fs::exists(file));
  EXPECT_FALSE(database.IsOpen());
  fs::create_directory(file);
  EXPECT_THROW(database.OpenCodeDatabase(folder.Path()), files::Failure);
}

using Raw = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;

Raw OpenRaw(const fs::path& file, const char* statements) {
  sqlite3* opened = nullptr;
  sqlite3_open(files::PathText(file).c_str(), &opened);
  EXPECT_EQ(sqlite3_exec(opened, statements, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(opened);
  return {opened, sqlite3_close};
}

TEST(EngineFailure, SaysTheSameThingInTheSameWordsEverywhere) {
  const Raw raw =
      OpenRaw(":memory:", "PRAGMA max_page_count = 4; CREATE TABLE t (zahl INTEGER PRIMARY KEY CHECK (zahl < 9))");
  const struct {
    const char* before;
    const char* statement;
    std::error_code code;
    std::string text;
  } cases[] = {
      {"", "CREATE TABLE u AS SELECT zeroblob(99999)", std::make_error_code(std::errc::no_space_on_device),
       "Der Datenträger ist voll"},
      {"", "INSERT INTO t VALUES(10)", DatabaseReason::kOutOfRange,
       "Der Wert ist zu groß oder zu klein für das Feld \"9\""},
      {"INSERT INTO t VALUES(1)", "INSERT INTO t VALUES(1)", DatabaseReason::kTaken,
       "Es gibt schon einen Datensatz mit dieser Nummer im Feld \"zahl\""},
      {"", "SELECT", DatabaseReason::kBadStatement, "Die Datenbank versteht die Anweisung nicht: incomplete input"},
      {"PRAGMA query_only = 1", "DELETE FROM t", DatabaseReason::kReadOnly, "Die Datenbank ist schreibgeschützt"},
  };
  for (const auto& c : cases) {
    sqlite3_exec(raw.get(), c.before, nullptr, nullptr, nullptr);
    EXPECT_NE(sqlite3_exec(raw.get(), c.statement, nullptr, nullptr, nullptr), SQLITE_OK) << c.statement;
    const files::Failure failure = EngineFailure(raw.get());
    EXPECT_EQ(failure.Code(), c.code) << c.statement;
    EXPECT_STREQ(failure.what(), c.text.c_str()) << c.statement;
  }
  EXPECT_EQ(EngineFailure(nullptr).Code(), std::errc::not_enough_memory);
}

TEST(OpenDatabase, MissingTablesAndLocksAreNamed) {
  const ScratchFolder folder;
  const fs::path file = CodeDbPath(folder.Path());
  CodeDatabase database;
  const auto open = [&] { database.OpenCodeDatabase(file.parent_path()); };
  OpenRaw(file, "CREATE TABLE td_mod (mod_num, mod_name, mod_typ, mod_zeilen)");
  EXPECT_NE(MessageOf(open).find("td_rout"), std::string::npos);
  // A view can't stand in for a table.
  OpenRaw(file,
          "CREATE VIEW td_rout AS SELECT mod_num, 1 AS rou_num, '' AS rou_name, 1 AS rou_typ, 1 AS rou_open, 1 AS "
          "anz_dec_zeilen, 1 AS rou_start, 1 AS rou_ende FROM td_mod");
  EXPECT_NE(MessageOf(open).find("td_rout"), std::string::npos);

  FilledIndex(folder.Path());
  {
    const Raw writer = OpenRaw(file, "BEGIN EXCLUSIVE");
    EXPECT_NE(MessageOf(open).find("gesperrt"), std::string::npos);
  }
  open();
  EXPECT_TRUE(database.IsOpen());
}

#ifndef _WIN32
/// Works as somebody without special rights for a while: to the administrator nothing is read-only.
class AsNobody {
 public:
  AsNobody() : wasRoot_(geteuid() == 0) {
    if (wasRoot_) changed_ = seteuid(65534) == 0;
  }
  AsNobody(const AsNobody&) = delete;
  AsNobody& operator=(const AsNobody&) = delete;
  ~AsNobody() {
    if (changed_ && seteuid(0) != 0) std::abort();
  }

 private:
  bool wasRoot_;
  bool changed_ = false;
};
#endif

TEST(OpenDatabase, ReadOnlyFilesAreRead) {
  FreshIndex index;
  index.AddModule(1, "A", "2");
  index.database.CloseCodeDatabase();
  const fs::path file = CodeDbPath(index.folder.Path());
  fs::permissions(index.folder.Path().parent_path(), fs::perms::all);
  fs::permissions(index.folder.Path(), fs::perms(0555));
  fs::permissions(file, fs::perms(0444));
  {
#ifndef _WIN32
    const AsNobody nobody;
#endif
    if (std::ofstream(file, std::ios::app)) GTEST_SKIP() << "write protection does not bind this user";
    index.database.OpenCodeDatabase(file.parent_path());
    EXPECT_EQ(index.Rows("SELECT mod_name FROM td_mod", 1), "A");
    const std::string message = MessageOf([&] { index.AddModule(2, "B", "2"); });
    EXPECT_NE(message.find("schreibgeschützt"), std::string::npos) << message;
    index.database.CloseCodeDatabase();
  }
  fs::permissions(index.folder.Path(), fs::perms(0755));
  fs::permissions(file, fs::perms(0644));
}

TEST(ReadIndex, ModulesAndRoutinesByNumber) {
  FreshIndex index;
  EXPECT_TRUE(index.database.ReadIndex().empty());
  index.AddModule(2, "B", "32", "7");
  index.AddModule(1, "A", "1", "3");
  index.AddRoutine(3, 2, "Z", "12", "2", "3");
  index.AddRoutine(1, 2, "Y", "4", "3", "1");
  index.AddRoutine(2, 99, "ohne Modul");
  index.SetSpan(1, 4, 6);
  const std::vector<ModuleRecord> modules = index.database.ReadIndex();
  ASSERT_EQ(modules.size(), 2U);
  EXPECT_EQ(modules[0].name, "A");
  EXPECT_TRUE(modules[0].routines.empty());
  EXPECT_EQ(modules[1].kind, 32);
  EXPECT_EQ(modules[1].lines, 7);
  ASSERT_EQ(modules[1].routines.size(), 2U);
  const RoutineRecord& property = modules[1].routines[0];
  EXPECT_EQ(property.name + std::to_string(property.kind) + std::to_string(property.visibility), "Y43");
  EXPECT_EQ(property.start, Line{4});
  EXPECT_EQ(property.end, Line{6});
  EXPECT_EQ(modules[1].routines[1].headerLines, 3);
  EXPECT_EQ(modules[1].routines[1].start, std::nullopt);
}

}  // namespace
}  // namespace quillmate::codedb
