#include <utility>

#include "office_result_p.h"

namespace quillmate::office {

using State = OfficeFile::State;

OfficeFile Without(State state, std::string reason, OfficeHost host) {
  OfficeFile file;
  file.state = state;
  file.reason = std::move(reason);
  file.host = host;
  return file;
}

OfficeFile ReadProjectIn(const Storage& file, Storage::Id storage, OfficeHost host) {
  OfficeFile result;
  result.host = host;
  result.project = ReadVbaProject(file, storage);
  // A protection that breaks off with the rest of the description is damage; the texts stay unread all the same.
  const VbaProtection& protection = result.project.protection;
  const bool locked = protection.Locked() && (!protection.unclear || result.project.warnings.empty());
  const bool lost = result.project.modules.empty() && !locked;
  if (lost && !result.project.warnings.empty()) return Without(State::kFailed, reasons::kBrokenProject, host);
  if (lost) return Without(State::kNoMacros, reasons::kWithoutMacros, host);
  result.state = State::kRead;
  return result;
}

}  // namespace quillmate::office
