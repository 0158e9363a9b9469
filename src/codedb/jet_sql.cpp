#include <algorithm>
#include <array>
#include <utility>

#include <quillmate/codedb/jet_sql.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "collation_p.h"
#include "jet_lexer_p.h"

namespace quillmate::codedb {
namespace {

/// Deeper nesting than any statement of the program has.
constexpr std::size_t kDeepestNesting = 100;

constexpr std::array<std::string_view, 4> kStatements = {"INSERT", "UPDATE", "DELETE", "SELECT"};

/// What ends an operand of "&": everything that binds weaker.
constexpr std::array<std::string_view, 46> kOperandEnds = {
    ",",     "=",    "<",      ">",     "<=",   ">=",    "<>",     "SELECT", "DISTINCT", "ALL",    "FROM", "WHERE",
    "GROUP", "BY",   "HAVING", "ORDER", "ASC",  "DESC",  "AS",     "AND",    "OR",       "NOT",    "XOR",  "IS",
    "LIKE",  "IN",   "ON",     "INNER", "LEFT", "RIGHT", "OUTER",  "JOIN",   "UNION",    "LIMIT",  "SET",  "VALUES",
    "INTO",  "CASE", "WHEN",   "THEN",  "ELSE", "END",   "EXISTS", "INSERT", "UPDATE",   "BETWEEN"};

/// What ends a list of ORDER BY or GROUP BY.
constexpr std::array<std::string_view, 5> kSortListEnds = {"HAVING", "WHERE", "UNION", "SELECT", "ORDER"};

/// What a SELECT that makes one row of values alone does not have.
constexpr std::array<std::string_view, 9> kSelectsFrom = {"FROM",  "WHERE", "GROUP",    "HAVING", "ORDER",
                                                          "UNION", "LIMIT", "DISTINCT", "ALL"};

template <std::size_t N>
bool IsOneOf(const Token& token, const std::array<std::string_view, N>& list) {
  return std::any_of(list.begin(), list.end(), [&](std::string_view text) { return token.Is(text); });
}

bool IsName(const Token& token) { return token.kind == TokenKind::Word || token.kind == TokenKind::BracketName; }
bool IsLiteral(const Token& token) { return token.kind == TokenKind::Text || token.kind == TokenKind::Number; }

/// The statement's tokens with what the translation has to know about each.
struct Statement {
  std::vector<Token> tokens;
  /// For "(" the position of its ")"; for everything else its own position.
  std::vector<std::size_t> match;
  /// The number of parentheses that are open around a token.
  std::vector<std::size_t> depth;
  std::vector<bool> lifted;
  std::vector<bool> dropped;

  std::size_t size() const { return tokens.size(); }
};

void MatchParentheses(Statement& statement) {
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < statement.size(); ++i) {
    statement.match.push_back(i);
    if (statement.tokens[i].Is(")")) {
      if (open.empty()) throw JetSyntaxError("Eine Klammer wird geschlossen, die nicht offen ist");
      statement.match[open.back()] = i;
      open.pop_back();
    }
    statement.depth.push_back(open.size());
    if (statement.tokens[i].Is("(")) open.push_back(i);
    if (open.size() > kDeepestNesting) throw JetSyntaxError("Zu viele Klammern ineinander");
  }
  if (!open.empty()) throw JetSyntaxError("Eine Klammer wird nicht geschlossen");
}

/// Marks the literals that become parameters.
void LiftLiterals(Statement& statement) {
  statement.lifted.assign(statement.size(), false);
  std::vector<bool> inSortList(kDeepestNesting + 1, false);
  for (std::size_t i = 0; i < statement.size(); ++i) {
    const Token& token = statement.tokens[i];
    const std::size_t depth = statement.depth[i];
    if (token.Is("(")) inSortList[depth + 1] = inSortList[depth];
    if (token.Is("BY")) inSortList[depth] = true;
    if (IsOneOf(token, kSortListEnds)) inSortList[depth] = false;
    const bool isAlias = i > 0 && statement.tokens[i - 1].Is("AS");
    statement.lifted[i] = IsLiteral(token) && !isAlias && !inSortList[depth];
  }
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
  explicit Writer(const Statement& statement) : statement_(statement) {}

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
  /// Tokens of one level, expressions and what stands between them.
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
    if (statement_.lifted[i]) {
      sql_ += '?';
    } else if (token.Is("!")) {
      sql_ += '.';
    } else if (token.kind == TokenKind::Text) {
      WriteText(token.source);
    } else {
      sql_ += text::Utf8FromCode(token.source);
    }
  }

