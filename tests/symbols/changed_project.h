#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <quillmate/symbols/compare.h>

/// Random pairs of states together with their truth: whoever makes a change knows what it is.
namespace quillmate::symbols::testing {

struct ChangedProject {
  Sources oldSources, newSources;
  /// By "Modul.Routine" of the new state, of the old one for gone ones: the state, what it was called before
  /// ("moved M1.R4"), then what differs in its text ("changed", "layout case", nothing).
  std::map<std::string, std::string> routines;
  /// By "Modul.Name": state of the declarations that differ, and the module that they were in before.
  std::map<std::string, std::string> declarations;
  /// By name: state of the modules that have another name, are new or gone.
  std::map<std::string, std::string> modules;
};

/// The same pair for the same seed.
ChangedProject ChangeProject(std::uint32_t seed);

}  // namespace quillmate::symbols::testing
