#include <cstring>
#include <string>
#include <vector>

// clang-format off
#include <windows.h>
#include <winioctl.h>
// clang-format on

#include "startup/folder_link.h"

namespace quillmate::testing {
namespace {

struct JunctionHead {
  DWORD tag = IO_REPARSE_TAG_MOUNT_POINT;
  WORD dataSize = 0;
  WORD reserved = 0;
  WORD substituteOffset = 0;
  WORD substituteSize = 0;
  WORD printOffset = 0;
  WORD printSize = 0;
};

/// The system's form of a junction: the head, then the target as the system names it and as people do, each with a null
/// character after it.
std::vector<char> JunctionData(const std::wstring& target) {
  const std::wstring substitute = L"\\??\\" + target;
  const auto bytes = [](const std::wstring& text) { return static_cast<WORD>(text.size() * sizeof(wchar_t)); };
  JunctionHead head;
  head.substituteSize = bytes(substitute);
  head.printOffset = static_cast<WORD>(head.substituteSize + sizeof(wchar_t));
  head.printSize = bytes(target);
  const std::size_t namesSize = head.printOffset + head.printSize + sizeof(wchar_t);
  head.dataSize = static_cast<WORD>(8 + namesSize);
  std::vector<char> data(sizeof head + namesSize);
  std::memcpy(data.data(), &head, sizeof head);
  std::memcpy(data.data() + sizeof head, substitute.c_str(), head.printOffset);
  std::memcpy(data.data() + sizeof head + head.printOffset, target.c_str(), head.printSize + sizeof(wchar_t));
  return data;
}

}  // namespace

bool MakeFolderLink(const std::filesystem::path& target, const std::filesystem::path& link) {
  if (!std::filesystem::create_directory(link)) return false;
  const HANDLE folder = CreateFileW(link.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  std::vector<char> data = JunctionData(std::filesystem::path(target).make_preferred().native());
  DWORD returned = 0;
  const bool made = DeviceIoControl(folder, FSCTL_SET_REPARSE_POINT, data.data(), static_cast<DWORD>(data.size()),
                                    nullptr, 0, &returned, nullptr) != 0;
  CloseHandle(folder);
  if (!made) std::filesystem::remove(link);
  return made;
}

}  // namespace quillmate::testing
