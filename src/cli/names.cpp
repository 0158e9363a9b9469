#include "names.h"

#include <algorithm>
#include <utility>
#include <vector>

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

codedb::ModuleNumber FindModule(codedb::CodeDatabase& database, const std::string& name) {
  const auto code = CodeName(name);
  const auto found = code ? database.ModulesNamed(*code) : std::vector<codedb::ModuleRecord>();
  if (found.empty()) {
    throw CommandFailure("Es gibt kein Modul " + Quoted(name));
  }
  const auto spelled = std::ranges::find(found, *code, &codedb::ModuleRecord::name);
  return (spelled == found.end() ? found.begin() : spelled)->number;
}

std::string ModuleName(codedb::CodeDatabase& database, codedb::ModuleNumber number) {
  auto found = database.Module(number);
  return found ? std::move(found->name) : std::string();
}

}  // namespace quillmate::cli
