#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

#include <quillmate/language/parse.h>
#include <quillmate/office/macro_target.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

#include "document_facts_p.h"

namespace quillmate::host {
namespace {

using Kind = office::Binding::Kind;

struct KindRow {
  Kind kind;
  const char* word;
};
constexpr std::array kKinds{KindRow{Kind::kObject, "schaltfläche"}, KindRow{Kind::kRibbon, "menüband"},
                            KindRow{Kind::kName, "name"},           KindRow{Kind::kFormula, "formel"},
                            KindRow{Kind::kShortcut, "taste"},      KindRow{Kind::kField, "sonstiges"},
                            KindRow{Kind::kAction, "schaltfläche"}, KindRow{Kind::kEventProperty, "ereignis"},
                            KindRow{Kind::kToolbar, "schaltfläche"}};

struct TextRow {
  const char* property;
  std::string office::DocumentProperties::*field;
};
constexpr std::array kTexts{TextRow{"Titel", &office::DocumentProperties::title},
                            TextRow{"Autor", &office::DocumentProperties::author},
                            TextRow{"Zuletzt gespeichert von", &office::DocumentProperties::lastAuthor},
                            TextRow{"Programm", &office::DocumentProperties::application},
                            TextRow{"Firma", &office::DocumentProperties::company},
                            TextRow{"Erstellt", &office::DocumentProperties::created},
                            TextRow{"Gespeichert", &office::DocumentProperties::modified}};

std::optional<std::int32_t> Twips(std::optional<double> points) {
  constexpr double kPerPoint = 20;
  constexpr double kMost = 1e8;
  if (!points.has_value() || std::abs(*points) > kMost) return std::nullopt;
  return static_cast<std::int32_t>(std::lround(*points * kPerPoint));
}

std::string_view WordOf(Kind kind) {
  const auto* found = std::find_if(kKinds.begin(), kKinds.end(), [=](const KindRow& row) { return row.kind == kind; });
  return found == kKinds.end() ? "sonstiges" : found->word;
}

codedb::ControlFact FactOf(const office::Control& control) {
  constexpr std::string_view kUnknown = "unbekannt";
  codedb::ControlFact fact;
  fact.name = control.name;
  if (control.type != kUnknown) fact.type = control.type;
  fact.caption = control.caption;
  fact.parent = control.parent;
  fact.left = Twips(control.left);
  fact.top = Twips(control.top);
  fact.width = Twips(control.width);
  fact.height = Twips(control.height);
  if (control.tabIndex.has_value()) fact.tabIndex = static_cast<std::int32_t>(*control.tabIndex);
  return fact;
}

std::string SignatureText(const office::MacroSignature& signature) {
  if (signature.signer.empty()) return "vorhanden, nicht geprüft";
  std::string text = "von " + signature.signer;
  text += signature.issuer == signature.signer ? ", selbst ausgestellt" : ", ausgestellt von " + signature.issuer;
  if (!signature.until.empty()) text += ", gültig " + signature.from + " bis " + signature.until;
  return text + "; nicht geprüft";
}

}  // namespace

void TakeReferences(const std::vector<office::VbaReference>& references, std::string_view constants,
                    codedb::ProjectFacts& facts) {
  for (const office::VbaReference& reference : references) {
    facts.references.push_back({reference.name, reference.version, reference.path, -1});
  }
  for (language::ConditionalConstant& constant : language::ParseConditionalConstants(constants)) {
    facts.constants.push_back({std::move(constant.name), constant.value});
  }
}

codedb::ProjectFacts ProjectFactsOf(const office::OfficeFile& file) {
  codedb::ProjectFacts facts;
  facts.name = file.project.name;
  facts.host = WordOf(file.host);
  facts.codePage = file.project.codePage;
  TakeReferences(file.project.references, file.project.constants, facts);
  TakeDocumentFacts(file.facts, facts);
  return facts;
}

office::ModuleFile ModuleFileOf(const office::VbaModule& module) {
  office::ModuleFile file;
  static_cast<office::EditorText&>(file) = module;
  file.name = text::CodeFromUtf8(module.name);
  file.utf8Name = module.name;
  file.type = module.type;
  return file;
}

void TakeDocumentFacts(const office::DocumentFacts& document, codedb::ProjectFacts& facts) {
  const auto add = [&](const char* property, std::string value) {
    if (!value.empty()) facts.document.push_back({property, std::move(value)});
  };
  for (const TextRow& row : kTexts) add(row.property, document.properties.*row.field);
  if (document.isSigned) add("Signatur", *document.isSigned ? SignatureText(document.signature) : "keine");
  if (document.defaultPassword) add("Verschlüsselung", "mit dem Kennwort, das jedes Office von selbst versucht");
  for (const office::Sheet& sheet : document.sheets) {
    if (sheet.visibility == office::Sheet::Visibility::kHidden) add("Ausgeblendetes Blatt", sheet.name);
    if (sheet.visibility == office::Sheet::Visibility::kVeryHidden) add("Verstecktes Blatt", sheet.name);
  }
  for (const office::Excel4Sheet& sheet : document.excel4) {
    std::string about = sheet.name + " (Formeln: " + std::to_string(sheet.formulas);
    if (sheet.visibility != office::Sheet::Visibility::kVisible) about += ", ausgeblendet";
    if (!sheet.entry.empty()) about += ", beginnt beim Öffnen in " + sheet.entry;
    add("Excel-4-Makros", about + ")");
  }
  for (const std::string& link : document.externalLinks) add("Verknüpfung", link);
  for (const office::Query& query : document.queries) {
    add("Abfrage", query.sql.empty() ? query.name : query.name + ": " + query.sql);
  }
  for (const office::LinkedTable& table : document.linkedTables) {
    add("Verknüpfte Tabelle", table.name + ": " + table.source + " in " + table.database);
  }
  for (const std::string& macro : document.macros) add("Makro", macro);
  for (const std::string& notice : document.notices) add("Hinweis", notice);
  if (document.notices.empty()) {
    std::uint64_t places = 0;
    for (const office::Binding& binding : document.bindings) places += binding.count;
    facts.document.push_back({std::string(codedb::kBindingsProperty), std::to_string(places)});
  }
}

DocumentModules ModulesOf(const office::DocumentFacts& document) {
  DocumentModules modules;
  modules.documentControls = document.controlsKnown;
  const auto at = [&](const std::string& name) -> DocumentModule& { return modules.byName[language::FoldName(name)]; };
  for (const office::Sheet& sheet : document.sheets) {
    if (!sheet.codeName.empty()) at(sheet.codeName).outsideName = sheet.name;
  }
  // "Formular frmKunde: ..." says that something of it is not known.
  std::unordered_set<std::string> unclear;
  for (const std::string& notice : document.notices) unclear.emplace(text::TextBefore(notice, ":"));
  for (const office::Form& form : document.forms) {
    DocumentModule& module = at(form.module);
    module.outsideName = form.caption;
    module.controlsKnown = !unclear.contains("Formular " + form.module);
  }
  for (const office::Control& control : document.controls) at(control.module).controls.push_back(FactOf(control));
  return modules;
}

void TakeModuleFacts(const DocumentModules& modules, codedb::ModuleFacts& facts) {
  if (facts.kind == "document" && modules.documentControls) facts.controlsKnown = true;
  const auto found = modules.byName.find(language::FoldName(facts.name));
  if (found == modules.byName.end()) return;
  facts.outsideName = found->second.outsideName;
  facts.controlsKnown = facts.controlsKnown || found->second.controlsKnown;
  // Hidden lines of the module may have told some.
  std::unordered_set<std::string> known;
  for (const codedb::ControlFact& control : facts.controls) known.insert(language::FoldName(control.name));
  for (const codedb::ControlFact& control : found->second.controls) {
    if (!known.contains(language::FoldName(control.name))) facts.controls.push_back(control);
  }
}

std::vector<codedb::BindingFact> BindingsOf(const office::DocumentFacts& document, office::OfficeHost host,
                                            std::string_view fileName) {
  std::vector<codedb::BindingFact> bindings;
  for (const office::Binding& binding : document.bindings) {
    if (binding.kind == Kind::kShortcut && host == office::OfficeHost::kExcel) continue;
    const auto target = office::ParseMacroTarget(binding.target, fileName);
    if (!target.has_value() || target->foreign) continue;
    std::string place = binding.place;
    if (binding.count > 1) place += " und an " + std::to_string(binding.count - 1) + " weiteren Stellen";
    bindings.push_back({0, binding.module, binding.target, std::move(place), std::string(WordOf(binding.kind))});
  }
  return bindings;
}

}  // namespace quillmate::host
