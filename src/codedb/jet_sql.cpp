#include <algorithm>
#include <array>
#include <utility>

#include <quillmate/codedb/database_reason.h>
#include <quillmate/codedb/jet_sql.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "collation_p.h"
#include "jet_lexer_p.h"

namespace quillmate::codedb {
namespace {

constexpr std::string_view kHole = "?";

/// Deeper nesting than any statement of the program has.
constexpr std::size_t kDeepestNesting = 100;

constexpr std::array<std::string_view, 4> kStatements = {"INSERT", "UPDATE", "DELETE", "SELECT"};

/// What ends an operand of "&": everything that binds weaker.
constexpr std::array<std::string_view, 46> kOperandEnds = {
    ",",     "=",    "<",      ">",     "<=",   ">=",    "<>",     "SELECT", "DISTINCT", "ALL",    "FROM", "WHERE",
    "GROUP", "BY",   "HAVING", "ORDER", "ASC",  "DESC",  "AS",     "AND",    "OR",       "NOT",    "XOR",  "IS",
    "LIKE",  "IN",   "ON",     "INNER", "LEFT", "RIGHT", "OUTER",  "JOIN",   "UNION",    "LIMIT",  "SET",  "VALUES",
    "INTO",  "CASE", "WHEN",   "THEN",  "ELSE", "END",   "EXISTS", "INSERT", "UPDATE",   "BETWEEN"};

/// What a SELECT that makes one row of values alone does not have.
constexpr std::array<std::string_view, 9> kSelectsFrom = {"FROM",  "WHERE", "GROUP",    "HAVING", "ORDER",
                                                          "UNION", "LIMIT", "DISTINCT", "ALL"};

template <std::size_t N>
bool IsOneOf(const Token& token, const std::array<std::string_view, N>& list) {
  return std::any_of(list.begin(), list.end(), [&](std::string_view text) { return token.Is(text); });
}

bool IsName(const Token& token) { return token.kind == TokenKind::Word || token.kind == TokenKind::BracketName; }

/// The statement's tokens with what the translation has to know about each.
struct Statement {
  std::vector<Token> tokens;
  /// For "(" the position of its ")"; for everything else its own position.
  std::vector<std::size_t> match;
  /// The number of parentheses that are open around a token.
  std::vector<std::size_t> depth;
  std::vector<bool> dropped;

  std::size_t size() const { return tokens.size(); }
};

void MatchParentheses(Statement& statement) {
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < statement.size(); ++i) {
    statement.match.push_back(i);
    if (statement.tokens[i].Is(")")) {
      if (open.empty()) throw files::Failure(DatabaseReason::kExtraBracket);
      statement.match[open.back()] = i;
      open.pop_back();
    }
    statement.depth.push_back(open.size());
    if (statement.tokens[i].Is("(")) open.push_back(i);
    if (open.size() > kDeepestNesting) throw files::Failure(DatabaseReason::kDeepBrackets);
  }
  if (!open.empty()) throw files::Failure(DatabaseReason::kOpenBracket);
}

bool IsTopLevel(const Statement& statement, std::size_t i, std::string_view word) {
  return statement.depth[i] == 0 && statement.tokens[i].Is(word);
}

/// Drops "table." in front of the columns that an UPDATE sets.
void DropTablesOfSet(Statement& statement) {
  bool inSet = false;
  for (std::size_t i = 0; i < statement.size(); ++i) {
    if (IsTopLevel(statement, i, "WHERE")) return;
    inSet = inSet || IsTopLevel(statement, i, "SET");
    const bool beforeTarget = IsTopLevel(statement, i, "SET") || (inSet && IsTopLevel(statement, i, ","));
    if (!beforeTarget || i + 3 >= statement.size()) continue;
    const Token& dot = statement.tokens[i + 2];
    if (!IsName(statement.tokens[i + 1]) || !IsName(statement.tokens[i + 3]) || !(dot.Is(".") || dot.Is("!"))) continue;
    statement.dropped[i + 1] = statement.dropped[i + 2] = true;
  }
}

/// The position of the SELECT of an INSERT that makes one row out of values alone; the number of tokens when there is
/// none. Its aliases are dropped.
std::size_t FindSingleRowSelect(Statement& statement) {
  const std::size_t none = statement.size();
  std::size_t select = none;
  for (std::size_t i = 1; i < statement.size(); ++i) {
    if (statement.depth[i] != 0) continue;
    if (IsOneOf(statement.tokens[i], kSelectsFrom)) return none;
    if (select == none && statement.tokens[i].Is("SELECT")) select = i;
  }
  for (std::size_t i = select; i + 1 < statement.size(); ++i) {
    if (!IsTopLevel(statement, i, "AS")) continue;
    statement.dropped[i] = statement.dropped[i + 1] = true;
  }
  return select;
}

/// Writes the statement for SQLite.
class Writer {
 public:
  Writer(const Statement& statement, bool form) : statement_(statement), form_(form) {}

