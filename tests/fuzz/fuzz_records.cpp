#include "excel_records_p.h"
#include "fuzz.h"
#include "package_facts_p.h"

namespace quillmate::fuzz {

using namespace office;

/// The input is the stream of a workbook in records of either kind, a presentation's, a document's, or a property set.
void Check(std::string_view bytes) {
  const VbaProject project;
  const ProjectNames names(project);
  DocumentFacts facts;
  FactsCollector collector(facts, names);
  MemorySource source(bytes);
  ReadXlsFacts(source, collector);
  ReadPptFacts(source, collector);
  ReadDocFacts(source, collector);
  HoldsMacroSheet(source);
  MemoryStream workbook(bytes);
  Expect(ReadWorkbookRecords(workbook).names.size() <= bytes.size());
  MemoryStream sheet(bytes);
  ReadSheetRecords12(
      sheet, true, [](const std::string&) {},
      [](const CellFormula& formula) { ForEachName(formula.tokens, TokenFormat::kBiff12, [](const NameToken&) {}); });
  ReadSummary(bytes, facts.properties);
  Expect(facts.bindings.size() <= bytes.size());
}

}  // namespace quillmate::fuzz
