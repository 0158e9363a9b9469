#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The structure of what was read as text.
namespace quillmate::cli {

/// One module; texts are UTF-8.
struct OutlineModule {
  std::string heading;      ///< the line of its project; empty for a module file that is a project of its own
  std::int64_t number = 0;  ///< projects come in the order of their first modules
  std::string name;
  std::vector<std::string> routines;
};

/// "Kunden (/daten/Kunden.xlsm)"; empty where module and project are one file or the file is unknown.
std::string ProjectHeading(std::string_view project, std::string_view projectFile, std::string_view moduleFile);

/// Every module's name and below it, after a TAB, its routines; LF. Modules of several projects are one TAB deeper
/// below the lines of their projects.
std::string OutlineText(const std::vector<OutlineModule>& modules);

}  // namespace quillmate::cli
