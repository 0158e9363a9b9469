#include <algorithm>

#include <quillmate/host/vb_project.h>

#include "fuzz.h"

namespace quillmate::fuzz {

void Check(std::string_view bytes) {
  const host::VbProject project = host::ParseVbProject(bytes);
  Expect(project.modules.size() <= bytes.size() / 5);
  host::ProjectPaths paths("/nirgends");
  std::size_t left = 20;
  for (const host::VbProjectModule& module : project.modules) {
    Expect(!module.file.empty() && !module.extension.empty());
    if (left-- == 0) break;
    Expect(!paths.Resolve(module.file).empty());
  }
}

}  // namespace quillmate::fuzz
