#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/office/office_file.h>

namespace quillmate::host {

/// What a document says of itself, as rows of the facts.
void TakeDocumentFacts(const office::DocumentFacts& document, codedb::ProjectFacts& facts);

/// What it says of its modules, by their folded names: names outside of the code, and controls.
struct DocumentModule {
  std::string outsideName;
  std::vector<codedb::ControlFact> controls;
  bool controlsKnown = false;
};
struct DocumentModules {
  std::unordered_map<std::string, DocumentModule> byName;
  /// All controls of sheets and of the document are known.
  bool documentControls = false;
};
DocumentModules ModulesOf(const office::DocumentFacts& document);
void TakeModuleFacts(const DocumentModules& modules, codedb::ModuleFacts& facts);

/// Who starts routines; `fileName` is the document's own. Macros of other documents are left out, and the keys that
/// are in the code itself.
std::vector<codedb::BindingFact> BindingsOf(const office::DocumentFacts& document, office::OfficeHost host,
                                            std::string_view fileName);

}  // namespace quillmate::host
