#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// The program's statements are written in the Jet dialect; the index is kept by SQLite. This is the way between them.
///
/// What SQLite spells differently and what is done about it:
///   a & b                       concatenation; NULL counts as empty text, binds weaker than + and - and stronger
///                               than comparisons:  (ifnull(a,'')||ifnull(b,'') COLLATE DEUTSCH)
///   SET table.column = ...      SET column = ...
///   INSERT ... SELECT 'v' AS A  VALUES ('v') when nothing is selected from: one row needs no statement journal
///   "text"                      'text'
///   table!column                table.column
///   --  and  /*                 operators, never comments
/// Literals (text between quotes, numbers) become parameters, so that statements that differ in their values alone are
/// prepared once. Literals stay where a parameter means something else: as an alias and in ORDER BY and GROUP BY.
/// Only INSERT, UPDATE, DELETE and SELECT exist, one statement to a text, with or without a semicolon.
namespace quillmate::codedb {

/// A statement that is no statement of the dialect. what() is German, UTF-8.
class JetSyntaxError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A literal of a statement, as it stands there. Points into the statement's text.
struct JetLiteral {
  bool isText = false;
  /// Digits of a number; what stands between the quotes of a text, Windows-1252.
  std::string_view source;
  /// Not 0 when quotes inside are still doubled: that quote.
  char doubledQuote = 0;
};

/// What statements that differ only in their literals have in common.
struct JetShape {
  /// The statement for SQLite, UTF-8, with one "?" for each lifted literal, in their order.
  std::string sql;
  /// The statement's text before, between and behind the lifted literals: one piece more than literals.
  std::vector<std::string> pieces;
  /// Of each lifted literal: the quote it stands in, 0 for a number.
  std::string quotes;
};

struct JetStatement {
  JetShape shape;
  std::vector<JetLiteral> literals;
};

/// Translates one statement (Windows-1252). The literals point into `source`. Throws JetSyntaxError.
JetStatement TranslateJet(std::string_view source);

/// True when `statement` has that shape; its literals are then in `literals` (whose memory is reused). One pass, no
/// allocation once `literals` has grown. Gives exactly what TranslateJet would.
bool MatchJetShape(const JetShape& shape, std::string_view statement, std::vector<JetLiteral>& literals);

/// The value of a text literal: quotes undoubled, Windows-1252.
std::string JetLiteralText(const JetLiteral& literal);

}  // namespace quillmate::codedb
