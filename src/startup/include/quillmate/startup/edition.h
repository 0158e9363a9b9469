#pragma once

#include <string>

namespace quillmate::startup {

/// The host selector, compiled into each executable: which Office host an edition reads.
enum HostSelector : int { kExcel = 1, kWord = 2, kAccess = 3, kPowerPoint = 4, kVisualBasic = 9 };

struct Edition {
  std::string hostName;
  std::string editionCode;
};

/// Both texts are empty for a selector that stands for no host.
Edition EditionOf(int selector);

/// Application path of the edition's settings, known before anything else: "Qm_Quillmate\Qm_Quill_" and the host's
/// name.
std::string SettingsRootOf(int selector);

/// Major version, ".", minor version.
std::string ProgramVersion();

}  // namespace quillmate::startup
