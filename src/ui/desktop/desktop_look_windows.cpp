#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <bit>
#include <cwchar>

#include <windows.h>

#include "desktop_look.h"

namespace quillmate::ui {
namespace {

constexpr const wchar_t* kKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
constexpr const wchar_t* kValue = L"AppsUseLightTheme";

/// What WM_SETTINGCHANGE names when the user has changed light to dark or back.
constexpr const wchar_t* kColours = L"ImmersiveColorSet";

/// Without the value programs are light.
bool PrefersDark() {
  DWORD light = 1;
  DWORD size = sizeof(light);
  const LSTATUS status = RegGetValueW(HKEY_CURRENT_USER, kKey, kValue, RRF_RT_REG_DWORD, nullptr, &light, &size);
  return status == ERROR_SUCCESS && light == 0;
}

/// Hears of changes. The toolkit itself sees to the frames of the windows.
class SettingsLook : public QAbstractNativeEventFilter {
 public:
  bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
    const MSG& event = *static_cast<const MSG*>(message);
    if (event.message == WM_SETTINGCHANGE && event.lParam != 0 &&
        std::wcscmp(std::bit_cast<const wchar_t*>(event.lParam), kColours) == 0) {
      UseLook(PrefersDark());
    }
    return false;
  }
};

}  // namespace

void FollowDesktopLook(QApplication& app) {
  static SettingsLook look;
  app.installNativeEventFilter(&look);
  UseLook(PrefersDark());
}

}  // namespace quillmate::ui
