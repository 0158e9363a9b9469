#include <quillmate/office/vba_directory.h>

#include "fuzz.h"

namespace quillmate::fuzz {

using namespace office;

void Check(std::string_view bytes) {
  const DirStream dir = ParseDirStream(bytes);
  Expect(dir.modules.size() <= bytes.size() / 6);
  for (const DirModule& module : dir.modules) Expect(!module.name.empty() || !module.unicodeName.empty());
}

}  // namespace quillmate::fuzz
