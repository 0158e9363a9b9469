#include <gtest/gtest.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/jet_sql.h>

#include "scratch.h"

namespace quillmate::codedb {
namespace {

/// Without the blanks that do not matter.
std::string Tight(std::string_view sql) {
  std::string out;
  for (const char c : sql) {
    const bool blank = c == ' ' && (out.empty() || std::string_view(" (.,").find(out.back()) != std::string_view::npos);
    const bool tight = !out.empty() && out.back() == ' ' && std::string_view(".,()|").find(c) != std::string_view::npos;
    if (tight) out.pop_back();
    if (!blank) out += c;
  }
  return out;
}

TEST(JetSql, StatementsBecomeSqlite) {
  const struct {
    std::string_view jet, sqlite;
  } cases[] = {
      {"INSERT INTO td_mod(mod_num,mod_name) SELECT '1' AS AX1, 'it''s' AS AX2",
       "INSERT INTO td_mod(mod_num,mod_name) VALUES('1','it''s')"},
      {"insert into a (x) select b.y as z from b where b.y='1';",
       "insert into a(x) select b.y as z from b where b.y = '1'"},
      {"INSERT INTO a(x) SELECT 'M' & 5 AS AX1",
       "INSERT INTO a(x) VALUES((ifnull('M','')||ifnull(5,'') COLLATE DEUTSCH))"},
      {"INSERT INTO a(x) VALUES ('v', -2)", "INSERT INTO a(x) VALUES('v',- 2)"},
      {"UPDATE td_rout SET td_rout.rou_start =5 WHERE (([rou_num]=7));",
       "UPDATE td_rout SET rou_start = 5 WHERE(([rou_num] = 7))"},
      {"UPDATE a SET [a].[x]=a.y+1, a!z=b.c WHERE a.x=1", "UPDATE a SET [x] = a.y + 1,z = b.c WHERE a.x = 1"},
      {"UPDATE td_rout SET td_rout.rou_ende = [rou_start]+([anz_dec_zeilen]-1) WHERE (([rou_typ]>10) And (mod_num=3));",
       "UPDATE td_rout SET rou_ende = [rou_start] +([anz_dec_zeilen] - 1) WHERE(([rou_typ] > 10) And(mod_num = 3))"},
      {"SELECT 'R' & [a] & 'O' & [b] AS f FROM t",
       "SELECT(ifnull('R','')||ifnull([a],'')||ifnull('O','')||ifnull([b],'')"
       " COLLATE DEUTSCH) AS f FROM t"},
      {"SELECT a+1 & b-2 FROM t WHERE a & b='x' AND NOT c & d<>''",
       "SELECT(ifnull(a + 1,'')||ifnull(b - 2,'') COLLATE DEUTSCH) FROM t WHERE(ifnull(a,'')||ifnull(b,'') COLLATE "
       "DEUTSCH) = 'x' AND NOT(ifnull(c,'')||ifnull(d,'') COLLATE DEUTSCH) <> ''"},
      {"SELECT (a & (b & c)) & Min(d & e) FROM t",
       "SELECT(ifnull(((ifnull(a,'')||ifnull(((ifnull(b,'')||ifnull(c,'') COLLATE DEUTSCH)),'') COLLATE DEUTSCH)),'')||"
       "ifnull(Min((ifnull(d,'')||ifnull(e,'') COLLATE DEUTSCH)),'') COLLATE DEUTSCH) FROM t"},
      {"SELECT a, 1 FROM t WHERE b=2 GROUP BY a, 3 HAVING Count(a)<4 ORDER BY 2, 'x' DESC",
       "SELECT a,1 FROM t WHERE b = 2 GROUP BY a,3 HAVING Count(a) < 4 ORDER BY 2,'x' DESC"},
      {"SELECT a AS 'it''s', \"say \"\"x\"\"\" AS b FROM t", "SELECT a AS 'it''s','say \"x\"' AS b FROM t"},
      {"SELECT [a b] FROM t WHERE \344=.5 OR c=1.5e-3 OR d=2.",
       "SELECT [a b] FROM t WHERE \303\244 =.5 OR c = 1.5e-3 OR d = 2."},
      {"DELETE FROM t WHERE a--1=2\r\n;\t", "DELETE FROM t WHERE a - - 1 = 2"},
      {{"SELECT 'a\0' FROM t", 18}, "SELECT CAST(X'6100' AS TEXT) FROM t"},
  };
  for (const auto& c : cases) EXPECT_EQ(Tight(TranslateJet(c.jet)), c.sqlite) << c.jet;
}

TEST(JetSql, FormsAreStatementsWithHoles) {
  const std::string_view insert = "INSERT INTO a(x,y) SELECT '?' AS AX1, '?' AS AX2";
  EXPECT_EQ(Tight(TranslateJetForm(insert)), "INSERT INTO a(x,y) VALUES(?,?)");
  EXPECT_EQ(FillJetForm(insert, {7, std::string_view("it's?")}),
            "INSERT INTO a(x,y) SELECT '7' AS AX1, 'it''s?' AS AX2");
  const std::string_view update = "UPDATE a SET a.x =? WHERE ((y='?') AND (z<>2));";
  EXPECT_EQ(Tight(TranslateJetForm(update)), "UPDATE a SET x = ? WHERE((y = ?) AND(z <> 2))");
  EXPECT_EQ(FillJetForm(update, {-1, std::string_view("'")}), "UPDATE a SET a.x =-1 WHERE ((y='''') AND (z<>2));");
  EXPECT_EQ(FillJetForm(update, {kNull, std::string_view("b")}), "UPDATE a SET a.x =NULL WHERE ((y='b') AND (z<>2));");
}

TEST(JetSql, WhatIsNoStatementIsRefused) {
  const std::string_view cases[] = {
      "",
      " ; ",
      "DROP TABLE td_mod",
      "PRAGMA journal_mode=WAL",
      "SELECT 1; DELETE FROM td_mod",
      "SELECT 1;;",
      "SELECT 'open",
      "SELECT \"open",
      "SELECT [open",
      "SELECT [] FROM t",
      "SELECT (1",
      "SELECT 1)",
      "SELECT ?",
      "SELECT :a",
      "SELECT @a",
      "SELECT $a",
      "SELECT 5abc",
      "SELECT a # b",
      {"SELECT a\0 FROM t", 16},
      {"SELECT [a\0] FROM t", 18},
  };
  for (const std::string_view statement : cases) {
    EXPECT_NE(MessageOf([&] { TranslateJet(statement); }), "") << statement;
  }
  EXPECT_THROW(TranslateJet("SELECT " + std::string(100000, '(') + std::string(100000, ')')), files::Failure);
}

}  // namespace
}  // namespace quillmate::codedb
