#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

#include <quillmate/files/paths.h>
#include <quillmate/files/source_text.h>
#include <quillmate/host/vb_project.h>
#include <quillmate/text/characters.h>
#include <quillmate/text/lines.h>
#include <quillmate/text/operations.h>
#include <quillmate/text/windows1252.h>

namespace quillmate::host {
namespace {

namespace fs = std::filesystem;

struct ModuleLine {
  std::string_view key;
  std::string_view extension;
  bool named;
};
constexpr std::array kModuleLines{ModuleLine{"Module", "bas", true},        ModuleLine{"Class", "cls", true},
                                  ModuleLine{"Form", "frm", false},         ModuleLine{"UserControl", "ctl", false},
                                  ModuleLine{"PropertyPage", "pag", false}, ModuleLine{"UserDocument", "dob", false},
                                  ModuleLine{"Designer", "dsr", false}};

/// Paths may hold characters that code text lacks, so the file is read as UTF-8 where it is.
std::string Utf8FromBytes(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
  if (text::IsValidUtf8(bytes)) return std::string(bytes);
  return text::Utf8FromCode(files::DecodeSourceText(bytes));
}

std::string_view Value(std::string_view text) noexcept {
  const std::size_t start = std::min(text.find_first_not_of(" \t"), text.size());
  text = text.substr(start, text.find_last_not_of(" \t") + 1 - start);
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  return text;
}

void TakeModuleLine(const ModuleLine& line, std::string_view value, VbProject& project) {
  VbProjectModule module;
  module.extension = line.extension;
  const std::size_t separator = line.named ? value.find(';') : std::string_view::npos;
  if (separator != std::string_view::npos) {
    module.name = Value(value.substr(0, separator));
    value = value.substr(separator + 1);
  }
  module.file = Value(value);
  if (!module.file.empty()) project.modules.push_back(std::move(module));
}

void TakeLine(std::string_view line, VbProject& project) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return;
  const std::string_view key = Value(line.substr(0, equals));
  const std::string_view value = Value(line.substr(equals + 1));
  if (text::EqualsIgnoreCase(key, "Name")) {
    if (project.name.empty()) project.name = value;
    return;
  }
  if (text::EqualsIgnoreCase(key, "CondComp")) project.constants = value;
  if (text::EqualsIgnoreCase(key, "Reference")) project.references.push_back(office::ParseLibid(value));
  const auto* found = std::find_if(kModuleLines.begin(), kModuleLines.end(),
                                   [&](const ModuleLine& entry) { return text::EqualsIgnoreCase(entry.key, key); });
  if (found != kModuleLines.end()) TakeModuleLine(*found, value, project);
}

/// A name in the form in which names that differ in case only are equal.
std::string Folded(const fs::path& name) {
  std::string folded = text::CodeFromUtf8(files::PathText(name));
  for (char& c : folded) c = static_cast<char>(text::ToLower(c));
  return folded;
}

bool Exists(const fs::path& path) {
  std::error_code error;
  return fs::exists(path, error);
}

}  // namespace

VbProject ParseVbProject(std::string_view bytes) {
  const std::string content = Utf8FromBytes(bytes);
  VbProject project;
  text::LineReader lines(content);
  for (std::string_view line; lines.Next(line);) TakeLine(line, project);
  return project;
}

fs::path ProjectPaths::Resolve(std::string_view written) {
  const fs::path relative = files::PathFromText(text::ReplaceAll(written, "\\", "/"));
  // ".." goes up by name, as it did where the project was made, also after a link.
  fs::path direct = files::NormalPath(files::PathSeenFrom(folder_, relative));
  if (files::IsAbsolutePath(relative) || Exists(direct)) return files::PathAsNamed(direct);
  fs::path found = folder_;
  for (const fs::path& name : relative) {
    found = Step(found, name);
    if (found.empty()) return direct;
  }
  return found;
}

fs::path ProjectPaths::Step(const fs::path& folder, const fs::path& name) {
  if (name.empty() || name == ".") return folder;
  if (name == "..") return folder.parent_path();
  if (Exists(folder / name)) return folder / name;
  const Names& names = NamesIn(folder);
  const auto found = names.find(Folded(name));
  return found == names.end() ? fs::path() : folder / found->second;
}

const ProjectPaths::Names& ProjectPaths::NamesIn(const fs::path& folder) {
  const auto [entry, added] = names_.try_emplace(folder);
  if (!added) return entry->second;
  std::error_code error;
  for (const files::FolderEntry& item : files::FolderEntries(folder, error)) {
    const fs::path name = item.path.filename();
    const auto [known, first] = entry->second.try_emplace(Folded(name), name);
    // Of several names that differ in case only, the first in byte order counts.
    if (!first && name < known->second) known->second = name;
  }
  return entry->second;
}

}  // namespace quillmate::host
