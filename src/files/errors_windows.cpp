#include <algorithm>
#include <array>

#include <windows.h>

#include "errors_windows_p.h"

namespace quillmate::files {
namespace {

struct Reason {
  DWORD code;
  std::errc named;
};
/// The reasons that the program has words for, as every system names them.
constexpr std::array kReasons{Reason{ERROR_ACCESS_DENIED, std::errc::permission_denied},
                              Reason{ERROR_SHARING_VIOLATION, std::errc::device_or_resource_busy},
                              Reason{ERROR_LOCK_VIOLATION, std::errc::device_or_resource_busy},
                              Reason{ERROR_FILE_NOT_FOUND, std::errc::no_such_file_or_directory},
                              Reason{ERROR_PATH_NOT_FOUND, std::errc::no_such_file_or_directory},
                              Reason{ERROR_BAD_NETPATH, std::errc::no_such_file_or_directory},
                              Reason{ERROR_BAD_NET_NAME, std::errc::no_such_file_or_directory},
                              Reason{ERROR_INVALID_DRIVE, std::errc::no_such_file_or_directory},
                              Reason{ERROR_DISK_FULL, std::errc::no_space_on_device},
                              Reason{ERROR_WRITE_PROTECT, std::errc::read_only_file_system},
                              Reason{ERROR_DIRECTORY, std::errc::not_a_directory},
                              Reason{ERROR_DIR_NOT_EMPTY, std::errc::directory_not_empty},
                              Reason{ERROR_ALREADY_EXISTS, std::errc::file_exists},
                              Reason{ERROR_FILENAME_EXCED_RANGE, std::errc::filename_too_long},
                              Reason{ERROR_NOT_SAME_DEVICE, std::errc::cross_device_link}};

}  // namespace

std::error_code ErrorOf(unsigned long code) noexcept {
  const auto* found =
      std::find_if(kReasons.begin(), kReasons.end(), [=](const Reason& reason) { return reason.code == code; });
  return found != kReasons.end() ? std::make_error_code(found->named)
                                 : std::error_code(static_cast<int>(code), std::system_category());
}

std::error_code LastError() noexcept { return ErrorOf(GetLastError()); }

}  // namespace quillmate::files
