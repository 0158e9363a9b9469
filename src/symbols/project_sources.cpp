#include <algorithm>
#include <array>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include <quillmate/codedb/codes.h>
#include <quillmate/codedb/index_files.h>
#include <quillmate/codedb/records.h>
#include <quillmate/symbols/project_sources.h>
#include <quillmate/symbols/workers.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/utf8.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::symbols {
namespace {

using language::ModuleKind;

struct KindWord {
  std::string_view word;
  ModuleKind kind;
};
constexpr std::array kKinds{KindWord{"standard", ModuleKind::kStandard},
                            KindWord{"class", ModuleKind::kClass},
                            KindWord{"form", ModuleKind::kForm},
                            KindWord{"document", ModuleKind::kDocument},
                            KindWord{"usercontrol", ModuleKind::kUserControl},
                            KindWord{"propertypage", ModuleKind::kPropertyPage},
                            KindWord{"userdocument", ModuleKind::kUserDocument},
                            KindWord{"designer", ModuleKind::kDesigner}};

struct HostWord {
  std::string_view word;
  Host host;
};
constexpr std::array kHosts{HostWord{"excel", Host::kExcel},   HostWord{"word", Host::kWord},
                            HostWord{"access", Host::kAccess}, HostWord{"powerpoint", Host::kPowerPoint},
                            HostWord{"vb6", Host::kVb6},       HostWord{"visualbasic", Host::kVb6}};

struct BindingWord {
  std::string_view word;
  BindingKind kind;
};
constexpr std::array kBindings{
    BindingWord{"schaltfläche", BindingKind::kButton}, BindingWord{"ereignis", BindingKind::kEventProperty},
    BindingWord{"menüband", BindingKind::kRibbon},     BindingWord{"name", BindingKind::kDefinedName},
    BindingWord{"formel", BindingKind::kCellFormula},  BindingWord{"taste", BindingKind::kShortcut},
    BindingWord{"start", BindingKind::kStart},         BindingWord{"sonstiges", BindingKind::kOther}};

template <typename Rows>
auto FindWord(const Rows& rows, std::string_view word) {
  return std::find_if(rows.begin(), rows.end(), [=](const auto& row) { return row.word == word; });
}

/// Forms of VB tell that a folder of module files is a VB project.
bool TellsVb(const codedb::ModuleFacts& module) {
  return !module.hidden.empty() && module.hidden.front().text.starts_with("VERSION") &&
         module.hidden.front().text.find("Begin VB.") != std::string::npos;
}

/// An export of an Access form or report.
bool TellsAccess(const codedb::ModuleFacts& module) {
  return !module.hidden.empty() && module.hidden.front().text.starts_with("Version =");
}

Host HostOf(const codedb::Facts& facts, std::size_t project) {
  const auto known = FindWord(kHosts, facts.projects[project].host);
  if (known != kHosts.end()) return known->host;
  const auto any = [&](bool (*tells)(const codedb::ModuleFacts&)) {
    return std::any_of(facts.modules.begin(), facts.modules.end(), [&](const codedb::ModuleFacts& module) {
      return module.project == static_cast<int>(project) && tells(module);
    });
  };
  if (any(TellsAccess)) return Host::kAccess;
  return any(TellsVb) ? Host::kVb6 : Host::kUnknown;
}

ProjectSource ProjectFrom(const codedb::Facts& facts, std::size_t number, Host assumed) {
  const codedb::ProjectFacts& project = facts.projects[number];
  ProjectSource source;
  source.name = project.name;
  source.nameAssumed = project.host.empty();
  source.file = project.file;
  source.host = HostOf(facts, number);
  source.hostAssumed = source.host == Host::kUnknown;
  if (source.hostAssumed) source.host = assumed;
  if (source.host == Host::kVb6) source.dialect = language::Dialect::kVb6;
  source.outsideKnown = std::any_of(project.document.begin(), project.document.end(),
                                    [](const auto& fact) { return fact.property == codedb::kBindingsProperty; });
  for (const codedb::DocumentFact& fact : project.document) source.properties.push_back({fact.property, fact.value});
  for (const codedb::ConstantFact& constant : project.constants) {
    source.constants.push_back({constant.name, constant.value});
  }
  for (const codedb::ReferenceFact& reference : project.references) {
    if (reference.project >= 0) {
      source.references.push_back(static_cast<Index>(reference.project));
    } else {
      source.libraries.push_back(reference.name);
    }
  }
  return source;
}

ModuleSource ModuleFrom(const codedb::ModuleFacts& module) {
  ModuleSource source;
  source.project = static_cast<Index>(module.project);
  source.name = module.name;
  source.file = module.file;
  source.outsideName = module.outsideName;
  source.linesOfFile = module.linesOfFile;
  const auto kind = FindWord(kKinds, module.kind);
  if (kind != kKinds.end() && kind->kind != ModuleKind::kStandard) source.kind = kind->kind;
  source.kindAssumed = module.linesOfFile && module.hidden.empty();
  source.predeclared = module.predeclared;
  source.exposed = module.exposed;
  for (const codedb::ControlFact& control : module.controls) {
    source.controls.push_back({control.name, control.type, control.inArray, true});
  }
  source.controlsKnown = module.controlsKnown;
  return source;
}

/// All but the texts.
Sources Records(const codedb::Facts& facts, Host assumed) {
  Sources sources;
  for (std::size_t i = 0; i < facts.projects.size(); ++i) sources.projects.push_back(ProjectFrom(facts, i, assumed));
  for (const codedb::ModuleFacts& module : facts.modules) sources.modules.push_back(ModuleFrom(module));
  for (const codedb::BindingFact& binding : facts.bindings) {
    const auto kind = FindWord(kBindings, binding.kind);
    sources.bindings.push_back({static_cast<Index>(binding.project), binding.module, binding.text, binding.place,
                                kind == kBindings.end() ? BindingKind::kOther : kind->kind});
  }
  for (const codedb::OmissionFact& fact : facts.omissions) {
    sources.omissions.push_back({fact.file, fact.project, fact.module, fact.reason});
  }
  return sources;
}

/// Nothing for a text that can't be read.
std::optional<std::string> StoredText(const std::filesystem::path& folder, std::int32_t number) {
  try {
    std::string code = codedb::StoredCode(codedb::ReadModuleText(folder, {number}));
    const bool ascii = std::all_of(code.begin(), code.end(), [](char c) { return (c & 0x80) == 0; });
    return ascii ? code : text::Utf8FromCode(code);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

ProjectSources FromFacts(const codedb::Facts& facts, const std::filesystem::path& folder, Host assumed) {
  ProjectSources loaded;
  loaded.sources = Records(facts, assumed);
  const std::size_t count = facts.modules.size();
  loaded.places.resize(count);
  std::vector<char> lacking(count);
  ForEachPiece(WorkerCount(0, count), count, [&](unsigned, std::size_t i) {
    const codedb::ModuleFacts& module = facts.modules[i];
    const bool isStored = !module.code && module.number != 0;
    const std::optional<std::string> text = isStored ? StoredText(folder, module.number) : module.code;
    lacking[i] = isStored && !text;
    std::string code = text.value_or("");
    loaded.sources.modules[i].text =
        module.hidden.empty() ? std::move(code) : codedb::WithHiddenLines(code, module.hidden);
    loaded.places[i] = ModulePlaces(module);
  });
  for (Index i = 0; i < count; ++i) {
    if (lacking[i] != 0) loaded.unreadable.push_back(i);
  }
  return loaded;
}

std::optional<ModuleKind> KindOf(int moduleKind) {
  switch (moduleKind) {
    case codedb::kForm:
      return ModuleKind::kForm;
    case codedb::kClass:
      return ModuleKind::kClass;
    case codedb::kDocument:
      return ModuleKind::kDocument;
    case codedb::kStandard:
      return std::nullopt;
    default:
      return ModuleKind::kUserControl;
  }
}

ProjectSources FromIndex(codedb::CodeDatabase& database, const std::filesystem::path& folder, Host assumed) {
  ProjectSources loaded;
  ProjectSource& project = loaded.sources.projects.emplace_back();
  project.host = assumed;
  project.hostAssumed = true;
  if (assumed == Host::kVb6) project.dialect = language::Dialect::kVb6;
  for (const codedb::ModuleRecord& module : database.ReadIndex()) {
    const auto number = module.number.value;
    ModuleSource& source = loaded.sources.modules.emplace_back();
    source.name = text::Utf8FromCode(module.name);
    source.kind = KindOf(module.kind);
    std::optional<std::string> text = StoredText(folder, number);
    if (!text) loaded.unreadable.push_back(static_cast<Index>(loaded.places.size()));
    source.text = std::move(text).value_or("");
    loaded.places.emplace_back(number);
  }
  return loaded;
}

std::optional<codedb::Facts> FactsIfReadable(const std::filesystem::path& folder, std::string& damage) {
  try {
    return codedb::ReadFacts(folder);
  } catch (const files::Failure& error) {
    damage = error.what();
    return std::nullopt;
  }
}

/// The character at the front, taken off; a byte that is no UTF-8 counts as one.
char32_t Take(std::string_view& line) noexcept {
  const text::Utf8Character read = text::ReadUtf8(line);
  line.remove_prefix(std::max<std::size_t>(read.length, 1));
  return read.character;
}

std::uint32_t TakeBlanks(std::string_view& line) noexcept {
  const std::size_t count = std::min(line.find_first_not_of(" \t"), line.size());
  line.remove_prefix(count);
  return static_cast<std::uint32_t>(count);
}

}  // namespace

ModulePlaces::ModulePlaces(const codedb::ModuleFacts& facts) : number_(facts.number), runs_(facts.lines) {
  for (const codedb::HiddenLines& lines : facts.hidden) {
    const auto count = std::count(lines.text.begin(), lines.text.end(), '\n') + 1;
    hidden_.push_back({static_cast<std::uint32_t>(std::max(lines.line, 1)), static_cast<std::uint32_t>(count)});
  }
}

std::uint32_t ModulePlaces::EditorLine(std::uint32_t textLine) const noexcept {
  std::uint32_t above = 0;
  for (const Hidden& lines : hidden_) {
    if (textLine < lines.before + above) break;
    if (textLine < lines.before + above + lines.count) return 0;
    above += lines.count;
  }
  return textLine - above;
}

std::uint32_t ModulePlaces::TextLine(std::uint32_t editorLine) const noexcept {
  std::uint32_t above = 0;
  for (const Hidden& lines : hidden_) {
    if (lines.before > editorLine) break;
    above += lines.count;
  }
  return editorLine + above;
}

std::uint32_t ModulePlaces::ShownLine(std::uint32_t textLine) const noexcept {
  const std::uint32_t line = EditorLine(textLine);
  if (runs_.empty() || line == 0) return number_ == 0 ? 0 : line;
  const auto behind = std::upper_bound(runs_.begin(), runs_.end(), line, [](std::uint32_t wanted, const auto& run) {
    return wanted < static_cast<std::uint32_t>(run.original);
  });
  if (behind == runs_.begin()) return 0;
  const codedb::LineRun& run = *(behind - 1);
  const std::uint32_t into = line - static_cast<std::uint32_t>(run.original);
  return into < static_cast<std::uint32_t>(run.count) ? static_cast<std::uint32_t>(run.shown) + into : 0;
}

std::uint32_t ModulePlaces::TextLineOfShown(std::uint32_t shownLine) const noexcept {
  if (number_ == 0 || shownLine == 0) return 0;
  if (runs_.empty()) return TextLine(shownLine);
  const auto behind = std::upper_bound(
      runs_.begin(), runs_.end(), shownLine,
      [](std::uint32_t wanted, const auto& run) { return wanted < static_cast<std::uint32_t>(run.shown); });
  if (behind == runs_.begin()) return 0;
  const codedb::LineRun& run = *(behind - 1);
  const std::uint32_t into = shownLine - static_cast<std::uint32_t>(run.shown);
  return into < static_cast<std::uint32_t>(run.count) ? TextLine(static_cast<std::uint32_t>(run.original) + into) : 0;
}

std::uint32_t MapColumn(std::string_view from, std::string_view to, std::uint32_t column) noexcept {
  std::uint32_t at = TakeBlanks(from) + 1;
  std::uint32_t mapped = TakeBlanks(to) + 1;
  while (!from.empty() && !to.empty()) {
    if (to.front() == '\t' && from.front() != '\t') {
      ++mapped, Take(to);
      continue;
    }
    if (at >= column) break;
    const bool dropped = from.front() == '\t' && to.front() != '\t';
    ++at, Take(from);
    if (!dropped) ++mapped, Take(to);
  }
  return mapped;
}

Host HostOfProgram(std::string_view name) noexcept {
  const auto known = std::find_if(kHosts.begin(), kHosts.end(),
                                  [=](const HostWord& row) { return text::EqualsIgnoreCase(row.word, name); });
  return known == kHosts.end() ? Host::kUnknown : known->host;
}

Sources SourcesFrom(codedb::Facts facts, Host assumed) {
  Sources sources = Records(facts, assumed);
  for (std::size_t i = 0; i < facts.modules.size(); ++i) {
    codedb::ModuleFacts& module = facts.modules[i];
    std::string code = std::move(module.code).value_or(std::string());
    sources.modules[i].text = module.hidden.empty() ? std::move(code) : codedb::WithHiddenLines(code, module.hidden);
    module.code.reset();
  }
  return sources;
}

ProjectSources LoadSources(codedb::CodeDatabase& database, const std::filesystem::path& folder, Host assumed) {
  std::string damage;
  const std::optional<codedb::Facts> facts = FactsIfReadable(folder, damage);
  ProjectSources loaded = facts ? FromFacts(*facts, folder, assumed) : FromIndex(database, folder, assumed);
  loaded.damage = std::move(damage);
  return loaded;
}

}  // namespace quillmate::symbols
