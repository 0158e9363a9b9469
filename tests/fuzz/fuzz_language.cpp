#include <quillmate/language/parse.h>

#include "fuzz.h"

namespace quillmate::language {
namespace {

/// Everything in the result points into the text or into the result.
void CheckUses(const Module& module) {
  const auto uses = static_cast<Index>(module.uses.size());
  for (Index i = 0; i < uses; ++i) {
    const NameUse& use = module.uses[i];
    fuzz::Expect(use.offset + use.length <= module.text.size() && use.line <= module.lines.size());
    fuzz::Expect(i == 0 || module.uses[i - 1].offset < use.offset);
    fuzz::Expect(use.name < module.NameCount());
    fuzz::Expect(use.previous == kNone || use.previous < i);
    const bool type = use.role == Role::kType || use.role == Role::kNew;
    fuzz::Expect(use.owner == kNone || use.owner < (type ? module.declarations.size() : uses));
    fuzz::Expect(use.routine == kNone || use.routine < module.routines.size());
  }
}

void CheckRoutines(const Module& module) {
  std::uint32_t previous = 0;
  for (const Routine& routine : module.routines) {
    fuzz::Expect(previous <= routine.firstLine && routine.firstLine <= routine.lastLine);
    fuzz::Expect(routine.lastLine <= module.lines.size() && routine.endOffset <= module.text.size());
    fuzz::Expect(routine.firstUse <= routine.endUse && routine.endUse <= module.uses.size());
    fuzz::Expect(routine.variantCount > 0 && routine.declaration < module.declarations.size());
    previous = routine.lastLine;
  }
}

}  // namespace
}  // namespace quillmate::language

void quillmate::fuzz::Check(std::string_view bytes) {
  using namespace language;
  static Workspace workspace;
  static Module module;
  ParseOptions options;
  options.keepTokens = options.keepStatements = true;
  if (!bytes.empty() && bytes.front() % 2 == 0) options.dialect = Dialect::kVb6;
  ParseModule(bytes, options, workspace, module);
  CheckUses(module);
  CheckRoutines(module);
  for (const Declaration& declaration : module.declarations) {
    Expect(declaration.parent == kNone || declaration.parent < module.declarations.size());
    Expect(declaration.offset + declaration.length <= bytes.size() && declaration.name < module.NameCount());
    Expect(module.DeclaredType(declaration).size() <= bytes.size() + 8);
  }
  for (std::uint32_t line = 1; line <= module.lines.size(); ++line) {
    const std::uint32_t shown = module.EditorLine(line);
    Expect(shown == 0 || module.LineOfEditorLine(shown) == line);
  }
}
