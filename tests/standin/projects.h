#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "options.h"

namespace quillmate::standin {

/// Names and code are Windows-1252, file names UTF-8.
struct Component {
  std::string name;
  int type;
  std::string code;
};

struct Project {
  std::string name;
  std::optional<std::string> file;
  bool locked = false;
  std::vector<std::shared_ptr<Component>> components{};
};

using Projects = std::vector<std::shared_ptr<Project>>;

/// The projects to offer, in order: a locked one, the sources or the built-in one, many modules, an unsaved one.
Projects MakeProjects(const Options& options);

}  // namespace quillmate::standin
