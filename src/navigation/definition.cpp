#include <quillmate/navigation/definition.h>

#include "words_p.h"

namespace quillmate::navigation {

std::string_view IdentifierAtCaret(std::string_view text, std::size_t caret) noexcept {
  if (caret == 0 || caret >= text.size() || !IsIdentifierAt(text, caret - 1)) return {};
  std::size_t start = caret - 1;
  while (start > 0 && IsIdentifierAt(text, start - 1)) --start;
  // The last character of the text is never looked at: the word ends before it at the latest.
  std::size_t end = caret;
  while (end + 1 < text.size() && IsIdentifierAt(text, end)) ++end;
  return text.substr(start, end - start);
}

std::optional<Definition> FindDefinition(codedb::CodeDatabase& database, codedb::ViewIndex view,
                                         std::string_view name) {
  const codedb::ModuleNumber module = codedb::ModuleOf(view);
  if (const auto own = database.RoutineInModule(name, module)) {
    return Definition{module, {}, own->start.value_or(codedb::Line{}), true};
  }
  const auto any = database.RoutineInProject(name);
  if (!any) return std::nullopt;
  const auto& [routine, moduleName] = *any;
  return Definition{routine.module, moduleName, routine.start.value_or(codedb::Line{}), false};
}

}  // namespace quillmate::navigation
