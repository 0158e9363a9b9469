#include <quillmate/office/office_file.h>

#include "fuzz.h"

namespace quillmate::fuzz {

using namespace office;

void Check(std::string_view bytes) {
  MemorySource source(bytes);
  const OfficeFile file = ReadOfficeFile(source, {.facts = true, .excel4 = true});
  Expect((file.reason == Reason::kNone) == (file.state == OfficeFile::State::kRead));
  Expect(file.project.modules.empty() || !file.project.protection.Locked());
}

}  // namespace quillmate::fuzz
