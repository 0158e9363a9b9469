#include <utility>

#include <quillmate/host/office_facts.h>
#include <quillmate/office/module_file.h>
#include <quillmate/text/windows1252.h>

#include "component_facts_p.h"
#include "document_facts_p.h"
#include "source_file_p.h"

namespace quillmate::host {
namespace {

codedb::ModuleFacts WholeFacts(office::ModuleFile file) {
  std::string code = std::move(file.code);
  codedb::ModuleFacts facts = FactsOfFile(std::move(file));
  if (!facts.code) facts.code = text::Utf8FromCode(code);
  return facts;
}

}  // namespace

codedb::Facts TakeOfficeFacts(office::OfficeFile& file, std::string_view fileName) {
  codedb::Facts facts;
  facts.projects.push_back(ProjectFactsOf(file));
  const DocumentModules outside = ModulesOf(file.facts);
  for (office::VbaModule& module : file.project.modules) {
    codedb::ModuleFacts& taken = facts.modules.emplace_back(WholeFacts(ModuleFileOf(module)));
    module.code.clear();
    module.original.clear();
    if (taken.name.empty()) taken.name = module.name;
    TakeModuleFacts(outside, taken);
  }
  facts.bindings = BindingsOf(file.facts, file.host, fileName);
  return facts;
}

std::optional<codedb::Facts> ModuleFileFacts(std::string bytes, std::string_view extension, std::string_view stem,
                                             office::Reason& problem) {
  const SourceBytes content = DecodeSourceBytes(bytes, 0);
  problem = content.problem;
  if (problem != office::Reason::kNone) return std::nullopt;
  codedb::Facts facts;
  facts.projects.emplace_back();
  codedb::ModuleFacts& module =
      facts.modules.emplace_back(WholeFacts(office::ParseModuleFile(content.bytes, extension)));
  if (module.name.empty()) module.name = stem;
  module.linesOfFile = true;
  return facts;
}

}  // namespace quillmate::host
