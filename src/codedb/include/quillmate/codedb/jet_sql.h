#pragma once

#include <cstdint>
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
/// Only INSERT, UPDATE, DELETE and SELECT exist, one statement to a text, with or without a semicolon.
///
/// A form is a statement with holes for its values: "?" for a number, "'?'" for a text literal. It is prepared once;
/// its values are bound. With the values filled in it is the statement that it stands for.
namespace quillmate::codedb {

struct JetNull {};
inline constexpr JetNull kNull;

/// What goes into a hole. The text is Windows-1252. NULL goes into one for a number only.
struct JetValue {
  JetValue(JetNull) : isNull(true) {}
  JetValue(std::int32_t value) : number(value) {}
  JetValue(std::string_view value) : text(value), isText(true) {}
  JetValue(const std::string& value) : text(value), isText(true) {}

  std::int32_t number = 0;
  std::string_view text;
  bool isText = false;
  bool isNull = false;
};

/// A statement (Windows-1252) as SQLite takes it (UTF-8). Throws files::Failure for what is no
/// statement of the dialect.
std::string TranslateJet(std::string_view statement);
/// The same for a form; each hole becomes a parameter, in their order.
std::string TranslateJetForm(std::string_view form);

/// The statement that a form stands for with these values, one for each hole.
std::string FillJetForm(std::string_view form, const std::vector<JetValue>& values);

/// A text for use between single quotes in a statement: its own single quotes are doubled.
std::string QuoteLiteral(std::string_view text);

}  // namespace quillmate::codedb
