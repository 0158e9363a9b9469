// Makes the empty index that the program copies for every read. Runs once, while the program is built.

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include <sqlite3.h>

#include "collation_p.h"

namespace {

// STRICT columns take numbers given as text and refuse everything that is no whole number; the checks keep the ranges
// of 16 and 32 bits. Each check bears the name of its column: the program names it when a value is refused.
// The keys are the row numbers, so that an update by number is one step down the tree.
// td_rout_modul serves what is asked for a module as a whole, in the order of the routines' numbers; it grows at its
// end while a project is read. Names have no index: a scan finds one among 40,000 routines within a few milliseconds,
// while an index on them would cost as much as all other work of a read.
// Names compare by the program's own order, which other tools lack: they ask the views, where only the case of ASCII
// letters does not count.
constexpr std::array kSchema = {
    "PRAGMA journal_mode = MEMORY",
    "PRAGMA page_size = 4096",
    "PRAGMA encoding = 'UTF-8'",
    "BEGIN",
    "CREATE TABLE td_mod ("
    "mod_num INTEGER PRIMARY KEY CONSTRAINT mod_num CHECK (mod_num BETWEEN -2147483648 AND 2147483647),"
    "mod_name TEXT COLLATE DEUTSCH,"
    "mod_typ INTEGER CONSTRAINT mod_typ CHECK (mod_typ BETWEEN -32768 AND 32767),"
    "mod_zeilen INTEGER CONSTRAINT mod_zeilen CHECK (mod_zeilen BETWEEN -2147483648 AND 2147483647)"
    ") STRICT",
    "CREATE TABLE td_rout ("
    "rou_num INTEGER PRIMARY KEY CONSTRAINT rou_num CHECK (rou_num BETWEEN -2147483648 AND 2147483647),"
    "mod_num INTEGER CONSTRAINT mod_num CHECK (mod_num BETWEEN -2147483648 AND 2147483647),"
    "rou_name TEXT COLLATE DEUTSCH,"
    "rou_typ INTEGER CONSTRAINT rou_typ CHECK (rou_typ BETWEEN -32768 AND 32767),"
    "rou_open INTEGER CONSTRAINT rou_open CHECK (rou_open BETWEEN -32768 AND 32767),"
    "anz_dec_zeilen INTEGER CONSTRAINT anz_dec_zeilen CHECK (anz_dec_zeilen BETWEEN -32768 AND 32767),"
    "rou_start INTEGER CONSTRAINT rou_start CHECK (rou_start BETWEEN -2147483648 AND 2147483647),"
    "rou_ende INTEGER CONSTRAINT rou_ende CHECK (rou_ende BETWEEN -2147483648 AND 2147483647)"
    ") STRICT",
    "CREATE INDEX td_rout_modul ON td_rout (mod_num)",
    "CREATE VIEW v_mod AS SELECT mod_num, mod_name COLLATE NOCASE AS mod_name, mod_typ, mod_zeilen FROM td_mod",
    "CREATE VIEW v_rout AS SELECT rou_num, mod_num, rou_name COLLATE NOCASE AS rou_name, rou_typ, rou_open,"
    " anz_dec_zeilen, rou_start, rou_ende FROM td_rout",
    "COMMIT",
};

struct CloseDatabase {
  void operator()(sqlite3* db) const { sqlite3_close(db); }
};

bool MakeTemplate(const std::string& file) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(file.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  const std::unique_ptr<sqlite3, CloseDatabase> db(opened);
  bool good = result == SQLITE_OK && quillmate::codedb::RegisterCollation(opened);
  for (const char* const statement : kSchema) {
    good = good && sqlite3_exec(opened, statement, nullptr, nullptr, nullptr) == SQLITE_OK;
  }
  if (!good) std::fprintf(stderr, "%s: %s\n", file.c_str(), sqlite3_errmsg(opened));
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_template FILE\n");
    return 2;
  }
  // A fresh file each time: the same bytes come out of every build.
  std::error_code ignored;
  std::filesystem::remove(argv[1], ignored);
  return MakeTemplate(argv[1]) ? 0 : 1;
}
