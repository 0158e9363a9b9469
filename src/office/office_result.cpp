#include <optional>
#include <utility>

#include <quillmate/office/component_type.h>
#include <quillmate/office/compound_file.h>
#include <quillmate/text/windows1252.h>

#include "code_page_p.h"
#include "form_designer_p.h"
#include "office_result_p.h"

namespace quillmate::office {

using State = OfficeFile::State;

namespace {

/// The designer data of a form is in a storage of its name.
void ReadForms(const Storage& file, Storage::Id storage, OfficeFile& result) {
  const CodePage codePage(result.project.codePage);
  for (const VbaModule& module : result.project.modules) {
    if (module.type != kMSForm) continue;
    const std::optional<Storage::Id> form = file.FindStorage(storage, module.name);
    if (form.has_value()) ReadFormDesigner(file, *form, module.name, codePage, result.facts);
  }
}

VbaModule ModuleOf(Excel4Sheet& sheet) {
  VbaModule module;
  module.name = sheet.name;
  module.type = kOtherComponent;
  module.code = text::CodeFromUtf8(sheet.code, &module.replaced);
  if (module.replaced > 0) module.original = std::move(sheet.code);
  module.lineCount = CountLines(module.code);
  sheet.code.clear();
  return module;
}

/// Makes modules out of the macro sheets of Excel 4 that were found, or names them.
void TellExcel4(OfficeFile& file, const ReadOptions& options) {
  std::string untold;
  for (Excel4Sheet& sheet : file.facts.excel4) {
    if (options.excel4 && !sheet.code.empty()) {
      file.project.modules.push_back(ModuleOf(sheet));
      file.state = State::kRead;
      file.reason = Reason::kNone;
    } else {
      untold += (untold.empty() ? "" : ", ") + sheet.name + " (" + std::to_string(sheet.formulas) +
                (sheet.formulas == 1 ? " Formel)" : " Formeln)");
    }
  }
  if (untold.empty()) return;
  const std::string text = "enthält Excel-4-Makros: " + untold;
  if (file.state == State::kRead) {
    file.project.warnings.push_back("Datei " + text);
  } else {
    file.reason = Reason::kNoVba;
    file.macroSheets = text;
  }
}

}  // namespace

std::string OfficeFile::ReasonText() const {
  std::string text = office::ReasonText(reason);
  return macroSheets.empty() ? text : text.append(", sie ").append(macroSheets);
}

OfficeFile Without(State state, Reason reason, OfficeHost host) {
  OfficeFile file;
  file.state = state;
  file.reason = reason;
  file.host = host;
  return file;
}

OfficeFile ReadProjectIn(const Storage& file, Storage::Id storage, OfficeHost host, const ReadOptions& options) {
  OfficeFile result;
  result.host = host;
  result.project = ReadVbaProject(file, storage, options.mostText);
  // A protection that breaks off with the rest of the description is damage; the texts stay unread all the same.
  const VbaProtection& protection = result.project.protection;
  const bool locked = protection.Locked() && (!protection.unclear || result.project.warnings.empty());
  const bool lost = result.project.modules.empty() && !locked;
  if (lost && !result.project.warnings.empty()) return Without(State::kFailed, Reason::kBrokenProject, host);
  if (lost) return Without(State::kNoMacros, Reason::kNoMacros, host);
  result.state = State::kRead;
  if (options.facts) ReadForms(file, storage, result);
  return result;
}

OfficeFile ReadBareProject(const std::string& bytes, OfficeHost host, const ReadOptions& options) {
  MemorySource source(bytes);
  const std::optional<CompoundFile> file = CompoundFile::Open(source);
  const std::optional<CompoundId> storage = file.has_value() ? FindVbaProject(*file) : std::nullopt;
  if (!storage.has_value()) return Without(State::kFailed, Reason::kBrokenProject, host);
  return ReadProjectIn(*file, *storage, host, options);
}

OfficeFile WithFacts(OfficeFile file, const ReadOptions& options, const std::function<void(FactsCollector&)>& search) {
  if (!options.facts || file.state != State::kRead) return file;
  const ProjectNames names(file.project);
  FactsCollector collector(file.facts, names);
  TakeCodeFacts(file.project, collector);
  search(collector);
  if (!file.facts.cutShort.empty()) file.project.warnings.push_back(file.facts.cutShort);
  TellExcel4(file, options);
  return file;
}

OfficeFile WithMacroSheetsAlone(const ReadOptions& options, const std::function<void(FactsCollector&)>& search) {
  OfficeFile file = Without(State::kNoMacros, Reason::kNoMacros, OfficeHost::kExcel);
  const ProjectNames names(file.project);
  FactsCollector collector(file.facts, names);
  search(collector);
  TellExcel4(file, options);
  return file;
}

}  // namespace quillmate::office
