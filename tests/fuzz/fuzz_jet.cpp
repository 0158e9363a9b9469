#include <algorithm>
#include <vector>

#include <quillmate/codedb/database_reason.h>
#include <quillmate/codedb/jet_sql.h>

#include "fuzz.h"

namespace quillmate::fuzz {

/// A name put between quotes is a literal and nothing else, whatever it holds.
void Check(std::string_view bytes) try {
  const std::string statement = codedb::TranslateJet(bytes);
  Expect(statement.find('\0') == std::string::npos);
  const std::string form = codedb::TranslateJetForm("SELECT a FROM t WHERE a='?'");
  const std::string filled = codedb::FillJetForm("SELECT a FROM t WHERE a='?'", {bytes});
  const std::string translated = codedb::TranslateJet(filled);
  const std::size_t hole = form.find('?');
  Expect(translated.starts_with(form.substr(0, hole)) && translated.ends_with(form.substr(hole + 1)));
} catch (const files::Failure&) {
}

}  // namespace quillmate::fuzz
