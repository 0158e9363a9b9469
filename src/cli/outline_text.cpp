#include "outline_text.h"

#include <algorithm>
#include <map>

#include <quillmate/export/outline.h>
#include <quillmate/text/markers.h>
#include <quillmate/text/operations.h>

namespace quillmate::cli {
namespace {

std::string TextOf(const std::vector<const OutlineModule*>& modules) {
  std::vector<output::OutlineNode> nodes;
  for (const OutlineModule* module : modules) {
    const int parent = static_cast<int>(nodes.size());
    nodes.push_back({module->name, -1});
    for (const std::string& routine : module->routines) nodes.push_back({routine, parent});
  }
  return text::ReplaceAll(output::BuildOutline(nodes), text::kLineBreak, "\n");
}

std::string Indented(const std::string& lines) {
  return lines.empty() ? lines : "\t" + text::ReplaceAll(lines.substr(0, lines.size() - 1), "\n", "\n\t") + "\n";
}

}  // namespace

std::string ProjectHeading(std::string_view project, std::string_view projectFile, std::string_view moduleFile) {
  if (projectFile.empty() || projectFile == moduleFile) return {};
  if (project.empty()) return std::string(projectFile);
  return std::string(project) + " (" + std::string(projectFile) + ")";
}

std::string OutlineText(const std::vector<OutlineModule>& modules) {
  struct Group {
    std::int64_t first;
    std::vector<const OutlineModule*> modules;
  };
  std::map<std::string_view, Group> groups;
  for (const OutlineModule& module : modules) {
    Group& group = groups.try_emplace(module.heading, Group{module.number, {}}).first->second;
    group.first = std::min(group.first, module.number);
    group.modules.push_back(&module);
  }
  std::vector<std::pair<std::string_view, Group>> ordered(groups.begin(), groups.end());
  std::ranges::stable_sort(ordered, {}, [](const auto& group) { return group.second.first; });
  std::string outline;
  for (const auto& [heading, group] : ordered) {
    const std::string lines = TextOf(group.modules);
    if (ordered.size() == 1 || heading.empty()) {
      outline += lines;
    } else {
      outline.append(heading).append("\n").append(Indented(lines));
    }
  }
  return outline;
}

}  // namespace quillmate::cli