  std::string Write(std::size_t singleRowSelect) {
    const bool asValues = singleRowSelect < statement_.size();
    WriteRange(0, singleRowSelect);
    if (asValues) {
      sql_ += " VALUES (";
      WriteRange(singleRowSelect + 1, statement_.size());
      sql_ += ')';
    }
    return std::move(sql_);
  }

 private:
  /// Tokens of one level, expressions and what is between them.
  void WriteRange(std::size_t begin, std::size_t end) {
    std::size_t start = begin;
    for (std::size_t i = begin; i < end; i = statement_.match[i] + 1) {
      if (!IsOneOf(statement_.tokens[i], kOperandEnds)) continue;
      WriteExpression(start, i);
      WriteToken(i);
      start = i + 1;
    }
    WriteExpression(start, end);
  }

  /// An expression without operators that bind weaker than "&" at its own level.
  void WriteExpression(std::size_t begin, std::size_t end) {
    const std::vector<std::size_t> joints = FindJoints(begin, end);
    if (joints.empty()) return WritePlain(begin, end);
    sql_ += " (";
    std::size_t start = begin;
    for (const std::size_t joint : joints) {
      WriteOperand(start, joint);
      sql_ += "||";
      start = joint + 1;
    }
    WriteOperand(start, end);
    sql_.append(" COLLATE ").append(kCollationName) += ')';
  }

  std::vector<std::size_t> FindJoints(std::size_t begin, std::size_t end) const {
    std::vector<std::size_t> joints;
    for (std::size_t i = begin; i < end; i = statement_.match[i] + 1) {
      if (statement_.tokens[i].Is("&")) joints.push_back(i);
    }
    return joints;
  }

  void WriteOperand(std::size_t begin, std::size_t end) {
    sql_ += "ifnull(";
    WritePlain(begin, end);
    sql_ += ",'')";
  }

  void WritePlain(std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      WriteToken(i);
      const std::size_t close = statement_.match[i];
      if (close == i) continue;
      WriteRange(i + 1, close);
      WriteToken(close);
      i = close;
    }
  }

  void WriteToken(std::size_t i) {
    if (statement_.dropped[i]) return;
    const Token& token = statement_.tokens[i];
    sql_ += ' ';
    if (token.Is("!")) {
      sql_ += '.';
    } else if (token.kind == TokenKind::Text) {
      WriteText(token.source);
    } else {
      sql_ += text::Utf8FromCode(token.source);
    }
  }

  void WriteText(std::string_view source) {
    const std::string value = text::Utf8FromCode(source.substr(1, source.size() - 2));
    const std::string quote(1, source.front());
    const std::string plain = text::ReplaceAll(value, quote + quote, quote);
    if (plain == kHole && form_) {
      sql_ += kHole;
    } else if (plain.find('\0') != std::string::npos) {
      WriteBytes(plain);
    } else {
      sql_ += '\'' + text::ReplaceAll(plain, "'", "''") + '\'';
    }
  }

  /// SQLite's statements end at the first NUL.
  void WriteBytes(std::string_view bytes) {
    static constexpr std::string_view kDigits = "0123456789ABCDEF";
    sql_ += "CAST(X'";
    for (const char c : bytes) {
      const auto code = static_cast<unsigned char>(c);
      (sql_ += kDigits[code / 16U]) += kDigits[code % 16U];
    }
    sql_ += "' AS TEXT)";
  }

  const Statement& statement_;
  bool form_;
  std::string sql_;
};

/// Translates a statement, or a form with holes.
std::string Translate(std::string_view source, bool form) {
  Statement statement;
  statement.tokens = ScanJet(source, form);
  if (statement.size() == 0 || !IsOneOf(statement.tokens[0], kStatements)) {
    throw files::Failure(DatabaseReason::kNoStatement);
  }
  MatchParentheses(statement);
  statement.dropped.assign(statement.size(), false);
  if (statement.tokens[0].Is("UPDATE")) DropTablesOfSet(statement);
  const bool insert = statement.tokens[0].Is("INSERT");
  const std::size_t singleRowSelect = insert ? FindSingleRowSelect(statement) : statement.size();
  return Writer(statement, form).Write(singleRowSelect);
}

}  // namespace

std::string TranslateJet(std::string_view statement) { return Translate(statement, false); }

std::string TranslateJetForm(std::string_view form) { return Translate(form, true); }

std::string FillJetForm(std::string_view form, const std::vector<JetValue>& values) {
  std::string statement;
  for (const JetValue& value : values) {
    const std::size_t hole = form.find(kHole);
    const bool quoted = hole > 0 && form[hole - 1] == '\'';
    statement.append(form.substr(0, hole));
    statement.append(value.isNull    ? "NULL"
                     : !value.isText ? std::to_string(value.number)
                     : quoted        ? QuoteLiteral(value.text)
                                     : std::string(value.text));
    form.remove_prefix(hole + kHole.size());
  }
  return statement.append(form);
}

std::string QuoteLiteral(std::string_view text) { return text::ReplaceAll(text, "'", "''"); }

}  // namespace quillmate::codedb
