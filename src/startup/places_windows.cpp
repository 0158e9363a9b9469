#include <string>

// The other headers need what this one declares.
// clang-format off
#include <windows.h>
#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>
// clang-format on

#include <quillmate/startup/session.h>

#include "places_p.h"

namespace quillmate::startup {

namespace fs = std::filesystem;

bool CanBeWritten(const fs::path& folder) {
  const std::wstring name = L"_" + std::to_wstring(GetCurrentProcessId()) + L"_" + std::to_wstring(GetTickCount64());
  const fs::path probe = folder / (fs::path(kScratchRoot).native() + name);
  const HANDLE file = CreateFileW(probe.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  CloseHandle(file);
  return true;
}

fs::path UserDataFolder() {
  PWSTR folder = nullptr;
  const HRESULT result = SHGetKnownFolderPath(FOLDERID_LocalAppData, KF_FLAG_DONT_VERIFY, nullptr, &folder);
  const fs::path base = SUCCEEDED(result) ? fs::path(folder) : fs::temp_directory_path();
  CoTaskMemFree(folder);
  return base / "quillmate";
}

}  // namespace quillmate::startup
