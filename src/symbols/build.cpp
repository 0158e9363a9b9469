#include <algorithm>

#include <quillmate/symbols/workers.h>

#include "binder_p.h"
#include "index_data_p.h"

namespace quillmate::symbols {
namespace {

std::string FileStem(const std::string& file) {
  const std::size_t slash = file.find_last_of("/\\");
  std::string name = slash == std::string::npos ? file : file.substr(slash + 1);
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

bool IsClassLike(language::ModuleKind kind) { return kind != language::ModuleKind::kStandard; }

SymbolKind KindOfModule(language::ModuleKind kind) {
  switch (kind) {
    case language::ModuleKind::kStandard:
      return SymbolKind::kModule;
    case language::ModuleKind::kForm:
      return SymbolKind::kForm;
    case language::ModuleKind::kDocument:
      return SymbolKind::kDocument;
    default:
      return SymbolKind::kClass;
  }
}

/// Whether the text itself tells all controls of its module.
bool TellsControls(const language::Module& code) {
  using language::ModuleKind;
  if (code.facts.accessExport) return true;
  switch (code.facts.kind) {
    case ModuleKind::kDocument:
      return !code.controls.empty();  // VB_Control attributes: one for each
    case ModuleKind::kForm:
    case ModuleKind::kUserControl:
    case ModuleKind::kPropertyPage:
    case ModuleKind::kUserDocument:
      return !code.controls.empty() && code.Text(code.controls.front().type).starts_with("VB.");
    default:
      return true;
  }
}

/// What one worker parses with.
struct Parser {
  language::Workspace workspace;
  language::Module module;
};

void ParseOne(ReferenceIndex::Data& data, const Sources& sources, Index number, Parser& parser) {
  const ModuleSource& source = sources.modules[number];
  const ProjectSource& project = sources.projects[source.project];
  language::Module& code = data.code[number];
  language::ParseOptions options;
  options.dialect = project.dialect;
  options.constants = project.constants;
  if (source.kind) options.kind = *source.kind;
  // The parser's own module keeps the room that it grew; the copy takes what it needs.
  language::ParseModule(data.texts[number], options, parser.workspace, parser.module);
  code = parser.module;

  ModuleInfo& info = data.modules[number];
  info.name = !source.name.empty() ? source.name : !code.facts.name.empty() ? code.facts.name : FileStem(source.file);
  info.file = source.file;
  info.outsideName = source.outsideName;
  info.project = source.project;
  info.kind = code.facts.kind;
  info.linesOfFile = source.linesOfFile;
  const bool designed = info.kind == language::ModuleKind::kForm || info.kind == language::ModuleKind::kDocument;
  info.predeclared = source.predeclared.value_or(code.facts.predeclared || designed);
  info.exposed = source.exposed.value_or(code.facts.exposed);
  info.controlsKnown = source.controlsKnown || TellsControls(code);
  info.kindKnown = (source.kind.has_value() && !source.kindAssumed) || code.facts.hasHeader;

  ModuleTable& table = data.tables.modules[number];
  table.project = source.project;
  table.kind = KindOfModule(info.kind);
  table.classLike = IsClassLike(info.kind);
  // What may be a sheet or a form may be an object of its own name.
  table.predeclared = info.predeclared || (table.classLike && !info.kindKnown);
  table.exported = table.classLike ? info.exposed : !code.facts.optionPrivateModule;
  table.nameHash = language::HashName(language::FoldName(info.name));
  DeclareModule(table, source, code, data.tables.projects[source.project].hostKnown ? project.host : Host::kUnknown);
  // Not every program that saves a workbook keeps the lines that name the controls of its sheets.
  const bool sheet = info.kind == language::ModuleKind::kDocument && table.bases != library::base::kAccessForm;
  if (sheet && table.controls.empty()) info.controlsKnown = false;
}

void TakeProjects(ReferenceIndex::Data& data, const Sources& sources) {
  const auto count = static_cast<Index>(sources.projects.size());
  for (const ProjectSource& source : sources.projects) {
    data.projects.push_back({source.name, source.file, source.host, source.hostAssumed, source.dialect,
                             source.constants, source.libraries, source.properties});
    ProjectTable& table = data.tables.projects.emplace_back();
    table.nameHash = language::HashName(language::FoldName(source.name));
    table.nameAssumed = source.nameAssumed;
    table.host = source.host;
    table.outsideKnown = source.outsideKnown;
    table.hostKnown = source.host != Host::kUnknown && !source.hostAssumed;
    table.hosts = library::HostBit(table.hostKnown ? source.host : Host::kUnknown);
    // Folders and VB projects are no books that a text could name.
    if (table.hostKnown && source.host != Host::kVb6) table.fileName = source.file;
    const auto self = static_cast<Index>(data.tables.projects.size() - 1);
    for (const Index reference : source.references) {
      if (reference < count && reference != self) table.references.push_back(reference);
    }
  }
}

}  // namespace

ReferenceIndex ReferenceIndex::Build(Sources sources, const BuildOptions& options) {
  auto data = std::make_unique<Data>();
  std::erase_if(sources.modules, [&](const ModuleSource& m) { return m.project >= sources.projects.size(); });
  TakeProjects(*data, sources);
  data->omissions = std::move(sources.omissions);
  const std::size_t count = sources.modules.size();
  data->texts.resize(count);
  data->code.resize(count);
  data->modules.resize(count);
  data->tables.modules.resize(count);
  data->references.resize(count);
  for (std::size_t module = 0; module < count; ++module) data->texts[module] = std::move(sources.modules[module].text);
  library::FindGlobal(0);  // makes the libraries' tables before any thread needs them

  const unsigned workers = WorkerCount(options.threads, count);
  const auto isCancelled = [&] { return options.cancelled != nullptr && options.cancelled->load(); };
  const auto step = [&] {
    if (options.progress != nullptr) options.progress->fetch_add(1);
  };
  {
    std::vector<Parser> parsers(workers);
    ForEachPiece(workers, count, [&](unsigned worker, std::size_t module) {
      if (isCancelled()) return;
      ParseOne(*data, sources, static_cast<Index>(module), parsers[worker]);
      step();
    });
  }
  if (isCancelled()) return ReferenceIndex();
  DeclareProjects(data->tables);
  ForEachPiece(workers, count,
               [&](unsigned, std::size_t module) { ResolveTypes(data->tables, static_cast<Index>(module)); });
  {
    std::vector<Scratch> scratches(workers);
    ForEachPiece(workers, count, [&](unsigned worker, std::size_t module) {
      if (isCancelled()) return;
      Binder(data->tables, static_cast<Index>(module), scratches[worker], data->references[module]).Run();
      step();
    });
  }
  if (isCancelled()) return ReferenceIndex();
  NumberSymbols(*data);
  JoinReferences(*data, workers);
  JoinHandlers(*data);
  JoinRecords(*data);
  JoinBindings(*data, sources.bindings);
  return ReferenceIndex(std::move(data));
}

}  // namespace quillmate::symbols
