#include <quillmate/startup/edition.h>

namespace quillmate::startup {

Edition EditionOf(int selector) {
  switch (selector) {
    case kExcel:
      return {"Excel", "EQM"};
    case kWord:
      return {"Word", "WQM"};
    case kAccess:
      return {"Access", "AQM"};
    case kPowerPoint:
      return {"PowerPoint", "PPQM"};
    case kVisualBasic:
      return {"VisualBasic", "VB"};
    default:
      return {};
  }
}

std::string SettingsRootOf(int selector) { return "Qm_Quillmate\\Qm_Quill_" + EditionOf(selector).hostName; }

std::string ProgramVersion() {
  return std::to_string(QUILLMATE_VERSION_MAJOR) + "." + std::to_string(QUILLMATE_VERSION_MINOR);
}

}  // namespace quillmate::startup
