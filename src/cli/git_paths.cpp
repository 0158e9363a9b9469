#include "git_paths.h"

#include <algorithm>
#include <vector>

#include <quillmate/files/paths.h>
#include <quillmate/office/module_file.h>
#include <quillmate/office/office_file.h>
#include <quillmate/office/text_export.h>
#include <quillmate/text/operations.h>

namespace quillmate::cli {
namespace {

constexpr std::string_view kVbProjectExtension = ".vbp";

std::string ExtensionOf(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot));
}

bool IsOfficeFile(std::string_view path) {
  const std::string extension = ExtensionOf(path);
  return !extension.empty() && std::ranges::any_of(office::OfficeFileExtensions(), [&](std::string_view known) {
    return text::EqualsIgnoreCase(known, std::string_view(extension).substr(1));
  });
}

/// Whether it is one, its content decides.
bool MayBeTextExport(std::string_view path) {
  const std::string extension = ExtensionOf(path);
  return !extension.empty() &&
         text::EqualsIgnoreCase(std::string_view(extension).substr(1), office::kTextExportExtension);
}

}  // namespace

bool IsModuleFile(std::string_view path) { return office::IsModuleFileExtension(ExtensionOf(path)); }
bool IsVbProject(std::string_view path) { return text::EqualsIgnoreCase(ExtensionOf(path), kVbProjectExtension); }
bool IsWanted(std::string_view path) {
  return IsModuleFile(path) || IsVbProject(path) || IsOfficeFile(path) || MayBeTextExport(path);
}

bool IsPlainName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && files::CleanName(name) == name;
}

bool IsBelow(std::string_view path, std::string_view folder) {
  return folder.empty() || (path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/');
}

std::optional<std::string> Resolved(std::string_view folder, std::string_view path) {
  std::vector<std::string_view> names;
  for (std::string_view rest : {folder, path}) {
    while (!rest.empty()) {
      const std::size_t end = std::min(rest.find('/'), rest.size());
      const std::string_view name = rest.substr(0, end);
      rest.remove_prefix(std::min(end + 1, rest.size()));
      if (name == "..") {
        if (names.empty()) return std::nullopt;
        names.pop_back();
      } else if (!name.empty() && name != ".") {
        names.push_back(name);
      }
    }
  }
  std::string resolved;
  for (const std::string_view name : names) resolved.append(resolved.empty() ? "" : "/").append(name);
  return resolved;
}

std::string_view FolderOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

}  // namespace quillmate::cli
