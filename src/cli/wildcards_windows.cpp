#include <algorithm>
#include <filesystem>
#include <string_view>

#include <windows.h>

#include <quillmate/files/paths.h>

#include "messages.h"
#include "platform.h"

namespace quillmate::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::wstring_view kWildcards = L"*?";

/// Negative, zero or positive, without regard to case, as the file system compares names.
int CompareNames(std::wstring_view a, std::wstring_view b) noexcept {
  return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(), static_cast<int>(b.size()), TRUE) -
         CSTR_EQUAL;
}

/// Goes back to the last "*" only: what an earlier one takes more, the last one can take as well.
bool Fits(std::wstring_view name, std::wstring_view pattern) noexcept {
  std::size_t at = 0;
  std::size_t star = std::wstring_view::npos;
  std::size_t starAt = 0;
  for (std::size_t i = 0; i < name.size();) {
    if (at < pattern.size() && pattern[at] == L'*') {
      star = at++;
      starAt = i;
    } else if (at < pattern.size() &&
               (pattern[at] == L'?' || CompareNames(name.substr(i, 1), pattern.substr(at, 1)) == 0)) {
      ++at;
      ++i;
    } else if (star != std::wstring_view::npos) {
      at = star + 1;
      i = ++starAt;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(L'*', at) == std::wstring_view::npos;
}

bool IsHidden(const fs::path& path) noexcept {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_HIDDEN) != 0;
}

std::vector<fs::path> Fitting(const fs::path& input) {
  const std::wstring pattern = input.filename() == L"*.*" ? L"*" : input.filename().native();
  const fs::path folder = input.parent_path();
  std::vector<fs::path> paths;
  std::error_code error;
  for (const files::FolderEntry& entry : files::FolderEntries(folder.empty() ? "." : folder, error)) {
    const fs::path name = entry.path.filename();
    if (Fits(name.native(), pattern) && !IsHidden(entry.path)) {
      paths.push_back(folder / name);
    }
  }
  std::ranges::sort(paths, [](const fs::path& a, const fs::path& b) {
    const int order = CompareNames(a.native(), b.native());
    return order != 0 ? order < 0 : a < b;
  });
  return paths;
}

}  // namespace

std::vector<std::string> ExpandWildcards(const std::vector<std::string>& inputs) {
  std::vector<std::string> expanded;
  for (const std::string& input : inputs) {
    const fs::path path = files::PathFromText(input);
    if (path.filename().native().find_first_of(kWildcards) == std::wstring::npos) {
      expanded.push_back(input);
      continue;
    }
    const std::vector<fs::path> fitting = Fitting(path);
    if (fitting.empty()) {
      throw CommandFailure("Keine Datei und kein Ordner passt auf " + Quoted(input));
    }
    std::ranges::transform(fitting, std::back_inserter(expanded), files::PathText);
  }
  return expanded;
}

}  // namespace quillmate::cli