  void WriteText(std::string_view source) {
    const std::string value = JetLiteralText({true, source.substr(1, source.size() - 2), source.front()});
    if (value.find('\0') != std::string::npos) throw JetSyntaxError("Unerwartetes Zeichen in einem Namen");
    sql_ += '\'' + text::ReplaceAll(text::Utf8FromCode(value), "'", "''") + '\'';
  }

  const Statement& statement_;
  std::string sql_;
};

JetLiteral LiteralOf(const Token& token) {
  if (token.kind == TokenKind::Number) return {false, token.source, 0};
  const char quote = token.source.front();
  const std::string_view inner = token.source.substr(1, token.source.size() - 2);
  return {true, inner, inner.find(quote) == std::string_view::npos ? '\0' : quote};
}

/// Cuts the statement's text at its lifted literals.
void CutAtLiterals(const Statement& statement, std::string_view source, JetStatement& result) {
  const char* start = source.data();
  for (std::size_t i = 0; i < statement.size(); ++i) {
    if (!statement.lifted[i]) continue;
    const Token& token = statement.tokens[i];
    result.shape.pieces.emplace_back(start, token.source.data());
    result.shape.quotes += token.kind == TokenKind::Text ? token.source.front() : '\0';
    result.literals.push_back(LiteralOf(token));
    start = token.source.data() + token.source.size();
  }
  result.shape.pieces.emplace_back(start, source.data() + source.size());
}

/// Steps over a literal that stands in `quote` (0: a number); false when there is none.
bool TakeLiteral(std::string_view statement, std::size_t& at, char quote, JetLiteral& literal) {
  if (quote == 0) {
    const std::size_t end = SkipNumber(statement, at);
    literal = {false, statement.substr(at, end - at), 0};
    return std::exchange(at, end) != end;
  }
  if (at >= statement.size() || statement[at] != quote) return false;
  bool doubled = false;
  const std::size_t end = SkipText(statement, at, doubled);
  if (end == std::string_view::npos) return false;
  literal = {true, statement.substr(at + 1, end - at - 2), doubled ? quote : '\0'};
  at = end;
  return true;
}

}  // namespace

JetStatement TranslateJet(std::string_view source) {
  Statement statement;
  statement.tokens = ScanJet(source);
  if (statement.size() == 0 || !IsOneOf(statement.tokens[0], kStatements)) {
    throw JetSyntaxError("Keine Anweisung INSERT, UPDATE, DELETE oder SELECT");
  }
  MatchParentheses(statement);
  LiftLiterals(statement);
  statement.dropped.assign(statement.size(), false);
  if (statement.tokens[0].Is("UPDATE")) DropTablesOfSet(statement);
  const bool insert = statement.tokens[0].Is("INSERT");
  const std::size_t singleRowSelect = insert ? FindSingleRowSelect(statement) : statement.size();

  JetStatement result;
  result.shape.sql = Writer(statement).Write(singleRowSelect);
  CutAtLiterals(statement, source, result);
  return result;
}

bool MatchJetShape(const JetShape& shape, std::string_view statement, std::vector<JetLiteral>& literals) {
  if (!statement.starts_with(shape.pieces[0])) return false;
  literals.resize(shape.quotes.size());
  std::size_t at = shape.pieces[0].size();
  for (std::size_t i = 0; i < shape.quotes.size(); ++i) {
    if (!TakeLiteral(statement, at, shape.quotes[i], literals[i])) return false;
    const std::string& piece = shape.pieces[i + 1];
    if (!statement.substr(at).starts_with(piece)) return false;
    at += piece.size();
  }
  return at == statement.size();
}

std::string JetLiteralText(const JetLiteral& literal) {
  if (literal.doubledQuote == 0) return std::string(literal.source);
  const std::string quote(1, literal.doubledQuote);
  return text::ReplaceAll(literal.source, quote + quote, quote);
}

}  // namespace quillmate::codedb
