#include <quillmate/navigation/definition.h>

namespace quillmate::navigation {

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
