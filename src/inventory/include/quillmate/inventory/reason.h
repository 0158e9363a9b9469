#pragma once

#include <system_error>

#include <quillmate/files/failure.h>

namespace quillmate::inventory {

/// What happens to an inventory, in words of its own; all else has the codes of the rooms below.
enum class InventoryReason {
  kBusy = 1,  // another program is writing
  kFull,      // because of %c
  kNoInventory,
  kDamaged,
  kCannotOpen,
  kReadOnly,
  kInputOutput,
  kNewer,
  kOlder,
  kIsTarget,     // a part that is the whole
  kNoReader,     // no process that reads can be started: %1
  kBrokenAnswer  // of such a process
};
std::error_code make_error_code(InventoryReason reason) noexcept;

}  // namespace quillmate::inventory

template <>
struct std::is_error_code_enum<quillmate::inventory::InventoryReason> : std::true_type {};
