#include "excel_facts_p.h"
#include "fuzz.h"
#include "package_facts_p.h"

namespace quillmate::fuzz {

using namespace office;

/// The input is a part of a document: a drawing, a VML drawing and a ribbon, whatever it really is.
void Check(std::string_view bytes) {
  const VbaProject project;
  const ProjectNames names(project);
  DocumentFacts facts;
  FactsCollector collector(facts, names);
  MemoryStream drawing(bytes);
  ReadDrawing(drawing, "Tabelle", false, collector);
  MemoryStream vml(bytes);
  ReadVml(vml, "Tabelle", collector);
  MemoryStream ribbon(bytes);
  ReadRibbon(ribbon, false, collector);
  Expect(facts.bindings.size() <= bytes.size());
  for (const Binding& binding : facts.bindings) Expect(!binding.target.empty());
}

}  // namespace quillmate::fuzz
