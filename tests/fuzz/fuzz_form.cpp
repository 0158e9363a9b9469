#include <quillmate/office/compound_file.h>

#include "code_page_p.h"
#include "form_designer_p.h"
#include "fuzz.h"

namespace quillmate::fuzz {

using namespace office;

/// The input is a compound file whose root is a form.
void Check(std::string_view bytes) {
  MemorySource source(bytes);
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  if (!file.has_value()) return;
  DocumentFacts facts;
  ReadFormDesigner(*file, CompoundFile::kRoot, "frm", CodePage(1252), facts);
  Expect(facts.controls.size() <= bytes.size());
  for (const Control& control : facts.controls) Expect(!control.name.empty() && !control.type.empty());
}

}  // namespace quillmate::fuzz
