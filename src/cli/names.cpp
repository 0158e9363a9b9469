#include "names.h"

#include <utility>

#include <quillmate/text/windows1252.h>

#include "messages.h"

namespace quillmate::cli {

std::optional<std::string> CodeName(const std::string& name) {
  if (!text::IsValidUtf8(name)) {
    return name;  // a terminal that is not UTF-8
  }
  std::string code = text::CodeFromUtf8(name);
  return text::Utf8FromCode(code) == name ? std::optional(std::move(code)) : std::nullopt;
}

int FindModule(codedb::CodeDatabase& database, const std::string& name) {
  int first = 0;
  if (const auto code = CodeName(name)) {
    auto found = database.OpenRecordset("SELECT mod_num, mod_name FROM td_mod WHERE mod_name='" +
                                        codedb::QuoteLiteral(*code) + "' ORDER BY mod_num;");
    while (found.Next()) {
      const int number = static_cast<int>(found.Number(0).value_or(0));
      if (found.Text(1) == *code) return number;
      if (first == 0) first = number;
    }
  }
  if (first != 0) return first;
  throw CommandFailure("Es gibt kein Modul " + Quoted(name));
}

std::string ModuleName(codedb::CodeDatabase& database, int moduleNumber) {
  auto found =
      database.OpenRecordset("SELECT mod_name FROM td_mod WHERE mod_num=" + std::to_string(moduleNumber) + ";");
  return found.Next() ? found.Text(0) : std::string();
}

}  // namespace quillmate::cli
