#include <quillmate/office/vba_directory.h>

#include "fuzz.h"

namespace quillmate::fuzz {

using namespace office;

void Check(std::string_view bytes) {
  const ProjectText project = ParseProjectText(bytes);
  Expect(project.modules.size() <= bytes.size());
  for (const ProjectTextModule& module : project.modules) Expect(!module.name.empty() && module.type != 0);
  const std::optional<std::string> data = DecipherVbaData(bytes);
  Expect(!data.has_value() || data->size() < bytes.size());
}

}  // namespace quillmate::fuzz
