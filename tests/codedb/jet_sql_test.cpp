#include <optional>
#include <random>

#include <gtest/gtest.h>

#include <quillmate/codedb/code_database.h>
#include <quillmate/codedb/jet_sql.h>

#include "scratch.h"

namespace quillmate::codedb {
namespace {

/// The statement without the blanks that do not matter, and its literals: "sql | value | value". Numbers bear a "#".
std::string Translated(std::string_view statement) {
  const JetStatement result = TranslateJet(statement);
  std::string out;
  for (const char c : result.shape.sql) {
    const bool blank = c == ' ' && (out.empty() || std::string_view(" (.,").find(out.back()) != std::string_view::npos);
    const bool tight = !out.empty() && out.back() == ' ' && std::string_view(".,()|").find(c) != std::string_view::npos;
    if (tight) out.pop_back();
    if (!blank) out += c;
  }
  for (const JetLiteral& literal : result.literals) {
    out += literal.isText ? " | " + JetLiteralText(literal) : " | #" + std::string(literal.source);
  }
  return out;
}

TEST(JetSql, StatementsBecomeSqlite) {
  const struct {
    std::string_view jet, sqlite;
  } cases[] = {
      {"INSERT INTO td_mod(mod_num,mod_name) SELECT '1' AS AX1, 'it''s' AS AX2",
       "INSERT INTO td_mod(mod_num,mod_name) VALUES(?,?) | 1 | it's"},
      {"insert into a (x) select b.y as z from b where b.y='1';",
       "insert into a(x) select b.y as z from b where b.y = ? | 1"},
      {"INSERT INTO a(x) SELECT 'M' & 5 AS AX1",
       "INSERT INTO a(x) VALUES((ifnull(?,'')||ifnull(?,'') COLLATE DEUTSCH)) | M | #5"},
      {"INSERT INTO a(x) VALUES ('v', -2)", "INSERT INTO a(x) VALUES(?,- ?) | v | #2"},
      {"UPDATE td_rout SET td_rout.rou_start =5 WHERE (([rou_num]=7));",
       "UPDATE td_rout SET rou_start = ? WHERE(([rou_num] = ?)) | #5 | #7"},
      {"UPDATE a SET [a].[x]=a.y+1, a!z=b.c WHERE a.x=1", "UPDATE a SET [x] = a.y + ?,z = b.c WHERE a.x = ? | #1 | #1"},
      {"UPDATE td_rout SET td_rout.rou_ende = [rou_start]+([anz_dec_zeilen]-1) WHERE (([rou_typ]>10) And (mod_num=3));",
       "UPDATE td_rout SET rou_ende = [rou_start] +([anz_dec_zeilen] - ?) WHERE(([rou_typ] > ?) And(mod_num = ?))"
       " | #1 | #10 | #3"},
      {"SELECT 'R' & [a] & 'O' & [b] AS f FROM t",
       "SELECT(ifnull(?,'')||ifnull([a],'')||ifnull(?,'')||ifnull([b],'')"
       " COLLATE DEUTSCH) AS f FROM t | R | O"},
      {"SELECT a+1 & b-2 FROM t WHERE a & b='x' AND NOT c & d<>''",
       "SELECT(ifnull(a + ?,'')||ifnull(b - ?,'') COLLATE DEUTSCH) FROM t WHERE(ifnull(a,'')||ifnull(b,'') COLLATE "
       "DEUTSCH) = ? AND NOT(ifnull(c,'')||ifnull(d,'') COLLATE DEUTSCH) <> ? | #1 | #2 | x | "},
      {"SELECT (a & (b & c)) & Min(d & e) FROM t",
       "SELECT(ifnull(((ifnull(a,'')||ifnull(((ifnull(b,'')||ifnull(c,'') COLLATE DEUTSCH)),'') COLLATE DEUTSCH)),'')||"
       "ifnull(Min((ifnull(d,'')||ifnull(e,'') COLLATE DEUTSCH)),'') COLLATE DEUTSCH) FROM t"},
      {"SELECT a, 1 FROM t WHERE b=2 GROUP BY a, 3 HAVING Count(a)<4 ORDER BY 2, 'x' DESC",
       "SELECT a,? FROM t WHERE b = ? GROUP BY a,3 HAVING Count(a) < ? ORDER BY 2,'x' DESC | #1 | #2 | #4"},
      {"SELECT a AS 'it''s', \"say \"\"x\"\"\" AS b FROM t", "SELECT a AS 'it''s',? AS b FROM t | say \"x\""},
      {"SELECT [a b] FROM t WHERE \344=.5 OR c=1.5e-3 OR d=2.",
       "SELECT [a b] FROM t WHERE \303\244 = ? OR c = ? OR d = ?"
       " | #.5 | #1.5e-3 | #2."},
      {"DELETE FROM t WHERE a--1=2\r\n;\t", "DELETE FROM t WHERE a - - ? = ? | #1 | #2"},
  };
  for (const auto& c : cases) EXPECT_EQ(Translated(c.jet), c.sqlite) << c.jet;
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
      {"SELECT a AS 'x\0' FROM t", 23},
  };
  for (const std::string_view statement : cases) {
    EXPECT_NE(MessageOf<JetSyntaxError>([&] { TranslateJet(statement); }), "") << statement;
  }
  EXPECT_THROW(TranslateJet("SELECT " + std::string(100000, '(') + std::string(100000, ')')), JetSyntaxError);
}

/// Statements made of the pieces that the lexer has to tell apart. Many are nonsense; all must lex alike both ways.
std::string RandomStatement(std::mt19937& random) {
  static const char* const kPieces[] = {"'a'", "''",       "'it''s'",  "\"q\"\"\"", "12",  "3.5", ".5",    "7.",
                                        "1e5", "2e",       " ",        " ",         " ",   "a",   "[b c]", "[1]",
                                        "AS",  "ORDER BY", "GROUP BY", "HAVING",    "(",   ")",   "&",     "=",
                                        "<>",  "-",        ",",        ".",         "'M'", "x1",  "\344"};
  std::string statement = "SELECT ";
  for (auto i = random() % 12; i > 0; --i) statement += kPieces[random() % std::size(kPieces)];
  return statement;
}

std::optional<JetStatement> TranslatedIfPossible(const std::string& statement) {
  try {
    return TranslateJet(statement);
  } catch (const JetSyntaxError&) {
    return std::nullopt;
  }
}

/// A shape recognises a statement exactly when translating it would give that shape, with the same literals.
TEST(JetSql, ShapesMatchWhatTranslatesAlike) {
  std::mt19937 random(20240607);
  std::vector<std::pair<std::string, JetStatement>> known;
  std::vector<std::string> statements;
  for (int i = 0; i < 1500; ++i) {
    statements.push_back(RandomStatement(random));
    const auto translated = TranslatedIfPossible(statements.back());
    if (translated) known.emplace_back(statements.back(), *translated);
  }
  ASSERT_GT(known.size(), 200U);
  std::vector<JetLiteral> literals;
  for (const std::string& statement : statements) {
    const std::optional<JetStatement> own = TranslatedIfPossible(statement);
    for (const auto& [source, other] : known) {
      const bool same = own && own->shape.pieces == other.shape.pieces && own->shape.quotes == other.shape.quotes;
      ASSERT_EQ(MatchJetShape(other.shape, statement, literals), same) << statement << "\n" << source;
      if (!same) continue;
      ASSERT_EQ(own->shape.sql, other.shape.sql);
      for (std::size_t i = 0; i < literals.size(); ++i) {
        ASSERT_EQ(JetLiteralText(literals[i]), JetLiteralText(own->literals[i]));
        ASSERT_EQ(literals[i].isText, own->literals[i].isText);
      }
    }
  }
}

/// Whatever a name holds, it comes out of the statement as it went in, and the statement stays the same.
TEST(JetSql, QuotedValuesNeverChangeAStatement) {
  std::mt19937 random(7);
  const std::string_view alphabet("'\"[]();?&-- /*,.a1\0\r\n\237\344", 23);
  const std::string plain = TranslateJet("SELECT a FROM t WHERE a='x' AND b=1").shape.sql;
  for (int i = 0; i < 3000; ++i) {
    std::string value;
    for (auto n = random() % 9; n > 0; --n) value += alphabet[random() % alphabet.size()];
    const std::string statement = "SELECT a FROM t WHERE a='" + QuoteLiteral(value) + "' AND b=1";
    const JetStatement result = TranslateJet(statement);
    ASSERT_EQ(result.shape.sql, plain);
    ASSERT_EQ(JetLiteralText(result.literals[0]), value);
  }
}

}  // namespace
}  // namespace quillmate::codedb
