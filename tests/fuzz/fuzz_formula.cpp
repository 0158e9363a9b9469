#include <quillmate/office/component_type.h>
#include <quillmate/office/macro_target.h>

#include "excel_records_p.h"
#include "fuzz.h"
#include "project_names_p.h"

namespace quillmate::fuzz {

using namespace office;

/// The input is a formula as a text and as tokens, a macro's name, and the code of a module.
void Check(std::string_view bytes) {
  VbaProject project;
  project.modules.resize(2);
  project.modules[0].type = kStdModule;
  project.modules[0].code = "Function Steuer(x)\r\nEnd Function";
  project.modules[1].type = kStdModule;
  project.modules[1].code = bytes;
  const ProjectNames names(project);
  for (const std::string& function : CellFunctionsIn(bytes, names)) Expect(names.IsCellFunction(function));
  std::size_t tokens = 0;
  for (const TokenFormat format : {TokenFormat::kBiff8, TokenFormat::kBiff12}) {
    ForEachName(bytes, format, [&](const NameToken&) { ++tokens; });
  }
  Expect(tokens <= 2 * bytes.size());
  const auto target = ParseMacroTarget(bytes, "a.xlsm");
  Expect(!target.has_value() || !target->routine.empty());
}

}  // namespace quillmate::fuzz
