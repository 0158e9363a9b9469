#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillmate::standin {

/// What the stand-in host is to be and to do. Names are Windows-1252.
struct Options {
  /// Host name: "Excel", "Word", "Access", "PowerPoint" or "VisualBasic".
  std::string edition = "Excel";
  std::string version = "16.0";
  /// Office files, module files or folders to offer as projects; with none, a few built-in modules are offered.
  std::vector<std::filesystem::path> sources;
  bool locked = false;
  /// So many projects that were never saved, all of one name.
  int unsaved = 0;
  /// Modules of an additional project.
  int many = 0;
  /// Lines of one more module in it.
  int longModule = 0;
  bool refuseAccess = false;
  /// Calls to turn away before the first is answered.
  int busy = 0;
  /// From the second attaching on this component is gone, or this project closed.
  std::string vanish;
  std::string close;
  /// The component gives no code module, or the project no components.
  std::string withholdCode;
  /// Asked for its lines the host ends, hangs until it is stopped, or gives one line less.
  std::string dieAt;
  std::string hangAt;
  std::string shortenAt;
  /// Don't end with the standard input.
  bool stay = false;
  bool help = false;
};

constexpr const char* kUsage =
    "stand_in_host [options]   stands in for a running Office program until its input ends or Quit is called\n"
    "  --edition excel|word|access|powerpoint|visualbasic   --version 9.0|11.0|16.0   --stay (ignore the input)\n"
    "  --sources PATH...   offer these files and folders   --many N   --long LINES   --locked   --unsaved (each time "
    "one)\n"
    "  --refuse-access   --busy CALLS   --vanish MODULE   --close PROJECT   --withhold-code NAME\n"
    "  --die-at MODULE   --hang-at MODULE   --shorten-at MODULE\n";

/// Throws std::runtime_error for an option that there is not.
Options ParseOptions(const std::vector<std::wstring>& arguments);

}  // namespace quillmate::standin
