/// What scripts/try-windows needs to know of a Windows desktop, seen by a second process:
///
///     desktop_tool windows            titles of the visible windows, one a line
///     desktop_tool topmost TITLE      "yes" or "no" for the visible window with this title
///     desktop_tool formats            names of what is on the clipboard, one a line
///     desktop_tool clipboard [NAME]   the text on the clipboard as UTF-8, or the bytes under a registered name
///     desktop_tool look dark|light    the user's choice, told to all programs as the system's settings do
///
/// Exit status 1 when there is no such window or format.
#include <array>
#include <cstdio>
#include <cwchar>
#include <map>
#include <string>
#include <vector>

#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace {

std::string ToUtf8(const std::wstring& text) {
  const int size =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(), size, nullptr, nullptr);
  return utf8;
}

void Write(const std::string& bytes) { std::fwrite(bytes.data(), 1, bytes.size(), stdout); }

struct Window {
  HWND handle;
  std::wstring title;
};

BOOL CALLBACK Collect(HWND handle, LPARAM target) {
  std::array<wchar_t, 300> title{};
  if (IsWindowVisible(handle) == FALSE) return TRUE;
  if (GetWindowTextW(handle, title.data(), static_cast<int>(title.size())) > 0) {
    reinterpret_cast<std::vector<Window>*>(target)->push_back({handle, title.data()});
  }
  return TRUE;
}

std::vector<Window> VisibleWindows() {
  std::vector<Window> windows;
  EnumWindows(Collect, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

int ListWindows() {
  for (const Window& window : VisibleWindows()) Write(ToUtf8(window.title) + "\n");
  return 0;
}

int SayWhetherTopmost(const std::wstring& title) {
  for (const Window& window : VisibleWindows()) {
    if (window.title != title) continue;
    Write((GetWindowLongPtrW(window.handle, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0 ? "yes\n" : "no\n");
    return 0;
  }
  return 1;
}

std::wstring FormatName(UINT format) {
  static const std::map<UINT, const wchar_t*> kNames = {{CF_TEXT, L"CF_TEXT"},
                                                        {CF_UNICODETEXT, L"CF_UNICODETEXT"},
                                                        {CF_OEMTEXT, L"CF_OEMTEXT"},
                                                        {CF_LOCALE, L"CF_LOCALE"}};
  if (const auto known = kNames.find(format); known != kNames.end()) return known->second;
  std::array<wchar_t, 300> name{};
  GetClipboardFormatNameW(format, name.data(), static_cast<int>(name.size()));
  return name.data();
}

int ListFormats() {
  for (UINT format = EnumClipboardFormats(0); format != 0; format = EnumClipboardFormats(format)) {
    Write(ToUtf8(FormatName(format)) + "\n");
  }
  return 0;
}

int ShowClipboard(const std::wstring& name) {
  const HANDLE data = GetClipboardData(name.empty() ? CF_UNICODETEXT : RegisterClipboardFormatW(name.c_str()));
  if (data == nullptr) return 1;
  const void* content = GlobalLock(data);
  if (name.empty()) {
    Write(ToUtf8(static_cast<const wchar_t*>(content)));
  } else {
    Write(std::string(static_cast<const char*>(content), GlobalSize(data)));
  }
  GlobalUnlock(data);
  return 0;
}

int UseClipboard(const std::wstring& command, const std::wstring& name) {
  if (OpenClipboard(nullptr) == FALSE) return 1;
  const int status = command == L"formats" ? ListFormats() : ShowClipboard(name);
  CloseClipboard();
  return status;
}

int SetLook(const std::wstring& look) {
  const DWORD light = look == L"dark" ? 0 : 1;
  RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                  L"AppsUseLightTheme", REG_DWORD, &light, sizeof(light));
  SendMessageTimeoutW(HWND_BROADCAST, WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(L"ImmersiveColorSet"),
                      SMTO_ABORTIFHUNG, 3000, nullptr);
  return 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  _setmode(_fileno(stdout), _O_BINARY);
  const std::wstring command = argc > 1 ? argv[1] : L"";
  const std::wstring argument = argc > 2 ? argv[2] : L"";
  if (command == L"windows") return ListWindows();
  if (command == L"topmost") return SayWhetherTopmost(argument);
  if (command == L"formats" || command == L"clipboard") return UseClipboard(command, argument);
  if (command == L"look") return SetLook(argument);
  std::fputs("desktop_tool windows | topmost TITLE | formats | clipboard [NAME] | look dark|light\n", stderr);
  return 2;
}
