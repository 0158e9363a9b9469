#include "names.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <utility>
#include <vector>

#include <quillmate/codedb/facts.h>
#include <quillmate/files/paths.h>
#include <quillmate/language/parse.h>
#include <quillmate/text/windows1252.h>

#include "messages.h"

namespace quillmate::cli {
namespace {

/// A module that a name may mean. UTF-8.
struct Candidate {
  std::int64_t key;
  std::string project;
  /// Of the project.
  std::string file;
  std::string name;
  /// Its own one; may be empty.
  std::string source;
};

std::vector<Candidate> Candidates(const std::filesystem::path& folder) {
  std::vector<Candidate> candidates;
  try {
    const auto facts = codedb::ReadFacts(folder);
    if (!facts) return candidates;
    for (const codedb::ModuleFacts& module : facts->modules) {
      const codedb::ProjectFacts& project = facts->projects[static_cast<std::size_t>(module.project)];
      if (module.number > 0)
        candidates.push_back({module.number, project.name, project.file, module.name, module.file});
    }
  } catch (const files::Failure&) {
    candidates.clear();
  }
  return candidates;
}

/// What may precede the point: the project's name, its file's name, that without its ending.
std::vector<std::string> Qualifiers(const Candidate& module) {
  const std::filesystem::path file = files::PathFromText(module.file);
  return {module.project, files::PathText(file.filename()), files::PathText(file.stem())};
}

/// Whether `asked` ends the path of the module's file: "Sub/Modul.bas".
bool IsFile(const Candidate& module, std::string asked) {
  if (asked.empty() || module.source.empty()) return false;
  std::string source = '/' + language::FoldName(module.source);
  std::ranges::replace(source, '\\', '/');
  std::ranges::replace(asked, '\\', '/');
  return source.ends_with(asked.starts_with('/') ? asked : '/' + asked);
}

bool IsMeant(const Candidate& module, const std::string& name) {
  const std::string asked = language::FoldName(name);
  if (IsFile(module, asked)) return true;
  return std::ranges::any_of(Qualifiers(module), [&](const std::string& qualifier) {
    return !qualifier.empty() && language::FoldName(qualifier + "." + module.name) == asked;
  });
}

/// "Projekt.Modul", or where that is not enough "Datei.Modul", or the module's own file.
std::string Label(const Candidate& module, const std::vector<Candidate>& modules) {
  for (const std::string& qualifier : Qualifiers(module)) {
    std::string label = qualifier + "." + module.name;
    const auto fits = std::ranges::count_if(modules, [&](const Candidate& other) { return IsMeant(other, label); });
    if (!qualifier.empty() && fits == 1) return label;
  }
  return module.source.empty() ? module.project + "." + module.name + " (" + module.file + ")" : module.source;
}

const Candidate& TheOnly(const std::vector<Candidate>& asked, const std::string& name,
                         const std::vector<Candidate>& modules) {
  if (asked.empty()) throw CommandFailure("Es gibt kein Modul " + Quoted(name));
  if (asked.size() == 1) return asked.front();
  std::string labels;
  for (const Candidate& module : asked) labels.append(labels.empty() ? "" : ", ").append(Label(module, modules));
  throw CommandFailure("Mehrere Module heißen " + Quoted(name) + "; mit --module eines wählen: " + labels);
}

}  // namespace

std::optional<std::string> CodeName(const std::string& name) {
  if (!text::IsValidUtf8(name)) {
    return name;  // a terminal that is not UTF-8
  }
  std::string code = text::CodeFromUtf8(name);
  return text::Utf8FromCode(code) == name ? std::optional(std::move(code)) : std::nullopt;
}

codedb::ModuleNumber FindModule(ProjectInput& input, const std::string& name) {
  const auto code = CodeName(name);
  const auto found = code ? input.Database().ModulesNamed(*code) : std::vector<codedb::ModuleRecord>();
  if (found.size() == 1) return found.front().number;
  const auto isSpelledSo = [&](const codedb::ModuleRecord& module) { return module.name == *code; };
  if (std::ranges::count_if(found, isSpelledSo) == 1) return std::ranges::find_if(found, isSpelledSo)->number;
  const std::vector<Candidate> modules = Candidates(input.Folder());
  std::vector<Candidate> asked;
  for (const Candidate& module : modules) {
    const auto isIt = [&](const codedb::ModuleRecord& record) { return record.number.value == module.key; };
    if (std::ranges::any_of(found, isIt) || IsMeant(module, name)) asked.push_back(module);
  }
  // Without facts nothing tells them apart but their order.
  if (asked.empty() && !found.empty()) return found.front().number;
  return {static_cast<std::int32_t>(TheOnly(asked, name, modules).key)};
}

symbols::Index FindModule(const symbols::ReferenceIndex& index, const std::string& name) {
  std::vector<Candidate> modules;
  for (std::size_t i = 0; i < index.Modules().size(); ++i) {
    const symbols::ModuleInfo& info = index.Modules()[i];
    const symbols::ProjectInfo& project = index.Projects()[info.project];
    modules.push_back({static_cast<std::int64_t>(i), project.name, project.file, info.name, info.file});
  }
  std::vector<Candidate> asked;
  const std::string folded = language::FoldName(name);
  std::ranges::copy_if(modules, std::back_inserter(asked),
                       [&](const Candidate& module) { return language::FoldName(module.name) == folded; });
  const auto isSpelledSo = [&](const Candidate& module) { return module.name == name; };
  if (asked.size() > 1 && std::ranges::count_if(asked, isSpelledSo) == 1) {
    return static_cast<symbols::Index>(std::ranges::find_if(asked, isSpelledSo)->key);
  }
  if (asked.empty()) {
    std::ranges::copy_if(modules, std::back_inserter(asked), [&](const Candidate& m) { return IsMeant(m, name); });
  }
  return static_cast<symbols::Index>(TheOnly(asked, name, modules).key);
}

std::string ModuleName(codedb::CodeDatabase& database, codedb::ModuleNumber number) {
  auto found = database.Module(number);
  return found ? std::move(found->name) : std::string();
}

}  // namespace quillmate::cli
