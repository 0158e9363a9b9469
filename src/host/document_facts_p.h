#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/office/office_file.h>

namespace quillmate::host {

/// References and conditional constants of a project.
void TakeReferences(const std::vector<office::VbaReference>& references, std::string_view constants,
                    codedb::ProjectFacts& facts);

/// A project of an Office file that was read, but for the file's path and hash.
codedb::ProjectFacts ProjectFactsOf(const office::OfficeFile& file);

/// A module of an Office file in the form in which a file of its own would give it.
office::ModuleFile ModuleFileOf(const office::VbaModule& module);

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
