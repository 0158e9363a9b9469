#include <algorithm>

#include <quillmate/codedb/jet_sql.h>

#include "fuzz.h"

namespace quillmate::fuzz {

void Check(std::string_view bytes) try {
  const codedb::JetStatement statement = codedb::TranslateJet(bytes);
  const codedb::JetShape& shape = statement.shape;
  Expect(shape.pieces.size() == statement.literals.size() + 1);
  Expect(static_cast<std::size_t>(std::ranges::count(shape.quotes, '\0')) <= statement.literals.size());

  std::vector<codedb::JetLiteral> literals;
  Expect(codedb::MatchJetShape(shape, bytes, literals));
  Expect(
      std::ranges::equal(literals, statement.literals, {}, &codedb::JetLiteral::source, &codedb::JetLiteral::source));
  for (const codedb::JetLiteral& literal : literals) {
    if (literal.isText) Expect(codedb::JetLiteralText(literal).size() <= literal.source.size());
  }
} catch (const codedb::JetSyntaxError&) {
}

}  // namespace quillmate::fuzz
