#include <sqlite3.h>

#include <quillmate/codedb/index_files.h>
#include <quillmate/text/operations.h>

#include "modules.h"
#include "process.h"

namespace quillmate::cli {
namespace {

/// What can't be read of each kind of file is the sources' own affair.
TEST_F(CliTest, WhatCannotBeReadIsNamed) {
  Write("gut.bas", "'1\n'2\n'3\n");
  Write("kurz.bas", "'1\n'2\n");
  Write("projekt.vbp", "Type=Exe\nModule=gut; gut.bas\nModule=weg; weg.bas\n");
  fs::create_directory(Folder() / "ordner");
  const std::string missing = Full("weg.bas") + ": Datei existiert nicht";
  const struct {
    const char* line;
    Result expected;
  } cases[] = {
      {"outline weg.bas", Refusal(1, {missing})},
      {"outline ordner", Refusal(1, {Full("ordner") + ": Ordner enthält keine Module"})},
      {"outline kurz.bas", Refusal(1, {"Die Eingabe enthält kein lesbares Modul mit mehr als zwei Zeilen"})},
      // What was named has to be there; what a source lacks counts with --strict.
      {"outline weg.bas gut.bas", {1, "gut\n", Messages({missing})}},
      {"symbols --count weg.bas gut.bas",
       {1, "Deklarationen\n\tmodule\t1\nVerwendungen\nGewissheit\n", Messages({missing})}},
      {"outline projekt.vbp", {0, "gut\n", Messages({missing})}},
      {"outline --strict projekt.vbp", {1, "gut\n", Messages({missing})}},
      {"outline --strict gut.bas", Success("gut\n")},
  };
  for (const auto& c : cases) EXPECT_EQ(Run(c.line), c.expected) << c.line;
}

TEST_F(CliTest, InputsFromElsewhere) {
  Write("liste.txt", "\357\273\277eins.bas\r\n\r\nUnter Ordner/zwei.bas\n");
  Write("leer.txt", "\n");
  Write("eins.bas", "Attribute VB_Name = \"Eins\"\n'\n'\n'\n");
  Write("Unter Ordner/zwei.bas", "'\n'\n'\n");
  Write("klasse.txt", "VERSION 1.0 CLASS\nBEGIN\nEND\nAttribute VB_Name = \"Karte\"\nSub A()\nB\nEnd Sub\n");
  const struct {
    const char* line;
    const char* input;
    Result expected;
  } cases[] = {
      {"outline --files-from liste.txt", nullptr, Success("Eins\nzwei\n")},
      {"outline --files-from -", "liste.txt", Success("Eins\nzwei\n")},
      {"outline --files-from leer.txt", nullptr, Refusal(1, {"leer.txt: Die Liste nennt keine Eingabe"})},
      {"outline -", "klasse.txt", Success("Karte\n\tA\n")},
      {"search --format vimgrep --whole-word b -", "klasse.txt", Success("-:6:1: B\n")},
      {"modules --exact --json -", "klasse.txt",
       Success(
           "{\"modules\":[\n{\"file\":\"-\",\"project\":\"Standardeingabe\",\"module\":\"Karte\",\"mod_num\":1,"
           "\"mod_name\":\"Karte\",\"mod_typ\":3,\"mod_zeilen\":3,\"routines\":[\n{\"rou_num\":1,\"rou_name\":\"A\","
           "\"rou_typ\":1,\"rou_open\":1,\"anz_dec_zeilen\":1,\"rou_start\":1,\"rou_ende\":3,\"source_line\":5}\n]}"
           "\n]}\n")},
      {"outline -", "leer.txt", Refusal(1, {"Die Eingabe enthält kein lesbares Modul mit mehr als zwei Zeilen"})},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Run(c.line, {.input = c.input == nullptr ? "" : c.input}), c.expected) << c.line;
  }
}

TEST_F(CliTest, ModuleFilesInOtherEncodings) {
  const std::string head = "Attribute VB_Name = \"M\"\n'\n'\n";
  Write("russisch.bas", head + "' \306\363\352\n");
  Write("griechisch.bas", head + "' \301\342\343\n");
  Write("chinesisch.bas", head + "' \326\320\316\304\\\n");
  Write("utf8.bas", head + "' \303\204\n");
  Write("gefüllt.bas", head + "' Ende\n" + std::string(700, '\0'));
  std::string wide = "\xFF\xFE";
  for (const char c : head + "' Breit\n") wide.append(1, c).append(1, '\0');
  Write("breit.bas", wide + std::string(701, '\0'));
  const struct {
    const char *line, *text;
  } cases[] = {{"--codepage 1251 russisch.bas", "' Жук"},
               {"--codepage windows-1253 griechisch.bas", "' Αβγ"},
               {"--codepage GBK chinesisch.bas", "' 中文\\"},
               {"--codepage 1251 utf8.bas", "' Ä"},
               {"gefüllt.bas", "' Ende"},
               {"breit.bas", "' Breit"}};
  for (const auto& c : cases) {
    const Result result = Run("search --regex --format vimgrep \\x27\\x20 " + std::string(c.line));
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(result.out.ends_with(std::string(": ") + c.text + "\n")) << c.line << ": " << result.out;
  }
  EXPECT_EQ(Run("outline --codepage 1251 russisch.bas").err,
            Messages({Full("russisch.bas") + ": 3 Zeichen wurden durch \"?\" ersetzt"}));
  EXPECT_EQ(Run("outline --codepage klingonisch utf8.bas").status, 2);
}

/// What is missing from a result has a row with its reason, in a saved project too.
TEST_F(CliTest, OmissionsAreListed) {
  Write("q/a.bas", "Attribute VB_Name = \"A\"\nSub S()\n\nEnd Sub\n");
  Write("q/leer.bas", "");
  Write("kaputt.xlsm", "PK\3\4" + std::string(100, 'x'));
  const auto row = [this](const std::string& file, const std::string& project, const std::string& module,
                          const std::string& reason) {
    return "{\"file\":\"" + text::ReplaceAll(Full(file), "\\", "\\\\") + "\",\"project\":" + project +
           ",\"module\":" + module + ",\"reason\":\"" + reason + "\"}";
  };
  const std::string unread =
      row("q/leer.bas", "null", "null", "Datei ist leer") + ",\n" +
      row("kaputt.xlsm", "null", "null", "Datei ist beschädigt: das Verzeichnis der Zip-Datei ist nicht lesbar");
  EXPECT_EQ(Run("index --partial -o p q kaputt.xlsm").status, 1);
  for (const char* const input : {"p", "q kaputt.xlsm"}) {
    const std::string json = Run("modules --json " + std::string(input)).out;
    EXPECT_TRUE(json.ends_with("],\"omitted\":[\n" + unread + "\n]}\n")) << json;
    const std::string exact = Run("modules --exact --json " + std::string(input)).out;
    EXPECT_TRUE(exact.ends_with("],\"omitted\":[\n" + unread + "\n]}\n")) << exact;
    const std::string digest = Run("digest " + std::string(input)).out;
    EXPECT_NE(
        digest.find("## Nicht gelesen\n\n- `" + Full("q/leer.bas") + "`: Datei ist leer\n- `" + Full("kaputt.xlsm")),
        std::string::npos)
        << digest;
  }
  EXPECT_EQ(Run("modules --json q/a.bas").out.find("omitted"), std::string::npos);
}

/// Equal names in several projects are told apart by project, or by file where the projects' names are equal too.
TEST_F(CliTest, ModulesOfSeveralProjects) {
  Write("a/M.bas", "Attribute VB_Name = \"M\"\n'a\n'\nSub S(): End Sub\n");
  Write("b/M.bas", "Attribute VB_Name = \"M\"\n'b\n'\nSub S(): End Sub\n");
  Write("p.vbp", "Name=\"Lager\"\nModule=M; a/M.bas\n");
  Write("q.vbp", "Name=\"Lager\"\nModule=M; b/M.bas\n");
  const auto several = [](const std::string& names) {
    return Refusal(1, {"Mehrere Module heißen \"m\"; mit --module eines wählen: " + names});
  };
  ASSERT_EQ(Run("index -o saved a b").status, 0);
  for (const std::string command : {"text --module ", "references --name S --module ", "calls --routine S --module "}) {
    EXPECT_EQ(Run(command + "m a b"), several("a.M, b.M")) << command;
    EXPECT_EQ(Run(command + "m saved"), several("a.M, b.M")) << command;
    EXPECT_EQ(Run(command + "m p.vbp q.vbp"), several("p.vbp.M, q.vbp.M")) << command;
    EXPECT_EQ(Run(command + "B.m a b").status, 0) << command;
    EXPECT_EQ(Run(command + "q.m p.vbp q.vbp").status, 0) << command;
    EXPECT_EQ(Run(command + "c.m a b"), Refusal(1, {"Es gibt kein Modul \"c.m\""})) << command;
  }
  EXPECT_EQ(Run("text --module b.M saved").out.substr(0, 2), "'b");
  Write("c/x/M.bas", "'x\n'\nSub S(): End Sub\n");
  Write("c/y/M.bas", "'y\n'\nSub S(): End Sub\n");
  for (const std::string command : {"text --module ", "references --name S --module ", "calls --routine S --module "}) {
    EXPECT_EQ(Run(command + "m c"), several(Full("c/x/M.bas") + ", " + Full("c/y/M.bas"))) << command;
    EXPECT_EQ(Run(command + "Y/m.bas c").status, 0) << command;
    EXPECT_EQ(Run(command + "z/m.bas c").status, 1) << command;
  }
  EXPECT_EQ(Run("text --module y/M.bas c").out.substr(0, 2), "'y");
}

TEST_F(CliTest, DamagedAndLockedProjects) {
  Write("a.bas", kGreeting);
  ASSERT_EQ(Run("index -o p a.bas").status, 0);
  const std::string broken = "quillmate-cli: Projekt in " + text::EnsureBackslash("p") + " ist nicht mehr intakt: ";

  sqlite3* lock = nullptr;
  ASSERT_EQ(sqlite3_open(Full("p/Quillmate.mdb").c_str(), &lock), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(lock, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_TRUE(Run("text p").err.starts_with(broken));
  sqlite3_close(lock);
  EXPECT_EQ(Run("text p").status, 0);

  for (const std::string& bytes : {std::string(), std::string(5000, 'x'), Read("p/Quillmate.mdb").substr(0, 5000)}) {
    Write("p/Quillmate.mdb", bytes);
    for (const char* const line : {"text p", "modules p", "index -o q p"}) {
      const Result result = Run(line);
      EXPECT_EQ(result.status, 1);
      EXPECT_EQ(result.out, "");
      EXPECT_TRUE(result.err.starts_with(broken)) << result.err;
    }
    EXPECT_EQ(Read("p/Quillmate.mdb"), bytes);
  }
  EXPECT_EQ(Names("."), "a.bas p");
}

/// Tables of other people's making, without the checks of the program's own.
TEST_F(CliTest, AProjectWithImpossibleNumbers) {
  const char* const rows[] = {
      "INSERT INTO td_mod VALUES(1,'a',1,9223372036854775807)",
      "INSERT INTO td_mod VALUES(-2147483648,'a',1,3)",
      "INSERT INTO td_mod VALUES('x','a',1,3)",
      "INSERT INTO td_rout VALUES(1,1,'A',1,1,1,9223372036854775807,1)",
  };
  for (const char* const row : rows) {
    fs::remove_all(Folder() / "p");
    fs::create_directory(Folder() / "p");
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(Full("p/Quillmate.mdb").c_str(), &db), SQLITE_OK);
    const std::string sql = std::string(
                                "CREATE TABLE td_mod(mod_num,mod_name,mod_typ,mod_zeilen);"
                                "CREATE TABLE td_rout(rou_num,mod_num,rou_name,rou_typ,rou_open,"
                                "anz_dec_zeilen,rou_start,rou_ende);") +
                            row;
    ASSERT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
    const Result result = Run("modules p");
    EXPECT_EQ(result.status, 1) << row;
    EXPECT_NE(result.err.find("unmögliche Nummern"), std::string::npos) << result.err;
  }
}

TEST_F(CliTest, MissingModuleTextOfAProject) {
  Write("a.bas", kGreeting);
  ASSERT_EQ(Run("index -o p a.bas").status, 0);
  fs::remove(Folder() / "p" / "M1.txt");
  EXPECT_EQ(Run("outline p").status, 0);
  for (const char* const line : {"text p", "rtf -o x p", "index -o q p"}) {
    const Result result = Run(line);
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("M1.txt"), std::string::npos) << result.err;
  }
  EXPECT_EQ(Names("."), "a.bas p");
}

TEST_F(CliTest, AProjectIsTheOnlyInput) {
  Write("a.bas", kGreeting);
  Write("p/Quillmate.mdb", "");
  const Result result = Run("text a.bas p");
  EXPECT_EQ(result.status, 2);
  EXPECT_TRUE(result.err.starts_with(Messages({"p ist ein gespeichertes Projekt und muss die einzige Eingabe sein"})));
}

TEST_F(CliTest, WithoutTemplateNothingIsRead) {
  Write("a.bas", kGreeting);
  fs::create_directory(Folder() / "bin");
  const fs::path program = Folder() / "bin" / Program().filename();
  fs::copy_file(Program(), program);
  const std::string message = "Die notwendige Datenbank " + Full("bin/mask_Quillmate.mdb") +
                              " existiert nicht !!! Bitte kopieren Sie diese wieder an diese Stelle";
  for (const char* const line : {"text a.bas", "index -o p a.bas"}) {
    EXPECT_EQ(RunAt(program, Words(line)), Refusal(1, {message}));
  }
  EXPECT_EQ(Names("."), "a.bas bin");
}

TEST_F(CliTest, NoFolderForTemporaryFiles) {
  Write("a.bas", kGreeting);
  const Result result = Run("text a.bas", {.temporary = "a.bas"});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.err.starts_with("quillmate-cli: Im Ordner für temporäre Dateien ")) << result.err;
}

}  // namespace
}  // namespace quillmate::cli
