#include <QApplication>
#include <QDir>
#include <string>

// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include "desktop_programs.h"

namespace quillmate::ui {
namespace {

/// Commands of the help viewer.
constexpr UINT kShowTopic = 0;
constexpr UINT kCloseAll = 18;

using HelpFunction = HWND(WINAPI*)(HWND caller, LPCWSTR file, UINT command, DWORD_PTR data);

/// The help viewer is a part of Windows that some installations leave out: it is looked for when it is needed.
HelpFunction FindHelpViewer() {
  const HMODULE viewer = LoadLibraryExW(L"hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
  if (viewer == nullptr) return nullptr;
  // A function's address goes through void* to keep its real type from being compared.
  return reinterpret_cast<HelpFunction>(reinterpret_cast<void*>(GetProcAddress(viewer, "HtmlHelpW")));
}

std::wstring NativePath(const QString& file) { return QDir::toNativeSeparators(file).toStdWString(); }

/// The shell itself shows nothing when it fails.
bool Perform(const wchar_t* verb, const std::wstring& file) {
  SHELLEXECUTEINFOW order{};
  order.cbSize = sizeof(order);
  order.fMask = SEE_MASK_FLAG_NO_UI;
  order.hwnd = GetActiveWindow();
  order.lpVerb = verb;
  order.lpFile = file.c_str();
  order.nShow = SW_SHOWNORMAL;
  return ShellExecuteExW(&order) != FALSE;
}

}  // namespace

bool OpenFile(const QString& file) {
  const std::wstring path = NativePath(file);
  // Only some browsers know what a new window is.
  return Perform(L"opennew", path) || Perform(L"open", path);
}

bool OpenCompiledHelp(const QString& file, const QString& page) {
  static const HelpFunction show = FindHelpViewer();
  if (show == nullptr) return false;
  std::wstring target = NativePath(file);
  if (!page.isEmpty()) target += L"::/" + page.toStdWString();
  if (show(nullptr, target.c_str(), kShowTopic, 0) == nullptr) return false;
  // A viewer that is still open would outlive what it shows.
  static const auto closing =
      QObject::connect(qApp, &QCoreApplication::aboutToQuit, [] { show(nullptr, nullptr, kCloseAll, 0); });
  return static_cast<bool>(closing);
}

}  // namespace quillmate::ui
